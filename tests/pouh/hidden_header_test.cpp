#include <gtest/gtest.h>

#include "host/useradapt/user_adapter.h"
#include "load_test_util.h"
#include "lq_data/types.h"
#include "pouh/records.h"

namespace {

using namespace lq::pouh;

TEST(HiddenHeader, FixedInterfaces) {
    struct {
        const char16_t* name;
        int result;
        Lines lines;
    } const cases[] = {
        {u"_SFCCB", 1, {u"6 A : 1 BOOL := 0", u"6 P : 1 BOOL := 0"}},
        {u"_STEP", 1, {u"5 X : 1 BOOL := 0"}},
        {u"_ACTION", 1, {u"5 Q : 1 BOOL := 0"}},
        {u"_SFC_DEBUG", 1, {u"6 BP : 1 UINT := 0"}},
        {u"_step", 0, {}},
        {u"_STEP ", 0, {}},
        {u"", 0, {}},
    };
    POU_HEADER_TYP* header = CreatePOUHeader();
    for (const auto& c : cases) {
        EXPECT_EQ(LoadPOUHiddenHeader(header, c.name), c.result) << testing::PrintToString(c.name);
        EXPECT_EQ(DescribeAll(ListOf(header)), c.lines) << testing::PrintToString(c.name);
        EXPECT_EQ(header->info->pouType, c.result ? 2u : 0u) << testing::PrintToString(c.name);
        EXPECT_EQ(std::u16string(TextOf(header->info, POUH_NAME)), c.result ? c.name : u"");
    }
    EXPECT_EQ(LoadPOUHiddenHeader(header, nullptr), 0);
    EXPECT_EQ(LoadPOUHiddenHeader(nullptr, u"_STEP"), 0);
    DestroyPOUHeader(header);
}

TEST(HiddenHeader, TheUserAdapterAnswers) {
    const LQ_INTERFACE_ENTRY entries[] = {
        {DS_VAR_OUTPUT, u"X", MapTypeToBitset(IEC_BOOL), u"FALSE"},
        {DS_VAR_INPUT, u"T", MapTypeToBitset(IEC_TIME), nullptr},
    };
    const LQ_INTERFACE_REPLY two = {2, entries};
    const LQ_INTERFACE_REPLY none = {0, nullptr};
    auto& answers = lq::host::GetUserAdapterAnswers();
    answers.sfcStep = &two;
    answers.sfcDebug = &none;
    POU_HEADER_TYP* header = CreatePOUHeader();
    EXPECT_EQ(LoadPOUHiddenHeader(header, u"_STEP"), 1);
    EXPECT_EQ(DescribeAll(ListOf(header)), (Lines{u"5 X : 1 BOOL := FALSE", u"2 T : 1 TIME"}));
    EXPECT_EQ(LoadPOUHiddenHeader(header, u"_SFC_DEBUG"), 1);
    EXPECT_EQ(DescribeAll(ListOf(header)), Lines{}) << "an empty answer is an answer";
    EXPECT_EQ(LoadPOUHiddenHeader(header, u"_ACTION"), 1);
    EXPECT_EQ(DescribeAll(ListOf(header)), Lines{u"5 Q : 1 BOOL := 0"});
    DestroyPOUHeader(header);
    answers = {};
}

}  // namespace
