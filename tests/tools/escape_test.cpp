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
        // Both ends of ranges, and what stands beside them.
        {"\u200A\u200B\u200F\u2010", "\u200A\\u200B\\u200F\u2010", "\u200A\\u200b\\u200f\u2010"},
        {"\u2027\u2028\u202E\u202F", "\u2027\\u2028\\u202E\u202F", "\u2027\\u2028\\u202e\u202F"},
        {"\u061B\u061C\u061D", "\u061B\\u061C\u061D", "\u061B\\u061c\u061D"},
        {"\u115E\u115F\u1160\u3164", "\u115E\\u115F\\u1160\\u3164", "\u115E\\u115f\\u1160\\u3164"},
        {"\uFE0F\uFEFF\uFFFD\uFFFF", "\\uFE0F\\uFEFF\uFFFD\\uFFFF", "\\ufe0f\\ufeff\uFFFD\\uffff"},
        {"\U0001F600\U000E0001\U0010FFFE\U000E1000", "\U0001F600\\U000E0001\\U0010FFFE\U000E1000",
         "\U0001F600\\udb40\\udc01\\udbff\\udffe\U000E1000"},
        {"\xED\xA0\x80", "\\uD800", "\\ud800"},
        // No UTF-8: broken off, in more bytes than needed, beyond the last character. Documents
        // have none.
        {"\xC2", "\\xC2", "\xC2"},
        {"\xE2\x80z\x9B", "\\xE2\\x80z\\x9B", "\xE2\x80z\x9B"},
        {"\xC0\x9B\xF4\x90\x80\x80\xFF", "\\xC0\\x9B\\xF4\\x90\\x80\\x80\\xFF",
         "\xC0\x9B\xF4\x90\x80\x80\xFF"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(OneLine(c.text), c.line);
        EXPECT_EQ(HarmlessJson(c.text), c.json);
    }
}

}  // namespace
}  // namespace lq::tool
