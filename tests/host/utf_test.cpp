#include "host/text/utf.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using namespace lq::host;
using namespace std::string_literals;

struct Utf8Case {
    std::string bytes;
    std::u16string text;  // what precedes the fault
    TextFault fault = TextFault::kNone;
    std::size_t offset = 0;
};

const Utf8Case kUtf8Cases[] = {
    {"", u""},
    {"abc", u"abc"},
    {"a\0b"s, u"a\0b"s},
    // Both ends of every length.
    {"\x7F\xC2\x80\xDF\xBF", u"\u007F\u0080\u07FF"},
    {"\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", u"\u0800\uD7FF\uE000\uFFFF"},
    {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF"},
    // Every fault, and its place.
    {"ab\x80", u"ab", TextFault::kStrayByte, 2},
    {"\xFF", u"", TextFault::kStrayByte, 0},
    {"a\xC3", u"a", TextFault::kBrokenOff, 1},
    {"a\xC3z", u"a", TextFault::kBrokenOff, 1},
    {"\xE3\x81\x82\xE3\x81", u"\u3042", TextFault::kBrokenOff, 3},
    {"\xF0\x9F\x98z", u"", TextFault::kBrokenOff, 0},
    {"\xC0\x80", u"", TextFault::kOverlong, 0},
    {"\xE0\x9F\xBF", u"", TextFault::kOverlong, 0},
    {"\xF0\x8F\xBF\xBF", u"", TextFault::kOverlong, 0},
    {"a\xED\xA0\x80", u"a", TextFault::kSurrogate, 1},
    {"\xF4\x90\x80\x80", u"", TextFault::kTooLarge, 0},
    {"\xF5\x80\x80\x80", u"", TextFault::kTooLarge, 0},
};

TEST(Utf, DecodesUtf8Strictly) {
    for (const Utf8Case& c : kUtf8Cases) {
        SCOPED_TRACE(testing::PrintToString(c.bytes));
        std::u16string text = u"old";
        const TextStatus status = DecodeUtf8(c.bytes, text);
        EXPECT_EQ(text, c.text);
        EXPECT_EQ(status.fault, c.fault) << Describe(status.fault);
        EXPECT_EQ(status.offset, status.IsFine() ? c.bytes.size() : c.offset);
        if (status.IsFine()) {
            EXPECT_EQ(EncodeUtf8(text), c.bytes);
        }
    }
}

TEST(Utf, EncodesLoneSurrogatesAsReplacement) {
    const std::string replacement = "\xEF\xBF\xBD";
    const struct {
        std::u16string text;
        std::string bytes;
    } cases[] = {
        {{u'a', 0xD800}, "a" + replacement},
        {{0xD800, u'a'}, replacement + "a"},
        {{0xDC00, 0xD800}, replacement + replacement},
        {{0xD800, 0xD83D, 0xDE00}, replacement + "\xF0\x9F\x98\x80"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(EncodeUtf8(c.text), c.bytes) << testing::PrintToString(c.text);
    }
}

struct SourceCase {
    std::string bytes;
    TextEncoding encoding;
    std::u16string text;
    TextFault fault = TextFault::kNone;
    std::size_t offset = 0;
};

const SourceCase kSourceCases[] = {
    {"", TextEncoding::kUtf8, u""},
    {"x", TextEncoding::kUtf8, u"x"},
    {"\xEF\xBB\xBFx", TextEncoding::kUtf8WithMark, u"x"},
    {"\xEF\xBB\xBFx\x80", TextEncoding::kUtf8WithMark, u"x", TextFault::kStrayByte, 4},
    {"\xFF\xFEx\0\x42\x30"s, TextEncoding::kUtf16Le, u"x\u3042"},
    {"\xFE\xFF\0x\x30\x42"s, TextEncoding::kUtf16Be, u"x\u3042"},
    {"\xFF\xFE\x3D\xD8\x00\xDE"s, TextEncoding::kUtf16Le, u"\U0001F600"},
    {"x\0y\0"s, TextEncoding::kUtf16Le, u"xy"},
    {"\0x\0y"s, TextEncoding::kUtf16Be, u"xy"},
    {"x\0"s, TextEncoding::kUtf16Le, u"x"},
    {"x\0yz"s, TextEncoding::kUtf8, u"x\0yz"s},
    {"\0\0\0\0"s, TextEncoding::kUtf8, u"\0\0\0\0"s},
    {"\xFF\xFEx\0y"s, TextEncoding::kUtf16Le, u"x", TextFault::kOddLength, 4},
    {"\xFF\xFEx\0\x3D\xD8"s, TextEncoding::kUtf16Le, u"x", TextFault::kLoneSurrogate, 4},
    {"\xFF\xFE\x00\xDEx\0"s, TextEncoding::kUtf16Le, u"", TextFault::kLoneSurrogate, 2},
};

TEST(Utf, DecodesSourcesOfAnyEncoding) {
    for (const SourceCase& c : kSourceCases) {
        SCOPED_TRACE(testing::PrintToString(c.bytes));
        std::u16string text = u"old";
        TextEncoding encoding{};
        const TextStatus status = DecodeSource(c.bytes, text, &encoding);
        EXPECT_EQ(encoding, c.encoding);
        EXPECT_EQ(text, c.text);
        EXPECT_EQ(status.fault, c.fault) << Describe(status.fault);
        EXPECT_EQ(status.offset, status.IsFine() ? c.bytes.size() : c.offset);
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
    char narrow[5];
    EXPECT_TRUE(CopyUtf16ToUtf8(u"a\u3042", narrow, 5));
    EXPECT_STREQ(narrow, "a\xE3\x81\x82");
    EXPECT_FALSE(CopyUtf16ToUtf8(u"ab\u3042", narrow, 5));
    EXPECT_STREQ(narrow, "ab");
}

}  // namespace
