// The commands beyond the sample project: bad input, streams, images.
#include <sstream>
#include <string>
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/run_lq.h"

namespace lq::test {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

TEST(Tool, SaysInOneSentenceWhatItCannotDo) {
    const std::string folder = TestFolder();
    WriteFile(folder + "/bad.st", "a\n\xC3(");
    WriteFile(folder + "/bad.xml", "<project><a></project>");
    WriteFile(folder + "/other.xml", "<html/>");
    WriteFile(folder + "/latin.xml",
              "<?xml version='1.0' encoding='utf-8'?><project>\xE4</project>");
    WriteFile(folder + "/short.lqt", std::string(39, '\0'));
    WriteFile(folder + "/long.lqt", "\x05" + std::string(39, '\0'));
    WriteFile(folder + "/behind.lqt", std::string(41, '\0'));
    mkdir((folder + "/folder").c_str(), 0777);
    struct Case {
        const char* arguments;
        const char* message;
    };
    for (const Case& c : {
             Case{"", "lq: no command was given; see lq --help"},
             Case{"frobnicate", "lq: no command is called 'frobnicate'; see lq --help"},
             Case{"transalte", "lq: no command is called 'transalte'; did you mean 'translate'?"},
             Case{"SHOW", "did you mean 'show'?"},
             Case{"show --tabel x", "lq: no option is called '--tabel'; did you mean '--table'?"},
             Case{"value --jsno 5", "lq: no option is called '--jsno'; did you mean '--json'?"},
             Case{"scan a b", "lq: there is no use for 'b'; see lq scan --help"},
             Case{"--generate cake", "lq: nothing of the kind 'cake' is generated"},
             Case{"translate missing.xml", "lq: missing.xml: cannot be opened: No such file"},
             Case{"translate folder", "lq: folder: is a folder, not a file"},
             Case{"translate bad.xml", "bad.xml:1:"},
             Case{"translate other.xml", "other.xml:1:"},
             Case{"translate latin.xml", "latin.xml:1:"},
             Case{"scan bad.st", "bad.st:2:1: is not text: "},
             Case{"scan missing.st", "lq: missing.st: cannot be opened"},
             Case{"show folder", "lq: folder: is a folder, not a file"},
             Case{"report $EXAMPLES/plant/plant.xml",
                  "lq: report: the option '--output' is missing; see lq report --help"},
             Case{"show --tabel", "lq: no option is called '--tabel'; did you mean '--table'?"},
             Case{"report short.lqt -o page.html", "lq: short.lqt: no image of tables: "},
             Case{"report $EXAMPLES/plant/plant.xml -o folder", "lq: folder: is a folder"},
             Case{"show short.lqt", "lq: short.lqt: no image of tables: it ends before the length"},
             Case{"show long.lqt", "lq: long.lqt: no image of tables: "},
             Case{"show behind.lqt", "lq: behind.lqt: no image of tables: 1 bytes lie behind"},
             Case{"show $EXAMPLES/plant/plant.xml --table nothing",
                  "lq: no table is called 'nothing'; the tables are debug, units"},
             Case{"show $EXAMPLES/plant/plant.xml --table Globls", "did you mean 'globals'?"},
             Case{"translate $EXAMPLES/plant/plant.xml -o no/such/folder.lqt", "cannot be written"},
             Case{"translate $EXAMPLES/plant/plant.xml -o folder", "lq: folder: is a folder"},
             Case{"pou $EXAMPLES/plant/plant.xml Nobody",
                  "plant.xml: no unit or data type is called 'Nobody'\n"},
             Case{"pou $EXAMPLES/plant/plant.xml clmap", "did you mean 'Clamp'?"},
             Case{"fb $EXAMPLES/plant/plant.xml Mixin stirring", "did you mean 'Mixing'?"},
             Case{"pou $EXAMPLES/plant/plant.xml Nobody --interface --json",
                  "plant.xml: no unit is called 'Nobody'\n"},
             Case{"fb $EXAMPLES/plant/plant.xml Nobody stirring --json",
                  "plant.xml: no unit is called 'Nobody'\n"},
             Case{"pou $EXAMPLES/plant/plant.xml Mixing --interface",
                  "plant.xml: 'Mixing' is no function or function block"},
             Case{"value", "lq: value: no constant"},
             Case{"translate - --json -o -", "lq: standard output takes the image or the JSON"},
             Case{"show - --json --save -", "lq: standard output takes the image or the JSON"},
         }) {
        const Outcome outcome = RunLq(c.arguments);
        EXPECT_EQ(outcome.status, 2) << c.arguments;
        EXPECT_THAT(outcome.err, HasSubstr(c.message)) << c.arguments;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
        EXPECT_EQ(outcome.out, "") << c.arguments;
    }
}

TEST(Tool, AnInputIsNotOverwritten) {
    const std::string project = Project(Variable("a"));
    const std::string folder = TestFolder();
    mkdir((folder + "/folder").c_str(), 0777);
    for (const std::string script : {
             "\"$LQ\" translate p.xml -o p.xml",
             "\"$LQ\" translate p.xml -o folder/../p.xml",
             "\"$LQ\" translate p.xml -o soft.xml",
             "\"$LQ\" translate soft.xml -o hard.xml",
             "\"$LQ\" translate - -o p.xml <p.xml",
             "\"$LQ\" translate p.xml -o - 1<>p.xml",
             "\"$LQ\" report p.xml -o p.xml",
             "\"$LQ\" report hard.xml -o soft.xml",
             "\"$LQ\" show p.xml --save soft.xml",
         }) {
        WriteFile(folder + "/p.xml", project);
        const Outcome outcome = RunShell("ln -sf p.xml soft.xml; ln -f p.xml hard.xml; " + script);
        EXPECT_EQ(outcome.status, 2) << script;
        EXPECT_THAT(outcome.err, MatchesRegex("lq: .*: is the output, too, and would be "
                                              "overwritten\n"))
            << script;
        EXPECT_EQ(ReadFile(folder + "/p.xml"), project) << script;
    }
    ASSERT_EQ(RunLq("translate p.xml -o p.lqt").status, 0);
    EXPECT_EQ(RunLq("show p.lqt --save p.lqt").status, 0) << "it stays the same";
}

TEST(Tool, ImagesComeBackAsTheSameBytes) {
    ASSERT_EQ(RunLq("translate $EXAMPLES/plant/plant.xml -o a.lqt").status, 0);
    ASSERT_EQ(RunLq("translate - -o b.lqt", ReadFile(LQ_TEST_EXAMPLES "/plant/plant.xml")).status,
              0);
    ASSERT_EQ(RunLq("show a.lqt --save c.lqt").status, 0);
    const std::string bytes = ReadFile(TestFolder() + "/a.lqt");
    EXPECT_EQ(ReadFile(TestFolder() + "/b.lqt"), bytes);
    EXPECT_EQ(ReadFile(TestFolder() + "/c.lqt"), bytes);
    EXPECT_EQ(RunLq("translate $EXAMPLES/plant/plant.xml -o -").out, bytes);
    EXPECT_EQ(RunLq("show -", bytes).out, RunLq("show $EXAMPLES/plant/plant.xml").out);
}

TEST(Tool, ADamagedLineIsReported) {
    std::string image(40, '\0');
    image.replace(32, 4, std::string("\x0A\x00\x00\x00", 4));
    image.insert(36, std::string("\x07\x00\x00\x00\x01\x00"
                                 "a\x00\x01\x00",
                                 10));
    const Outcome outcome = RunLq("show - --table names", image);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("table names: the line at 0 is damaged"));
}

