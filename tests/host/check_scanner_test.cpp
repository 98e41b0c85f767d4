#include "host/base/check_scanner.h"

#include <string>

#include <gtest/gtest.h>

#include "lq_data/scanner.h"
#include "tests/support/test_allocator.h"

namespace {

TEST(CheckScanner, KnowsTheTypeKeywords) {
    const struct {
        const char16_t* text;
        int32_t kind;
        uint16_t id;
    } cases[] = {
        {u"SINT", TK_KEYWORD, 6461},   {u"ULINT", TK_KEYWORD, 6468},
        {u"BOOL", TK_KEYWORD, 6469},   {u"DATE_AND_TIME", TK_KEYWORD, 6481},
        {u"ANY", TK_KEYWORD, 6482},    {u"ANY16", TK_KEYWORD, 6488},
        {u"ANY32", TK_KEYWORD, 6489},  {u"ANY_SIMPLE", TK_KEYWORD, 6490},
        {u"STRING", TK_KEYWORD, 6491}, {u"ARRAY", TK_KEYWORD, 6492},
        {u"OF", TK_KEYWORD, 6493},     {u"STRUCT", TK_KEYWORD, 6504},
        {u"UNION", TK_KEYWORD, 6505},  {u"TRUE", TK_IDENTIFIER, 0},
        {u"FALSE", TK_IDENTIFIER, 0},  {u"int", TK_IDENTIFIER, 0},
    };
    Scanner* scanner = GetCheckScanner();
    ASSERT_NE(scanner, nullptr);
    EXPECT_EQ(scanner->ReleaseStream(), nullptr);
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::u16string(c.text)));
        const auto length = static_cast<int32_t>(std::char_traits<char16_t>::length(c.text));
        MEMSTREAM_W stream(c.text, length, length, nullptr);
        scanner->AssignStream(stream, 0);
        const Token token = scanner->GetToken();
        EXPECT_EQ(token.kind, c.kind);
        if (c.kind == TK_KEYWORD) {
            EXPECT_EQ(token.GetCode(), c.id);
        }
        scanner->ReleaseStream();
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

// The scanner that came through with a failure beneath it is the one that stays.
TEST(CheckScanner, RecoversFromEveryFailure) {
    for (int64_t nth = 1; nth < 20; ++nth) {
        lq::host::DestroyCheckScanner();
        {
            const lq::test::FailingAllocation failing(nth, false);
            GetCheckScanner();
            ReleaseCheckScanner();
        }
        MEMSTREAM_W stream(u"UNION", 5, 5, nullptr);  // the last of the keywords
        Scanner* scanner = GetCheckScanner();
        ASSERT_NE(scanner, nullptr) << nth;
        scanner->AssignStream(stream, 0);
        EXPECT_EQ(scanner->GetToken().kind, TK_KEYWORD) << nth;
        scanner->ReleaseStream();
        ReleaseCheckScanner();
    }
    lq::host::DestroyCheckScanner();
}

}  // namespace
