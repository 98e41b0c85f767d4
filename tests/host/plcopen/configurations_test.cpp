// Configurations, resources, tasks and program instances.
#include <gtest/gtest.h>

#include "tests/host/plcopen/plcopen_util.h"

namespace {

using namespace lq::host;

TEST(Tasks, HaveIntervalsAsDurations) {
    constexpr struct {
        std::string_view interval;
        std::string_view text;
        bool reported;
    } kCases[] = {
        {"", "", false},
        {"T#20ms", "T#20ms", false},
        {"t#1s500ms", "t#1s500ms", false},
        {" TIME#5s ", "TIME#5s", false},
        {"20ms", "T#20ms", false},
        {"1.5s", "T#1.5s", false},
        {"PT0.02S", "T#0.02s", false},
        {"PT1H30M", "T#1h30m", false},
        {"00:00:00.100000", "T#100ms", false},
        {"00:00:00.001500", "T#1.5ms", false},
        {"00:00:00.0000001", "T#0.0001ms", false},
        {"01:02:03", "T#1h2m3s", false},
        {"00:00:00", "T#0s", false},
        {"Beat", "Beat", false},
        {"GVL.Beat", "GVL.Beat", false},
        {"T#", "T#", true},
        {"D#2024-01-01", "D#2024-01-01", true},
        {"20", "20", true},
        {"00:00:00.", "00:00:00.", true},
        {"0:00:01", "0:00:01", true},
        {"aa:bb:cc", "aa:bb:cc", true},
        {"20 ms", "20 ms", true},
        {"-5", "-5", true},
    };
    for (const auto& c : kCases) {
        const ReadProject read(Document(
            "",
            "<configuration name=\"c\"><resource name=\"r\"><task name=\"t\" priority=\"1\" "
            "interval=\"" +
                std::string(c.interval) + "\"/></resource></configuration>"));
        ASSERT_EQ(read.project.Tasks().size(), 1u) << c.interval;
        EXPECT_EQ(EncodeUtf8(read.project.Tasks()[0].interval), c.text) << c.interval;
        EXPECT_EQ(read.Messages() != "", c.reported) << c.interval;
    }
}

TEST(Configurations, HoldResourcesTasksAndLists) {
    const std::string variable = "<variable name=\"a\"><type><INT/></type></variable>";
    const ReadProject read(Document("", R"(<configuration name="c">
        <resource name="r1"><task name="t" single="go" priority="3">
        <pouInstance name="i" typeName="Main"/><documentation><xhtml:p>tells</xhtml:p>
        </documentation></task><globalVars>)" +
                                            variable + variable + R"(</globalVars>
        <pouInstance name="free" type="Other"/></resource><resource name="r2"/>
        <globalVars name="shared" constant="true">)" +
                                            variable + R"(</globalVars>
        <accessVars/></configuration>)"));
    const Project& project = read.project;
    EXPECT_EQ(read.Messages(),
              "the name of global 'a' is taken: the first one is used\n"
              "<accessVars> in <configuration> has no place in the project and was left out\n");
    ASSERT_EQ(project.Below(project.ResourcePool()).size(), 2u);
    const Task& task = project.Tasks().at(0);
    EXPECT_EQ(std::u16string_view(task.event), u"go");
    EXPECT_EQ(std::u16string_view(task.priority), u"3");
    EXPECT_EQ(std::u16string_view(task.comment), u"tells");
    EXPECT_EQ(task.line, 2u);
    ASSERT_EQ(task.programs.size(), 1u);
    const Resource& first = project.Resources().at(0);
    ASSERT_EQ(first.programs.size(), 1u);
    EXPECT_EQ(std::u16string_view(project.GetProgramInstance(first.programs[0])->typeName),
              u"Other");
    ASSERT_EQ(project.VariableLists().size(), 2u);
    EXPECT_EQ(std::u16string_view(project.VariableLists()[0].name), u"r1");
    EXPECT_EQ(std::u16string_view(project.VariableLists()[1].name), u"shared");
    EXPECT_EQ(std::u16string_view(project.NameOf(project.VariableLists()[1].parent)), u"c");
}

}  // namespace
