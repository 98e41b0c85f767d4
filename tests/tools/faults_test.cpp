// The tool when something around it fails: each fault gives one message or a quiet end, and leaves
// neither half a file nor a temporary one. (Without memory: failing_malloc_test.cpp.)
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/run_lq.h"

namespace lq::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr int kCannotWork = 2;
constexpr int kBrokenPipe = 128 + SIGPIPE;

std::string InFolder(const std::string& name) {
    return TestFolder() + "/" + name;
}

const std::string kLq = "\"$LQ\" ";

// The tool's one sentence.
void ExpectFailure(const Outcome& outcome, const std::string& message, const std::string& what) {
    EXPECT_EQ(outcome.status, kCannotWork) << what;
    EXPECT_THAT(outcome.err, HasSubstr(message)) << what;
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << what << outcome.err;
}

// The text so many times, "#" in it as the number.
std::string Times(int count, const std::string& text) {
    const size_t number = text.find('#');
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text.substr(0, number);
        if (number != text.npos) {
            all += std::to_string(i) + text.substr(number + 1);
        }
    }
    return all;
}

// Its image has 100 KB.
std::string LargeProject() {
    return Project(Times(2000, Variable("Variable_#")));
}

TEST(Faults, TheDeviceIsFull) {
    WriteFile(InFolder("large.xml"), LargeProject());
    WriteFile(InFolder("old.lqt"), "old");
    ExpectFailure(RunLq("translate large.xml -o /dev/full"),
                  "/dev/full: cannot be written: No space left", "image");
    ExpectFailure(RunShell("ulimit -f 16; " + kLq + "translate large.xml -o old.lqt"),
                  "old.lqt: cannot be written: File too large", "limit");
    EXPECT_EQ(ReadFile(InFolder("old.lqt")), "old");
    EXPECT_THAT(FilesIn(TestFolder()), ElementsAre("large.xml", "old.lqt"));
    for (const std::string arguments :
         {"translate large.xml", "translate large.xml -o -", "report large.xml -o -",
          "show large.xml", "show large.xml --json", "scan large.xml", "types",
          "pou $EXAMPLES/plant/plant.xml Mixing --json", "--help"}) {
        ExpectFailure(RunLq(arguments + " >/dev/full"), "standard output", arguments);
    }
    for (const std::string arguments : {"translate large.xml -o", "show large.xml --save"}) {
        ExpectFailure(RunLq(arguments + " old.lqt >/dev/full"),
                      "standard output cannot be written; old.lqt was saved\n", arguments);
        EXPECT_GT(ReadFile(InFolder("old.lqt")).size(), 100000u);
        WriteFile(InFolder("old.lqt"), "old");
    }
}

TEST(Faults, TheSystemRefuses) {
#if LQ_TEST_SANITIZED
    GTEST_SKIP() << "sanitizers want to be loaded first";
#endif
    const std::string run = "LD_PRELOAD='" LQ_TEST_FAILING_CALLS "' \"$LQ\" ";
    const std::string noWrite = "LQ_TEST_NO_WRITE=1 " + run;
    const std::string translate = "translate $EXAMPLES/plant/plant.xml -o a.lqt";
    ExpectFailure(RunShell(noWrite + "types"), "standard output cannot be written", "");
    ExpectFailure(RunShell(noWrite + translate), "a.lqt: cannot be written: Input/output", "");
    EXPECT_THAT(FilesIn(TestFolder()), ElementsAre());
    EXPECT_EQ(RunShell("LQ_TEST_NO_WRITE=all " + run + "types").status, 2) << "and comes to an end";
    // What has no name and cannot be given one is copied.
    const std::string image = RunLq("translate $EXAMPLES/plant/plant.xml -o -").out;
    for (int times = 0; times < 2; ++times) {
        EXPECT_EQ(RunShell("LQ_TEST_NO_LINK=1 " + run + translate).err, "");
        EXPECT_TRUE(ReadFile(InFolder("a.lqt")) == image);
        EXPECT_THAT(FilesIn(TestFolder()), ElementsAre("a.lqt"));
        chmod(InFolder("a.lqt").c_str(), 0640);
    }
    struct stat info = {};
    EXPECT_TRUE(stat(InFolder("a.lqt").c_str(), &info) == 0 && (info.st_mode & 0777) == 0640);
}

