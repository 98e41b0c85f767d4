#include <gtest/gtest.h>

#include "load_test_util.h"
#include "lq_base.h"

namespace {

using namespace lq::pouh;

TEST(FbName, PouBeforeGlobals) {
    LoadedProject project;
    project.AddPouNamed(u"Motor", LQ_KIND_FUNCTION_BLOCK);
    const ID main = project.AddPouNamed(u"Main");
    project.AddVar(main, u"m", u"Motor");
    project.AddVar(main, u"shared", u"TON");
    project.AddVar(main, u"number", u"INT");
    project.AddVar(main, u"twice", u"INT");
    project.AddVar(main, u"twice", u"TOF");
    const ID list = project.AddGlobals();
    project.AddVar(list, u"shared", u"Motor", kGlobal);
    project.AddVar(list, u"number", u"Motor", kGlobal);
    project.AddVar(list, u"other", u"Main", kGlobal);
    project.AddVar(list, u"plain", u"INT", kGlobal);
    struct {
        const char16_t* instance;
        const char16_t* pou;
        const char16_t* fbType;  // null for none
    } const cases[] = {
        {u"m", u"Main", u"Motor"},
        {u"M", u"main", u"Motor"},
        {u"shared", u"Main", u"TON"},
        {u"shared", u"None", u"Motor"},
        {u"shared", nullptr, u"Motor"},
        {u"number", u"Main", u"Motor"},  // the local one is no instance: on to the globals
        {u"twice", u"Main", u"TOF"},
        {u"other", u"Main", nullptr},  // a program is no function block
        {u"plain", u"Main", nullptr},
        {u"none", u"Main", nullptr},
        {nullptr, u"Main", nullptr},
    };
    for (const auto& c : cases) {
        CLQString fbType(u"before");
        EXPECT_EQ(FindFBName(c.instance, c.pou, &fbType), c.fbType ? 1 : 0)
            << testing::PrintToString(c.instance);
        EXPECT_EQ(std::u16string(fbType.GetText()), c.fbType ? c.fbType : u"before")
            << testing::PrintToString(c.instance);
    }
    EXPECT_EQ(FindFBName(u"m", u"Main", nullptr), 0);
}

}  // namespace
