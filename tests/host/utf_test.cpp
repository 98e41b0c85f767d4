#include "lq_data/host/text/utf.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using namespace lq::host;
using namespace std::string_literals;

struct Case {
    std::string bytes;
    std::u16string text;  // what precedes the fault
    TextFault fault = TextFault::kNone;
    std::size_t offset = 0;
    TextEncoding encoding = TextEncoding::kUtf8;
};

const Case kUtf8Cases[] = {
    {"", u""},
    {"abc", u"abc"},
    {"ab\0c"s, u"ab\0c"s},
    {"\0\0\0\0"s, u"\0\0\0\0"s},
    {"x\0yz"s, u"x\0yz"s},
    // Both ends of every length, and of every range of first bytes.
    {"\x7F\xC2\x80\xDF\xBF", u"\u007F\u0080\u07FF"},
    {"\xE0\xA0\x80\xE0\xBF\xBF\xE1\x80\x80\xEC\xBF\xBF", u"\u0800\u0FFF\u1000\uCFFF"},
    {"\xED\x80\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", u"\uD000\uD7FF\uE000\uFFFF"},
    {"\xF0\x90\x80\x80\xF0\xBF\xBF\xBF", u"\U00010000\U0003FFFF"},
    {"\xF1\x80\x80\x80\xF3\xBF\xBF\xBF", u"\U00040000\U000FFFFF"},
    {"\xF4\x80\x80\x80\xF4\x8F\xBF\xBF", u"\U00100000\U0010FFFF"},
    // Every fault, and its place.
    {"ab\x80", u"ab", TextFault::kStrayByte, 2},
    {"\xFF", u"", TextFault::kStrayByte, 0},
    {"\xF8\x80\x80\x80", u"", TextFault::kStrayByte, 0},
    {"a\xC3", u"a", TextFault::kBrokenOff, 1},
    {"a\xC3z", u"a", TextFault::kBrokenOff, 1},
    {"\xE3\x81\x82\xE3\x81", u"\u3042", TextFault::kBrokenOff, 3},
    {"\xF0\x9F\x98z", u"", TextFault::kBrokenOff, 0},
    {"\xE3\x81\xC2\x80", u"", TextFault::kBrokenOff, 0},
    {"\xC0\x80", u"", TextFault::kOverlong, 0},
    {"\xC1\xBF", u"", TextFault::kOverlong, 0},
    {"\xE0\x9F\xBF", u"", TextFault::kOverlong, 0},
    {"\xF0\x8F\xBF\xBF", u"", TextFault::kOverlong, 0},
    {"a\xED\xA0\x80", u"a", TextFault::kSurrogate, 1},
    {"\xF4\x90\x80\x80", u"", TextFault::kTooLarge, 0},
    {"\xF5\x80\x80\x80", u"", TextFault::kTooLarge, 0},
    {"\xF7\x80\x80\x80", u"", TextFault::kTooLarge, 0},
};

const Case kOtherCases[] = {
    {"\xEF\xBB\xBFx", u"x", TextFault::kNone, 0, TextEncoding::kUtf8WithMark},
    {"\xEF\xBB\xBFx\x80", u"x", TextFault::kStrayByte, 4, TextEncoding::kUtf8WithMark},
    {"\xFF\xFEx\0\x42\x30"s, u"x\u3042", TextFault::kNone, 0, TextEncoding::kUtf16Le},
    {"\xFE\xFF\0x\x30\x42"s, u"x\u3042", TextFault::kNone, 0, TextEncoding::kUtf16Be},
    {"\xFF\xFE\x3D\xD8\x00\xDE"s, u"\U0001F600", TextFault::kNone, 0, TextEncoding::kUtf16Le},
    {"x\0y\0"s, u"xy", TextFault::kNone, 0, TextEncoding::kUtf16Le},
    {"\0x\0y"s, u"xy", TextFault::kNone, 0, TextEncoding::kUtf16Be},
    {"x\0"s, u"x", TextFault::kNone, 0, TextEncoding::kUtf16Le},
    {"\xFF\xFEx\0y"s, u"x", TextFault::kOddLength, 4, TextEncoding::kUtf16Le},
    {"\xFF\xFEx\0\x3D\xD8"s, u"x", TextFault::kLoneSurrogate, 4, TextEncoding::kUtf16Le},
    {"\xFF\xFE\x00\xDEx\0"s, u"", TextFault::kLoneSurrogate, 2, TextEncoding::kUtf16Le},
    {"\xFF\xFE\x00\xD8\x00\xE0"s, u"", TextFault::kLoneSurrogate, 2, TextEncoding::kUtf16Le},
};

TEST(Utf, DecodesSourcesStrictly) {
    const auto check = [](const Case& c, const TextStatus& status, const std::u16string& text) {
        EXPECT_EQ(text, c.text);
        EXPECT_EQ(status.fault, c.fault) << Describe(status.fault);
        EXPECT_EQ(status.offset, status.IsFine() ? c.bytes.size() : c.offset);
    };
    const auto checkSource = [&check](const Case& c) {
        SCOPED_TRACE(testing::PrintToString(c.bytes));
        std::u16string text = u"old";
        TextEncoding encoding{};
        check(c, DecodeSource(c.bytes, text, &encoding), text);
        EXPECT_EQ(encoding, c.encoding);
    };
    for (const Case& c : kUtf8Cases) {
        checkSource(c);
        std::u16string text = u"old";
        check(c, DecodeUtf8(c.bytes, text), text);
        if (c.fault == TextFault::kNone) {
            EXPECT_EQ(EncodeUtf8(text), c.bytes);
        }
    }
    for (const Case& c : kOtherCases) {
        checkSource(c);
    }
}

TEST(Utf, EncodesLoneSurrogatesAsReplacement) {
    const std::string replacement = "\xEF\xBF\xBD";
    const std::pair<std::u16string, std::string> cases[] = {
        {{u'a', 0xD800}, "a" + replacement},
        {{0xDC00, 0xD800}, replacement + replacement},
        {{0xD800, u'a'}, replacement + "a"},
        {{0xD800, 0xE000}, replacement + "\uE000"},
        {{0xD800, 0xD83D, 0xDE00}, replacement + "\U0001F600"},
    };
    for (const auto& [text, bytes] : cases) {
        EXPECT_EQ(EncodeUtf8(text), bytes) << testing::PrintToString(text);
    }
}

TEST(Utf, CopiesCutBetweenCharacters) {
    const struct {
        const char* bytes;
        std::size_t size;
        bool fits;
        std::u16string text;
    } cases[] = {
        {"abc", 4, true, u"abc"},
        {"abc", 3, false, u"ab"},
        {"abc", 1, false, u""},
        {"a\xF0\x9F\x98\x80", 4, true, u"a\U0001F600"},
        {"a\xF0\x9F\x98\x80", 3, false, u"a"},
        {"a\xFF\xE3\x81z", 8, true, u"a\uFFFD\uFFFDz"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.bytes);
        char16_t wide[8];
        EXPECT_EQ(CopyUtf8ToUtf16(c.bytes, wide, c.size), c.fits);
        EXPECT_EQ(std::u16string(wide), c.text);
    }
    for (const auto& [text, bytes, fits] :
         {std::tuple(u"a\u3042", "a\u3042", true), std::tuple(u"ab\u3042", "ab", false),
          std::tuple(u"", "", true), std::tuple(u"\U0001F600a", "\U0001F600", false)}) {
        char narrow[5];
        EXPECT_EQ(CopyUtf16ToUtf8(text, narrow, 5), fits);
        EXPECT_STREQ(narrow, bytes);
    }
}

}  // namespace
