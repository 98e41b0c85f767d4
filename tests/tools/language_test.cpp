// Messages in the language of the registered code page.
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/run_lq.h"

namespace lq::test {
namespace {

// Gives the owner, "user" or "machine", a key that holds the line; null for none.
void Register(const std::string& owner, const char* line) {
    const std::string key = owner == "user" ? "App" : "Startup\\App";
    const std::string folder = TestFolder() + "/config/" + owner;
    std::filesystem::create_directories(folder);
    WriteFile(folder + "/registry.ini",
              line ? "[SOFTWARE\\Veldrane\\Talmor2\\" + key + "]\n" + line : "");
}

TEST(Language, MessagesAreInThatOfTheCodePage) {
    const std::string faulty =
        Project("<strange/>" + Variable("B", "<derived name='Nobody'/>") + "<strange/>");
    struct Case {
        const char* arguments;
        std::string input;
        const char* english;
        const char* japanese;
    };
    for (const Case& c : {
             Case{"transalte", "",
                  "lq: no command is called 'transalte'; did you mean 'translate'?\n",
                  "lq: コマンド「transalte」はありません。「translate」のことですか\n"},
             Case{"show x --wrong", "", "lq: no option is called '--wrong'; see lq show --help\n",
                  "lq: オプション「--wrong」はありません。lq show --helpを参照してください\n"},
             Case{"translate missing.xml", "",
                  "lq: missing.xml: cannot be opened: No such file or directory\n",
                  "lq: missing.xml: 開けません: No such file or directory\n"},
             Case{"show -", "abc",
                  "lq: (standard input): no image of tables: it ends before the length of table "
                  "debug\n",
                  "lq: (standard input): "
                  "テーブルのイメージではありません: テーブルdebugの長さより前で終わっています\n"},
             Case{"scan -", "a\xC3(",
                  "(standard input):1:2: is not text: the UTF-8 character is broken off at byte "
                  "1\n",
                  "(standard input):1:2: "
                  "テキストではありません: バイト位置1: UTF-8の文字が途中で切れています\n"},
             Case{"translate -", "<project><a></project>",
                  "(standard input):1:1: error: the file is no PLCopen project: its root element "
                  "is <{}project>\n",
                  "(standard input):1:1: "
                  "エラー: ファイルはPLCopenのプロジェクトではありません: "
                  "ルート要素が<{}project>です\n"},
             Case{
                 "translate -", "",
                 "(standard input):1:1: error: the file is not well-formed XML: no element found\n",
                 "(standard input):1:1: "
                 "エラー: ファイルは整形式のXMLではありません: 要素がありません\n"},
             Case{"value x -u", "", "lq: 'x' is no constant\n", "lq: 「x」は定数ではありません\n"},
             Case{"show - --find Nobody >out", Project(Variable("a")),
                  "(standard input): nothing is called 'Nobody'\n",
                  "(standard input): 「Nobody」という名前のものはありません\n"},
             Case{"translate - >out", faulty,
                  "(standard input):7:25: project/instances/configurations/configuration[c]/"
                  "resource[r]/globalVars[List]/strange: <strange> in <globalVars> is not known "
                  "and was left out (and 1 more)\n"
                  "(standard input):7:35: List.B: no type of this name is known\n",
                  "(standard input):7:25: project/instances/configurations/configuration[c]/"
                  "resource[r]/globalVars[List]/strange: "
                  "<globalVars>の中の<strange>は未知の要素なので除外しました（ほか1件）\n"
                  "(standard input):7:35: List.B: この名前の型はありません\n"},
         }) {
        for (const bool isJapanese : {false, true}) {
            Register("user", isJapanese ? "CodePage=932\n" : "CodePage=1252\n");
            EXPECT_EQ(RunLq(c.arguments, c.input).err, isJapanese ? c.japanese : c.english)
                << c.arguments << " of " << c.input;
        }
    }
}

TEST(Language, ComplaintsAboutTheCommandLineAreInItToo) {
    struct Case {
        const char* arguments;
        const char* english;
        const char* japanese;
        const char* help;  // the one that they point to
    };
    for (const Case& c : {
             Case{"translate", "translate: the argument 'project' is missing",
                  "translate: 引数「project」が指定されていません", "lq translate --help"},
             Case{"fb a b", "fb: the argument 'instance' is missing",
                  "fb: 引数「instance」が指定されていません", "lq fb --help"},
             Case{"report a", "report: the option '--output' is missing",
                  "report: オプション「--output」が指定されていません", "lq report --help"},
             Case{"translate a -o", "translate: the option '--output' needs a value",
                  "translate: オプション「--output」の値が指定されていません",
                  "lq translate --help"},
             Case{"show a -t x --find=", "show: the option '--find' needs a value",
                  "show: オプション「--find」の値が指定されていません", "lq show --help"},
             Case{"--generate", "the option '--generate' needs a value",
                  "オプション「--generate」の値が指定されていません", "lq --help"},
             Case{"translate a --json -o b -oc --json",
                  "translate: the option '--output' may be given only once",
                  "translate: オプション「--output」は1回しか指定できません",
                  "lq translate --help"},
             Case{"scan a --json --errors=maybe",
                  "scan: the option '--errors' cannot have the value 'maybe'",
                  "scan: オプション「--errors」に値「maybe」は指定できません", "lq scan --help"},
             Case{"translate ''", "translate: the argument 'project' is empty",
                  "translate: 引数「project」が空です", "lq translate --help"},
             Case{"show a --save ''", "show: the value of the option '--save' is empty",
                  "show: オプション「--save」の値が空です", "lq show --help"},
         }) {
        const auto expect = [&](const std::string& message) {
            const Outcome outcome = RunLq(c.arguments);
            EXPECT_EQ(outcome.err, "lq: " + message + "\n");
            EXPECT_EQ(outcome.status, 2) << c.arguments;
        };
        Register("user", "");
        expect(std::string(c.english) + "; see " + c.help);
        Register("user", "CodePage=932\n");
        expect(std::string(c.japanese) + "。" + c.help + "を参照してください");
    }
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
        std::filesystem::remove_all(TestFolder() + "/config");
        Register("user", c.user);
        Register("machine", c.machine);
        EXPECT_EQ(RunLq("").err,
                  c.isJapanese ? "lq: コマンドが指定されていません。lq --helpを参照してください\n"
                               : "lq: no command was given; see lq --help\n")
            << (c.user ? c.user : "none") << ", " << (c.machine ? c.machine : "none");
    }
}

TEST(Language, OfResultsOnlyTheMessagesAreInIt) {
    constexpr const char* kCommands[] = {"types", "show --help", "--generate man",
                                         "translate $EXAMPLES/plant/plant.xml"};
    std::vector<std::string> english;
    for (const char* command : kCommands) {
        english.push_back(RunLq(command).out);
    }
    Register("user", "CodePage=932\n");
    for (size_t i = 0; i < std::size(kCommands); ++i) {
        EXPECT_EQ(RunLq(kCommands[i]).out, english[i]) << kCommands[i];
    }
    EXPECT_EQ(RunLq("scan -", "a {").out,
              "1:1\tidentifier\ta\n1:3\terror\t{\tこの文字で始まるトークンはありません\n");
}

}  // namespace
}  // namespace lq::test
