// POUs and data types.
#include <gtest/gtest.h>

#include "tests/host/plcopen/plcopen_util.h"

namespace {

using namespace lq::host;

TEST(Reader, ReadsPousOfAllKinds) {
    const ReadProject read(Document(R"(<pous>
        <pou name="M" pouType="program"/>
        <pou name="B" pouType="functionBlock"><interface><documentation><xhtml:p>inside</xhtml:p>
        </documentation></interface><documentation><xhtml:p>outside</xhtml:p></documentation></pou>
        <pou name="F" pouType="function"><interface><returnType><derived name="T"/></returnType>
        </interface></pou>
        <pou name="b" pouType="program"/><pou pouType="program"/>
        <pou name="C" pouType="class"><interface/></pou></pous>)"));
    const Project& project = read.project;
    constexpr struct {
        std::u16string_view name;
        LQ_OBJECT_KIND kind;
        std::u16string_view resultType;
        uint32_t line;
    } kPous[] = {
        {u"M", LQ_KIND_PROGRAM, u"", 2},
        {u"B", LQ_KIND_FUNCTION_BLOCK, u"", 3},
        {u"F", LQ_KIND_FUNCTION, u"T", 5},
        {u"b", LQ_KIND_PROGRAM, u"", 7},
    };
    const IdList& pous = project.Below(project.PouPool());
    ASSERT_EQ(pous.size(), std::size(kPous));
    for (std::size_t i = 0; i < pous.size(); ++i) {
        const Pou& pou = *project.GetPou(pous[i]);
        EXPECT_EQ(std::u16string_view(pou.name), kPous[i].name);
        EXPECT_EQ(pou.kind, kPous[i].kind) << i;
        EXPECT_EQ(std::u16string_view(pou.resultType), kPous[i].resultType) << i;
        EXPECT_EQ(pou.line, kPous[i].line) << i;
    }
    EXPECT_EQ(std::u16string_view(project.GetPou(pous[1])->comment), u"outside");
    EXPECT_EQ(std::u16string_view(project.GetPou(pous[1])->headerComment), u"inside");
    EXPECT_EQ(project.FindPou(u"B"), pous[1]);
    EXPECT_EQ(read.Messages(),
              "the name of POU 'b' is taken: the first one is used\n"
              "<pou> has no name\n"
              "the POU type 'class' is not known: the POU was left out\n");
}

TEST(Reader, ReadsDataTypesOfAllKinds) {
    const ReadProject read(Document(R"(<dataTypes>
        <dataType name="S"><baseType><struct><variable name="a"><type><INT/></type><initialValue>
        <simpleValue value="3"/></initialValue></variable></struct></baseType></dataType>
        <dataType name="E"><baseType><enum><values><value name="X"/></values></enum></baseType>
        <initialValue><simpleValue value="X"/></initialValue>
        <documentation><xhtml:p>why</xhtml:p></documentation></dataType>
        <dataType name="A"><baseType><REAL/></baseType></dataType>
        <dataType name="a"/></dataTypes><pous/>)"));
    const auto& types = read.project.DataTypes();
    ASSERT_EQ(types.size(), 4u);
    EXPECT_TRUE(types[0].structure);
    ASSERT_EQ(types[0].members.size(), 1u);
    EXPECT_EQ(read.Describe(types[0].members[0]), "VAR a : INT := 3");
    EXPECT_FALSE(types[1].structure);
    EXPECT_EQ(std::u16string_view(types[1].baseType), u"(X)");
    EXPECT_EQ(std::u16string_view(types[1].initValue), u"X");
    EXPECT_EQ(std::u16string_view(types[1].comment), u"why");
    EXPECT_EQ(std::u16string_view(types[2].baseType), u"REAL");
    EXPECT_EQ(types[2].line, 7u);
    EXPECT_EQ(read.Messages(),
              "the name of data type 'a' is taken: the first one is used\n"
              "<dataType> has no base type\n");
}

TEST(Report, IsOneLine) {
    Report report{"f.xml", 3, 7, "project/types", "so it is"};
    EXPECT_EQ(ToText(report), "f.xml:3:7: project/types: so it is");
    report.more = 2;
    report.error = true;
    report.line = 0;
    report.path = "";
    EXPECT_EQ(ToText(report), "f.xml: error: so it is (and 2 more)");
}

}  // namespace
