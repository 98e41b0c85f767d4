// The hash that numbers the buckets, and the step that searches the directory.
#include <algorithm>
#include <iterator>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "containers/hash_table_access.h"
#include "containers/slot_step.h"
#include "frame/chars.h"

namespace {

using lq::containers::HashTableAccess;
using Text = std::u16string;

// The values come from a separate program that walks the UTF-16LE bytes.
TEST(HashTable, HashOfKeys) {
    const struct {
        Text key;
        uint32_t hash;
    } kCases[] = {
        {u"", 0},
        {u"A", 0x41},
        {u"a", 0x61},
        {u"AB", 0x251},
        {u"VAR_INPUT", 0x5802C59E},
        {u"Motor_1", 0x31022635},
        {u"\u00E4\u00D6", 0x654},
        {u"\u0100", 0x1000000},
        {u"A\u0100B", 0x41},  // a zero unit lies across 'A' and U+0100
        {u"AB\u0100C", 0x251},
        {u"\u4E2D\u6587", 0x42A00415},
        {Text(256, u'x'), 0x740F0C00},
        {Text(255, u'x') + u"yy", 0x740F0C59},  // the shifts start over at byte 512
        {Text(511, u'x'), 0xF00},
        {Text(511, u'x') + u"y", 0},
    };
    const HashTable table(233, 1);
    for (const auto& c : kCases) {
        EXPECT_EQ(HashTableAccess::FullHash(table, c.key.c_str()), c.hash)
            << testing::PrintToString(c.key);
        EXPECT_EQ(HashTableAccess::HashIndex(table, c.key.c_str()), c.hash % 233)
            << testing::PrintToString(c.key);
    }
    EXPECT_EQ(HashTableAccess::FullHash(table, nullptr), 0u);

    // Without regard to case it is the hash of the upper-case form.
    const HashTable anyCase(233, 0);
    for (const auto& c : kCases) {
        Text upper = c.key;
        std::transform(upper.begin(), upper.end(), upper.begin(), lq::chars::ToUpper);
        EXPECT_EQ(HashTableAccess::FullHash(anyCase, c.key.c_str()),
                  HashTableAccess::FullHash(table, upper.c_str()))
            << testing::PrintToString(c.key);
    }
    EXPECT_EQ(HashTableAccess::FullHash(anyCase, u"\u0131d"),  // the dotless i has the I of ASCII
              HashTableAccess::FullHash(table, u"ID"));
}

// Both ways to look at a step of the directory.
TEST(HashTable, EndsInAStepOfTheDirectory) {
    std::mt19937 random(7);
    for (int i = 0; i < 1000; ++i) {
        uint16_t tags[lq::containers::kSlotStep];
        std::generate(std::begin(tags), std::end(tags), [&] {
            constexpr uint16_t kTags[] = {0, 1, 0x7FFF, 0x8000, 0xFFFF};
            return kTags[random() % std::size(kTags)];
        });
        for (const unsigned number : {1u, 0x7FFFu, 0x8000u, 0xFFFFu, 2u}) {
            const auto tag = static_cast<uint16_t>(number);
            EXPECT_EQ(lq::containers::EndsInStep(tags, tag),
                      lq::containers::PlainEndsInStep(tags, tag));
        }
    }
}

}  // namespace
