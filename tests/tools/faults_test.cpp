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

// The tool's one sentence.
void ExpectFailure(const Outcome& outcome, const std::string& message, const std::string& what) {
    EXPECT_EQ(outcome.status, kCannotWork) << what;
    EXPECT_THAT(outcome.err, HasSubstr(message)) << what;
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << what << outcome.err;
}

// Its image has 100 KB.
std::string LargeProject() {
    std::string globals;
    for (int i = 0; i < 2000; ++i) {
        globals += Variable("Variable_" + std::to_string(i));
    }
    return Project(globals);
}

TEST(Faults, TheDeviceIsFull) {
    WriteFile(InFolder("large.xml"), LargeProject());
    const Outcome image = RunLq("translate large.xml -o /dev/full");
    ExpectFailure(image, "/dev/full: cannot be written: No space left", "image");
    for (const std::string arguments :
         {"translate large.xml", "translate large.xml -o -", "report large.xml -o -",
          "show large.xml", "show large.xml --json", "scan large.xml", "types",
          "pou $EXAMPLES/plant/plant.xml Mixing --json", "--help"}) {
        ExpectFailure(RunShell("\"$LQ\" " + arguments + " >/dev/full"), "standard output",
                      arguments);
    }
    for (const std::string arguments : {"translate large.xml -o", "show large.xml --save"}) {
        ExpectFailure(RunShell("\"$LQ\" " + arguments + " saved.lqt >/dev/full"),
                      "standard output cannot be written; saved.lqt was saved\n", arguments);
        EXPECT_GT(ReadFile(InFolder("saved.lqt")).size(), 100000u);
        unlink(InFolder("saved.lqt").c_str());
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

TEST(Faults, TheFileMayNotGrow) {
    WriteFile(InFolder("large.xml"), LargeProject());
    WriteFile(InFolder("old.lqt"), "old");
    ExpectFailure(RunShell("ulimit -f 16; \"$LQ\" translate large.xml -o old.lqt"),
                  "old.lqt: cannot be written: File too large", "");
    EXPECT_EQ(ReadFile(InFolder("old.lqt")), "old");
    EXPECT_THAT(FilesIn(TestFolder()), ElementsAre("large.xml", "old.lqt"));
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
    struct Case {
        std::string arguments;
        const char* message;
    };
    for (const Case& c : {
             Case{"translate $EXAMPLES/plant/plant.xml -o closed/new.lqt",
                  "closed/new.lqt: cannot be written"},
             Case{"translate $EXAMPLES/plant/plant.xml -o closed/old.lqt",
                  "closed/old.lqt: cannot be written"},
             Case{"translate $EXAMPLES/plant/plant.xml -o readonly.lqt",
                  "readonly.lqt: cannot be written"},
             Case{"translate secret.xml", "secret.xml: cannot be opened"},
             Case{"show secret.xml", "secret.xml: cannot be opened"},
             Case{"scan secret.xml", "secret.xml: cannot be opened"},
         }) {
        ExpectFailure(RunShell(run + "\"$LQ\" " + c.arguments),
                      std::string(c.message) + ": Permission denied", c.arguments);
    }
    chmod(InFolder("closed").c_str(), 0755);
    EXPECT_THAT(FilesIn(InFolder("closed")), ElementsAre("old.lqt"));
    EXPECT_EQ(ReadFile(InFolder("closed/old.lqt")) + ReadFile(InFolder("readonly.lqt")), "oldold");
}

TEST(Faults, InputsThatAreNone) {
    WriteFile(InFolder("empty"), "");
    mkdir(InFolder("folder").c_str(), 0777);
    ASSERT_EQ(symlink("loop", InFolder("loop").c_str()), 0);
    struct Case {
        const char* arguments;
        const char* message;
    };
    for (const Case& c : {
             Case{"translate empty",
                  "empty:1:1: error: the file is not well-formed XML: no element"},
             Case{"show empty", "empty: no image of tables"},
             Case{"translate - <folder", "(standard input): is a folder"},
             Case{"scan folder", "folder: is a folder, not a file"},
             Case{"scan - <&-", "(standard input): cannot be read: Bad file descriptor"},
             Case{"translate - <&-", "(standard input): cannot be read: Bad file descriptor"},
             Case{"translate loop", "loop: cannot be opened: Too many levels of symbolic links"},
             Case{"translate $EXAMPLES/plant/plant.xml -o loop",
                  "loop: cannot be written: Too many"},
             Case{"translate /dev/tty", "cannot be opened"},
             Case{"types >&-", "standard output cannot be written"},
             Case{"translate $EXAMPLES/plant/plant.xml -o - >&-",
                  "(standard output): cannot be written"},
         }) {
        ExpectFailure(RunShell(std::string("setsid -w \"$LQ\" ") + c.arguments), c.message,
                      c.arguments);
    }
    EXPECT_EQ(RunLq("scan empty").status, 0);
    EXPECT_EQ(RunLq("value -").status, 0);
    EXPECT_THAT(FilesIn(TestFolder()), ElementsAre("empty", "folder", "loop"));
}

TEST(Faults, TheReaderIsGone) {
    WriteFile(InFolder("plant.xml"), ReadFile(LQ_TEST_EXAMPLES "/plant/plant.xml"));
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    for (const std::string script : {
             "\"$LQ\" show plant.xml",
             "\"$LQ\" show plant.xml --json",
             "\"$LQ\" scan plant.xml",
             "\"$LQ\" scan plant.xml --json",
             "\"$LQ\" translate plant.xml",
             "\"$LQ\" translate plant.xml -o -",
             "\"$LQ\" pou plant.xml Mixing --json",
             "\"$LQ\" tasks plant.xml",
             "\"$LQ\" fb plant.xml Mixing stirring",
             "\"$LQ\" value 1",
             "\"$LQ\" types",
             "\"$LQ\" report plant.xml -o -",
             "\"$LQ\" --help",
             // A parent process may have set broken pipes aside.
             "trap '' PIPE; \"$LQ\" types",
         }) {
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
    WriteFile(InFolder("sparse"), "");
    ASSERT_EQ(truncate(InFolder("sparse").c_str(), off_t{1} << 30), 0);
    struct Case {
        const char* script;
        const char* message;
    };
    for (const Case& c : {
             Case{"\"$LQ\" scan sparse", "lq: sparse: has more than 67108864 bytes"},
             Case{"\"$LQ\" show sparse", "lq: sparse: has more than 268435456 bytes"},
             Case{"\"$LQ\" translate sparse", "lq: sparse: has more than 268435456 bytes"},
             Case{"head -c 67108865 sparse | \"$LQ\" scan -",
                  "lq: (standard input): has more than 67108864 bytes"},
             Case{"head -c 67108865 sparse | \"$LQ\" value -",
                  "lq: (standard input): has more than 67108864 bytes"},
         }) {
        ExpectFailure(RunShell(c.script), c.message, c.script);
    }
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
    std::string dimensions;
    for (int i = 0; i < 255; ++i) {
        dimensions += "<dimension lower='-2147483648' upper='-2147483648'/>";
    }
    const std::string project =
        Project(Variable("a", "<array>" + dimensions + "<baseType><INT/></baseType></array>") +
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

std::string Times(int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

std::string Numbered(int count, const std::string& before, const std::string& behind) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += before + std::to_string(i) + behind;
    }
    return all;
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
    const std::string typeElsewhere = "<!DOCTYPE project SYSTEM 'secret.txt'>";
    struct Case {
        std::string document;
        const char* message;
    };
    for (const Case& c : {
             Case{root + Times(100'000, "<a>"), "elements are nested deeper than 256"},
             Case{laughs + "]><project>&a29;</project>", "declarations are not accepted"},
             Case{"<!DOCTYPE project [<!ENTITY a SYSTEM 'secret.txt'>]><project>&a;</project>",
                  "declarations are not accepted"},
             Case{"<!DOCTYPE project [<!ATTLIST a b CDATA '" + longText + "'>]>" + root +
                      Times(50'000, "<a/>"),
                  "declarations are not accepted"},
             Case{typeElsewhere + root + "<contentHeader name='Sp&foo;eed'/></project>",
                  "'foo' is not declared"},
             Case{list + Numbered(50'000, " a", "=''") + "/>", "more than 256 attributes"},
             Case{list + " xmlns:p='" + longText + "'" + Numbered(50'000, " p:a", "=''") + "/>",
                  "name of a namespace has more than 1024 bytes"},
             Case{list + " xmlns:p='" + longText + "'>" + Times(100'000, "<p:a/>"),
                  "name of a namespace has more than 1024 bytes"},
             Case{list + " xmlns:p='" + longText.substr(0, 1000) + "'" +
                      Numbered(50'000, " p:a", "=''") + "/>",
                  "takes more memory than its size warrants"},
         }) {
        for (const char* command : {"translate -", "show -", "tasks -"}) {
            const Outcome outcome = RunShell(Frugal() + command, c.document);
            ExpectFailure(outcome, c.message, c.document.substr(0, 100));
            EXPECT_THAT(outcome.out + outcome.err, Not(HasSubstr("SECRET"))) << c.document;
        }
    }
    // Long names of what holds much, and more reports than anyone reads.
    const std::string many = Numbered(50'000, "<variable name='1", "'/>");
    const std::string names[] = {
        Project("", "<pou name='" + longText + "' pouType='program'><interface><localVars>" + many +
                        "</localVars></interface></pou>"),
        Project("</globalVars><globalVars name='" + longText + "'>" + many),
        Project("<variable name='" + longText + "'>" + Numbered(50'000, "<a", "/>") +
                "</variable>"),
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
        for (int attempt = 0; attempt < 5 && hit == 0; ++attempt) {
            WriteFile(InFolder("out/image.lqt"), "old");
            hit = End(StartSaving(isNamed ? kWithoutProc : "exec "), signal);
            EXPECT_EQ(FilesIn(InFolder("out")).size(), hit == SIGKILL && isNamed ? 2u : 1u);
            EXPECT_TRUE(ReadFile(InFolder("out/image.lqt")) == (hit != 0 ? "old" : image));
        }
        EXPECT_EQ(hit, signal);
    }
    if (!canHideProc) {
        GTEST_SKIP() << "/proc cannot be hidden here";
    }
    // The next run removes what the killed one left, but nothing of one that lives.
    const pid_t living = StartSaving(kWithoutProc);
    kill(living, SIGSTOP);
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
