// The sample project, from its file to the records that the loaders make of it.
#include <string>

#include <gtest/gtest.h>

#include "host/plcopen/plcopen.h"
#include "host/text/utf.h"
#include "tests/host/model/model_util.h"

namespace {

using namespace lq::host;

class Plant : public testing::Test {
  protected:
    void SetUp() override {
        const std::string path = std::string(LQ_TEST_EXAMPLES) + "/plant/plant.xml";
        const bool complete = ReadPlcopenFile(path, project_, reports_);
        for (const Report& report : reports_) {
            ADD_FAILURE() << ToText(report);
        }
        ASSERT_TRUE(complete);
    }

    CurrentProject project_;
    std::vector<Report> reports_;
};

TEST_F(Plant, HasNamesAndValuesThatPassTheChecks) {
    ASSERT_GT(project_.Declarations().size(), 200u);
    for (const Declaration& declaration : project_.Declarations()) {
        EXPECT_EQ(CheckIdentifier(nullptr, declaration.name, 0), 0) << EncodeUtf8(declaration.name);
        EXPECT_EQ(CheckInitSyntax(nullptr, declaration.initValue), 0)
            << EncodeUtf8(declaration.initValue);
    }
    for (const Pou& pou : project_.Pous()) {
        EXPECT_EQ(CheckIsRecursiveCallEx(pou.name, pou.name, 0), 0) << EncodeUtf8(pou.name);
    }
}

TEST_F(Plant, HasAGlobalOfEveryKind) {
    constexpr struct {
        const char16_t* name;
        std::u16string_view keyword;
        std::u16string_view type;
        std::u16string_view initValue;
        std::u16string_view address;
    } kCases[] = {
        {u"Level", u"VAR_GLOBAL", u"INT", u"", u"%IW2"},
        {u"BatchCount", u"VAR_GLOBAL_RETAIN", u"UDINT", u"0", u""},
        {u"PlantName", u"VAR_GLOBAL_CONSTANT", u"STRING(20)", u"'Mixer $'A$''", u""},
        {u"BuiltAt", u"VAR_GLOBAL_CONSTANT_RETAIN", u"DT", u"DT#2024-02-29-12:30:00", u""},
        {u"Pressures", u"VAR_GLOBAL", u"ARRAY [1..8] OF REAL", u"[1.0, 1.5, 6(0.0)]", u""},
        {u"History", u"VAR_GLOBAL", u"ARRAY [1..2, 1..3, 0..3] OF BYTE", u"[24(16#FF)]", u""},
        {u"Recipes", u"VAR_GLOBAL", u"ARRAY [1..5] OF Recipe", u"", u""},
        {u"Active", u"VAR_GLOBAL", u"Recipe", u"name := 'lemonade', stirTime := T#1m, speed := 450",
         u""},
        {u"Beat", u"VAR_GLOBAL", u"TON", u"", u""},
    };
    for (const auto& c : kCases) {
        const Declaration* global = project_.GetDeclaration(project_.FindGlobal(c.name));
        ASSERT_NE(global, nullptr) << EncodeUtf8(c.name);
        EXPECT_EQ(KeywordOf(global->section), c.keyword) << EncodeUtf8(c.name);
        EXPECT_EQ(global->type, c.type) << EncodeUtf8(c.name);
        EXPECT_EQ(global->initValue, c.initValue) << EncodeUtf8(c.name);
        EXPECT_EQ(global->address, c.address) << EncodeUtf8(c.name);
    }
}

TEST_F(Plant, HasLabelsAndJumpsThatMeet) {
    std::size_t jumps = 0;
    for (const Pou& pou : project_.Pous()) {
        for (const Body& body : pou.bodies) {
            for (const Mark& jump : body.jumps) {
                const bool met = std::any_of(body.labels.begin(), body.labels.end(),
                                             [&](const Mark& m) { return m.name == jump.name; });
                EXPECT_TRUE(met) << EncodeUtf8(jump.name);
                ++jumps;
            }
        }
    }
    EXPECT_EQ(jumps, 6u);
}

}  // namespace
