// What the outside checks make of identifiers and numbers, and the option for NUL in strings.
#include <numeric>

#include "lq_data/host/addrcheck/address_check.h"
#include "lq_data/host/useradapt/user_adapter.h"
#include "lq_data/host/words/words.h"
#include "tests/scanner/scan_util.h"
#include "tests/support/memory_jobs.h"

namespace lq::test {
namespace {

// A system whose device addresses begin with X and a digit, whose constants are K and E with a sign
// and a digit, and whose names may hold exclamation marks.
class HostAnswers : public testing::Test {
  protected:
    HostAnswers() {
        host::GetAddressRules().isCustomAddress = [](const char16_t* text, int access, int flag) {
            lastAccess = access;
            return flag == 1 && text[0] == u'X' && text[1] >= u'0' && text[1] <= u'9' ? 1 : 0;
        };
        host::GetAddressRules().isOwnConstant = [](const char16_t* text, int a, int b) {
            const std::u16string_view all(text);
            return a == 1 && b == 1 && all.back() >= u'0' && all.back() <= u'9' ? 1 : 0;
        };
        host::SetExtendedIdentifiers(
            [](const char16_t* text) { return std::u16string_view(text).back() == u'!'; });
    }
    ~HostAnswers() override {
        host::GetAddressRules() = {};
        host::SetExtendedIdentifiers(nullptr);
        host::GetUserAdapterAnswers() = {};
    }

    static inline int lastAccess = -1;
};

TEST_F(HostAnswers, ExtendWhatBelongsToAnIdentifier) {
    // clang-format off
    CheckScans({
        {u"K+1 k-2 K+x KK+1", "ID[K+1] ID[k-2] ID[K] OP[+]=1 ID[x] ID[KK] OP[+]=1 INT[1]=1"},
        {u"E-2.25 E1+5 e+2.5", "ID[E-2.25] ID[E1+5] ID[e+2.5]"},
        {u"E1.5 E.5 E1x2.5", "ID[E1.5] ID[E] OP[.]=60 INT[5]=5 ID[E1x2] OP[.]=60 INT[5]=5"},
        {u"x1.Fg x1.F2", "ERR[x1.F]=5 ID[g] ERR[x1.F]=5 INT[2]=2"},
        {u"x1.F X1.f2 x1.g x2.", "ID[x1.F] ERR[X1.f]=5 INT[2]=2 ERR[x1.]=5 ID[g] ERR[x2.]=5"},
        {u"y1.F x1.3;", "ID[y1] OP[.]=60 ID[F] ID[x1.3] OP[;]=7"},
        {u"x1\\a y\\a", "ID[x1\\a] ID[y] ERR[\\]=0 ID[a]"},
        {u"a!b!! 12!x 12?x", "ID[a!b!!] ID[12!x] INT[12]=12 ERR[?]=0 ID[x]"},
    });
    // clang-format on
}

TEST_F(HostAnswers, AreGivenTheAccessFlag) {
    for (const int flag : {0, 1}) {
        TestScanner scanner(u"x1.F");
        EXPECT_EQ(scanner->SetCheckAccessOfCustomAddress(flag), 1);
        EXPECT_EQ(Describe(scanner->GetToken()), "ID[x1.F]");
        EXPECT_EQ(lastAccess, flag);
        EXPECT_EQ(scanner->SetCheckAccessOfCustomAddress(1), flag);
    }
}

// Texts that are looked at while they grow beyond the ring stay whole. Behind 67 blanks the point
// that follows 3001 letters is the last character of a half, so that the look beyond it overwrites
// the other half before the token has ended.
TEST_F(HostAnswers, LeaveLongTokensWhole) {
    const auto repeat = [](size_t count, char16_t c) { return std::u16string(count, c); };
    for (const std::u16string& source : {
             repeat(3001, u'a'),
             repeat(1100, u'a') + u"#",
             repeat(3000, u'a') + u"#",
             repeat(1100, u'1') + u"#",
             u"E" + repeat(1100, u'5') + u".57",
             u"E" + repeat(1100, u'5') + u".5x",
             u"E" + repeat(3000, u'5') + u".5" + repeat(4000, u'5'),
             repeat(3000, u'a') + u"!" + repeat(3000, u'b') + u"!" + repeat(1000, u'c'),
             u"x1" + repeat(2000, u'a') + u".F",
         }) {
        for (const unsigned blanks : {0u, 66u, 67u, 68u, 500u, 944u, 1000u, 1022u}) {
            for (const int32_t step : {1, 13, 1000}) {
                SCOPED_TRACE(testing::Message() << source.size() << " characters behind " << blanks
                                                << ", step " << step);
                TestScanner scanner(repeat(blanks, u' ') + source + u".b", step);
                EXPECT_EQ(WholeText(*scanner, scanner->GetToken()), source);
                EXPECT_EQ(scanner->HasLostText(), 0);
                EXPECT_EQ(ScanAll(*scanner), "OP[.]=60 ID[b]");
            }
        }
    }
}

TEST_F(HostAnswers, MayAllowNulInStrings) {
    host::GetUserAdapterAnswers().nulEscape = 1;
    TestScanner scanner(u"'a$00b'");
    const Token token = scanner->GetToken();
    EXPECT_EQ(token.kind, TK_STRING);
    EXPECT_EQ(std::u16string(token.GetValueText(), 4), std::u16string(u"a\0b\0", 4));

    char16_t source[] = {u'a', 0, u'b'};
    char16_t literal[16];
    EXPECT_EQ(ConvertStringToIECString(source, literal, 16, 3), 1);
    EXPECT_EQ(Utf8(literal), "'a$00b'");
}

TEST(ScannerMemory, EveryFailureLeavesAScannerThatEnds) {
    std::u16string name(5000, u'a');
    std::iota(name.begin(), name.end(), u'\u4E00');
    const std::u16string comment = u"(*" + name + u"*)";
    const struct {
        std::u16string text;
        std::u16string whole;
        TOKEN_KIND kind;
        const char* rest;
    } kCases[] = {
        {comment + u" x", comment, TK_COMMENT, "ID[x]"},
        {std::u16string(1022, u' ') + comment + u" x", comment, TK_COMMENT, "ID[x]"},
        {name + u".x", name, TK_IDENTIFIER, "OP[.]=60 ID[x]"},
    };
    for (const auto& c : kCases) {
        RunWithFailures({"long token", [&c]() -> Attempt {
                             return [&c] {
                                 SlowStream stream(c.text, 1000);
                                 auto scanner = NewScanner();
                                 if (!scanner) {
                                     return kShort;
                                 }
                                 scanner->Initialize(stream);
                                 if (!scanner->CanRead()) {
                                     EXPECT_EQ(scanner->GetToken().kind, TK_EOF);
                                     return kShort;
                                 }
                                 const Token token = scanner->GetToken();
                                 EXPECT_EQ(token.kind, c.kind);
                                 const bool lost = scanner->HasLostText() != 0;
                                 EXPECT_TRUE(lost || scanner->GetSrcEx() == c.whole);
                                 // Without any overflow text, the half behind and what followed.
                                 const std::u16string_view text(token.text);
                                 EXPECT_TRUE(scanner->GetSrcEx() ||
                                             (c.whole.ends_with(text) && text.size() > 1022));
                                 EXPECT_EQ(ScanAll(*scanner), c.rest);
                                 return lost ? kShort : "whole";
                             };
                         }});
    }
}

}  // namespace
}  // namespace lq::test
