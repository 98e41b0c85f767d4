// What commands do beyond what golden files show: streams, images, places, completion.
#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/run_lq.h"

namespace lq::test {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

TEST(Tool, AnInputIsNotOverwritten) {
    const std::string project = Project(Variable("a"));
    const std::string folder = TestFolder();
    mkdir((folder + "/folder").c_str(), 0777);
    for (const std::string script :
         {"translate p.xml -o p.xml", "translate p.xml -o folder/../p.xml",
          "translate p.xml -o soft.xml", "translate soft.xml -o hard.xml",
          "translate - -o p.xml <p.xml", "translate p.xml -o - 1<>p.xml", "report p.xml -o p.xml",
          "report hard.xml -o soft.xml", "symbols p.xml -o soft.xml",
          "show p.xml --save soft.xml"}) {
        WriteFile(folder + "/p.xml", project);
        const Outcome outcome =
            RunShell("ln -sf p.xml soft.xml; ln -f p.xml hard.xml; \"$LQ\" " + script);
        EXPECT_EQ(outcome.status, 2) << script;
        EXPECT_THAT(outcome.err, MatchesRegex("lq: .*: is the output, too, and would be "
                                              "overwritten\n"))
            << script;
        EXPECT_EQ(ReadFile(folder + "/p.xml"), project) << script;
    }
    ASSERT_EQ(RunLq("translate p.xml -o p.lqt").status, 0);
    EXPECT_EQ(RunLq("show p.lqt --save p.lqt").status, 0) << "it stays the same";
    EXPECT_EQ(RunShell("umask 027; \"$LQ\" translate p.xml -o new.lqt >o; stat -c %a new.lqt").out,
              "640\n");
}

// After it was read so far that its kind is known.
TEST(Tool, ReadingMayFailInTheMiddle) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);  // more than what is there cannot be read
    const std::string beginning = "<" + std::string(300, ' ');
    ASSERT_EQ(write(ends[1], beginning.data(), beginning.size()), 301);
    const Outcome outcome = RunLq("tasks - <&" + std::to_string(ends[0]));
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, MatchesRegex("lq: .standard input.: cannot be read: [A-Z].*\n"));
    close(ends[0]);
    close(ends[1]);
}

TEST(Tool, ImagesComeBackAsTheSameBytes) {
    ASSERT_EQ(RunLq("translate $EXAMPLES/plant/plant.xml -o a.lqt").status, 0);
    const std::string bytes = ReadFile(TestFolder() + "/a.lqt");
    for (const char* command :
         {"translate - -o b.lqt <$EXAMPLES/plant/plant.xml", "show a.lqt -q --save b.lqt",
          "translate $EXAMPLES/plant/plant.xml -o - >b.lqt", "show - --save - <a.lqt >b.lqt"}) {
        EXPECT_EQ(RunLq(command).err, "");
        EXPECT_EQ(ReadFile(TestFolder() + "/b.lqt"), bytes) << command;
    }
    EXPECT_EQ(RunLq("translate - -o empty.lqt", Project("")).status, 1);
    EXPECT_EQ(ReadFile(TestFolder() + "/empty.lqt"), std::string(40, '\0'));
    // One that begins as an XML document does: a table of 0x3C20 bytes, a blank and a "less than".
    std::string image = std::string("\x20\x3C\x00\x00", 4) + std::string("\x1C\x3C\x00\x00", 4);
    image.resize(4 + 0x3C20 + 9 * 4);
    EXPECT_EQ(RunLq("show - --table names", image).status, 0);
    // Projects in UTF-16, of either order, with a mark and without.
    for (const std::string order : {"le", "be"}) {
        for (const std::string mark : {"", order == "le" ? "\\377\\376" : "\\376\\377"}) {
            const Outcome outcome =
                RunShell("sed 's/UTF-8/UTF-16/' $EXAMPLES/plant/plant.xml | iconv -t utf-16" +
                         order + " >p; { printf '" + mark +
                         "'; sleep 0.1; cat p; } | \"$LQ\" show - --save - >b.lqt");
            EXPECT_EQ(outcome.err, "") << order << mark;
            EXPECT_EQ(ReadFile(TestFolder() + "/b.lqt"), bytes) << order << mark;
        }
    }
}

