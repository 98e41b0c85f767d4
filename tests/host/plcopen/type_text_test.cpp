// Types and initial values as IEC text.
#include <gtest/gtest.h>

#include "tests/host/plcopen/plcopen_util.h"

namespace {

using namespace lq::host;

ReadProject ReadVariable(const std::string& type, const std::string& value = "") {
    const std::string init = value.empty() ? "" : "<initialValue>" + value + "</initialValue>";
    return ReadProject(PouDocument("<localVars><variable name=\"v\"><type>" + type + "</type>" +
                                   init + "</variable></localVars>"));
}

std::string Simple(const std::string& value) {
    return "<simpleValue value=\"" + value + "\"/>";
}

TEST(TypeText, WritesEveryType) {
    constexpr struct {
        std::string_view xml;
        std::string_view text;
    } kCases[] = {
        {"<BOOL/>", "BOOL"},
        {"<ANY_NUM/>", "ANY_NUM"},
        {"<string/>", "STRING"},
        {"<string length=\"20\"/>", "STRING(20)"},
        {"<wstring length=\" 5 \"/>", "WSTRING(5)"},
        {"<derived name=\"Pump\"/>", "Pump"},
        {"<array><dimension lower=\"1\" upper=\"10\"/><dimension lower=\"-2\" upper=\"2\"/>"
         "<baseType><INT/></baseType></array>",
         "ARRAY [1..10, -2..2] OF INT"},
        {"<array><dimension lower=\"0\" upper=\"N\"/><baseType><string length=\"8\"/></baseType>"
         "</array>",
         "ARRAY [0..N] OF STRING(8)"},
        {"<array><dimension lower=\"0\" upper=\"3\"/><baseType><derived name=\"S\"/></baseType>"
         "</array>",
         "ARRAY [0..3] OF S"},
        {"<array><dimension lower=\"0\" upper=\"1\"/><baseType><array><dimension lower=\"2\" "
         "upper=\"3\"/><baseType><BOOL/></baseType></array></baseType></array>",
         "ARRAY [0..1] OF ARRAY [2..3] OF BOOL"},
        {"<subrangeSigned><range lower=\"-1\" upper=\"10\"/><baseType><INT/></baseType>"
         "</subrangeSigned>",
         "INT (-1..10)"},
        {"<subrangeUnsigned><range lower=\"1\" upper=\"10\"/><baseType><UINT/></baseType>"
         "</subrangeUnsigned>",
         "UINT (1..10)"},
        {"<enum><values><value name=\"Red\"/><value name=\"Green\" value=\"5\"/></values></enum>",
         "(Red, Green := 5)"},
        {"<enum><values><value name=\"A\"/></values><baseType><BYTE/></baseType></enum>",
         "BYTE (A)"},
        {"<struct><variable name=\"a\"><type><INT/></type></variable><variable name=\"b\"><type>"
         "<REAL/></type><initialValue><simpleValue value=\"1.5\"/></initialValue></variable>"
         "</struct>",
         "STRUCT a : INT; b : REAL := 1.5; END_STRUCT"},
        {"<pointer><baseType><INT/></baseType></pointer>", "REF_TO INT"},
    };
    for (const auto& c : kCases) {
        const ReadProject read = ReadVariable(std::string(c.xml));
        EXPECT_EQ(read.Messages(), "") << c.xml;
        EXPECT_EQ(read.Describe(read.FirstPou().declarations.at(0)),
                  "VAR v : " + std::string(c.text))
            << c.xml;
    }
}

TEST(TypeText, ReportsWhatIsMissing) {
    constexpr struct {
        std::string_view xml;
        std::string_view text;
        std::string_view messages;
    } kCases[] = {
        {"", "", "<type> holds no type\n"},
        {"<derived/>", "", "<derived> has no name\n"},
        {"<array><baseType><INT/></baseType></array>", " : ARRAY [] OF INT",
         "<array> has no dimension\n"},
        {"<array><dimension lower=\"1\" upper=\"2\"/></array>", " : ARRAY [1..2] OF ",
         "<array> has no base type\n"},
        {"<array><dimension lower=\"1\"/><baseType><INT/></baseType></array>",
         " : ARRAY [1..] OF INT", "<dimension> has no upper\n"},
        {"<subrangeSigned><baseType><INT/></baseType></subrangeSigned>", " : INT",
         "<subrangeSigned> has no range\n"},
        {"<LTIME/>", " : LTIME", "<LTIME> in <type> is not known and was left out\n"},
    };
    for (const auto& c : kCases) {
        const ReadProject read = ReadVariable(std::string(c.xml));
        EXPECT_EQ(read.Messages(), c.messages) << c.xml;
        EXPECT_EQ(read.Describe(read.FirstPou().declarations.at(0)), "VAR v" + std::string(c.text))
            << c.xml;
    }
}

TEST(ValueText, WritesEveryValue) {
    const std::string one = Simple("1");
    const struct {
        std::string xml;
        std::string_view text;
    } cases[] = {
        {Simple(" 16#FF "), "16#FF"},
        {Simple("'a &amp; &lt;b&gt;'"), "'a & <b>'"},
        {"<arrayValue><value>" + one + "</value><value repetitionValue=\"3\">" + Simple("0") +
             "</value><value repetitionValue=\"1\">" + one + "</value></arrayValue>",
         "[1, 3(0), 1]"},
        {"<arrayValue/>", "[]"},
        {"<arrayValue><value><arrayValue><value>" + one +
             "</value></arrayValue></value></arrayValue>",
         "[[1]]"},
        {"<structValue><value member=\"a\">" + one +
             "</value><value member=\"b\"><structValue>"
             "<value member=\"c\">" +
             one + "</value></structValue></value></structValue>",
         "a := 1, b := (c := 1)"},
        {"<arrayValue><value><structValue><value member=\"a\">" + one +
             "</value></structValue></value></arrayValue>",
         "[(a := 1)]"},
    };
    for (const auto& c : cases) {
        const ReadProject read = ReadVariable("<INT/>", c.xml);
        EXPECT_EQ(read.Messages(), "") << c.xml;
        EXPECT_EQ(read.Describe(read.FirstPou().declarations.at(0)),
                  "VAR v : INT := " + std::string(c.text))
            << c.xml;
    }
}

}  // namespace
