// Sections, addresses and comments of variables.
#include <gtest/gtest.h>

#include "tests/host/plcopen/plcopen_util.h"

namespace {

using namespace lq::host;

constexpr std::string_view kVariable =
    "<variable name=\"v\" address=\"%MW1\"><type><INT/></type><initialValue>"
    "<simpleValue value=\"1\"/></initialValue><documentation><xhtml:p>About\n it</xhtml:p>"
    "<xhtml:p>and <xhtml:b>more</xhtml:b></xhtml:p></documentation></variable>";

TEST(Sections, BecomeKeywords) {
    constexpr struct {
        std::string_view list;
        std::string_view keyword;
        std::string_view message;
    } kCases[] = {
        {"localVars", "VAR", ""},
        {"localVars constant=\"true\"", "VAR_CONSTANT", ""},
        {"localVars constant=\"1\" retain=\"true\"", "VAR_CONSTANT_RETAIN", ""},
        {"localVars nonretain=\"true\"", "VAR", ""},
        {"localVars retain=\"false\" constant=\"false\"", "VAR", ""},
        {"tempVars", "VAR", ""},
        {"inputVars retain=\"true\"", "VAR_INPUT_RETAIN", ""},
        {"inputVars constant=\"true\"", "VAR_INPUT CONSTANT", ""},
        {"outputVars retain=\"true\"", "VAR_OUTPUT_RETAIN", ""},
        {"inOutVars", "VAR_IN_OUT", ""},
        {"externalVars constant=\"true\" retain=\"true\"", "VAR_EXTERNAL_CONSTANT_RETAIN", ""},
        {"inputVars constant=\"true\" retain=\"true\"", "VAR_INPUT CONSTANT",
         "<inputVars> with constant retain has no section keyword: it was read without retain\n"},
        {"inOutVars constant=\"true\"", "VAR_IN_OUT",
         "<inOutVars> with constant has no section keyword: it was read without constant\n"},
        {"localVars persistent=\"true\"", "VAR_RETAIN",
         "<localVars> is persistent, which has no section keyword: it was read as retain\n"},
    };
    for (const auto& c : kCases) {
        const std::string list(c.list);
        const ReadProject read(PouDocument("<" + list + ">" + std::string(kVariable) + "</" +
                                           list.substr(0, list.find(' ')) + ">"));
        EXPECT_EQ(read.Messages(), c.message) << list;
        const ID id = read.FirstPou().declarations.at(0);
        EXPECT_EQ(read.Describe(id),
                  std::string(c.keyword) + " v AT %MW1 : INT := 1 (* About\n it\nand more *)")
            << list;
        EXPECT_EQ(read.project.GetDeclaration(id)->section.scope == Scope::kTemp,
                  list == "tempVars");
    }
}

TEST(Sections, GlobalsOfAPouAreAListOfTheirOwn) {
    const ReadProject read(
        PouDocument("<globalVars retain=\"true\">" + std::string(kVariable) + "</globalVars>"));
    EXPECT_TRUE(read.FirstPou().declarations.empty());
    ASSERT_EQ(read.project.VariableLists().size(), 1u);
    const VariableList& list = read.project.VariableLists()[0];
    EXPECT_EQ(std::u16string_view(list.name), u"P");
    EXPECT_EQ(read.project.NameOf(list.parent), read.FirstPou().name);
    EXPECT_EQ(read.Describe(list.declarations.at(0)).substr(0, 17), "VAR_GLOBAL_RETAIN");
}

// EN and ENO are a flag of the POU when it declares both.
TEST(Sections, EnAndEnoAreTheFlag) {
    const std::string en =
        "<inputVars><variable name=\"EN\"><type><BOOL/></type></variable>"
        "</inputVars>";
    const std::string enOn =
        "<inputVars><variable name=\"EN\"><type><BOOL/></type><initialValue>"
        "<simpleValue value=\"TRUE\"/></initialValue></variable></inputVars>";
    const std::string eno =
        "<outputVars><variable name=\"eno\"><type><BOOL/></type></variable>"
        "</outputVars>";
    const struct {
        std::string interface;
        std::string pouType;
        bool flag;
        std::size_t declarations;
    } cases[] = {
        {en + eno, "functionBlock", true, 0},
        {eno + en, "function", true, 0},
        {en, "function", false, 1},
        {eno, "functionBlock", false, 1},
        {en + en, "functionBlock", false, 2},
        {en + eno, "program", false, 2},
        {enOn + eno, "functionBlock", false, 2},
    };
    for (const auto& c : cases) {
        const ReadProject read(PouDocument(c.interface, "", c.pouType));
        EXPECT_EQ(read.FirstPou().eno, c.flag) << c.pouType << c.interface;
        EXPECT_EQ(read.FirstPou().declarations.size(), c.declarations) << c.pouType << c.interface;
    }
}

TEST(Variables, WithoutANameAreReported) {
    const ReadProject read(PouDocument(
        "<localVars>\n<variable><type><INT/></type></variable><variable name=\"v\"/></localVars>"));
    EXPECT_EQ(read.Messages(), "<variable> has no name\n<variable> has no type\n");
    EXPECT_EQ(ToText(read.reports[0]),
              "test.xml:2:1: project/types/pous/pou[P]/interface/localVars/variable: "
              "<variable> has no name");
    EXPECT_EQ(read.FirstPou().declarations.size(), 1u);
}

}  // namespace