TEST(Translate, RefusedDeclarationsAreListed) {
    const std::string project = Project(
        Variable("Good") + Variable("good") + Variable(std::string(66, 'n')) +
            Variable("Bad__Name") + Variable("NoType", "<derived name='Nobody'/>") +
            Variable("NoValue", "<INT/>", "<initialValue><simpleValue value='x'/></initialValue>"),
        "<pou name='P' pouType='program'><interface><externalVars>" + Variable("Missing") +
            "</externalVars></interface><body><ST><p xmlns='http://www.w3.org/1999/xhtml'>;</p>"
            "</ST></body></pou>");
    const Outcome outcome = RunLq("translate -", project);
    EXPECT_EQ(outcome.status, 1);
    for (const char* message : {
             "(standard input):9:1: List.good: a global of this name was declared before\n",
             ": the name has more than 65 characters\n",
             "(standard input):11:1: List.Bad__Name: the name is no identifier\n",
             "(standard input):12:1: List.NoType: no type of this name is known\n",
             "List.NoValue: the initial value does not read as one constant\n",
             "(standard input):5:83: P.Missing: no global of this name was entered\n",
         }) {
        EXPECT_THAT(outcome.err, HasSubstr(message));
    }
    EXPECT_THAT(outcome.out, HasSubstr("7 declarations, 6 refused"));
}

TEST(Translate, AProjectWithoutDeclarations) {
    const Outcome outcome = RunLq("translate - -o empty.lqt", Project(""));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "(standard input): the project has no declarations\n");
    EXPECT_EQ(ReadFile(TestFolder() + "/empty.lqt"), std::string(40, '\0'));
}

TEST(Translate, WhatTheReaderDoesNotKnowIsReported) {
    const Outcome outcome = RunLq("translate -", Project("<strange/>" + Variable("a")));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, MatchesRegex("\\(standard input\\):7:[0-9]+: .*strange(.|\n)*"));
}

