// What holds of every text: nothing is lost, places are right, memory may be short.
#include <fstream>
#include <map>
#include <new>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lq_data/host/text/message.h"
#include "tests/host/plcopen/plcopen_util.h"
#include "tests/support/memory_jobs.h"

namespace {

using namespace lq::host;

std::string Plant(const std::string& ending) {
    std::ostringstream bytes;
    bytes << std::ifstream(LQ_TEST_EXAMPLES "/plant/plant." + ending).rdbuf();
    return bytes.str();
}

// All that is declared, with what the tables get of it, but for places and the lists' names.
std::string Declared(const Project& project) {
    std::ostringstream all;
    for (const Declaration& one : project.Declarations()) {
        for (const Text text : {one.name, one.type, one.initValue, one.address, one.comment}) {
            all << EncodeUtf8(text) << "|";
        }
        all << EncodeUtf8(WrittenSection(one.section)) << "\n";
    }
    for (const DataType& type : project.DataTypes()) {
        all << EncodeUtf8(type.name) << "|" << EncodeUtf8(type.baseType) << "|"
            << EncodeUtf8(type.initValue) << "|" << EncodeUtf8(type.comment) << "\n";
    }
    for (const Task& task : project.Tasks()) {
        all << EncodeUtf8(task.name) << task.programs.size() << EncodeUtf8(task.interval)
            << EncodeUtf8(task.event) << EncodeUtf8(task.priority) << "\n";
    }
    for (const Pou& pou : project.Pous()) {
        all << EncodeUtf8(pou.name) << EncodeUtf8(pou.resultType) << EncodeUtf8(pou.comment)
            << pou.bodies.size() << "\n";
    }
    return all.str();
}

TEST(TextSource, TheSampleIsTheSameAsItsDocument) {
    ReadProject text;
    text.ReadAsText(Plant("st"));
    EXPECT_EQ(text.Told(), "");
    EXPECT_EQ(Declared(text.project), Declared(ReadProject(Plant("xml")).project));
}

// Whatever sign of the sample is missing, each name that it declares is in the project, or a report
// tells its line or itself. One fault has few reports.
TEST(TextSource, NoNameIsLost) {
    const std::string whole = Plant("st");
    ReadProject original;
    original.ReadAsText(whole);
    for (std::size_t at = whole.find("TYPE"); at < whole.size(); ++at) {
        const bool isOfComment = whole[at - 1] == '*' || whole[at + 1] == '*';
        if (isOfComment || std::string(":;,()[]=").find(whole[at]) == std::string::npos) {
            continue;
        }
        SCOPED_TRACE(whole.substr(at < 40 ? 0 : at - 40, 60));
        ReadProject read;
        read.ReadAsText(std::string(whole).replace(at, 1, " "));
        std::map<std::pair<std::string, uint32_t>, int> found;
        for (const Declaration& one : read.project.Declarations()) {
            ++found[{EncodeUtf8(one.name), one.line}];
        }
        std::set<uint32_t> lines;
        for (const Report& report : read.reports) {
            lines.insert(report.line);
        }
        const std::string told = read.Told();
        for (const Declaration& one : original.project.Declarations()) {
            const std::string name = EncodeUtf8(one.name);
            EXPECT_TRUE(--found[std::pair(name, one.line)] >= 0 || lines.contains(one.line) ||
                        told.find("'" + name + "'") != told.npos)
                << name << " of line " << one.line << "\n"
                << told;
        }
        EXPECT_LE(read.reports.size(), 3u) << told;
    }
}

TEST(TextSource, ReadsTheEncodingsOfSources) {
    const std::string umlaut = "VAR_GLOBAL a : INT; // \xFC\nEND_VAR";
    const std::string kanji = "VAR_GLOBAL a : INT; // \x8F\x81\nEND_VAR";
    const struct {
        std::string bytes;
        std::optional<TextEncoding> codePage;
        uint32_t language;
        const char* comment;  // or the report
    } cases[] = {
        {umlaut, {}, 1252, "\xC3\xBC"},
        {umlaut, TextEncoding::kWindows1252, 932, "\xC3\xBC"},
        {umlaut, TextEncoding::kShiftJis, 1252,
         "test.st:1:24: error: is not text: these bytes are no character of the code page at byte "
         "23"},
        {kanji, {}, 932, "\xE6\xBD\xA4"},
        {kanji, TextEncoding::kShiftJis, 1252, "\xE6\xBD\xA4"},
        {umlaut + '\x01',
         {},
         1252,
         "test.st:1:24: error: is not text: this byte cannot begin a UTF-8 character at byte 23"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.comment);
        UseLanguage(c.language);
        std::istringstream source(c.bytes);
        Project project;
        std::vector<Report> reports;
        const bool isRead = ReadText(source, "test.st", project, reports, c.codePage);
        UseLanguage(1252);
        EXPECT_EQ(
            isRead ? EncodeUtf8(project.Declarations().back().comment) : ToText(reports.at(0)),
            c.comment);
    }
}

TEST(TextSource, TellsInstructionsFromStatements) {
    const struct {
        Language language;
        const char* bodies;
    } cases[] = {
        {Language::kIl,
         "LD -5|LD +1|LD INT#-5|LD a[1].b^|ld\ta ST b|LD a;\nST b;|RET|& a|"
         "LIMIT(\nMN := 1,\nIN := a\n)\nST b|LIMIT(MN := 1, IN := a)\nST b|F(\nx := 1\n)|"
         "F 1, 2|F -1, a.b\nST c|F a ST c|F\nST b|SIN a|a.f(x := 1)\nST b|"
         "LD(\nLD a\nOR b\n)\nST c|L1:\nL2:\n(* ; *)\nL3: LD a|L1: S: S a|NOP\nL1:\nRET|"
         "CAL t(IN := a, PT := T#1s)|CAL t(\nIN := a)|IN t|JMP L1|Step\nST b"},
        {Language::kSt,
         "S := 1;|S\n:= 1;|S(a);|S\n(\na := 1);|S - 5;|LD -\n5;|IN S= a;|r REF= a;|"
         "a^.b[1] := 2;|%QX0.0 := a;|;;|F(1);|F(\na := 1\n);|F(a).b := 1;|F(a)\nb := "
         "1;|F(\nAction[1],\nTest AND b);|"
         "ADD(1,\n2);|F;|F\nb := 1;|F(a)|F|REGION x\ny := 1;|RETURN\n;|EXIT|IF a THEN|a b;|"
         "a b + c;|x INT;|JMP L1;\na := 1;\nL1: b := 1;|L1:\na := 1;|L1:|Step := 1;|"
         "Transition(a);|F(a\nb := 1;|MAX := 1;|a : INT := LD;"},
        {Language::kSfc, "INITIAL_STEP a: END_STEP|STEP a|TRANSITION (PRIORITY := 1) FROM a"},
    };
    for (const auto& c : cases) {
        std::istringstream rows(c.bodies);
        for (std::string row; std::getline(rows, row, '|');) {
            for (const std::string before : {"", "ACTION f: "}) {
                const std::string text = before + row;
                ReadProject read;
                read.ReadAsText("PROGRAM p\n" + text + "\nEND_PROGRAM\nPROGRAM q\nEND_PROGRAM");
                ASSERT_EQ(read.project.Pous().back().bodies.size(), 0u) << text;
                const std::vector<Body>& bodies = read.project.Pous().end()[-2].bodies;
                ASSERT_EQ(bodies.size(), 1u) << text;
                EXPECT_EQ(bodies[0].language, c.language) << text;
            }
        }
    }
}

// Whatever character the end of a piece of the bytes goes through.
TEST(TextSource, ReadsLongTextsInPieces) {
    const std::string head = "VAR_GLOBAL a : INT; // ";
    for (const std::string character : {"\xC3\xBC", "\xE6\xBD\xA4", "\xF0\x9F\x98\x80", "\xFC"}) {
        std::string comment;
        while (comment.size() < 70'000) {
            comment += character;
        }
        for (const std::string shift : {"", "x", "xx", "xxx"}) {
            std::istringstream source(head + shift + comment + "\nEND_VAR");
            Project project;
            std::vector<Report> reports;
            ASSERT_TRUE(ReadText(source, "test.st", project, reports));
            ASSERT_EQ(reports.size(), 0u);
            std::string expected = comment;
            if (character.size() == 1) {  // windows-1252
                expected.clear();
                while (expected.size() < 2 * comment.size()) {
                    expected += "\xC3\xBC";
                }
            }
            EXPECT_TRUE(EncodeUtf8(project.Declarations().back().comment) == shift + expected);
        }
    }
}

// A long text is given back as it is read: what is read is the same as of a text that stays.
TEST(TextSource, ForgetsNothingThatIsNeeded) {
    std::string text;
    for (int i = 0; text.size() < 3'000'000; ++i) {
        const std::string number = std::to_string(i);
        text += "(* of " + number + " *)\nPROGRAM P" + number + " VAR a : T" + number + "; (* " +
                std::string(500, 'x') + " *) END_VAR\nEND_FUNCTION // b\n";
    }
    ReadProject forgets;
    forgets.ReadAsText(text);
    ReadProject stays;
    std::u16string wide;
    DecodeUtf8(text, wide);
    ReadText(wide, "src/test.st", stays.project, stays.reports);
    EXPECT_TRUE(Declared(forgets.project) == Declared(stays.project));
    EXPECT_TRUE(forgets.Told() == stays.Told());
    EXPECT_GT(stays.project.Pous().size(), 1000u);
}

TEST(TextSource, WantOfMemoryIsAReport) {
    lq::test::RunWithFailures(
        {"reading", []() -> lq::test::Attempt {
             return [] {
                 try {
                     ReadProject read;
                     read.ReadAsText(Plant("st"));
                     const bool isShort =
                         !read.complete && read.reports.back().message == "memory is short";
                     return isShort ? lq::test::kShort : Declared(read.project) + read.Told();
                 } catch (const std::bad_alloc&) {
                     return lq::test::kShort;  // the project itself
                 }
             };
         }});
}

}  // namespace
