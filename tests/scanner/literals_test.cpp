// Numbers, strings, addresses, times and dates.
#include "scanner/string_rules.h"
#include "tests/scanner/scan_util.h"

namespace lq::test {
namespace {

// clang-format off
TEST(Numbers, DecimalAndBased) {
    CheckScans({
        {u"0 4294967295 4294967296", "INT[0]=0 INT[4294967295]=4294967295 ERR[4294967296]=2"},
        {u"0004294967 04294967295", "INT[0004294967]=4294967 ERR[04294967295]=2"},
        {u"00000000001", "ERR[00000000001]=2"}, {u"1_000 1__0", "INT[1_000]=1000 ERR[1_]=2 ID[_0]"},
        {u"16#FFFF_FFFF 16#1_0000_0000", "BASED[16#FFFF_FFFF]=4294967295 ERR[16#1_0000_0000]=3"},
        {u"8#37777777777 8#40000000000", "BASED[8#37777777777]=4294967295 ERR[8#40000000000]=3"},
        {u"2#1010 2#102", "BASED[2#1010]=10 BASED[2#10]=2 INT[2]=2"},
        {u"2#11111111111111111111111111111111",
         "BASED[2#11111111111111111111111111111111]=4294967295"},
        {u"2#100000000000000000000000000000000", "ERR[2#100000000000000000000000000000000]=3"},
        {u"1_6#aF 016#FF 0_8#7", "BASED[1_6#aF]=175 BASED[016#FF]=255 BASED[0_8#7]=7"},
        {u"00000000000000000000016#F 18446744073709551632#1",
         "BASED[00000000000000000000016#F]=15 ERR[18446744073709551632#]=3 INT[1]=1"},
        {u"3#1 16# 16#_1 8#9 2#1_", "ERR[3#]=3 INT[1]=1 ERR[16#]=3 ERR[16#]=3 ID[_1] ERR[8#]=3 "
         "INT[9]=9 ERR[2#1_]=3"},
        {u"12abc", "INT[12]=12 ID[abc]"},
    });
}

TEST(Numbers, RangesAndReals) {
    CheckScans({
        {u"1..10", "RANGE[1..]=1 INT[10]=10"}, {u"1_0..2", "RANGE[1_0..]=10 INT[2]=2"},
        {u"18446744073709551617..1", "RANGE[18446744073709551617..]=1 INT[1]=1"},  // 2^64 + 1
        {u"99999999999..1", "RANGE[99999999999..]=1215752191 INT[1]=1"},
        {u"1.5 1.e3 1.5e-1 1.5E+2 1_0.2_5", "REAL[1.5]=1.5 REAL[1.e3]=1000 "
         "REAL[1.5e-1]=0.14999999999999999 REAL[1.5E+2]=150 REAL[1_0.2_5]=10.25"},
        {u"1.x 1. 1.5_ 1.5e 1.5e+ 1.5e1_", "ERR[1.]=4 ID[x] ERR[1.]=4 ERR[1.5_]=4 ERR[1.5e]=4 "
         "ERR[1.5e+]=4 ERR[1.5e1_]=4"},
        {u"1e5", "INT[1]=1 ID[e5]"}, {u"1.0e999 1.0e-999", "REAL[1.0e999]=inf REAL[1.0e-999]=0"},
        {u"0.1e18446744073709551632", "REAL[0.1e18446744073709551632]=inf"},  // 2^64 + 16
        // More digits than a double holds, within and beyond what is read at once.
        {u"123456789.125000001 0.00000000000000001", "REAL[123456789.125000001]=123456789.125 "
         "REAL[0.00000000000000001]=1.0000000000000001e-17"},
        {u"91327628.29599805 1.5e-21 1.5e-22 1.5e23 1.5e24 1_0000000000000000.5",
         "REAL[91327628.29599805]=91327628.295998052 REAL[1.5e-21]=1.5e-21 REAL[1.5e-22]=1.5e-22 "
         "REAL[1.5e23]=1.5e+23 REAL[1.5e24]=1.5e+24 REAL[1_0000000000000000.5]=10000000000000000"},
        {u"1.5.2 1.E3", "REAL[1.5]=1.5 OP[.]=60 INT[2]=2 REAL[1.E3]=1000"},
    });
}

TEST(Strings, EscapesAndErrors) {
    CheckScans({
        {u"'It$'s' \"a'b\"", "STR['It$'s']=It's STR[\"a'b\"]=a'b"},
        {u"'a$Nb$l$P$r$t$$$\"'", "STR['a$Nb$l$P$r$t$$$\"']=a<D><A>b<A><C><D><9>$\""},
        {u"'$41$e4' ''", "STR['$41$e4']=A<E4> STR['']="}, {u"'a\nb\rc'", "STR['a<A>b<D>c']=ab<D>c"},
        {u"'abc", "ERR['abc]=10"}, {u"'$", "ERR['$]=10"}, {u"'$x'", "ERR['$]=10 ID[x] ERR[']=10"},
        {u"'$4g'", "ERR['$4]=10 ID[g] ERR[']=10"}, {u"'$00'", "ERR['$0]=10 INT[0]=0 ERR[']=10"},
    });
}

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

TEST(Addresses, LocationsSizesAndErrors) {
    CheckScans({
        {u"%IX0.1 %QW10 %M3 %ML1_0.2.3", "ADR[%IX0.1]=0,0,0.1 ADR[%QW10]=1,2,10 ADR[%M3]=2,0,3 "
         "ADR[%ML1_0.2.3]=2,4,10.2.3"},
        {u"%QB1 %QD2;", "ADR[%QB1]=1,1,1 ADR[%QD2]=1,3,2 OP[;]=7"},
        {u"%ix0 %I %IX %Q1. %Q1_ %X1", "ERR[%]=8 ID[ix0] ERR[%I]=8 ERR[%IX]=8 ERR[%Q1.]=8 "
         "ERR[%Q1_]=8 ERR[%]=8 ID[X1]"},
        {u"%MD12_34_5", "ADR[%MD12_34_5]=2,3,12345"}, {u"%QW1x", "ADR[%QW1]=1,2,1 ID[x]"},
    });
}

TEST(Durations, ComponentsAndLimits) {
    CheckScans({
        {u"T#1d2h3m4s5ms", "TIME[T#1d2h3m4s5ms]=1:7384005:1"},
        {u"TIME#1D_2H", "TIME[TIME#1D_2H]=1:7200000:1"}, {u"t#-1.5h", "TIME[t#-1.5h]=0:5400000:-1"},
        {u"T#25h time#1500ms", "TIME[T#25h]=1:3600000:1 TIME[time#1500ms]=0:1500:1"},
        {u"T#1440m T#90m T#1.5d", "TIME[T#1440m]=1:0:1 TIME[T#90m]=0:5400000:1 "
         "TIME[T#1.5d]=1:43200000:1"},
        {u"T#1d2.5h T#100000000ms", "TIME[T#1d2.5h]=1:9000000:1 TIME[T#100000000ms]=1:13600000:1"},
        {u"T#1s999ms T#1MS", "TIME[T#1s999ms]=0:1999:1 TIME[T#1MS]=0:1:1"},
        {u"T#1_0.2_5s T#1.5_s", "TIME[T#1_0.2_5s]=0:10250:1 ERR[T#1.5_]=11 ID[s]"},
        {u"T#1h59m T#1h60m", "TIME[T#1h59m]=0:7140000:1 ERR[T#1h60]=11 ID[m]"},
        {u"T#1h59.5m", "ERR[T#1h59.5]=11 ID[m]"}, {u"T#1h2m3h", "ERR[T#1h2m3]=11 ID[h]"},
        {u"T#1s1000ms T#1d4294967297h", "ERR[T#1s1000]=11 ID[ms] ERR[T#1d4294967297]=11 ID[h]"},
        {u"T# T#- T#1 T#1. T#1.h T#1_ T#1h_ T#x", "ERR[T#]=11 ERR[T#-]=11 ERR[T#1]=11 "
         "ERR[T#1.]=11 ERR[T#1.]=11 ID[h] ERR[T#1_]=11 ERR[T#1h_]=11 ERR[T#]=11 ID[x]"},
        {u"T#1d23h T#1d24h T#1m59s T#1m60s", "TIME[T#1d23h]=1:82800000:1 ERR[T#1d24]=11 ID[h] "
         "TIME[T#1m59s]=0:119000:1 ERR[T#1m60]=11 ID[s]"},
        {u"T#2147483647.0d T#4294967296m",
         "TIME[T#2147483647.0d]=2147483647:0:1 TIME[T#4294967296m]=2982616:15360000:1"},
        {u"T#1mS T#1Ms", "TIME[T#1m]=0:60000:1 ID[S] TIME[T#1M]=0:60000:1 ID[s]"},
        {u"T#1s30m", "ERR[T#1s30]=11 ID[m]"},
        {u"T#2147483647d T#2147483648.5d", "TIME[T#2147483647d]=2147483647:0:1 "
         "ERR[T#2147483648.5]=11 ID[d]"},
        {u"T#1h;", "TIME[T#1h]=0:3600000:1 OP[;]=7"},
        {u"T#1.5h2m", "TIME[T#1.5h]=0:5400000:1 INT[2]=2 ID[m]"},
        {u"Time#1s", "ERR[Time#]=11 INT[1]=1 ID[s]"},
    });
}

TEST(Durations, MayBeginWithAnyNumberOfZeros) {
    TestScanner scanner(u"T#" + std::u16string(2100, u'0') + u"1.5s");
    EXPECT_EQ(DescribeTime(*scanner->GetToken().GetTime()), "0:1500:1");
}

TEST(Dates, DatesTimesOfDayAndBoth) {
    CheckScans({
        {u"D#1970-01-01 DATE#2000-01-01", "DATE[D#1970-01-01]=0:0:1 "
         "DATE[DATE#2000-01-01]=10957:0:1"},
        {u"d#1970-1-1 date#1970-1-2 time_of_day#0:0:1 date_and_time#1970-1-1-0:0:1",
         "DATE[d#1970-1-1]=0:0:1 DATE[date#1970-1-2]=1:0:1 TOD[time_of_day#0:0:1]=0:1000:1 "
         "DT[date_and_time#1970-1-1-0:0:1]=0:1000:1"},
        {u"D#2000-2-29 D#2001-02-29", "DATE[D#2000-2-29]=11016:0:1 ERR[D#2001-02-29]=13"},
        {u"D#1969-12-31 D#2000--01 D#2000-01", "ERR[D#1969-12-31]=13 ERR[D#2000--01]=13 "
         "ERR[D#2000-01]=13"},
        {u"D#-1", "ERR[D#]=13 OP[-]=2 INT[1]=1"},
        {u"D#2_000-1_2-0_1 D#2000-99-01", "DATE[D#2_000-1_2-0_1]=11292:0:1 ERR[D#2000-99-01]=13"},
        {u"D#4294965296-01-01", "DATE[D#4294965296-01-01]=10957:0:1"},
        // -2000, wrapped
        {u"D#2000_ D#2000 D#2000-1_ D#2000-1-1_", "ERR[D#2000_]=13 ERR[D#2000]=13 "
         "ERR[D#2000-1_]=13 ERR[D#2000-1-1_]=13"},
        {u"TOD# TOD#1_ TOD#1 TOD#1:2_ TOD#1:2:3_", "ERR[TOD#]=14 ERR[TOD#1_]=14 ERR[TOD#1]=14 "
         "ERR[TOD#1:2_]=14 ERR[TOD#1:2:3_]=14"},
        {u"DT# DT#2000-1-1-1 DT#2000-1-1-1:2", "ERR[DT#]=12 ERR[DT#2000-1-1-1]=12 "
         "ERR[DT#2000-1-1-1:2]=12"},
        {u"TOD#12:30:15 tod#24:00:00", "TOD[TOD#12:30:15]=0:45015000:1 "
         "TOD[tod#24:00:00]=0:86400000:1"},
        {u"TIME_OF_DAY#12:30:1.5", "TOD[TIME_OF_DAY#12:30:1.5]=0:45001500:1"},
        {u"TOD#12:60:00 TOD#24:00:01 TOD#12:60:00.5", "ERR[TOD#12:60:00]=14 ERR[TOD#24:00:01]=14 "
         "ERR[TOD#12:60:00.5]=14"},
        {u"TOD#12:00:00. TOD#12:30: TOD#12:30", "ERR[TOD#12:00:00.]=14 "
         "TOD[TOD#12:30:]=0:45000000:1 ERR[TOD#12:30]=14"},
        {u"DT#2000-01-01-00:00:01", "DT[DT#2000-01-01-00:00:01]=10957:1000:1"},
        {u"dt#2000-1-1-0:90:0.25", "DT[dt#2000-1-1-0:90:0.25]=10957:5400250:1"},
        {u"DT#2001-02-29-00:00:00 DT#2000-01-01", "ERR[DT#2001-02-29-00:00:00]=12 "
         "ERR[DT#2000-01-01]=12"},
        {u"DATE_AND_TIME#2000-01-01-25:00:00", "ERR[DATE_AND_TIME#2000-01-01-25:00:00]=12"},
    });
}

// clang-format on

}  // namespace
}  // namespace lq::test
