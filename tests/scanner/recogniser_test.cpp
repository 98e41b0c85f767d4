#include <random>

#include "tests/scanner/scan_util.h"

namespace lq::test {
namespace {

// clang-format off
TEST(Recogniser, OperatorsAndIdentifiers) {
    CheckScans({
        {u"", ""}, {u"a:=b", "ID[a] OP[:=]=45 ID[b]"}, {u"a: =b", "ID[a] OP[:]=40 OP[=]=50 ID[b]"},
        {u"x<>y<=z<w", "ID[x] OP[<>]=23 ID[y] OP[<=]=25 ID[z] OP[<]=20 ID[w]"},
        {u"x=>y>=z>w", "ID[x] OP[=>]=53 ID[y] OP[>=]=35 ID[z] OP[>]=30 ID[w]"},
        {u"***", "OP[**]=11 OP[*]=10"},
        {u"+-/&();,[]", "OP[+]=1 OP[-]=2 OP[/]=3 OP[&]=4 OP[(]=5 OP[)]=6 OP[;]=7 OP[,]=8 "
         "OP[[]=105 OP[]]=106"},
        {u"a.b..", "ID[a] OP[.]=60 ID[b] OP[..]=66"}, {u"_x x_ a__b", "ID[_x] ID[x_] ID[a__b]"},
        {u"@x1 @1 @ @", "ID[@x1] ID[@1] ERR[@]=5 ERR[@]=5"}, {u"\u00E4\u00DF1", "ID[<E4><DF>1]"},
        {u"TRUE True", "KEY[TRUE]=53 ID[True]"}, {u"{ # ?", "ERR[{]=0 ERR[#]=0 ERR[?]=0"},
        {u"\U0001F600", "ERR[<D83D>]=0 ERR[<DE00>]=0"},
        {u"INT#5 X_#", "ERR[INT#]=11 INT[5]=5 ERR[X_#]=11"}, {u"a\u001Ab", "ID[a]"},
    });
}

TEST(Recogniser, CommentsDoNotNest) {
    CheckScans({
        {u"(*a*b**)", "COM[(*a*b**)]=a*b*"}, {u"(**)x", "COM[(**)]= ID[x]"},
        {u"(*)*)", "COM[(*)*)]=)"}, {u"(* (* *) *)", "COM[(* (* *)]= (*  OP[*]=10 OP[)]=6"},
        {u"(*x", "ERR[(*x]=9"}, {u"(*", "ERR[(*]=9"}, {u"( *", "OP[(]=5 OP[*]=10"},
    });
}

TEST(Recogniser, LineBreaksBeforeAFirstColumn) {
    CheckScans({
        {u"a\nb", "ID[a] NL[<A>] ID[b]"}, {u"a\r\nb", "ID[a] NL[<D><A>] ID[b]"},
        {u"a\n b", "ID[a] ID[b]"}, {u"a\n\nb", "ID[a] NL[<A>] NL[<A>] ID[b]"},
        {u"a\n\r\nb", "ID[a] NL[<D><A>] ID[b]"}, {u"a\n", "ID[a]"}, {u"\rx", "ERR[<D>]=7 ID[x]"},
        {u"a\r\r\nb", "ID[a] ERR[<D>]=7 NL[<D><A>] ID[b]"},
    });
}

// clang-format on

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
