#include "frame/text_hash.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace {

using lq::text_hash::Measured;
using lq::text_hash::OfName;
using lq::text_hash::OfText;

// Both ways to a hash give the same, and of texts of every length, with another character at every
// place, no two have one hash.
TEST(TextHash, EveryLength) {
    std::set<uint32_t> hashes;
    for (std::size_t length = 0; length < 70; ++length) {
        std::u16string text(length, u'n');
        const auto check = [&] {
            const Measured measured = OfText(text.c_str());
            EXPECT_EQ(measured.length, text.size());
            EXPECT_EQ(measured.hash, OfText(text.data(), text.size()));
            EXPECT_TRUE(hashes.insert(measured.hash).second) << text.size();
            const Measured name = OfName(text.c_str());
            EXPECT_EQ(name.length, text.size());
            EXPECT_EQ(name.hash, OfName(text.data(), text.size()));
        };
        check();
        for (std::size_t at = 0; at < length; ++at) {
            text[at] = u'\u00E4';
            check();
            text[at] = u'n';
        }
    }
}

TEST(TextHash, NamesOfAnyCase) {
    EXPECT_EQ(OfName(u"Motor_1 {|`@[]\u00E4").hash, OfName(u"mOTOR_1 {|`@[]\u00C4").hash);
    EXPECT_NE(OfName(u"Motor_1{").hash, OfName(u"Motor_1[").hash);
    EXPECT_NE(OfName(u"@Motor_1").hash, OfName(u"`Motor_1").hash);
    EXPECT_NE(OfText(u"Motor_1").hash, OfText(u"motor_1").hash);
}

}  // namespace