TEST(Show, FindsAComponentInItsUnitOnly) {
    const std::string unit = "<interface><localVars>" + Variable("x") +
                             "</localVars></interface><body><ST><p "
                             "xmlns='http://www.w3.org/1999/xhtml'>;</p></ST></body>";
    const std::string project =
        Project("", "<pou name='A' pouType='program'>" + unit +
                        "</pou><pou name='B' pouType='program'>" + unit + "</pou>");
    const auto lines = [](const std::string& text) {
        return std::count(text.begin(), text.end(), '\n');
    };
    EXPECT_EQ(lines(RunLq("show - --table components --find x", project).out), 4);
    const std::string only = RunLq("show - --table components --find b.X", project).out;
    EXPECT_EQ(lines(only), 3);
    EXPECT_THAT(only, HasSubstr("\tB\tx\tVAR\tINT"));
    const Outcome none = RunLq("show - --find C.x", project);
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(none.err, HasSubstr("nothing is called 'C.x'; did you mean 'A.x'?"));
    EXPECT_EQ(RunLq("show - --json --find C.x", project).status, 1);
}

TEST(Scan, TokensAndErrors) {
    const std::string source = "x := T#1h; (* c *)\n  %QX1.2 'it$'s' 16#G {";
    EXPECT_EQ(RunLq("scan -", source).out,
              "1:1\tidentifier\tx\n"
              "1:3\toperator\t:=\n"
              "1:6\ttime\tT#1h\t3600000 ms\n"
              "1:10\toperator\t;\n"
              "1:12\tcomment\t(* c *)\t c \n"
              "2:3\taddress\t%QX1.2\toutput bit 1.2\n"
              "2:10\tstring\t'it$'s'\tit's\n"
              "2:18\terror\t16#\tmalformed number with a base, or one that needs more than 32 "
              "bits\n"
              "2:21\tidentifier\tG\n"
              "2:23\terror\t{\tno token begins with this character\n");
    WriteFile(TestFolder() + "/a.st", source);
    const Outcome errors = RunLq("scan --errors a.st");
    EXPECT_EQ(errors.status, 1);
    EXPECT_EQ(errors.out,
              "a.st:2:18: malformed number with a base, or one that needs more than 32 bits: 16#\n"
              "a.st:2:23: no token begins with this character: {\n");
    EXPECT_THAT(RunLq("scan - --json", "a").out, HasSubstr("\"kind\":\"identifier\""));
}

TEST(Scan, PlacesAreWhereTokensBegin) {
    struct Case {
        std::string source;
        const char* places;  // of all tokens
    };
    for (const Case& c : {
             Case{"\tx", "1:2"},
             Case{"x\ny", "1:1 1:2 2:1"},
             Case{"x\r\n y", "1:1 2:2"},
             Case{"\xC3\xA4 y", "1:1 1:3"},
             Case{"(* \xF0\x9F\x98\x80 *) y", "1:1 1:9"},  // a pair of UTF-16
             Case{"\n x (* a\r\n\nb *) y", "2:2 2:4 4:6"},
             Case{"'a\nb' y\n 'c\nd", "1:1 2:4 3:2"},  // the last one does not end
             Case{"x\n  (*\n\n", "1:1 2:3"},
             Case{"'" + std::string(5000, 'a') + "' y", "1:1 1:5004"},
             Case{"a\rb", "1:1 1:2 1:3"},
         }) {
        std::string places;
        std::istringstream lines(RunLq("scan -", c.source).out);
        for (std::string line; std::getline(lines, line);) {
            places += (places.empty() ? "" : " ") + line.substr(0, line.find('\t'));
        }
        EXPECT_EQ(places, c.places) << c.source;
    }
}

TEST(Scan, LongTokensAreWhole) {
    const std::string as(5000, 'a');
    struct Case {
        std::string source, value;
    };
    for (const Case& c : {
             Case{as, ""},
             Case{"(*" + as + "*)", as},
             Case{"'" + as + "$'$n$41'", as + "'\\r\\nA"},
             Case{"%QX1_" + std::string(5000, '2'), "output bit 1" + std::string(5000, '2')},
             Case{"(*" + as, "the comment does not end"},
         }) {
        const std::string out = RunLq("scan -", c.source).out;
        const size_t text = out.find('\t', 4) + 1;  // behind the place and the kind
        EXPECT_TRUE(out.substr(text) == c.source + (c.value.empty() ? "" : "\t") + c.value + "\n")
            << out.substr(0, 20) << out.size();
        EXPECT_TRUE(RunLq("scan - --json", c.source).out.find("\"" + c.source + "\"") !=
                    std::string::npos)
            << out.substr(0, 20);
    }
}