TEST(Faults, NotPermitted) {
    // To root everything is permitted, unless that is taken away.
    const std::string run =
        geteuid() == 0 ? "setpriv --bounding-set=-dac_override,-dac_read_search " : "";
    mkdir(InFolder("closed").c_str(), 0777);
    WriteFile(InFolder("closed/old.lqt"), "old");
    WriteFile(InFolder("readonly.lqt"), "old");
    WriteFile(InFolder("secret.xml"), Project(Variable("a")));
    chmod(InFolder("closed").c_str(), 0555);
    chmod(InFolder("readonly.lqt").c_str(), 0444);
    chmod(InFolder("secret.xml").c_str(), 0);
    if (RunShell(run + "test -r secret.xml").status != 1) {
        GTEST_SKIP() << "no process without root's permissions can be started here";
    }
    for (const char* file : {"closed/new.lqt", "closed/old.lqt", "readonly.lqt"}) {
        ExpectFailure(RunShell(run + kLq + "translate $EXAMPLES/plant/plant.xml -o " + file),
                      std::string(file) + ": cannot be written: Permission denied", file);
    }
    for (const char* command : {"translate", "show", "scan"}) {
        ExpectFailure(RunShell(run + kLq + command + " secret.xml"),
                      "secret.xml: cannot be opened: Permission denied", command);
    }
    chmod(InFolder("closed").c_str(), 0755);
    EXPECT_THAT(FilesIn(InFolder("closed")), ElementsAre("old.lqt"));
    EXPECT_EQ(ReadFile(InFolder("closed/old.lqt")) + ReadFile(InFolder("readonly.lqt")), "oldold");
}

TEST(Faults, TheReaderIsGone) {
    WriteFile(InFolder("plant.xml"), ReadFile(LQ_TEST_EXAMPLES "/plant/plant.xml"));
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    for (const std::string command :
         {"show plant.xml", "show plant.xml --json", "scan plant.xml", "scan plant.xml --json",
          "translate plant.xml", "translate plant.xml -o -", "pou plant.xml Mixing --json",
          "tasks plant.xml", "symbols plant.xml --csv", "diff plant.xml plant.xml --json",
          "fb plant.xml Mixing stirring", "value 1", "types", "report plant.xml -o -", "--help"}) {
        // A parent process may have set broken pipes aside.
        const std::string script = (command == "types" ? "trap '' PIPE; " : "") + kLq + command;
        const Outcome outcome = RunShell(script + " >&" + std::to_string(ends[1]));
        EXPECT_EQ(outcome.status, kBrokenPipe) << script;
        EXPECT_EQ(outcome.err, "") << script;
    }
    close(ends[1]);
    WriteFile(InFolder("large.xml"), LargeProject());
    const Outcome midway =
        RunShell("{ \"$LQ\" show large.xml; echo $? >status; } | head -c 1; cat status");
    EXPECT_EQ(midway.out, "d" + std::to_string(kBrokenPipe) + "\n");
    EXPECT_EQ(midway.err, "");
}

TEST(Faults, InputsBeyondTheLimit) {
    RunShell("truncate -s 1G sparse");
    for (const auto& [script, limit] :
         {std::pair(kLq + "scan sparse", "sparse: has more than 67108864 bytes"),
          std::pair(kLq + "show sparse", "sparse: has more than 268435456 bytes"),
          std::pair(kLq + "translate sparse", "sparse: has more than 268435456 bytes"),
          std::pair("head -c 67108865 sparse | " + kLq + "scan -", "has more than 67108864 bytes"),
          std::pair("head -c 67108865 sparse | " + kLq + "value -",
                    "has more than 67108864 bytes")}) {
        ExpectFailure(RunShell(script), limit, script);
    }
    EXPECT_EQ(RunShell("head -c 67108864 sparse | tr '\\0' ' ' | " + kLq + "scan -").err, "");
}

