#include "host/text/utf.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/rows.h"

namespace {

using namespace lq::host;
using lq::test::Row;
using lq::test::Rows;

TEST(Utf, DecodesSourcesStrictly) {
    constexpr const char* kFaults[] = {"",          "StrayByte", "BrokenOff",     "Overlong",
                                       "Surrogate", "TooLarge",  "LoneSurrogate", "OddLength"};
    constexpr const char* kEncodings[] = {"", "Utf8WithMark", "Utf16Le", "Utf16Be"};
    for (const char* const table : {"UTF-8", "other encodings"}) {
        for (const Row& row : Rows("host/texts.rows", table)) {
            SCOPED_TRACE(row.line);
            const auto check = [&](const TextStatus& status, const std::u16string& text) {
                EXPECT_EQ(text, row.Wide(1));
                EXPECT_EQ(kFaults[static_cast<int>(status.fault)], row[2]);
                EXPECT_EQ(status.offset, row[2].empty() ? row[0].size() : row.Number(3));
            };
            std::u16string text = u"old";
            TextEncoding encoding{};
            check(DecodeSource(row[0], text, &encoding), text);
            EXPECT_EQ(kEncodings[static_cast<int>(encoding)], row[4]);
            if (row[4].empty()) {
                text = u"old";
                check(DecodeUtf8(row[0], text), text);
                EXPECT_TRUE(!row[2].empty() || EncodeUtf8(text) == row[0]);
            }
        }
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