// A folder is the files in it, in the order of their names; each that cannot be read gives one
// message.
TEST(Folders, AreTheFilesInThem) {
    const char* const files =
        "mkdir -p src/b src/.git src/z; ln -s .. src/b/loop; ln -s ../a.st src/b/again.st; "
        "ln -s nowhere src/gone.st; "
        "var() { printf \"VAR_GLOBAL $1 : INT; END_VAR\" > src/$2; }; "
        "var g1 a.st; var g2 b/B.GVL; var g3 c.iec; var g4 d.foo; var g5 .hidden.st; "
        "var g6 .git/x.st; printf '' > src/e.txt; printf '\\001\\347' > src/f.pou; "
        "printf '<a/>' > src/g.xml; printf 'VAR_GLOBAL w : INT; (* \\344 *) END_VAR' > src/h.dut; "
        "cp $EXAMPLES/plant/plant.xml $EXAMPLES/plant/plant.st src/z; \"$LQ\" ";
    const std::string messages =
        "src/gone.st: error: cannot be opened: No such file or directory "
        "[0001 unreadable]\n"
        "src/e.txt: warning: the file holds no declaration [0019 not-read]\n"
        "src/f.pou:1:2: error: is not text: the UTF-8 character is broken off at byte 1 "
        "[0001 unreadable]\n"
        "src/g.xml:1:1: error: the file is no PLCopen project: its root element is <a> "
        "[0001 unreadable]\n"
        "src/z/plant.st: warning: was left out: it declares what src/z/plant.xml declares "
        "[0019 not-read]\n";
    const std::string listed =
        "symbols src --csv | grep -v z/plant | cut -d , -f 2,7,8 | tail -n +2";
    const Outcome plain = RunShell(files + listed);
    EXPECT_EQ(plain.out, "g1,,src/a.st\ng2,,src/b/B.GVL\ng3,,src/c.iec\nw,\xC3\xA4,src/h.dut\n");
    EXPECT_EQ(plain.err, messages);
    const Outcome more = RunShell("\"$LQ\" symbols src --ending .FOO --csv | grep -c g4");
    EXPECT_EQ(more.out, "1\n");
    EXPECT_EQ(RunLq("translate src").status, 1);
    for (const auto& [arguments, message] :
         {std::pair("src --ending foo", "'foo' is no ending of a file's name, such as '.st'"),
          std::pair("src --encoding x",
                    "texts are not read in 'x', only in windows-1252 or shift_jis"),
          std::pair("src src/a.st", "src/a.st: is given twice"),
          std::pair("src/f.pou", "src/f.pou:1:2: error: is not text")}) {
        const Outcome outcome = RunLq(std::string("translate ") + arguments);
        EXPECT_EQ(outcome.status, 2) << arguments;
        EXPECT_THAT(outcome.err, HasSubstr(message)) << arguments;
    }
}

TEST(Show, FindsLinesByTheirTextsToo) {
    for (const auto& [name, table] :
         {std::pair("%ix0.1", "addresses\n"), std::pair("array [0..2, -1..1] of int", "arrays\n"),
          std::pair("'READY'", "constants\n"), std::pair("dosing.FINISH", "labels\n"),
          std::pair("%X0.1", ""), std::pair("0..2, -1..1] OF INT", ""), std::pair("'rea", "")}) {
        const std::string out =
            RunLq("show $EXAMPLES/plant/plant.xml --find \"" + std::string(name) + "\"").out;
        EXPECT_EQ(out.substr(0, out.find('\n') + 1), table) << name;
    }
}

TEST(Scan, PlacesAreWhereTokensBegin) {
    const std::pair<std::string, const char*> cases[] = {
        {"\tx", "1:2"},
        {"x\ny", "1:1 1:2 2:1"},
        {"x\r\n y", "1:1 2:2"},
        {"\xC3\xA4 y", "1:1 1:3"},
        {"(* \xF0\x9F\x98\x80 *) y", "1:1 1:9"},  // a pair of UTF-16
        {"\n x (* a\r\n\nb *) y", "2:2 2:4 4:6"},
        {"'a\nb' y\n 'c\nd", "1:1 2:4 3:2"},  // the last one does not end
        {"x\n  (*\n\n", "1:1 2:3"},
        {"'" + std::string(5000, 'a') + "' y", "1:1 1:5004"},
        {"a\rb", "1:1 1:2 1:3"},
    };
    for (const auto& [source, expected] : cases) {
        std::string places;
        std::istringstream lines(RunLq("scan -", source).out);
        for (std::string line; std::getline(lines, line);) {
            places += (places.empty() ? "" : " ") + line.substr(0, line.find('\t'));
        }
        EXPECT_EQ(places, expected) << source;
    }
}