// With so much address space beyond what the program alone needs. Not under sanitizers, which need
// more than can be limited.
Outcome RunLimited(int megabytes, const std::string& arguments) {
    const auto limited = [](int all, const std::string& command) {
        return RunShell("ulimit -v " + std::to_string(all << 10) + "; \"$LQ\" " + command);
    };
    int enough = 4;
    while (enough < 512 && limited(enough, "value 1").status != 0) {
        enough += 4;
    }
    return limited(enough + megabytes, arguments);
}

TEST(Faults, WhatLinesShareIsHeldOnce) {
#if LQ_TEST_SANITIZED
    GTEST_SKIP();
#endif
    const std::string project = Project(
        Variable("a", "<array>" +
                          Times(255, "<dimension lower='-2147483648' upper='-2147483648'/>") +
                          "<baseType><INT/></baseType></array>") +
        Variable("s", "<string/>",
                 "<initialValue><simpleValue value=\"'" + std::string(5000, 's') +
                     "'\"/></initialValue>"));
    ASSERT_EQ(RunLq("translate - -o one.lqt", project).status, 0);
    // The table of globals, behind three without lines, a thousand times.
    constexpr size_t kGlobals = 12;
    constexpr uint32_t kCopies = 1000;
    const std::string one = ReadFile(InFolder("one.lqt"));
    uint32_t length = 0;
    std::memcpy(&length, one.data() + kGlobals, sizeof(length));
    const uint32_t all = length * kCopies;
    std::string image =
        one.substr(0, kGlobals) + std::string(reinterpret_cast<const char*>(&all), sizeof(all));
    for (uint32_t i = 0; i < kCopies; ++i) {
        image += one.substr(kGlobals + sizeof(length), length);
    }
    image += one.substr(kGlobals + sizeof(length) + length);
    WriteFile(InFolder("shared.lqt"), image);
    constexpr size_t kMost = 40;  // as many times the image
    for (const std::string arguments :
         {"report shared.lqt -o page.html", "show shared.lqt >/dev/null",
          "show shared.lqt --json >/dev/null"}) {
        const Outcome outcome = RunLimited(static_cast<int>(kMost * image.size() >> 20), arguments);
        EXPECT_EQ(outcome.status, 0) << arguments << outcome.err;
    }
    EXPECT_LT(ReadFile(InFolder("page.html")).size(), 4 * image.size());
}

// lq with no more time and memory than sound documents of a megabyte need.
std::string Frugal() {
#if LQ_TEST_SANITIZED
    return "ulimit -t 60; \"$LQ\" ";
#else
    return "ulimit -t 5; ulimit -v 262144; \"$LQ\" ";
#endif
}

