// Numbers, strings, addresses, times and dates.
#include "scanner/process_state.h"
#include "tests/scanner/scan_util.h"

namespace lq::test {
namespace {

TEST(Numbers, DecimalAndBased) {
    CheckScans("integers");
}

TEST(Numbers, RangesAndReals) {
    CheckScans("reals");
}

TEST(Strings, EscapesAndErrors) {
    CheckScans("strings");
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
    CheckScans("addresses");
}

TEST(Durations, ComponentsAndLimits) {
    CheckScans("durations");
}

TEST(Durations, MayBeginWithAnyNumberOfZeros) {
    TestScanner scanner(u"T#" + std::u16string(2100, u'0') + u"1.5s");
    EXPECT_EQ(DescribeTime(*scanner->GetToken().GetTime()), "0:1500:1");
}

TEST(Dates, DatesTimesOfDayAndBoth) {
    CheckScans("dates");
}

}  // namespace
}  // namespace lq::test
