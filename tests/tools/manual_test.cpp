// The man page and the completions, against what help says.
#include <cstdlib>
#include <regex>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/run_lq.h"

namespace lq::test {
namespace {

using testing::HasSubstr;

// The matches' first groups.
std::set<std::string> Find(const std::string& text, const char* pattern) {
    std::set<std::string> found;
    const std::regex regex(pattern, std::regex::ECMAScript | std::regex::multiline);
    for (std::sregex_iterator at(text.begin(), text.end(), regex), end; at != end; ++at) {
        found.insert((*at)[1].str());
    }
    return found;
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    for (size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

bool HasProgram(const std::string& name) {
    return std::system(("command -v " + name + " >/dev/null").c_str()) == 0;
}

int Shell(const std::string& command) {
    return std::system(("cd '" + TestFolder() + "' && " + command).c_str());
}

TEST(Manual, EveryCommandAndOptionOccurs) {
    const std::string help = RunLq("--help").out;
    const auto commands = Find(help.substr(help.find("Subcommands:")), "^  ([a-z]+) ");
    ASSERT_EQ(commands.size(), 9u) << help;
    std::string options = help;
    for (const std::string& command : commands) {
        options += RunLq(command + " --help").out;
    }
    const auto flags = Find(options, "^  (?:-[a-z],)?--([a-z]+)");
    ASSERT_TRUE(flags.contains("unsigned")) << options;
    for (const char* kind : {"man", "bash", "zsh", "fish"}) {
        const std::string text = Replaced(RunLq("--generate " + std::string(kind)).out, "\\-", "-");
        for (const std::string& command : commands) {
            EXPECT_THAT(text, HasSubstr(command)) << kind;
        }
        for (const std::string& flag : flags) {
            const std::string name = std::string(kind) == "fish" ? "-l " + flag : "--" + flag;
            EXPECT_THAT(text, HasSubstr(name)) << kind;
        }
    }
}

TEST(Manual, BashCompletes) {
    WriteFile(TestFolder() + "/lq.bash", RunLq("--generate bash").out);
    struct Case {
        const char* words;  // the last one is completed
        const char* expected;
    };
    for (const Case& c : {
             Case{"lq t", "translate tasks types "},
             Case{"lq --v", "--version "},
             Case{"lq --generate z", "zsh "},
             Case{"lq show --table g", "globals "},
             Case{"lq show -t co", "components constants "},
             Case{"lq show plant.lqt --s", "--save "},
             Case{"lq translate -o p", ""},
             Case{"lq translate p", ""},
         }) {
        Shell(
            "bash -c '. ./lq.bash; COMP_WORDS=(" + std::string(c.words) +
            "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _lq; printf \"%s \" ${COMPREPLY[@]}' >out");
        EXPECT_EQ(ReadFile(TestFolder() + "/out"), c.expected[0] ? c.expected : " ") << c.words;
    }
}

TEST(Manual, ShellsAndTheFormatterTakeThem) {
    struct Case {
        const char* program;
        const char* kind;
        const char* arguments;
    };
    int checked = 0;
    for (const Case& c :
         {Case{"bash", "bash", "-n text"}, Case{"zsh", "zsh", "-n text"},
          Case{"fish", "fish", "-n text"}, Case{"man", "man", "--warnings -l text >/dev/null"}}) {
        if (!HasProgram(c.program)) {
            continue;  // not part of the system that is tested on
        }
        ++checked;
        WriteFile(TestFolder() + "/text", RunLq("--generate " + std::string(c.kind)).out);
        Shell(std::string(c.program) + " " + c.arguments + " 2>err");
        EXPECT_EQ(ReadFile(TestFolder() + "/err"), "") << c.program;
    }
    EXPECT_GE(checked, 1);
}

}  // namespace
}  // namespace lq::test
