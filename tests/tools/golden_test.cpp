// What every command says about the sample project, compared with files that were checked against
// the project by eye. LQ_UPDATE_GOLDEN=1 writes them anew.
#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/tools/run_lq.h"

namespace lq::test {
namespace {

struct Golden {
    const char* file;
    const char* arguments;
    int status;
};

void PrintTo(const Golden& golden, std::ostream* out) {
    *out << golden.file;
}

class GoldenTest : public testing::TestWithParam<Golden> {};

TEST_P(GoldenTest, SaysTheSame) {
    const Golden& golden = GetParam();
    const std::string path = LQ_TEST_SOURCE "/tools/golden/" + std::string(golden.file);
    WriteFile(TestFolder() + "/plant.xml", ReadFile(LQ_TEST_EXAMPLES "/plant/plant.xml"));
    // An image of the project that was written once: what it yields stays the same.
    WriteFile(TestFolder() + "/plant.lqt", ReadFile(LQ_TEST_SOURCE "/fuzz/image/plant.lqt"));
    const Outcome outcome = RunLq(golden.arguments);
    EXPECT_EQ(outcome.status, golden.status) << outcome.err;
    if (std::getenv("LQ_UPDATE_GOLDEN")) {
        WriteFile(path, outcome.out);
    }
    const std::string expected = ReadFile(path);
    ASSERT_FALSE(expected.empty()) << path;
    EXPECT_EQ(outcome.out, expected);
}

INSTANTIATE_TEST_SUITE_P(
    Sample, GoldenTest,
    testing::Values(
        Golden{"translate.txt", "translate plant.xml", 0},
        Golden{"translate.json", "translate plant.xml --json", 0},
        Golden{"show.txt", "show plant.xml", 0}, Golden{"show.txt", "show plant.lqt", 0},
        Golden{"show_units.txt", "show plant.xml --table units", 0},
        Golden{"show_units.json", "show plant.xml --table units --find clamp --json", 0},
        Golden{"show_find.txt", "show plant.xml --find Mixing.stirring", 0},
        Golden{"pou_program.txt", "pou plant.xml mixing", 0},
        Golden{"pou_function.json", "pou plant.xml Clamp --json", 0},
        Golden{"pou_interface.txt", "pou plant.xml Dosing --interface", 0},
        Golden{"pou_structure.txt", "pou plant.xml Recipe", 0},
        Golden{"tasks.txt", "tasks plant.xml", 0},
        Golden{"fb.txt", "fb plant.xml Mixing stirring", 0}, Golden{"types.txt", "types", 0},
        Golden{"value.txt",
               "value 0 255 -5 300 16#FF 1.5 TRUE T#1h30m D#2024-02-29 "
               "TOD#12:30:15 DT#2000-01-01-00:00:01",
               0},
        Golden{"value_unsigned.json", "value -u --json 1 300", 0}),
    [](const testing::TestParamInfo<Golden>& param) {
        std::string name = param.param.file;
        name.replace(name.find('.'), 1, "_");
        return name + "_" + std::to_string(param.index);
    });

}  // namespace
}  // namespace lq::test
