#include "lq_data/detail/text_hash.h"

#include <algorithm>
#include <array>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using lq::text_hash::Measured;
using lq::text_hash::OfName;
using lq::text_hash::OfText;
using lq::text_hash::SetSeed;

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
    for (char16_t a = 1; a < 128; ++a) {
        for (char16_t b = 1; b < 128; ++b) {
            const char16_t kNames[2][8] = {{u'M', a, u'1', u'_', u'x', 0},
                                           {u'm', b, u'1', u'_', u'X', 0}};
            EXPECT_EQ(OfName(kNames[0]).hash == OfName(kNames[1]).hash,
                      lq::chars::ToUpper(a) == lq::chars::ToUpper(b))
                << static_cast<unsigned>(a) << " " << static_cast<unsigned>(b);
        }
    }
    EXPECT_EQ(OfName(u"Motor_1 \u00E4z").hash, OfName(u"mOTOR_1 \u00C4Z").hash);
    EXPECT_NE(OfText(u"Motor_1").hash, OfText(u"motor_1").hash);
}

// Texts that strangers may have chosen, four characters a word, against the structure that all can
// read: under no seed do they crowd.
TEST(TextHash, NoSeedIndependentCrowds) {
    using Words = std::array<uint64_t, 3>;
    using Maker = Words (*)(uint64_t number);
    // clang-format off
    constexpr Maker kMakers[] = {
        [](uint64_t n) { return Words{n << 48, 0x4E00, 0x4E01}; },
        [](uint64_t n) { return Words{n << 54 | 1, 1, n << 54 | 1}; },
        [](uint64_t n) { return Words{n * 0x5555'5555'5555'5555, ~n, n * 0x5555'5555'5555'5555}; },
        [](uint64_t n) { return Words{n + 1, 0 - n - 1, n + 1}; },
        [](uint64_t n) { return Words{0, n, 7}; },
        [](uint64_t n) { return Words{(n & 31) << 59 | 1, (n >> 5) << 59 | 1, 7}; },
        // clang-format on
        // These met in one value of a hash without a secret.
        [](uint64_t n) {
            const auto mix = [](uint64_t hash, uint64_t word) {
                hash = (hash ^ word) * 0x9E37'79B9'7F4A'7C15u;
                return hash ^ hash >> 32;
            };
            return Words{n + 1, n * n + 1, mix(0, n + 1) ^ mix(1, n * n + 1)};
        },
        // These meet in eight bits under the first seed, as their number says.
        [](uint64_t n) {
            SetSeed(1);
            Words words{1, 2, n << 20};
            const auto hash = [&] {
                return OfText(reinterpret_cast<const char16_t*>(words.data()), 12);
            };
            for (++words[2]; (hash() & 0xFF) != 0; ++words[2]) {
            }
            return words;
        },
    };
    constexpr uint64_t kTexts = 512;
    const lq::text_hash::Seed saved = lq::text_hash::seed;
    for (std::size_t maker = 0; maker < std::size(kMakers); ++maker) {
        std::vector<Words> texts;
        for (uint64_t n = 0; n < kTexts; ++n) {
            texts.push_back(kMakers[maker](n));
        }
        for (uint64_t number = 2; number < 22; ++number) {
            SetSeed(number);
            std::array<int, 256> slots{};
            for (const Words& words : texts) {
                ++slots[OfText(reinterpret_cast<const char16_t*>(words.data()), 12) & 0xFF];
            }
            EXPECT_LT(*std::ranges::max_element(slots), 20) << "texts " << maker << ", " << number;
        }
    }
    lq::text_hash::seed = saved;
}

}  // namespace
