#include "frame/text_hash.h"

#include <algorithm>
#include <memory>
#include <set>
#include <string>

#include <gtest/gtest.h>

namespace {

using lq::text_hash::Measured;
using lq::text_hash::OfName;
using lq::text_hash::OfText;

// Both ways to a hash give the same, and of texts of every length, with another character at every
// place, no two have one hash. Nothing behind a text is read: it ends where its block ends.
TEST(TextHash, EveryLength) {
    std::set<uint32_t> hashes;
    for (std::size_t length = 0; length < 70; ++length) {
        const auto text = std::make_unique<char16_t[]>(length + 1);
        std::fill_n(text.get(), length, u'n');
        const auto check = [&] {
            EXPECT_EQ(lq::chars::Length(text.get()), length);
            const Measured measured = OfText(text.get());
            EXPECT_EQ(measured.length, length);
            EXPECT_EQ(measured.hash, OfText(text.get(), length));
            EXPECT_TRUE(hashes.insert(measured.hash).second) << length;
            const Measured name = OfName(text.get());
            EXPECT_EQ(name.length, length);
            EXPECT_EQ(name.hash, OfName(text.get(), length));
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
