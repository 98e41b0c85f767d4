// Each stream of the tool on a terminal: columns, bold text, progress.
#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <future>
#include <sstream>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/run_lq.h"

namespace lq::test {
namespace {

using testing::AllOf;
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

constexpr char kBold[] = "\x1B[1m";

TEST(Terminal, EachStreamIsBoldWhereItIsATerminal) {
    // Whether results and messages go to a terminal, and are bold there.
    const std::tuple<std::string, bool, bool, bool> cases[] = {
        {"TERM=xterm", true, false, true},
        {"TERM=xterm", false, true, true},
        {"TERM=xterm", false, false, false},
        {"TERM=xterm NO_COLOR=1", true, true, false},
        {"TERM=xterm NO_COLOR=", true, true, true},
        {"TERM=dumb", true, true, false},
        {"TERM=", true, true, false},
        {"-u TERM", true, true, false},
        {"TERM=xterm NO_COLOR=1 OPTION=--color=always", true, true, true},
        {"TERM=xterm OPTION=--color=never", true, true, false},
    };
    for (const auto& [environment, results, messages, isBold] : cases) {
        Terminal terminal;
        const Outcome outcome = RunShell(
            "env -u NO_COLOR " + environment + " sh -c '$LQ value 5 abc $OPTION'" +
            (results ? " >" + terminal.Name() : "") + (messages ? " 2>" + terminal.Name() : ""));
        EXPECT_EQ(outcome.status, 1);
        const std::string shown = terminal.Text();
        EXPECT_EQ(shown.find(kBold) != shown.npos, isBold) << environment << ": " << shown;
        EXPECT_THAT(outcome.out + outcome.err, Not(HasSubstr(kBold))) << environment;
    }
}

TEST(Terminal, ResultsComeInColumns) {
    Terminal terminal;
    RunShell("TERM=dumb $LQ tasks $EXAMPLES/plant/plant.xml >" + terminal.Name());
    EXPECT_THAT(terminal.Text(), HasSubstr("Mixing\r\n"));  // behind which there is a column
    // Two wide letters, and a letter with a mark on it, in any locale.
    RunShell(
        "sed 's/Cyclic/\u4E3B\u5E79/; s/OnStart/A\u030A/' $EXAMPLES/plant/plant.xml | "
        "LC_ALL=C TERM=dumb $LQ tasks - >" +
        terminal.Name());
    EXPECT_THAT(terminal.Text(), AllOf(HasSubstr("  \u4E3B\u5E79            1  T#20ms"),
                                       HasSubstr("  A\u030A               0  ")));
    RunShell("TERM=dumb $LQ translate $EXAMPLES/plant/plant.xml >" + terminal.Name());
    EXPECT_THAT(terminal.Text(), HasSubstr("\r\nglobals         35   1569\r\n"));
}

TEST(Terminal, ColumnsHaveTheWidthsOfTheFirstThousandRows) {
    for (const auto& [rows, row] : {std::pair("999", "\r\n5            SINT   5           5  "),
                                    std::pair("1000", "\r\n5         SINT   5      5  ")}) {
        Terminal terminal;
        terminal.SetColumns(200);
        const std::string command =
            "TERM=dumb $LQ value $(yes 5 | head -" + std::string(rows) + ") 16#FFFFFFFF >";
        const auto run =
            std::async(std::launch::async, [&] { RunShell(command + terminal.Name()); });
        std::string shown;
        while (run.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
            shown += terminal.Text();
        }
        shown += terminal.Text();
        EXPECT_THAT(shown, HasSubstr(row));
        EXPECT_THAT(shown, HasSubstr("\r\n16#FFFFFFFF  UDINT  4294967295  "));
    }
}

TEST(Terminal, TablesAreCutToItsWidth) {
    struct Case {
        const char* arguments;
        uint16_t columns;
        size_t shown;  // of these
        const char* message;
    };
    constexpr const char* kCut =
        "lq: cells were cut to fit the terminal; behind '| cat' they are whole\n";
    Terminal terminal;
    for (const Case& row : {Case{"tasks", 72, 72, kCut}, Case{"symbols -e --uses", 80, 80, kCut},
                            Case{"symbols -e --uses", 60, 72,
                                 "lq: a row takes 72 columns of a terminal; behind '| cat' its "
                                 "cells are whole\n"},
                            Case{"check --explain 2001", 40, 40, ""}}) {
        terminal.SetColumns(row.columns);
        const std::string command = std::string("TERM=dumb $LQ ") + row.arguments;
        const bool isProject = command.find("check") == command.npos;
        EXPECT_EQ(RunShell(command + (isProject ? " $EXAMPLES/plant/plant.xml >" : " >") +
                           terminal.Name())
                      .err,
                  row.message);
        std::istringstream lines(terminal.Text());
        for (std::string line; std::getline(lines, line);) {
            const auto isFirst = [](char c) { return (c & 0xC0) != 0x80; };
            EXPECT_LE(std::ranges::count_if(line, isFirst), row.shown + 1) << line;  // the return
        }
    }
    const std::string command = "TERM=dumb $LQ tasks $EXAMPLES/plant/plant.xml >";
    terminal.SetColumns(200);
    EXPECT_EQ(RunShell(command + terminal.Name()).err, "");
    EXPECT_THAT(terminal.Text(), HasSubstr("The plant's own beat"));
}

TEST(Terminal, TakesNoImage) {
    Terminal terminal;
    for (const char* command : {"translate -o -", "show -s -"}) {
        EXPECT_EQ(RunShell("$LQ " + std::string(command) + " $EXAMPLES/plant/plant.xml >" +
                           terminal.Name())
                      .status,
                  2);
        EXPECT_EQ(terminal.Text(), "");
    }
}

TEST(Terminal, ProgressIsGoneWhenTheUserEndsTheWork) {
    for (const std::string signal : {"INT", "TERM"}) {
        Terminal terminal;
        RunShell("{ printf a; sleep 1; } | TERM=xterm timeout -s " + signal + " 0.5 $LQ scan - 2>" +
                 terminal.Name());
        const std::string shown = terminal.Text();
        EXPECT_THAT(shown, AllOf(HasSubstr("\rreading "), testing::EndsWith("\r\x1B[K")));
    }
}

TEST(Terminal, LongWorkShowsItsProgress) {
    for (const std::string command : {"scan", "translate", "show"}) {  // each waits for its input
        Terminal terminal;
        const Outcome outcome = RunShell(
            "{ printf '<project xmlns=\"http://www.plcopen.org/xml/tc6_0201\">%100000s'; sleep 1; }"
            " | TERM=xterm $LQ " +
            command + " - 2>" + terminal.Name());
        const std::string shown = terminal.Text();
        EXPECT_THAT(shown, HasSubstr(command == "translate" ? "\rreading (standard input): 0.1 MB"
                                                            : "\rreading (standard input)"));
        EXPECT_THAT(outcome.out, Not(HasSubstr("reading"))) << command;
        // A message does not stand behind it, on its line.
        EXPECT_EQ(shown.find("reading", shown.rfind("\r\x1B[K")), shown.npos) << shown;
    }
    EXPECT_EQ(RunShell("{ printf a; sleep 0.3; } | $LQ scan -").err, "") << "no terminal";
}

TEST(Terminal, WorkThatComesLateIsShownAtOnce) {
    Terminal terminal;
    RunShell("{ sleep 0.2; printf a; } | TERM=xterm $LQ scan - 2>" + terminal.Name());
    const std::string shown = terminal.Text();
    for (const char* work : {"\rreading ", "\rdecoding ", "\rscanning "}) {
        EXPECT_THAT(shown, HasSubstr(work));
    }
}

TEST(Terminal, ProgressStaysOnItsLine) {
    const std::string name = "p\xC3\xA4th_" + std::string(90, 'x');
    const std::pair<unsigned short, std::string> cases[] = {
        {200, name + ": 0.1 MB"},
        {113, name + ": 0.1 MB\x1B"},  // as long as the line can be
        {112, "x...: 0.1 MB\x1B"},
        {40, "\rreading p\xC3\xA4th_" + std::string(14, 'x') + "...: 0.1 MB"},
        {23, "\rreading p\xC3\xA4...: 0.1 MB"},
        {22, "\rreading p...: 0.1 MB"},  // not half the letter
        {4, "\r...\x1B"},
        {0, "th_" + std::string(54, 'x') + "...: 0.1 MB"},  // unknown: as many as usual
    };
    for (const auto& [columns, expected] : cases) {
        Terminal terminal;
        terminal.SetColumns(columns);
        RunShell("rm -f p*; mkfifo " + name + "; { printf %100000s; sleep 0.3; } >" + name +
                 " & TERM=xterm $LQ scan " + name + " 2>" + terminal.Name());
        EXPECT_THAT(terminal.Text(), HasSubstr(expected)) << columns;
    }
}

}  // namespace
}  // namespace lq::test