TEST(Scan, LongTokensAreWhole) {
    const std::string as(5000, 'a');
    const std::pair<std::string, std::string> cases[] = {
        {as, ""},
        {"(*" + as + "*)", as},
        {"'" + as + "$'$n$41\n'", as + "'\\r\\nA"},
        {"%QX1_" + std::string(5000, '2'), "output bit 1" + std::string(5000, '2')},
        {"(*" + as, "the comment does not end"},
    };
    for (const auto& [source, value] : cases) {
        const std::string shown =
            source.back() == '\'' ? source.substr(0, source.size() - 2) + "\\n'" : source;
        const std::string out = RunLq("scan -", source).out;
        const size_t text = out.find('\t', 4) + 1;  // behind the place and the kind
        EXPECT_TRUE(out.substr(text) == shown + (value.empty() ? "" : "\t") + value + "\n")
            << out.substr(0, 20) << out.size();
        EXPECT_NE(RunLq("scan - --json", source).out.find("\"" + shown + "\""), out.npos)
            << out.substr(0, 20);
    }
}

TEST(Scan, ReadsTheEncodingsOfSources) {
    for (const std::string& source :
         {std::string("\xC3\xA4"), std::string("\xEF\xBB\xBF\xC3\xA4"),
          std::string("\xFF\xFE\xE4\x00", 4), std::string("\xFE\xFF\x00\xE4", 4)}) {
        const Outcome outcome = RunLq("scan -", source);
        EXPECT_EQ(outcome.out, "1:1\tidentifier\t\xC3\xA4\n");
        EXPECT_EQ(outcome.status, 0);
    }
}

TEST(Help, EveryCommandHasAnExampleThatWorks) {
    EXPECT_THAT(RunLq("--version").out, MatchesRegex("lq [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    for (const char* name : {"/plant.xml", "/old.xml"}) {
        WriteFile(TestFolder() + name, ReadFile(LQ_TEST_EXAMPLES "/plant/plant.xml"));
    }
    WriteFile(TestFolder() + "/mixer.st", "Ready := TRUE;");
    for (const std::string command : {"translate", "show", "report", "scan", "value", "pou", "fb",
                                      "tasks", "symbols", "diff", "types"}) {
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

TEST(Manual, BashCompletes) {
    // The last word is completed.
    const std::pair<std::string, std::string> cases[] = {
        {"lq t", "translate tasks types "},
        {"lq --v", "--version "},
        {"lq --generate z", "zsh "},
        {"lq show --table g", "globals "},
        {"lq show -t co", "components constants "},
        {"lq show plant.lqt --s", "--save "},
        {"lq translate -o p", " "},
        {"lq symbols p --sort a", "address "},
        {"lq translate p", " "},
    };
    for (const auto& [words, expected] : cases) {
        const std::string complete =
            "\"$LQ\" --generate bash >lq.bash; bash -c '. ./lq.bash; COMP_WORDS=(" + words +
            "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _lq; printf \"%s \" ${COMPREPLY[@]}'";
        EXPECT_EQ(RunShell(complete).out, expected) << words;
    }
}

// Where the programs are part of the system.
TEST(Manual, ShellsAndTheFormatterTakeThem) {
    for (const std::string check : {"bash -n", "zsh -n", "fish -n", "man --warnings -l"}) {
        const std::string program = check.substr(0, check.find(' '));
        const Outcome outcome =
            RunShell("command -v " + program + " >/dev/null || exit 0; \"$LQ\" --generate " +
                     program + " >text; " + check + " text >/dev/null");
        EXPECT_EQ(outcome.err, "") << program;
        EXPECT_EQ(outcome.status, 0) << program;
    }
}

}  // namespace
}  // namespace lq::test
