#include <gtest/gtest.h>

#include "load_test_util.h"
#include "tests/support/rows.h"

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
    const auto check = [](const char16_t* text, const char16_t* member,
                          const std::u16string& value) {
        const DUVMemberInit_C init(text);
        EXPECT_EQ(Quoted(init.FindNewInit(member)), value)
            << testing::PrintToString(text) << " / " << testing::PrintToString(member);
    };
    for (const auto& row : lq::test::Rows("pouh/texts.rows", "member values")) {
        check(row.Wide(0).c_str(), row.Wide(1).c_str(), row.Wide(2));
    }
    check(u"a := 1", nullptr, u"none");
    check(nullptr, u"a", u"none");
    // A token longer than the scanner's buffers.
    check(longText.c_str(), u"s", Quoted(longString.c_str()));
    check(longText.c_str(), u"b", u"'2'");
}

}  // namespace
