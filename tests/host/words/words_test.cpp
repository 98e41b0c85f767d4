// What is said of a text alone: names, type words, lengths of strings, initial values.
#include "lq_data/host/words/words.h"

#include <memory>

#include <gtest/gtest.h>

#include "lq_data/env/lq_model.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/scanner.h"
#include "tests/support/rows.h"

namespace {

using lq::host::EncodeUtf8;
using lq::test::Row;
using lq::test::Rows;

// Whether the text of each row passes, and is refused in the table of the same name with "no".
void CheckTexts(const std::string& table, int (*check)(const char16_t* text)) {
    for (const Row& row : Rows("host/words/words.rows", table)) {
        EXPECT_EQ(check(row.Wide(0).c_str()), 0) << row.line;
    }
    for (const Row& row : Rows("host/words/words.rows", "no " + table)) {
        EXPECT_NE(check(row.Wide(0).c_str()), 0) << row.line;
    }
}

TEST(CheckIdentifier, AcceptsIecNames) {
    CheckTexts("names", [](const char16_t* name) { return CheckIdentifier(nullptr, name, 0); });
    EXPECT_NE(CheckIdentifier(nullptr, nullptr, 0), 0);
    // No character is added to those that the scanner takes.
    for (const char16_t* beginning : {u"a", u"a$", u"12a", u"a:"}) {
        EXPECT_NE(CheckIdentifier(nullptr, beginning, 1), 0) << EncodeUtf8(beginning);
    }
}

TEST(CheckInitSyntax, AcceptsValuesAndNothingElse) {
    CheckTexts("values", [](const char16_t* text) { return CheckInitSyntax(nullptr, text); });
    EXPECT_EQ(CheckInitSyntax(nullptr, nullptr), 0);
    for (const std::size_t depth : {std::size_t{64}, std::size_t{65}, std::size_t{10000}}) {
        for (const char16_t* brackets : {u"()", u"[]"}) {
            const std::u16string text =
                std::u16string(depth, brackets[0]) + u"1" + std::u16string(depth, brackets[1]);
            EXPECT_EQ(CheckInitSyntax(nullptr, text.c_str()) == 0, depth <= 64) << depth;
        }
    }
}

TEST(IsStandardFunction, KnowsConversionsAndTypedNames) {
    CheckTexts("functions",
               [](const char16_t* name) { return lq::host::IsStandardFunction(name) ? 0 : 1; });
}

TEST(TypeWords, AreWholeWords) {
    for (const Row& row : Rows("host/words/words.rows", "type words")) {
        EXPECT_EQ(IsStringType(row.Wide(0).c_str()), row[1] == "string" ? 1 : 0) << row.line;
        EXPECT_EQ(IsArrayType(row.Wide(0).c_str()), row[1] == "array" ? 1 : 0) << row.line;
    }
    EXPECT_EQ(IsStringType(nullptr) + IsArrayType(nullptr), 0);
}

// What CheckStringSize makes of the text, and the kind of the token behind it.
TEST(CheckStringSize, ReadsALengthOrTheEnd) {
    constexpr int32_t kNone = -7;
    for (const Row& row : Rows("host/words/words.rows", "string sizes")) {
        SCOPED_TRACE(row.line);
        const std::u16string text = row.Wide(0);
        const auto length = static_cast<int32_t>(text.size());
        MEMSTREAM_W stream(text.c_str(), length, length, nullptr);
        const std::unique_ptr<CObject> object(Scanner::CreateObject());
        auto& scanner = static_cast<Scanner&>(*object);
        scanner.Initialize(stream);
        int32_t size = kNone;
        const bool isRefused = row[1] == "refused";
        EXPECT_EQ(CheckStringSize(&scanner, size), isRefused ? 0 : 1);
        EXPECT_EQ(size, isRefused ? kNone : row.Number(1));
        EXPECT_EQ(scanner.GetToken().kind, row.Number(2));
    }
    int32_t size = kNone;
    EXPECT_EQ(CheckStringSize(nullptr, size), 0);
}

}  // namespace
