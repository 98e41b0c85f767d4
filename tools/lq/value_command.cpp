#include <cmath>
#include <cstring>
#include <sstream>
#include <string_view>
#include <vector>

#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/types.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/describe.h"
#include "tools/lq/escape.h"
#include "tools/lq/input.h"
#include "tools/lq/messages.h"
#include "tools/lq/output.h"
#include "tools/lq/suggestion.h"

namespace lq::tool {

using host::Say;

namespace {

// --- The types that can hold a constant ----------------------------------------------------------

struct ConstantTypes {
    std::vector<std::string> all;
    std::string single;    // the most specific type for all of them
    std::string smallest;  // empty when none of them has a size of its own
};

std::string NameOf(IEC_TYPE type) {
    return host::EncodeUtf8(IecTypeConv().GetName(type));
}

uint32_t BitsOf(IEC_TYPE type) {
    return static_cast<uint32_t>(MapTypeToBitset(type));
}

uint32_t BitsOf(std::u16string_view text, Val value) {
    uint32_t bits = 0;
    ANY_INT_32 integer;
    if (value.Get(integer)) {
        if (text.find(u'#') != text.npos && !integer.sign) {
            DCE_GetBOHConstRange(static_cast<int32_t>(integer.magnitude), &bits);
        } else {
            DCE_GetIntConstRange(integer.sign, integer.magnitude, &bits);
        }
        return bits;
    }
    switch (value.type) {
        case VT_BOOL:
            return BitsOf(IEC_BOOL);
        case VT_LREAL: {
            double number = 0.0;
            std::memcpy(&number, value.payload, sizeof(number));
            DCE_GetRealConstRange(std::fabs(number), &bits);
            return bits;
        }
        case VT_TIME:
            return BitsOf(IEC_TIME);
        case VT_DATE:
            return BitsOf(IEC_DATE);
        case VT_TOD:
            return BitsOf(IEC_TOD);
        case VT_DT:
            return BitsOf(IEC_DT);
        default:
            return 0;
    }
}

std::vector<std::string> TypeNames(uint32_t bits) {
    std::vector<std::string> names;
    for (const IEC_TYPE_DSC* dsc = GetIecTypeDsc(); dsc != GetIecTypeDsc() + GetIecDscSize();
         ++dsc) {
        const bool isFirstName = NameOf(dsc->id) == host::EncodeUtf8(dsc->name);
        if (IsElementaryType(dsc->id) && isFirstName && (BitsOf(dsc->id) & bits) != 0) {
            names.push_back(NameOf(dsc->id));
        }
    }
    return names;
}

ConstantTypes TypesOf(std::u16string_view text, const Val& value) {
    const uint32_t bits = BitsOf(text, value);
    auto smallest = static_cast<int32_t>(bits);
    MapBitsetToMinSize(&smallest);
    const bool isOne = smallest != 0 && (smallest & (smallest - 1)) == 0;
    return {TypeNames(bits), NameOf(MapAllBitsetToType(static_cast<int32_t>(bits))),
            isOne ? NameOf(MapBitsetToType(smallest)) : ""};
}

// --- What the command shows ----------------------------------------------------------------------

std::string Join(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : " ") + name;
    }
    return text;
}

// The payload as a decimal number. Where the class does not hold one number, the text form is all
// that can be said of it.
std::string PayloadText(const Val& value) {
    Val copy = value;
    ANY_INT_32 integer;
    if (copy.Get(integer)) {
        return (integer.sign ? "-" : "") + std::to_string(integer.magnitude);
    }
    int32_t days = 0;
    double ms = 0.0;
    switch (value.type) {
        case VT_TIME:
        case VT_DT:
            std::memcpy(&days, value.payload, sizeof(days));
            std::memcpy(&ms, value.payload + sizeof(days), sizeof(ms));
            return std::to_string(days) + " days " + Json(ms).dump() + " ms";
        case VT_DATE:
            std::memcpy(&days, value.payload, sizeof(days));
            return std::to_string(days) + " days";
        case VT_TOD:
            std::memcpy(&ms, value.payload, sizeof(ms));
            return Json(ms).dump() + " ms";
        default:
            return ValueText(value);
    }
}

struct Constant {
    std::string text;
    Place place;  // without a file for an argument
};

// Reads constants from standard input, one a line; empty lines are passed over.
std::vector<Constant> LinesOf(const std::string& text) {
    std::vector<Constant> constants;
    std::istringstream input(text);
    Place place = {DisplayName("-"), 0, 1};
    for (std::string line; std::getline(input, line);) {
        ++place.line;
        line.erase(line.find_last_not_of(" \t\r") + 1);
        if (!line.empty()) {
            constants.push_back({line, place});
        }
    }
    return constants;
}

std::vector<Constant> ConstantsOf(const std::vector<std::string>& arguments) {
    if (arguments == std::vector<std::string>{"-"}) {
        return LinesOf(host::EncodeUtf8(DecodeInput("-", ReadInput("-", kMaxText))));
    }
    std::vector<Constant> constants;
    constants.reserve(arguments.size());
    for (const std::string& argument : arguments) {
        constants.push_back({argument, {}});
    }
    return constants;
}

void ReportNoConstant(const Constant& constant) {
    const std::string text = Say("'{}' is no constant", constant.text);
    if (constant.place.file.empty()) {
        PrintMessage(text);
    } else {
        PrintMessage(constant.place, text);
    }
}

}  // namespace

int RunValue(const ValueOptions& options) {
    if (options.texts.empty()) {
        throw CommandError(Say("value: no constant was given") + SeeHelp("value"));
    }
    int status = kDone;
    Json results = Json::array();
    Table table;
    table.columns = {{"constant"}, {"class"},       {"value"},   {"text"},
                     {"types"},    {"single type"}, {"smallest"}};
    for (const Constant& constant : ConstantsOf(options.texts)) {
        const std::string& text = constant.text;
        const std::u16string source = DecodeArgument(text);
        Val value;
        if (!value.Set(source.c_str(), options.unsignedOnly ? 1 : 0)) {
            ReportNoConstant(constant);
            status = kInputHasFaults;
            continue;
        }
        const ConstantTypes types = TypesOf(source, value);
        results.push_back({{"constant", text},
                           {"class", ValueClassName(value.type)},
                           {"value", PayloadText(value)},
                           {"text", ValueText(value)},
                           {"types", types.all},
                           {"single_type", types.single},
                           {"smallest", types.smallest}});
        table.rows.push_back({OneLine(text), ValueClassName(value.type), PayloadText(value),
                              ValueText(value), Join(types.all), types.single, types.smallest});
    }
    if (options.json) {
        Json document = NewDocument();
        document["constants"] = results;
        PrintJson(document);
    } else if (!table.rows.empty()) {
        Print(table);
    }
    return status;
}

}  // namespace lq::tool
