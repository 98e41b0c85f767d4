#include "tools/lq/escape.h"

#include <gtest/gtest.h>

namespace lq::tool {
namespace {

TEST(Escape, LeavesNothingThatATerminalActsUpon) {
    const struct {
        std::string_view text, line, json;
    } cases[] = {
        {"Pump 1 \u00fc \u65e5", "Pump 1 \u00fc \u65e5", "Pump 1 \u00fc \u65e5"},
        {"a\nb\r\tc", "a\\nb\\r\\tc", "a\nb\\u000d\\u0009c"},
        {"\x1B[31m\x7F", "\\x1B[31m\\x7F", "\\u001b[31m\\u007f"},
        {"\u0080\u009B31m\u009F\u00A0", "\\u0080\\u009B31m\\u009F\u00A0",
         "\\u0080\\u009b31m\\u009f\u00A0"},
        {"\u200D\u200E\u200F\u2010", "\u200D\\u200E\\u200F\u2010", "\u200D\\u200e\\u200f\u2010"},
        {"\u2027\u2028\u202E\u202F", "\u2027\\u2028\\u202E\u202F", "\u2027\\u2028\\u202e\u202F"},
        {"\u2065\u2066\u2069\u206A", "\u2065\\u2066\\u2069\u206A", "\u2065\\u2066\\u2069\u206A"},
        {"\xC2", "\xC2", "\xC2"},
        {"\xE2\x80", "\xE2\x80", "\xE2\x80"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(OneLine(c.text), c.line);
        EXPECT_EQ(HarmlessJson(c.text), c.json);
    }
}

}  // namespace
}  // namespace lq::tool
