// Differences as a golden file of the tool does not show them: what is the same text, and projects
// drawn by chance, whose differences make one of the other.
#include "lq_data/host/diff/diff.h"

#include <algorithm>
#include <map>
#include <random>

#include <gtest/gtest.h>

#include "tests/host/model/model_util.h"

namespace lq::host {
namespace {

constexpr Section kInput = {Scope::kInput};

std::vector<Change> ChangesBetween(const Project& before, const Project& after) {
    std::vector<Change> changes;
    ForEachDifference(before, after, [&](const Difference& d) { changes.push_back(d.change); });
    return changes;
}

TEST(Diff, TextsAreTheSameAsTheLanguageReadsThem) {
    struct Case {
        Text before, after;
        bool isSameValue, isSameComment;
    };
    for (const Case& c : {
             Case{u"ARRAY [1..2] OF INT", u"array[1 .. 2]of\n int", true, false},
             Case{u"a b", u"ab", false, false},
             Case{u"1 b", u" 1  B ", true, false},
             Case{u" two  words\n", u"two words", true, true},
             Case{u"'a B' ", u"'a B'", true, true},
             Case{u"'a B'", u"'a b'", false, false},
             Case{u"\"a\" X", u"\"a\"x", true, false},
             Case{u"'$'a' b", u"'$'a' B", true, false},
             Case{u"'$'a b'", u"'$'a  b'", false, true},
             Case{u"'$$'A", u"'$$' a", true, false},
             Case{u"'open", u"'opEn", false, false},
             Case{u"", u" ", true, true},
             Case{u"x", u"", false, false},
         }) {
        for (const bool isComment : {false, true}) {
            Project projects[2];
            for (Project& project : projects) {
                DataType type;
                type.name = u"t";
                (isComment ? type.comment : type.initValue) =
                    &project == projects ? c.before : c.after;
                project.AddDataType(type);
            }
            EXPECT_EQ(ChangesBetween(projects[0], projects[1]).empty(),
                      isComment ? c.isSameComment : c.isSameValue)
                << testing::PrintToString(std::u16string(c.before)) << isComment;
        }
    }
}

// Of each name as many as the other side has more; of those on both sides the fewest are moved,
// which all orders of a few show by trying which can stay.
TEST(Diff, TheFewestDifferencesAreTold) {
    std::mt19937 random(7);
    const Text names[] = {u"a", u"b", u"c", u"d", u"e", u"f"};
    for (int round = 0; round < 300; ++round) {
        Project projects[2];
        std::vector<std::pair<size_t, size_t>> items[2];  // a name and which of it
        for (const int side : {0, 1}) {
            Pou pou;
            pou.name = u"P";
            const ID id = projects[side].AddPou(pou);
            std::map<size_t, size_t> seen;
            for (size_t count = random() % 9; count > 0; --count) {
                const size_t name = random() % std::size(names);
                items[side].emplace_back(name, seen[name]++);
                Declaration declaration;
                declaration.owner = id;
                declaration.name = names[name];
                declaration.section = kInput;
                projects[side].AddDeclaration(declaration);
            }
        }
        std::vector<size_t> order;  // of those on both sides, by their places in the old one
        for (const auto& item : items[1]) {
            const auto at = std::ranges::find(items[0], item);
            if (at != items[0].end()) {
                order.push_back(static_cast<size_t>(at - items[0].begin()));
            }
        }
        size_t most = 0;
        for (unsigned subset = 0; subset < 1u << order.size(); ++subset) {
            std::vector<size_t> stay;
            for (size_t i = 0; i < order.size(); ++i) {
                if ((subset >> i & 1u) != 0) {
                    stay.push_back(order[i]);
                }
            }
            most = std::ranges::is_sorted(stay) ? std::max(most, stay.size()) : most;
        }
        const std::vector<Change> changes = ChangesBetween(projects[0], projects[1]);
        const auto count = [&](Change c) {
            return static_cast<size_t>(std::ranges::count(changes, c));
        };
        EXPECT_EQ(count(Change::kRemoved), items[0].size() - order.size()) << round;
        EXPECT_EQ(count(Change::kAdded), items[1].size() - order.size()) << round;
        EXPECT_EQ(count(Change::kMoved), order.size() - most) << round;
        EXPECT_EQ(count(Change::kChanged), 0u) << round;
    }
}

TEST(Diff, LibrariesAreLeftOut) {
    Project before;
    Project after;
    after.BeginFile({u"library.xml"});
    for (const Text name : {u"Own", u"TON"}) {
        Pou pou;
        pou.name = name;
        after.AddPou(pou);
    }
    const DataType type;
    after.AddDataType(type);
    EXPECT_EQ(ChangesBetween(before, after).size(), 3u);
    after.CountAsLibrary();
    EXPECT_TRUE(ChangesBetween(before, after).empty());
}

}  // namespace
}  // namespace lq::host