TEST(Scan, ReadsTheEncodingsOfSources) {
    const std::string expected = "1:1\tidentifier\t\xC3\xA4\n";
    for (const std::string& source :
         {std::string("\xC3\xA4"), std::string("\xEF\xBB\xBF\xC3\xA4"),
          std::string("\xFF\xFE\xE4\x00", 4), std::string("\xFE\xFF\x00\xE4", 4)}) {
        const Outcome outcome = RunLq("scan -", source);
        EXPECT_EQ(outcome.out, expected);
        EXPECT_EQ(outcome.status, 0);
    }
    const Outcome cut = RunLq("scan -", "ab\xC3");
    EXPECT_EQ(cut.status, 2);
    EXPECT_THAT(cut.err, HasSubstr("at byte 2"));
}

TEST(Scan, TheMarkOfTheEndMayStandThere) {
    EXPECT_EQ(RunLq("scan -", "a\x1A").status, 0);
    const Outcome outcome = RunLq("scan -", "a\n\x1A b");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "1:1\tidentifier\ta\n");
    EXPECT_THAT(outcome.err, HasSubstr("(standard input):2:1: the text behind"));
}

TEST(Show, AnImageMayBeginAsAnXmlDocumentDoes) {
    // A first table of 0x3C20 bytes: a blank and a "less than".
    std::string image = std::string("\x20\x3C\x00\x00", 4) + std::string("\x1C\x3C\x00\x00", 4);
    image.resize(4 + 0x3C20 + 9 * 4);
    EXPECT_THAT(RunLq("show - --table names", image).err, Not(HasSubstr("XML")));
    EXPECT_EQ(RunLq("show - --table names", image).status, 0);
}

TEST(Value, ReadsConstantsFromStandardInput) {
    EXPECT_EQ(RunLq("value -", "5\n\n-6\r\n").out, RunLq("value 5 -6").out);
    EXPECT_EQ(RunLq("value -- -6").out, RunLq("value -6").out);
}

TEST(Translate, ANameDeclaredTwiceInAUnitIsEnteredOnce) {
    const std::string unit = "<pou name='P' pouType='program'><interface><localVars>" +
                             Variable("x") + Variable("X") +
                             "</localVars></interface><body><ST><p xmlns='http://www.w3.org/1999/"
                             "xhtml'>;</p></ST></body></pou>";
    const Outcome outcome = RunLq("translate -", Project("", unit));
    EXPECT_THAT(outcome.out, HasSubstr("components\t1\t"));
    EXPECT_THAT(outcome.err, HasSubstr("P.X: the unit has declared this name before"));
    EXPECT_THAT(RunLq("translate - -o -", Project("", unit)).err, HasSubstr("P.X: the unit has"));
}

TEST(Value, WhatIsNoConstantIsReported) {
    const Outcome outcome = RunLq("value abc 5");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "lq: 'abc' is no constant\n");
    EXPECT_EQ(RunLq("value -", "5\nabc").err, "(standard input):2:1: 'abc' is no constant\n");
    EXPECT_THAT(outcome.out, HasSubstr("5\tSINT\t5"));
}

TEST(Translate, RefusedLabelsStandInTheirText) {
    const std::string project =
        Project(Variable("g"),
                "<pou name='P' pouType='program'><interface/><body><IL>\n<p "
                "xmlns='http://www.w3.org/1999/xhtml'>Twice: LD g\n"
                "  Twice: ST g</p></IL></body></pou>");
    EXPECT_EQ(RunLq("translate -", project).err,
              "(standard input):7:3: P.Twice: the label is defined twice\n");
}

TEST(Help, TheVersionIsOneLine) {
    EXPECT_THAT(RunLq("--version").out, MatchesRegex("lq [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(Help, EveryCommandHasAnExampleThatWorks) {
    WriteFile(TestFolder() + "/plant.xml", ReadFile(LQ_TEST_EXAMPLES "/plant/plant.xml"));
    WriteFile(TestFolder() + "/mixer.st", "Ready := TRUE;");
    for (const std::string command :
         {"translate", "show", "report", "scan", "value", "pou", "fb", "tasks", "types"}) {
        const Outcome outcome = RunLq(command + " --help");
        EXPECT_EQ(outcome.status, 0);
        const std::string start = "Example:\n  lq ";
        ASSERT_THAT(outcome.out, StartsWith(start + command));
        EXPECT_EQ(RunLq(command + " -h").out, outcome.out);
        const size_t example = start.size();
        const Outcome run =
            RunLq(outcome.out.substr(example, outcome.out.find('\n', example) - example));
        EXPECT_EQ(run.status, 0) << command;
        EXPECT_EQ(run.err, "") << command;
    }
}

}  // namespace
}  // namespace lq::test
