#include <clocale>
#include <limits>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "lq_data/env/lq_base.h"
#include "lq_data/pouh.h"
#include "tests/support/test_allocator.h"

namespace {

// Counted and terminated must be the same.
std::u16string Text(const CLQString& s) {
    const std::u16string text(s.GetText());
    EXPECT_EQ(static_cast<std::size_t>(s.GetLength()), text.size());
    return text;
}

TEST(Text, HoldsAndChanges) {
    CLQString s(u"abc");
    EXPECT_EQ(s.GetLength(), 3);
    s += u"def";
    s += u'g';
    EXPECT_EQ(Text(s), u"abcdefg");
    const CLQString copy(s);
    s = u"x";
    EXPECT_EQ(Text(copy), u"abcdefg");
    EXPECT_EQ(Text(s), u"x");
    s = static_cast<const char16_t*>(nullptr);
    EXPECT_TRUE(s.IsEmpty());
    for (const CLQString& empty : {s, CLQString(100), CLQString(-1)}) {
        EXPECT_EQ(Text(empty), u"");
    }
}

// Each length crosses the buffer's growth somewhere.
TEST(Text, TakesItsOwnCharacters) {
    for (std::size_t length = 1; length < 70; ++length) {
        const std::u16string original(length, u'a');
        CLQString s(original.c_str());
        s += s.GetText();
        EXPECT_EQ(Text(s), original + original);
        s = s.GetText() + length;
        EXPECT_EQ(Text(s), original);
        s.x_MarkErrorString(s);
        EXPECT_EQ(Text(s), u"?" + original + u"?");
        s.Format(u"%s%s", s.GetText(), s.GetText());
        EXPECT_EQ(Text(s), u"?" + original + u"??" + original + u"?");
    }
}

TEST(Text, Formats) {
    CLQString s;
    const auto formatted = [&s](const char16_t* format, auto... arguments) {
        s.Format(format, arguments...);
        return Text(s);
    };
    constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
    EXPECT_EQ(formatted(u"%s_RC_%d.dll", u"lq_data", 1252), u"lq_data_RC_1252.dll");
    EXPECT_EQ(formatted(u"%d %u %ld %lu", -1, 4294967295u, kMin, 4294967295u),
              u"-1 4294967295 -2147483648 4294967295");
    EXPECT_EQ(formatted(u"[%5d|%-5d|%05d|%.3d|%5.3d|%05d]", 42, 42, 42, 42, 42, -42),
              u"[   42|42   |00042|042|  042|-0042]");
    EXPECT_EQ(formatted(u"%d|%.0d|%x|%08lx|%0-4d|", 0, 0, 255u, 0xBEEFu, 7),
              u"0||ff|0000beef|7   |");
    EXPECT_EQ(formatted(u"%c%c", u'a', u'\u3042'), u"a\u3042");
    EXPECT_EQ(formatted(u"[%4s|%-4s|%.2s|%5.1s]", u"ab", u"ab", u"abc", u"abc"),
              u"[  ab|ab  |ab|    a]");
    EXPECT_EQ(formatted(u"%s", static_cast<const char16_t*>(nullptr)), u"(null)");
    EXPECT_EQ(formatted(u"100%% %q %d", 7), u"100% %q 7");
    EXPECT_EQ(formatted(u"%"), u"%");
    EXPECT_EQ(formatted(u""), u"");
}

TEST(Text, WritesDoubles) {
    const std::tuple<double, int, std::u16string> cases[] = {
        {0.0, 16, u"0"},          {-1.5, 16, u"-1.5"},     {100.0, 16, u"100"},
        {0.1, 16, u"0.1"},        {0.0001, 16, u"0.0001"}, {0.00001, 16, u"1e-05"},
        {1e16, 16, u"1e+16"},     {1e300, 16, u"1e+300"},  {1e15, 16, u"1000000000000000"},
        {123.456, 2, u"1.2e+02"}, {2.5, 0, u"2"},          {0.1, 17, u"0.10000000000000001"},
    };
    // A locale with a decimal comma, where the system has one, must not matter.
    const std::string saved = std::setlocale(LC_NUMERIC, nullptr);
    std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    for (const auto& [value, digits, text] : cases) {
        CLQString s(u"old");
        s._gcvt(value, digits);
        EXPECT_EQ(Text(s), text) << value << " with " << digits;
    }
    std::setlocale(LC_NUMERIC, saved.c_str());
}

TEST(Text, ReadsTheTypeNameOfAnInstance) {
    FBINST_SPEC_TYP* spec = CreateFBInstSpec();
    CLQString s(u"old");
    const std::u16string name(5000, u'n');
    SetAttrOfFBInstSpec(spec, POUH_NAME, name.c_str());
    s.y_GetAttrOfFBInstSpec(spec, POUH_NAME);
    EXPECT_EQ(Text(s), name);
    DestroyFBInstSpec(spec);
    s.y_GetAttrOfFBInstSpec(nullptr, POUH_NAME);
    EXPECT_EQ(Text(s), u"");
}

// Whatever cannot be held whole is empty, and additions do not hide that.
TEST(Text, IsEmptyAfterAFailure) {
    const std::u16string part(40, u'a');
    using Change = void (*)(CLQString & s, const char16_t* part);
    const std::pair<Change, std::u16string> cases[] = {
        {[](CLQString& s, const char16_t* a) { s = a; }, part},
        {[](CLQString& s, const char16_t* a) { (s += a) += u'b'; }, u"x" + part + u"b"},
        {[](CLQString& s, const char16_t* a) { s.Format(u"%s%50s", a, a); },
         part + std::u16string(10, u' ') + part},
        {[](CLQString& s, const char16_t* a) { s.x_MarkErrorString(a); }, u"?" + part + u"?"},
    };
    for (const auto& c : cases) {
        const Change change = c.first;
        const std::u16string& whole = c.second;
        lq::test::FailEachAllocation([&](const lq::test::FailingAllocation& failing) {
            CLQString s(u"x");
            change(s, part.c_str());
            EXPECT_EQ(s.HasFailed() != 0, failing.HasFailed());
            EXPECT_EQ(Text(s), failing.HasFailed() ? u"" : whole);
            const CLQString copy(s);
            EXPECT_EQ(Text(copy), copy.HasFailed() ? u"" : whole);
        });
    }
}

TEST(IdentifierCharacters, AreLettersDigitsAndUnderscore) {
    for (const char16_t c : std::u16string(u"azAZ09_\u00E4\u3042")) {
        EXPECT_NE(__istcsym(c), 0) << static_cast<unsigned>(c);
    }
    for (const char16_t c : std::u16string(u"\0@[`{/: \u00D7\xD800\xDC00", 11)) {
        EXPECT_EQ(__istcsym(c), 0) << static_cast<unsigned>(c);
    }
}

}  // namespace
