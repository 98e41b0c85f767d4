#include <gtest/gtest.h>

#include "host/text/utf.h"
#include "tests/host/model/model_util.h"

namespace {

using namespace lq::host;

// Main -> A -> B -> C -> B, by instances, an array of them and a call; F calls itself, G nothing, H
// a variable.
TEST(CheckIsRecursiveCall, FollowsInstancesAndCalls) {
    CurrentProject project;
    const ID main = project.NewPou(LQ_KIND_PROGRAM, u"Main");
    const ID a = project.NewPou(LQ_KIND_FUNCTION_BLOCK, u"A");
    const ID b = project.NewPou(LQ_KIND_FUNCTION_BLOCK, u"B");
    const ID c = project.NewPou(LQ_KIND_FUNCTION_BLOCK, u"C");
    const ID f = project.NewPou(LQ_KIND_FUNCTION, u"F");
    const ID g = project.NewPou(LQ_KIND_FUNCTION, u"G");
    project.NewVariable(main, u"instance", u"a");
    project.NewVariable(main, u"timer", u"TON");
    project.NewVariable(a, u"instances", u"ARRAY [1..3] OF B");
    project.AddCall(*project.EditPou(b), u"C");
    project.NewVariable(c, u"back", u"B");
    project.AddCall(*project.EditPou(f), u"f");
    project.AddCall(*project.EditPou(g), u"Missing");
    project.NewVariable(g, u"number", u"INT");
    const ID h = project.NewPou(LQ_KIND_FUNCTION_BLOCK, u"H");
    project.NewVariable(h, u"f", u"TON");
    project.AddCall(*project.EditPou(h), u"F");

    constexpr struct {
        const char16_t* caller;
        const char16_t* callee;
        bool reached;
    } kCases[] = {
        {u"Main", u"Main", false}, {u"Main", u"A", true},     {u"main", u"c", true},
        {u"A", u"A", false},       {u"A", u"C", true},        {u"B", u"B", true},
        {u"C", u"C", true},        {u"C", u"A", false},       {u"F", u"F", true},
        {u"G", u"G", false},       {u"G", u"F", false},       {u"Main", u"TON", false},
        {u"Main", u"F", false},    {u"Missing", u"A", false}, {u"A", u"Missing", false},
        {u"H", u"F", false},
    };
    for (const auto& row : kCases) {
        EXPECT_EQ(CheckIsRecursiveCallEx(row.caller, row.callee, 0) != 0, row.reached)
            << EncodeUtf8(row.caller) << " to " << EncodeUtf8(row.callee);
    }
    EXPECT_EQ(CheckIsRecursiveCallEx(nullptr, u"A", 0), 0);
    SetProject(nullptr);
    EXPECT_EQ(CheckIsRecursiveCallEx(u"B", u"B", 0), 0);
}

}  // namespace
