#include <cstring>
#include <iostream>
#include <sstream>

#include <nlohmann/json.hpp>

#include "host/text/utf.h"
#include "lq_data/types.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/constant_types.h"
#include "tools/lq/describe.h"
#include "tools/lq/input.h"
#include "tools/lq/input_buffer.h"
#include "tools/lq/output.h"

namespace lq::tool {

using Json = nlohmann::ordered_json;

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

// One constant a line; empty lines are none.
std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream input(text);
    for (std::string line; std::getline(input, line);) {
        line.erase(line.find_last_not_of(" \t\r") + 1);
        if (!line.empty()) {
            lines.push_back(line);
        }
    }
    return lines;
}

}  // namespace

int RunValue(const ValueOptions& options) {
    if (options.texts.empty()) {
        throw CommandError("value: no constant was given; see lq value --help");
    }
    std::vector<std::string> texts = options.texts;
    if (texts == std::vector<std::string>{"-"}) {
        texts = LinesOf(host::EncodeUtf8(DecodeInput("-", ReadInput("-", kMaxText))));
    }
    int status = kDone;
    Json results = Json::array();
    Table table;
    table.columns = {{"constant"}, {"class"},       {"value"},   {"text"},
                     {"types"},    {"single type"}, {"smallest"}};
    for (const std::string& text : texts) {
        const std::u16string source = DecodeArgument(text);
        Val value;
        if (!value.Set(source.c_str(), options.unsignedOnly ? 1 : 0)) {
            std::cerr << "lq: '" << text << "' is no constant\n";
            status = kInputHasFaults;
            continue;
        }
        const ConstantTypes types = TypesOf(source, value);
        results.push_back({{"constant", text},
                           {"class", ValueClassName(value.type)},
                           {"value", PayloadText(value)},
                           {"text", ValueText(value)},
                           {"types", types.all},
                           {"single type", types.single},
                           {"smallest", types.smallest}});
        table.rows.push_back({OneLine(text), ValueClassName(value.type), PayloadText(value),
                              ValueText(value), Join(types.all), types.single, types.smallest});
    }
    if (options.json) {
        PrintJson(results);
    } else if (!table.rows.empty()) {
        Print(table);
    }
    return status;
}

}  // namespace lq::tool
