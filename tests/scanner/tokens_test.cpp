// The tokens of texts: by a table, of every length, at random.
#include <random>

#include "scanner/string_rules.h"
#include "tests/scanner/scan_util.h"

namespace lq::test {
namespace {

class Tokens : public testing::TestWithParam<const char*> {};

TEST_P(Tokens, AreThoseOfTheTable) {
    CheckScans(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Tables, Tokens,
                         testing::Values("integers", "reals", "strings", "addresses", "durations",
                                         "dates", "operators and names", "comments",
                                         "line breaks"));

TEST(Strings, OfEveryLengthWithAnEscapeAtEveryPlace) {
    for (int length = 0; length < 80; ++length) {
        for (int place = 0; place <= length; ++place) {
            const std::string before(static_cast<size_t>(place), 'a');
            const std::string behind(static_cast<size_t>(length - place), '"');
            const std::string source = "'" + before + "$N" + behind + "'";
            const std::u16string text = std::u16string(source.begin(), source.end()) + u" x";
            EXPECT_EQ(Scan(text), "STR[" + source + "]=" + before + "<D><A>" + behind + " ID[x]");
        }
    }
}

TEST(Strings, ACommaEndsTheStringBehindTheCommentMarker) {
    EXPECT_EQ(Scan(u"B_COMMENT 'ab,c'"), "ID[B_COMMENT] STR['ab]=ab OP[,]=8 ID[c] ERR[']=10");
    EXPECT_EQ(Scan(u"B_COMMENT 'ab' 'c,d' x"),
              "ID[B_COMMENT] STR['ab']=ab STR['c]=c OP[,]=8 ID[d] ERR[' x]=10");
    EXPECT_EQ(Scan(u"B_COMMENT 'a,\"b,c\""), "ID[B_COMMENT] STR['a]=a OP[,]=8 STR[\"b,c\"]=b,c");
    lq::scanner::commaEndsString.Set(true);
    EXPECT_EQ(Scan(u"'a,b'"), "STR['a,b']=a,b") << "a new scanner resets the flag";
}

TEST(Durations, MayBeginWithAnyNumberOfZeros) {
    TestScanner scanner(u"T#" + std::u16string(2100, u'0') + u"1.5s");
    EXPECT_EQ(DescribeTime(*scanner->GetToken().GetTime()), "0:1500:1");
}

TEST(Recogniser, LinesAndBlanks) {
    const std::vector<Place> kPlaces = {{1, u""}, {3, u"\t"}, {3, u" "}, {5, u""},
                                        {6, u""}, {7, u""},   {8, u" "}, {8, u""},
                                        {9, u""}, {10, u""},  {10, u""}};
    for (const int32_t step : kSteps) {
        TestScanner scanner(u"a\n \n\tb\n \n\nc(*\n*) 'x\ny'\n\nd", step);
        scanner->SetnActLine(1);
        std::vector<Place> places;
        EXPECT_EQ(ScanAll(*scanner, &places),
                  "ID[a] ID[b] NL[<A>] NL[<A>] ID[c] COM[(*<A>*)]=<A> STR['x<A>y']=xy "
                  "NL[<A>] NL[<A>] ID[d]");
        EXPECT_EQ(places, kPlaces) << "in steps of " << step;
        const Token end = scanner->GetToken();
        EXPECT_TRUE(end.kind == TK_EOF && end.line == 10 && *end.space == 0);
    }
}

TEST(Recogniser, RandomTextsGiveTheSameTokensAtEveryPlace) {
    const std::u16string pieces =
        u"T#1d2h3m4s5ms t#-1.5_0h D#1970-01-01 TOD#12:30:15.5 DT#2000-2-29-23:59:59 16#fF_0 8#17 "
        u"2#01 "
        u"4294967295 12345678901234567890 1_0.5e-3 2.e+1 1..2 'a$N$41,' \"b\nc\" (*d*e\n*) := <> "
        u"<= ** "
        u"=> .. ; [ %IX0.1_2 %QW B_COMMENT , @x E+1.5 K-2 \\ TRUE\r\n\n  \t\n\r a.b \u00E4! #";
    std::minstd_rand random(18);
    for (int round = 0; round < 60; ++round) {
        std::u16string text;
        while (text.size() < 120) {
            text += pieces.substr(random() % pieces.size(), 1 + random() % 12);
        }
        CheckScan(text, Scan(text));
    }
}

TEST(Recogniser, OnlyTheFirstBlanksAreKept) {
    for (const unsigned blanks : {2047u, 2048u, 2049u, 100000u}) {
        const std::u16string text = std::u16string(blanks, u'\t') + u"x";
        for (const int32_t step : kSteps) {
            TestScanner scanner(text, step);
            const Token token = scanner->GetToken();
            EXPECT_EQ(std::u16string(token.space).size(), std::min<size_t>(blanks, 2048));
            EXPECT_EQ(Utf8(token.text), "x");
            EXPECT_EQ(scanner->GetSrcEx(), nullptr);
        }
    }
}

}  // namespace
}  // namespace lq::test
