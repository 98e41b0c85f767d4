#include "host/base/check_scanner.h"

#include <string_view>

#include <gtest/gtest.h>

#include "lq_data/scanner.h"
#include "tests/support/memory_jobs.h"
#include "tests/support/rows.h"

namespace {

// The number of the keyword, or minus the token's kind.
int Scan(Scanner& scanner, std::u16string_view text) {
    const auto length = static_cast<int32_t>(text.size());
    MEMSTREAM_W stream(text.data(), length, length, nullptr);
    scanner.AssignStream(stream, 0);
    const Token token = scanner.GetToken();
    scanner.ReleaseStream();
    return token.kind == TK_KEYWORD ? token.GetCode() : -token.kind;
}

TEST(CheckScanner, KnowsTheTypeKeywords) {
    Scanner* scanner = GetCheckScanner();
    ASSERT_NE(scanner, nullptr);
    EXPECT_EQ(scanner->ReleaseStream(), nullptr);
    int number = 6461;
    for (const auto& row : lq::test::Rows("host/settings.rows", "type keywords in order")) {
        EXPECT_EQ(Scan(*scanner, row.Wide(0)), number++) << row.line;
    }
    EXPECT_EQ(Scan(*scanner, u"STRUCT"), 6504);
    EXPECT_EQ(Scan(*scanner, u"UNION"), 6505);
    for (const std::u16string_view word : {u"TRUE", u"FALSE", u"int"}) {
        EXPECT_EQ(Scan(*scanner, word), -TK_IDENTIFIER);
    }
    ReleaseCheckScanner();
}

TEST(CheckScanner, IsKeptWhileLent) {
    Scanner* const outer = GetCheckScanner();
    EXPECT_EQ(GetCheckScanner(), outer);
    ReleaseCheckScanner();
    EXPECT_EQ(lq::host::DestroyCheckScanner(), 1);
    EXPECT_EQ(outer->ReleaseStream(), nullptr);  // still alive
    ReleaseCheckScanner();
    EXPECT_EQ(lq::host::DestroyCheckScanner(), 0);
    ReleaseCheckScanner();  // without a loan: no effect
    EXPECT_EQ(lq::host::DestroyCheckScanner(), 0);
}

// A scanner with all keywords or none; and what came through with a failure beneath it is the one
// that stays.
TEST(CheckScanner, IsWholeOrNull) {
    const auto lend = [] {
        Scanner* scanner = GetCheckScanner();
        if (scanner) {
            EXPECT_EQ(scanner->RegisterKeyword(u"UNION", 1), 0);  // the last of the keywords
            const bool isKeyword = Scan(*scanner, u"INT") > 0;
            EXPECT_TRUE(isKeyword || !scanner->CanRead());
            scanner = isKeyword ? scanner : nullptr;
        }
        ReleaseCheckScanner();
        return scanner ? "lent" : lq::test::kShort;
    };
    lq::test::RunWithFailures({"check scanner", [&] { return lend; }});
}

}  // namespace
