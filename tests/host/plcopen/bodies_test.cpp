// Labels, jumps and calls of bodies.
#include <gtest/gtest.h>

#include "tests/host/plcopen/plcopen_util.h"

namespace {

using namespace lq::host;

std::string Marks(const std::vector<Mark>& marks) {
    std::string text;
    for (const Mark& mark : marks) {
        text += EncodeUtf8(mark.name) + ":" + std::to_string(mark.line) +
                (mark.conditional ? "? " : " ");
    }
    return text;
}

std::string Calls(const Pou& pou) {
    std::string text;
    for (const Text call : pou.calls) {
        text += EncodeUtf8(call) + " ";
    }
    return text;
}

std::string Code(const std::string& language, const std::string& code) {
    return "<body><" + language + "><xhtml:p><![CDATA[" + code + "]]></xhtml:p></" + language +
           "></body>";
}

TEST(Bodies, OfSeveralParagraphsHaveTheirLines) {
    for (const char* body : {
             "<body><IL>\n<xhtml:p>L1: LD a</xhtml:p>\n<xhtml:p>JMPC L1</xhtml:p>\n"
             "<xhtml:p>L2: ST b</xhtml:p>\n</IL></body>",
             "<body><IL><xhtml:p>L1: LD a<xhtml:br/>JMPC L1<xhtml:br/>L2: ST "
             "b</xhtml:p></IL></body>",
         }) {
        const ReadProject read(PouDocument("", body));
        const Pou* pou = read.project.GetPou(read.project.FindPou(u"P"));
        ASSERT_NE(pou, nullptr);
        ASSERT_EQ(pou->bodies.size(), 1u);
        EXPECT_EQ(pou->bodies[0].labels.size(), 2u) << body;
        EXPECT_EQ(pou->bodies[0].jumps.size(), 1u) << body;
    }
}

TEST(Bodies, OfIlHaveLabelsJumpsAndCalls) {
    constexpr struct {
        std::string_view code;
        std::string_view labels;
        std::string_view jumps;
        std::string_view calls;
    } kCases[] = {
        {"", "", "", ""},
        {"start:\n LD a\n JMP start", "start:1 ", "start:3 ", "LD "},
        {"\n\nlast: JMPC last (* always? *)\nJMPCN last", "last:3 ", "last:3? last:4? ", ""},
        {"a: b: LD x", "a:1 b:1 ", "", "LD "},
        {"jmp end\r\nend:\r\n", "end:2 ", "end:1 ", ""},
        {"LD JMP\nST label", "", "", "LD ST "},
        {"LD a (* JMP no\n no: *)\n// JMP no\nJMP yes // JMP no", "", "yes:4 ", "LD "},
        {"{no: }LD 'JMP no'\nyes: LD \"no:\"", "yes:2 ", "", "LD "},
        {"{{\nno:\n if (F()) {\nno:\n}\n no: F(); }}\nyes: LD a", "yes:7 ", "", "LD "},
        {"{ '{' }\n no: }\n yes: { LD a\nno:", "yes:3 ", "", ""},
        {"(* no\n(* *)\nno: *)\nyes: LD a /*\nno: */\n yes: (*\nno:", "yes:4 yes:6 ", "", "LD "},
        {"LD 'a$\nyes: LD \"$x no:\nyes: JMP yes", "yes:2 yes:3 ", "yes:3 ", "LD "},
        {"Func a, b\nCAL timer(IN := x)", "", "", "Func CAL timer "},
        {"LD 'it$'s' (* ' *)\n// isn't\nJMP x", "", "x:3 ", "LD "},
        {"JMP\nLD x\nJMP 5", "", "", "LD "},
    };
    for (const auto& c : kCases) {
        const ReadProject read(PouDocument("", Code("IL", std::string(c.code))));
        const Body& body = read.FirstPou().bodies.at(0);
        EXPECT_EQ(body.language, Language::kIl);
        EXPECT_EQ(Marks(body.labels), c.labels) << c.code;
        EXPECT_EQ(Marks(body.jumps), c.jumps) << c.code;
        EXPECT_EQ(Calls(read.FirstPou()), c.calls) << c.code;
    }
}

TEST(Bodies, OfStHaveCallsOnly) {
    constexpr struct {
        std::string_view code;
        std::string_view calls;
    } kCases[] = {
        {"x := F(1) + G (2);\nJMP: a := JMP;", "F G "},
        {"IF (a) AND (b) THEN inst(x := MAX(a, b)); END_IF;", "inst MAX "},
        {"(* F(1) *) // G(2)\n{H(3)} s := 'I(4)';", ""},
        {"F := F\n(1);", "F "},
        {"{{ F(1) {G(2)} H(3) }} I(4) { J(5)", "I "},
        {"(* (* *) F(1) *) G(2) (*) H(3) *) I(4)", "G I "},
        {"(* (* *) F(1); (* *) G(2)", "F G "},
        {"s := 'a$% F(1)'; t := \"$' G(2)\"; u := 'H(3)\n; I(4); v := 'J(5)'", "I "},
        {"x.F(1); y := a. G(2) + H(3).z;", "H "},
        {"a := INT#5; b := T#5s; c := F(%IX0.0); # $ F(2)", "F "},
    };
    for (const auto& c : kCases) {
        const ReadProject read(PouDocument("", Code("ST", std::string(c.code))));
        EXPECT_EQ(Calls(read.FirstPou()), c.calls) << c.code;
        EXPECT_EQ(Marks(read.FirstPou().bodies.at(0).labels), "") << c.code;
        EXPECT_EQ(Marks(read.FirstPou().bodies.at(0).jumps), "") << c.code;
    }
}

TEST(Bodies, OfDrawingsHaveLabelElements) {
    const ReadProject read(PouDocument("", R"(<body><FBD>
        <label localId="1" label="here"><position x="1" y="2"/></label>
        <jump localId="2" label="there"/>
        <jump localId="3" label="here"><connectionPointIn><connection refLocalId="4"/>
        </connectionPointIn></jump>
        <block localId="4" typeName="Pump" instanceName="p"/>
        <inVariable localId="5"><expression>Scale(x, 2)</expression></inVariable>
        <label localId="6"/></FBD></body>)"));
    const Body& body = read.FirstPou().bodies.at(0);
    EXPECT_EQ(body.language, Language::kFbd);
    EXPECT_EQ(Marks(body.labels), "here:2 ");
    EXPECT_EQ(Marks(body.jumps), "there:3 here:4? ");
    EXPECT_EQ(Calls(read.FirstPou()), "Pump Scale ");
    EXPECT_EQ(read.Messages(), "<label> has no label\n");
}

TEST(Bodies, OfActionsAndTransitionsHaveTheirNames) {
    const ReadProject read(PouDocument(
        "", "<actions><action name=\"Open\">" + Code("IL", "x:") + "</action></actions>" +
                "<transitions><transition name=\"Full\">" + Code("ST", "F(1)") +
                "</transition></transitions><body><SFC><transition localId=\"1\"><condition>"
                "<inline name=\"\"><ST><xhtml:p>G(2)</xhtml:p></ST></inline></condition>"
                "</transition></SFC></body>"));
    const std::vector<Body>& bodies = read.FirstPou().bodies;
    ASSERT_EQ(bodies.size(), 3u);
    EXPECT_EQ(std::u16string_view(bodies[0].name), u"Open");
    EXPECT_EQ(std::u16string_view(bodies[1].name), u"Full");
    EXPECT_EQ(std::u16string_view(bodies[2].name), u"");
    EXPECT_EQ(bodies[2].language, Language::kSfc);
    EXPECT_EQ(Marks(bodies[0].labels), "x:1 ");
    EXPECT_EQ(Calls(read.FirstPou()), "F G ");
    EXPECT_EQ(read.Messages(), "");
}

}  // namespace
