// Each stream of the tool on a terminal: columns, bold text, progress.
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/run_lq.h"

namespace lq::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class Terminal {
  public:
    Terminal() : own_(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)) {
        grantpt(own_);
        unlockpt(own_);
        name_ = ptsname(own_);
        other_ = open(name_.c_str(), O_RDWR | O_NOCTTY);  // keeps what was written to it
    }
    ~Terminal() {
        close(other_);
        close(own_);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    const std::string& Name() const { return name_; }

    void SetColumns(unsigned short columns) {
        winsize size = {};
        size.ws_col = columns;
        ioctl(own_, TIOCSWINSZ, &size);
    }

    // What was written since the last call.
    std::string Text() {
        std::string text;
        char piece[4096];
        for (ssize_t n; (n = read(own_, piece, sizeof(piece))) > 0;) {
            text.append(piece, static_cast<size_t>(n));
        }
        return text;
    }

  private:
    int own_;
    std::string name_;
    int other_;
};

// Runs a shell command in the test's folder; $LQ is the tool.
int Shell(const std::string& command) {
    const std::string whole = "cd '" + TestFolder() + "' && LQ='" LQ_TOOL "' && " + command;
    const int status = std::system(whole.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

constexpr char kBold[] = "\x1B[1m";

TEST(Terminal, EachStreamIsBoldWhereItIsATerminal) {
    struct Case {
        const char* environment;
        bool results;  // on the terminal, as the next
        bool messages;
        bool isBold;
    };
    for (const Case& c : {
             Case{"TERM=xterm", true, false, true},
             Case{"TERM=xterm", false, true, true},
             Case{"TERM=xterm", false, false, false},
             Case{"TERM=xterm NO_COLOR=1", true, true, false},
             Case{"TERM=xterm NO_COLOR=", true, true, true},
             Case{"TERM=dumb", true, true, false},
             Case{"TERM=", true, true, false},
             Case{"-u TERM", true, true, false},
         }) {
        Terminal terminal;
        const std::string where = std::string(c.environment) + (c.results ? " results" : "") +
                                  (c.messages ? " messages" : "");
        EXPECT_EQ(Shell("env -u NO_COLOR " + std::string(c.environment) + " $LQ value 5 abc >" +
                        (c.results ? terminal.Name() : "out") + " 2>" +
                        (c.messages ? terminal.Name() : "err")),
                  1);
        const std::string shown = terminal.Text();
        EXPECT_EQ(shown.find(kBold) != shown.npos, c.isBold) << where << ": " << shown;
        EXPECT_THAT(ReadFile(TestFolder() + "/out"), Not(HasSubstr(kBold))) << where;
        EXPECT_THAT(ReadFile(TestFolder() + "/err"), Not(HasSubstr(kBold))) << where;
    }
}

TEST(Terminal, ResultsComeInColumns) {
    Terminal terminal;
    EXPECT_EQ(Shell("TERM=dumb $LQ value 5 100 >" + terminal.Name()), 0);
    EXPECT_THAT(terminal.Text(), HasSubstr("\r\n5         SINT   5      5     "));
}

TEST(Terminal, LongWorkShowsItsProgress) {
    struct Case {
        const char* command;  // each waits for its input
        const char* shown;
    };
    for (const Case& c : {Case{"scan -", "reading (standard input)"},
                          Case{"translate -", "reading (standard input): 0.1 MB"},
                          Case{"show -", "reading (standard input)"}}) {
        const std::string head =
            "{ printf '<project xmlns=\"http://www.plcopen.org/xml/tc6_0201\">%100000s'; sleep 1; "
            "} "
            "| TERM=xterm $LQ " +
            std::string(c.command) + " >out 2>";
        Terminal terminal;
        Shell(head + terminal.Name());
        const std::string shown = terminal.Text();
        EXPECT_THAT(shown, HasSubstr(std::string("\r") + c.shown)) << c.command;
        EXPECT_THAT(ReadFile(TestFolder() + "/out"), Not(HasSubstr("reading"))) << c.command;
        // A message does not stand behind it, on its line.
        EXPECT_EQ(shown.find("reading", shown.rfind("\r\x1B[K")), shown.npos) << shown;
    }
    Shell("{ printf a; sleep 0.3; } | $LQ scan - >out 2>err");
    EXPECT_EQ(ReadFile(TestFolder() + "/err"), "") << "no terminal";
}

TEST(Terminal, WorkThatComesLateIsShownAtOnce) {
    Terminal terminal;
    Shell("{ sleep 0.2; printf a; } | TERM=xterm $LQ scan - >out 2>" + terminal.Name());
    const std::string shown = terminal.Text();
    for (const char* work : {"\rreading ", "\rdecoding ", "\rscanning "}) {
        EXPECT_THAT(shown, HasSubstr(work));
    }
}

TEST(Terminal, ProgressStaysOnItsLine) {
    struct Case {
        unsigned short columns;
        std::string shown;
    };
    const std::string name = "p\xC3\xA4th_" + std::string(90, 'x');
    for (const Case& c : {
             Case{200, name + ": 0.1 MB"},
             Case{40, "\rreading p\xC3\xA4th_" + std::string(14, 'x') + "...: 0.1 MB"},
             Case{23, "\rreading p\xC3\xA4...: 0.1 MB"},
             Case{22, "\rreading p...: 0.1 MB"},  // not half the letter
             Case{4, "\r...\x1B"},
         }) {
        Terminal terminal;
        terminal.SetColumns(c.columns);
        Shell("rm -f p*; mkfifo " + name + "; { printf %100000s; sleep 0.3; } >" + name +
              " & TERM=xterm $LQ scan " + name + " >out 2>" + terminal.Name());
        EXPECT_THAT(terminal.Text(), HasSubstr(c.shown)) << c.columns;
    }
}

TEST(Pipe, AReaderWhoLeavesEndsTheToolWithoutAWord) {
    WriteFile(TestFolder() + "/a.st", std::string(1 << 20, ';'));
    for (const char* before : {"", "trap '' PIPE; "}) {
        Shell(std::string(before) + "{ $LQ scan a.st 2>err; echo $? >status; } | true");
        EXPECT_EQ(ReadFile(TestFolder() + "/err"), "") << before;
        EXPECT_EQ(ReadFile(TestFolder() + "/status"), "141\n") << before;
    }
}

}  // namespace
}  // namespace lq::test
