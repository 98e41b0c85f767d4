#include <gtest/gtest.h>

#include "load_test_util.h"

namespace {

std::u16string Quoted(const char16_t* text) {
    return text ? u"'" + std::u16string(text) + u"'" : u"none";
}

// Each value is checked, and stays as written, whatever the check says.
TEST(MemberInit, EachValueIsChecked) {
    lq::pouh::LoadedProject project;
    const DUVMemberInit_C init(u"a := [1, 2], b := 1 +, c := 3,");
    EXPECT_EQ(project.Asked(), u"check [1,2]; check 1+");
    EXPECT_EQ(Quoted(init.FindNewInit(u"b")), u"'1+'");
}

TEST(MemberInit, ValuesByMember) {
    const std::u16string longString = u"'" + std::u16string(5000, u'x') + u"'";
    const std::u16string longText = u"s := " + longString + u", b := 2";
    const std::u16string longQuoted = Quoted(longString.c_str());
    struct {
        const char16_t* text;
        const char16_t* member;
        const char16_t* value;  // quoted, or "none"
        // clang-format off
    } const cases[] = {
        {u"a := 1, b := 16#FF", u"a", u"'1'"}, {u"a := 1, b := 16#FF", u"b", u"'16#FF'"},
        {u"a := 1, b := 16#FF", u"c", u"none"}, {u"a := 1", u" \ta\t ", u"'1'"},
        {u"Alpha := 1", u"aLPHA", u"'1'"}, {u"Alpha := 1", u"Alph", u"none"},
        {u"Alpha := 1", u"Alpha1", u"none"}, {u"a := 1", u"", u"none"},
        {u"a := 1", u" \t ", u"none"}, {u"a := 1", nullptr, u"none"},
        {u"a := 1, a := 2", u"a", u"'2'"}, {u"a := 1, A := 2", u"a", u"'2'"},
        // Commas within a value.
        {u"a := [1, 2, 3]", u"a", u"'[1,2,3]'"}, {u"a := [1, 2], b := 3", u"a", u"'[1,2]'"},
        {u"a := [1, 2], b := 3", u"b", u"'3'"}, {u"a := 1,,2", u"a", u"'1,,2'"},
        // An identifier behind a comma begins an assignment, even within brackets.
        {u"a := [x, y]", u"a", u"'[x'"}, {u"a := -1 + 2", u"a", u"'-1+2'"},
        {u"a := 'p q', b := T#1s", u"a", u"''p q''"}, {u"a := 'p q', b := T#1s", u"b", u"'T#1s'"},
        {u"a\n:=\n1\n, b := 2", u"b", u"'2'"},
        // Ends of the text.
        {u"a := 1,", u"a", u"none"}, {u"a := 1, b := 2,", u"a", u"'1'"},
        {u"a := 1, b := 2,", u"b", u"none"}, {u"a := 1, b", u"a", u"'1'"},
        {u"a := 1, b", u"b", u"none"}, {u"a :=", u"a", u"none"}, {u"a := , b := 2", u"a", u"''"},
        {u"a", u"a", u"none"}, {u"a = 1", u"a", u"none"}, {u":= 1", u"a", u"none"},
        {u"1, a := 1", u"a", u"none"}, {u"", u"a", u"none"}, {nullptr, u"a", u"none"},
        // A token longer than the scanner's buffers.
        {longText.c_str(), u"s", longQuoted.c_str()}, {longText.c_str(), u"b", u"'2'"},
    };
    // clang-format on
    for (const auto& c : cases) {
        const DUVMemberInit_C init(c.text);
        EXPECT_EQ(Quoted(init.FindNewInit(c.member)), c.value)
            << testing::PrintToString(c.text) << " / " << testing::PrintToString(c.member);
    }
}

}  // namespace
