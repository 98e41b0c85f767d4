// What the tool says, compared with files that were checked by eye: of the sample project and small
// inputs in golden/input, and every complaint in both languages. LQ_UPDATE_GOLDEN=1 writes them
// anew.
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/tools/run_lq.h"

namespace lq::test {
namespace {

const std::string kGolden = LQ_TEST_SOURCE "/tools/golden/";

void ExpectGolden(const std::string& file, const std::string& text) {
    if (std::getenv("LQ_UPDATE_GOLDEN")) {
        WriteFile(kGolden + file, text);
    }
    const std::string expected = ReadFile(kGolden + file);
    ASSERT_FALSE(expected.empty()) << file;
    EXPECT_EQ(text, expected) << file;
}

void CopyInputs() {
    std::filesystem::copy(kGolden + "input", TestFolder());
    std::filesystem::copy(LQ_TEST_EXAMPLES "/plant/plant.xml", TestFolder());
    // An image of the project that was written once: what it yields stays the same.
    std::filesystem::copy(LQ_TEST_SOURCE "/fuzz/image/plant.lqt", TestFolder());
}

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
    CopyInputs();
    const Outcome outcome = RunLq(GetParam().arguments);
    EXPECT_EQ(outcome.status, GetParam().status) << outcome.err;
    ExpectGolden(GetParam().file, outcome.out + outcome.err);
}

INSTANTIATE_TEST_SUITE_P(
    Sample, GoldenTest,
    testing::Values(
        Golden{"translate.txt", "translate plant.xml", 0},
        Golden{"translate.json", "translate plant.xml --json", 0},
        Golden{"show.txt", "show plant.xml", 0}, Golden{"show_image.txt", "show plant.lqt", 0},
        Golden{"show_image.txt", "show - <plant.lqt 2>&1 | sed 's/^(standard input):/plant.lqt:/'",
               0},
        Golden{"show_image.json",
               "translate one_type.st -o o >/dev/null; \"$LQ\" show o --json -t components; rm o",
               0},
        Golden{"show_units.txt", "show plant.xml --table units", 0},
        Golden{"show_units.json", "show plant.xml --table units --find clamp --json", 0},
        Golden{"show_find.txt", "show plant.xml --find Mixing.stirring", 0},
        Golden{"show_both.txt", "show twice.xml --table components --find x", 0},
        Golden{"show_one.txt", "show - --table components --find b.X <twice.xml", 0},
        Golden{"pou_program.txt", "pou plant.xml mixing", 0},
        Golden{"pou_function.json", "pou plant.xml Clamp --json", 0},
        Golden{"pou_interface.txt", "pou plant.xml Dosing --interface", 0},
        Golden{"pou_marked.json", "pou refused.xml P --json 2>/dev/null", 1},
        Golden{"pou_structure.txt", "pou plant.xml Recipe", 0},
        Golden{"tasks.txt", "tasks plant.xml", 0}, Golden{"symbols.txt", "symbols plant.xml", 0},
        Golden{"symbols_expanded.txt", "symbols symbols.xml --expand 2>/dev/null", 1},
        Golden{"symbols_cells.txt",
               "symbols cells.xml -e | cut -f 1,11 | LC_ALL=C sort | uniq -c | tr -s ' '", 0},
        Golden{"symbols_name.csv",
               "symbols symbols.xml --csv --bom --no-formulas -d ';' -s name 2>/dev/null", 1},
        Golden{"symbols_address.txt",
               "symbols symbols.xml --located --sort address -o list 2>/dev/null; s=$?; cat list; "
               "rm list; exit $s",
               1},
        Golden{"symbols_located.json",
               "symbols pumps.xml symbols.xml --located --expand -u drive --json", 1},
        Golden{"symbols_library.txt",
               "symbols symbols.xml -l pumps.xml -e -u main 2>/dev/null | grep unknown", 0},
        Golden{"symbols_libraries.txt", "symbols plant.xml -l pumps.xml --check-libraries -u Clamp",
               1},
        Golden{"check.txt", "check refused.xml 2>&1", 1},
        Golden{"check.json", "check plant.xml --json --only 1xxx -s 4010=error --fail-on error", 1},
        Golden{"check.jsonl", "check plant.xml --format jsonl --only hides-global", 0},
        Golden{"check.sarif",
               "check plant.xml --format sarif --only 1007 | sed -n '/\"results\"/,$p'", 0},
        Golden{"check_baseline.txt",
               "check refused.xml --json >base.json; \"$LQ\" check refused.xml -b base.json 2>&1",
               0},
        Golden{
            "check_settings.txt",
            "--version >/dev/null; printf '[check]\\nfail-on = warning\\n[severity]\\n8xxx = off\\n"
            "[ignore]\\n1007 = Mixing.st*\\n' >.lq.ini; \"$LQ\" check plant.xml 2>&1; s=$?; "
            "printf '[check]\\nonly = 4xxx, 1007\\nignore = 4010\\nbaseline = b.json\\n' >.lq.ini; "
            "echo '{\"findings\":[]}' >b.json; \"$LQ\" check plant.xml 2>&1; "
            "for line in 'a = 1' '[check]\\nlibrary =' '[check]\\nonly = 8'; do "
            "printf \"$line\" >.lq.ini; \"$LQ\" check plant.xml 2>&1; done; "
            "rm .lq.ini b.json; exit $s",
            1},
        Golden{"check_unread.txt",
               "check - <plant.lqt 2>&1; printf '<project>\\n<a' | \"$LQ\" check - --format jsonl "
               "--only 8xxx 2>&1",
               2},
        Golden{"check_explain.txt", "check --explain 4010", 0},
        Golden{"diff.txt", "diff old.xml new.xml", 1},
        Golden{"diff.json", "diff new.xml old.xml --json | head -45", 0},
        Golden{"diff_image.txt",
               "translate old.xml -o o >/dev/null 2>&1; \"$LQ\" diff o new.xml 2>/dev/null; s=$?; "
               "rm o; exit $s",
               1},
        Golden{"diff_images.txt", "diff plant.xml plant.lqt", 0},
        Golden{"fb.txt", "fb plant.xml Mixing stirring", 0}, Golden{"types.txt", "types", 0},
        Golden{"value.txt",
               "value 0 255 -5 300 16#FF 1.5 TRUE T#1h30m D#2024-02-29 "
               "TOD#12:30:15 DT#2000-01-01-00:00:01",
               0},
        Golden{"value_unsigned.json", "value -u --json 1 300", 0},
        Golden{"value_signs.txt", "value -- -6 -- +5", 1},
        Golden{"value_lines.txt", "value - <values.txt", 1},
        Golden{"refused.txt", "translate refused.xml", 1},
        Golden{"refused_show.txt", "show refused.xml", 1},
        Golden{"translate_files.json",
               "translate twice.xml refused.xml -l library.xml -l pumps.xml --check-libraries "
               "--json 2>/dev/null | grep -E '\\.xml|\"(name|list)\": \".{,9}\"'",
               0},
        Golden{"show_files.txt", "show twice.xml refused.xml -l library.xml -t globals 2>&1", 1},
        Golden{"tasks_files.txt", "tasks plant.xml twice.xml -l library.xml", 0},
        Golden{"uses.txt", "uses plant.xml mixing.STIRRING && $LQ uses plant.xml total", 0},
        Golden{"uses.json", "uses twice.xml Controller.Start --with plant.xml --json", 0},
        Golden{"uses_symbols.txt", "symbols plant.xml --uses -u Dosing -s name | cut -f 2,11", 0},
        Golden{"uses_counts.txt",
               "translate plant.xml --uses -o new.lqt >/dev/null && $LQ show new.lqt -f Start && "
               "$LQ show new.lqt -f valve; rm new.lqt",
               0},
        Golden{"fb_files.txt", "fb plant.xml main own -w pumps.xml", 1},
        Golden{"empty.txt", "translate empty.xml", 1}, Golden{"scan.txt", "scan tokens.st", 1},
        Golden{"scan.json", "scan tokens.st --json", 1},
        Golden{"scan_errors.txt", "scan --errors tokens.st", 1},
        Golden{"man.txt", "--generate man | sed 's/lq [0-9.]*\"/lq\"/'", 0},
        Golden{"bash.txt", "--generate bash", 0}, Golden{"zsh.txt", "--generate zsh", 0},
        Golden{"fish.txt", "--generate fish", 0}),
    [](const testing::TestParamInfo<Golden>& param) {
        std::string name = param.param.file;
        name.replace(name.find('.'), 1, "_");
        return name + "_" + std::to_string(param.index);
    });

// Gives the owner, "user" or "machine", a key that holds the line; null for none.
void Register(const std::string& owner, const char* line) {
    const std::string folder = TestFolder() + "/config/" + owner;
    std::filesystem::create_directories(folder);
    WriteFile(folder + "/registry.ini",
              line ? "[SOFTWARE\\Veldrane\\Talmor2\\" +
                         std::string(owner == "user" ? "App]\n" : "Startup\\App]\n") + line
                   : "");
}

// clang-format off
constexpr const char* kComplaints[] = {
    "", "frobnicate", "transalte", "SHOW", "show --tabel x", "show --tabel", "value --jsno 5",
    "scan a b", "--generate cake", "--generate", "show x --wrong", "translate", "fb a b", "report a",
    "translate a -o", "show a -t x --find=", "translate a --json -o b -oc --json",
    "scan a --json --errors=maybe", "translate ''", "show a --save ''", "value", "value \"$(printf '\\303')\"",
    "translate missing.xml", "translate folder", "translate bad.xml", "translate other.xml",
    "translate latin.xml", "translate - <nothing", "translate nothing", "show nothing", "scan nothing",
    "value - <nothing", "scan bad.st",
    "scan cut.st", "scan missing.st", "show folder", "report short.lqt -o page.html",
    "report plant.xml -o folder", "show short.lqt", "show long.lqt", "show behind.lqt", "show sign.lqt",
    "show plant.xml --table nothing", "show plant.xml --table Globls",
    "show plant.xml --find Nobody >/dev/null", "show twice.xml --find C.x", "show twice.xml --find A.",
    "show twice.xml --json --find Ax >/dev/null", "translate plant.xml -o no/such/folder.lqt",
    "translate plant.xml -o folder", "pou plant.xml Nobody", "pou plant.xml clmap",
    "pou plant.xml Nobody --interface --json", "pou plant.xml Mixing --interface",
    "fb plant.xml Mixin stirring", "fb plant.xml Nobody stirring --json", "value x -u",
    "translate - --json -o -", "show - --json --save -", "translate loop", "translate plant.xml -o loop",
    "translate - <folder", "scan - <&-", "translate - <&-", "translate /dev/tty", "types >&-",
    "translate plant.xml -o - >&-", "scan mark.st", "scan last.st",
    "show damaged.lqt", "translate refused.xml >/dev/null", "tasks - <refused.xml >/dev/null",
    "symbols plant.xml --csv --json", "symbols plant.xml --bom", "symbols plant.xml --csv -d ''",
    "symbols plant.xml --csv -d ::", "symbols plant.xml --csv -d '\"'", "symbols plant.xml --sort size",
    "symbols plant.xml --unit TON", "symbols plant.xml --unit Mixin", "symbols plant.xml empty.xml --unit Mixin",
    "symbols plant.xml -l pumps.xml --unit pump", "symbols plant.xml ./plant.xml",
    "symbols plant.xml -l plant.xml", "symbols plant.xml -l plant.lqt", "symbols plant.lqt",
    "symbols nothing", "symbols plant.xml -l missing.xml",
    "translate plant.lqt", "show plant.lqt plant.xml", "report plant.lqt -l pumps.xml -o page", "tasks plant.xml -l folder",
    "pou plant.xml Mixing -w ./plant.xml", "fb plant.xml Nobody x --with twice.xml", "fb plant.xml a x -w twice.xml",
    "translate words.xml >/dev/null", "pou refused.xml P >/dev/null", "translate bare.xml",
    "help nobody", "help show --wrong", "types --color=sometimes", "value abc --color always -q",
    "translate refused.xml -q >/dev/null", "translate plant.xml --color=",
    "translate empty.xml twice.xml -o twice.xml", "translate empty.xml -l plant.xml >/dev/null", "tasks a -l",
    "uses plant.xml lites", "uses plant.xml plant.start", "uses plant.lqt x", "uses plant.xml", "uses missing.xml x",
    "symbols plant.xml -o plant.xml", "symbols plant.xml -o no/such/folder", "symbols plant.xml -o /dev/full",
    "check", "check plant.xml --only 9999", "check plant.xml --ignore unused-varible",
    "check plant.xml -s 8001=loud", "check plant.xml -s 8001", "check plant.xml --format yaml",
    "check plant.xml --addresses word", "check plant.xml --edition 4", "check plant.xml --fail-on all", "check --explain nothing",
    "check plant.xml -b missing.json", "check plant.xml -b plant.xml", "check plant.xml -l plant.lqt",
    "check plant.xml -l missing.xml", "check --list --format sarif", "check plant.xml -l plant.xml", "check plant.lqt", "check missing.xml",
    "diff plant.xml", "diff - - <plant.xml", "diff plant.xml missing.xml", "diff bad.xml plant.xml",
    "diff plant.xml short.lqt", "diff plant.xml damaged.lqt", "diff folder plant.xml",
    "diff plant.lqt plant.xml", "diff refused.xml refused.xml",
    "symbols symbols.xml --expand 2>/dev/null | cut -f11 | LC_ALL=C sort -u",
};
// clang-format on

TEST(Language, ComplaintsAreInThatOfTheCodePage) {
    CopyInputs();
    const auto write = [](const char* name, const std::string& bytes) {
        WriteFile(TestFolder() + "/" + name, bytes);
    };
    write("nothing", "");
    write("bad.st", "a\n\xC3(");
    write("cut.st", "ab\xC3");
    write("mark.st", "a\n\x1A b");
    write("last.st", "a\x1A");
    write("bad.xml", "<project><a></project>");
    write("other.xml", "<html/>");
    write("bare.xml", "<project/>");
    write("latin.xml", "<?xml version='1.0' encoding='utf-8'?><project>\xE4</project>");
    write("short.lqt", std::string(39, '\0'));
    write("long.lqt", "\x05" + std::string(39, '\0'));
    write("behind.lqt", std::string(41, '\0'));
    write("sign.lqt", "<" + std::string(40, '\0'));  // it begins as XML does
    // A line of the table of names that has more characters than bytes.
    write("damaged.lqt", std::string(32, '\0') +
                             std::string("\x0A\0\0\0\x07\0\0\0\1\0a\0\1\0", 14) +
                             std::string(4, '\0'));
    RunShell("mkdir folder; ln -s loop loop");
    const std::vector<std::string> before = FilesIn(TestFolder());
    for (const char* page : {"1252", "932"}) {
        std::string text;
        for (const std::string arguments : kComplaints) {
            Register("user", ("CodePage=" + std::string(page) + "\n").c_str());
            const Outcome outcome = RunShell("setsid -w \"$LQ\" " + arguments);
            text += "$ lq " + arguments + "\n" + outcome.out + outcome.err;
            text += outcome.status == 2 ? "" : "[" + std::to_string(outcome.status) + "]\n";
            EXPECT_TRUE(outcome.status != 2 ||
                        std::count(outcome.err.begin(), outcome.err.end(), '\n') == 1)
                << arguments << "\n"
                << outcome.err;
        }
        ExpectGolden("complaints_" + std::string(page) + ".txt", text);
    }
    std::vector<std::string> after = FilesIn(TestFolder());
    std::erase(after, "config");
    EXPECT_EQ(after, before);
}

TEST(Language, IsThatOfTheFirstKey) {
    struct Case {
        const char* user;  // null without the key
        const char* machine;
        bool isJapanese;
    };
    for (const Case& c : {
             Case{nullptr, nullptr, false},
             Case{nullptr, "CodePage=932\n", true},
             Case{"CodePage=1252\n", "CodePage=932\n", false},
             Case{"", "CodePage=932\n", false},
             Case{"CodePage=936\n", nullptr, false},
         }) {
        Register("user", c.user);
        Register("machine", c.machine);
        EXPECT_EQ(RunLq("").err,
                  c.isJapanese ? "lq: コマンドが指定されていません。lq --helpを参照してください\n"
                               : "lq: no command was given; see lq --help\n")
            << (c.user ? c.user : "none") << ", " << (c.machine ? c.machine : "none");
    }
}

TEST(Language, IsThatOfTheEnvironmentWhereNoneIsRegistered) {
    const std::tuple<const char*, const char*, bool> cases[] = {
        {nullptr, "LANG=ja_JP.UTF-8", true},
        {nullptr, "LC_MESSAGES=ja LANG=C", true},
        {nullptr, "LC_ALL=C LANG=ja_JP.UTF-8", false},
        {nullptr, "LC_ALL= LANG=ja_JP", true},
        {"CodePage=1252\n", "LANG=ja_JP.UTF-8", false},
    };
    for (const auto& [line, environment, isJapanese] : cases) {
        if (line) {
            Register("user", line);
        }
        const Outcome outcome =
            RunShell("env -u LC_ALL -u LC_MESSAGES " + std::string(environment) + " $LQ frob");
        EXPECT_EQ(outcome.err.find("no command") == std::string::npos, isJapanese) << environment;
    }
}

TEST(Help, FitsATerminalAndHasTwoNames) {
    EXPECT_EQ(RunLq("help").out, RunLq("--help").out);
    for (const char* command : {"translate", "show", "report", "scan", "value", "pou", "fb",
                                "tasks", "symbols", "types"}) {
        const std::string help = RunLq(std::string("help ") + command + " x").out;
        EXPECT_EQ(help, RunLq(std::string(command) + " --help").out);
        std::istringstream lines(help);
        for (std::string line; std::getline(lines, line);) {
            EXPECT_LE(line.size(), 80U) << command << ": " << line;
        }
    }
}

TEST(Language, OfResultsOnlyTheMessagesAreInIt) {
    constexpr const char* kCommands[] = {"types", "show --help", "--generate man",
                                         "translate $EXAMPLES/plant/plant.xml"};
    std::string results[2];
    for (std::string& text : results) {
        for (const char* command : kCommands) {
            text += RunLq(command).out;
        }
        Register("user", "CodePage=932\n");
    }
    EXPECT_EQ(results[0], results[1]);
    EXPECT_EQ(RunLq("scan -", "a {").out,
              "1:1\tidentifier\ta\n1:3\terror\t{\tこの文字で始まるトークンはありません\n");
}

}  // namespace
}  // namespace lq::test
