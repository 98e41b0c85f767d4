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
            lastLength = std::u16string_view(text).size();
            return flag == 1 && text[0] == u'X' && text[1] >= u'0' && text[1] <= u'9' ? 1 : 0;
        };
        host::GetAddressRules().isOwnConstant = [](const char16_t* text, int a, int b) {
            const std::u16string_view all(text);
            return a == 1 && b == 1 && all.back() >= u'0' && all.back() <= u'9' ? 1 : 0;
        };
        host::SetExtendedIdentifiers([](const char16_t* text) {
            const char16_t last = std::u16string_view(text).back();
            return last == u'!' || last == u' ';
        });
    }
    ~HostAnswers() override {
        host::GetAddressRules() = {};
        host::SetExtendedIdentifiers(nullptr);
        host::GetUserAdapterAnswers() = {};
    }

    static inline int lastAccess = -1;
    static inline std::size_t lastLength = 0;
};

TEST_F(HostAnswers, ExtendWhatBelongsToAnIdentifier) {
    CheckScans("what a host adds");
}

TEST_F(HostAnswers, AreGivenTheAccessFlag) {
    for (const int flag : {0, 1}) {
        TestScanner scanner(u"x1.F");
        EXPECT_EQ(scanner->SetCheckAccessOfCustomAddress(flag), 1);
        EXPECT_EQ(Describe(scanner->GetToken()), "ID[x1.F]");
        EXPECT_EQ(lastAccess, flag);
        EXPECT_EQ(scanner->SetCheckAccessOfCustomAddress(1), flag);
    }
    // As much of the word as there is room for.
    TestScanner scanner(u"x1" + std::u16string(3000, u'a') + u"\\");
    scanner->GetToken();
    EXPECT_EQ(lastLength, Scanner::kBufferSize - 1u);
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
