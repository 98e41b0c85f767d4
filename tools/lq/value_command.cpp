#include <cstring>
#include <sstream>

#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/types.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/constant_types.h"
#include "tools/lq/describe.h"
#include "tools/lq/escape.h"
#include "tools/lq/input.h"
#include "tools/lq/input_buffer.h"
#include "tools/lq/messages.h"
#include "tools/lq/output.h"
#include "tools/lq/suggestion.h"

namespace lq::tool {

using host::Say;

namespace {

std::string Join(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : " ") + name;
    }
    return text;
}

// The payload in decimal, where the class holds one number; else its bytes are told by the text
// form.
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

// One constant a line; empty lines are none.
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