// Much of little: most of these would take gigabytes or minutes.
TEST(Faults, HostileXml) {
    WriteFile(InFolder("secret.txt"), "SECRET");
    std::string laughs = "<!DOCTYPE project [<!ENTITY a0 'ha'>";
    for (int i = 1; i < 30; ++i) {
        const std::string inner = "&a" + std::to_string(i - 1) + ";";
        laughs += "<!ENTITY a" + std::to_string(i) + " '" + inner + inner + "'>";
    }
    const std::string root = "<project xmlns='http://www.plcopen.org/xml/tc6_0201'>";
    const std::string list =
        root + "<types><pous><pou name='P' pouType='program'><interface><localVars";
    const std::string longText(100'000, 'x');
    const std::string declares = "declarations are not accepted";
    const std::string space = "name of a namespace has more than 1024 bytes";
    const std::string attributes = Times(50'000, " p:a#=''") + "/>";
    const std::pair<std::string, std::string> cases[] = {
        {root + Times(100'000, "<a>"), "elements are nested deeper than 256"},
        {laughs + "]><project>&a29;</project>", declares},
        {"<!DOCTYPE project [<!ENTITY a SYSTEM 'secret.txt'>]><project>&a;</project>", declares},
        {"<!DOCTYPE project [<!ATTLIST a b CDATA '" + longText + "'>]>" + root +
             Times(50'000, "<a/>"),
         declares},
        {"<!DOCTYPE project SYSTEM 'secret.txt'>" + root +
             "<contentHeader name='Sp&foo;eed'/></project>",
         "'foo' is not declared"},
        {list + Times(50'000, " a#=''") + "/>", "more than 256 attributes"},
        {list + " xmlns:p='" + longText + "'" + attributes, space},
        {list + " xmlns:p='" + longText + "'>" + Times(100'000, "<p:a/>"), space},
        {list + " xmlns:p='" + longText.substr(0, 1000) + "'" + attributes,
         "takes more memory than its size warrants"},
    };
    for (const auto& [document, message] : cases) {
        for (const char* command : {"translate -", "show -", "tasks -"}) {
            const Outcome outcome = RunShell(Frugal() + command, document);
            ExpectFailure(outcome, message, document.substr(0, 100));
            EXPECT_THAT(outcome.out + outcome.err, Not(HasSubstr("SECRET"))) << document;
        }
    }
    // Long names of what holds much, and more reports than anyone reads.
    const std::string many = Times(50'000, "<variable name='1#'/>");
    const std::string names[] = {
        Project("", "<pou name='" + longText + "' pouType='program'><interface><localVars>" + many +
                        "</localVars></interface></pou>"),
        Project("</globalVars><globalVars name='" + longText + "'>" + many),
        Project("<variable name='" + longText + "'>" + Times(50'000, "<a#/>") + "</variable>"),
    };
    for (const std::string& document : names) {
        const Outcome outcome = RunShell(Frugal() + "translate -", document);
        EXPECT_EQ(outcome.status, 1) << document.substr(0, 800) << outcome.err.substr(0, 1000);
        EXPECT_LT(outcome.err.size(), 20u << 20) << document.substr(0, 800);
    }
}

// Whether the process has written to a file in that folder, with a name or without one.
bool HasWritten(pid_t process, const std::string& folder) {
    std::error_code error;
    const std::string descriptors = "/proc/" + std::to_string(process) + "/fd";
    for (const auto& entry : std::filesystem::directory_iterator(descriptors, error)) {
        struct stat info = {};
        if (std::filesystem::read_symlink(entry, error).string().starts_with(folder + "/") &&
            stat(entry.path().c_str(), &info) == 0 && info.st_size > 0) {
            return true;
        }
    }
    return false;
}

// Where nothing says which files are open, those without a name cannot be given one.
const std::string kWithoutProc =
    "exec unshare -m sh -c 'mount -t tmpfs none /proc && exec \"$@\"' sh ";

// Starts lq, which saves large.lqt as out/image.lqt, and waits until it has begun to write.
pid_t StartSaving(const std::string& prefix) {
    const std::string script = "cd '" + TestFolder() + "' && " + prefix +
                               "'" LQ_TOOL "' show large.lqt --save out/image.lqt >/dev/null 2>&1";
    const std::string folder = std::filesystem::canonical(InFolder("out"));
    const pid_t child = fork();
    if (child == 0) {
        execl("/bin/sh", "sh", "-c", script.c_str(), nullptr);
        _exit(127);
    }
    siginfo_t ended = {};
    while (!HasWritten(child, folder) && ended.si_pid == 0) {
        waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOHANG | WNOWAIT);
        usleep(50);
    }
    return child;
}

// Returns the signal that ended the process; 0 when it was not fast enough to be hit.
int End(pid_t process, int signal) {
    kill(process, signal);
    int status = 0;
    waitpid(process, &status, 0);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

// A process that has stopped, or ended before.
pid_t StopWhileSaving() {
    const pid_t process = StartSaving(kWithoutProc);
    kill(process, SIGSTOP);
    siginfo_t stopped = {};
    waitid(P_PID, static_cast<id_t>(process), &stopped, WSTOPPED | WEXITED | WNOWAIT);
    return process;
}

TEST(Faults, AnInterruptedWriteLeavesTheOldFile) {
    // An image so large that writing it takes longer than a signal: one table of 64 MB.
    constexpr uint32_t kTable = uint32_t{64} << 20;
    std::string image(4 + kTable + 36, '\0');
    image[3] = static_cast<char>(kTable >> 24);
    WriteFile(InFolder("large.lqt"), image);
    mkdir(InFolder("out").c_str(), 0777);
    const bool canHideProc = !LQ_TEST_SANITIZED && RunShell(kWithoutProc + "true").status == 0;
    for (const auto& [isNamed, signal] :
         {std::pair(false, SIGINT), std::pair(false, SIGKILL), std::pair(true, SIGTERM),
          std::pair(true, SIGHUP), std::pair(true, SIGKILL)}) {
        int hit = isNamed && !canHideProc ? signal : 0;
        for (int attempt = 0; attempt < 20 && hit == 0; ++attempt) {
            WriteFile(InFolder("out/image.lqt"), "old");
            hit = End(StartSaving(isNamed ? kWithoutProc : "exec "), signal);
            const std::string now = ReadFile(InFolder("out/image.lqt"));
            hit = now == image ? 0 : hit;  // it had saved already
            EXPECT_TRUE(hit == 0 ? now == image : now == "old");
            EXPECT_EQ(FilesIn(InFolder("out")).size(), hit == SIGKILL && isNamed ? 2u : 1u);
        }
        EXPECT_EQ(hit, signal);
    }
    if (!canHideProc) {
        GTEST_SKIP() << "/proc cannot be hidden here";
    }
    // The next run removes what the killed one left, but nothing of one that lives.
    pid_t living = StopWhileSaving();
    while (FilesIn(InFolder("out")).size() < 2) {  // it was not fast enough to be hit
        End(living, SIGKILL);
        living = StopWhileSaving();
    }
    for (const size_t files : {3u, 2u}) {
        EXPECT_EQ(RunLq("translate $EXAMPLES/plant/plant.xml -o out/new.lqt").status, 0);
        EXPECT_EQ(FilesIn(InFolder("out")).size(), files);
        End(living, SIGKILL);
    }
}

TEST(Save, KeepsTheModeAndFollowsLinks) {
    mkdir(InFolder("folder").c_str(), 0777);
    ASSERT_EQ(RunLq("translate $EXAMPLES/plant/plant.xml -o new.lqt").status, 0);
    const std::string image = ReadFile(InFolder("new.lqt"));
    WriteFile(InFolder("folder/target.lqt"), "old");
    ASSERT_EQ(chmod(InFolder("folder/target.lqt").c_str(), 0640), 0);
    for (const auto& [target, link] :
         {std::pair("folder/target.lqt", "near.lqt"), std::pair("../near.lqt", "folder/far.lqt"),
          std::pair("folder/later.lqt", "dangling.lqt")}) {
        ASSERT_EQ(symlink(target, InFolder(link).c_str()), 0);
        ASSERT_EQ(RunLq(std::string("translate $EXAMPLES/plant/plant.xml -o ") + link).status, 0);
        struct stat info = {};
        ASSERT_EQ(lstat(InFolder(link).c_str(), &info), 0);
        EXPECT_TRUE(S_ISLNK(info.st_mode)) << link;
        EXPECT_EQ(ReadFile(InFolder(link)), image) << link;
    }
    struct stat info = {};
    ASSERT_EQ(stat(InFolder("folder/target.lqt").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
    EXPECT_THAT(FilesIn(InFolder("folder")), ElementsAre("far.lqt", "later.lqt", "target.lqt"));
    // A name as long as names can be.
    const std::string longName(255, 'n');
    EXPECT_EQ(RunLq("translate $EXAMPLES/plant/plant.xml -o " + longName).status, 0);
    EXPECT_EQ(ReadFile(InFolder(longName)), image);
}

}  // namespace
}  // namespace lq::test
