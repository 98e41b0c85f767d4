#include "lq_data/host/text/utf.h"

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
    for (const Row& row : Rows("host/texts.rows", "lone surrogates")) {
        EXPECT_EQ(EncodeUtf8(row.Wide(0)), row[1]) << row.line;
    }
}

TEST(Utf, CopiesCutBetweenCharacters) {
    for (const Row& row : Rows("host/texts.rows", "copies to UTF-16")) {
        const auto size = static_cast<std::size_t>(row.Number(1));
        char16_t wide[8];
        EXPECT_EQ(CopyUtf8ToUtf16(row[0].c_str(), wide, size), row[2].empty()) << row.line;
        EXPECT_EQ(wide, row.Wide(3)) << row.line;
    }
    for (const Row& row : Rows("host/texts.rows", "copies to five bytes")) {
        char narrow[5];
        EXPECT_EQ(CopyUtf16ToUtf8(row.Wide(0).c_str(), narrow, 5), row[1].empty()) << row.line;
        EXPECT_EQ(narrow, row[2]) << row.line;
    }
}

}  // namespace
