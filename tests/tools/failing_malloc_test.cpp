// Every command while memory fails: one allocation of the process, or that one and all later ones.
// The command gives the whole right result, or one sentence and exit status 2; what it printed
// until then is a beginning of the right result, and files are as they were or as they should be.
#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/run_lq.h"

namespace lq::test {
namespace {

struct Job {
    const char* name;
    std::vector<const char*> arguments;  // "out" is the file that is written
    const char* input = "";
    const char* config = "english";

    friend void PrintTo(const Job& job, std::ostream* out) { *out << job.name; }
};

// Messages are in English until the registered code page is read.
constexpr std::string_view kSaved = "lq: memory is short; out was saved\n";
constexpr std::string_view kSentences[] = {"lq: memory is short\n", "lq: メモリが不足しています\n",
                                           kSaved};
constexpr char kRegistry[] = "[SOFTWARE\\Veldrane\\Talmor2\\App]\nCodePage=932\n";
constexpr char kOld[] = "old";
constexpr long kSamples = 40;  // of a job, unless the environment tells the distance

// With a text that is longer than the scanner's buffer, letters beyond ASCII, and errors.
const std::string source =
    "x := 16#G; (* " + std::string(5000, 'a') + " *) 'abc' T#1h 1.5E400 LD Äß;\n";

// In windows-1252, with a fault of each kind, and every form of use.
const std::string faults =
    "CONFIGURATION C TASK T(INTERVAL := T#1s); PROGRAM P WITH U : Main; VAR_CONFIG END_VAR "
    "END_CONFIGURATION TYPE S : STRUCT a : INT; END_STRUCT; E : (Red, Red); F : ; END_TYPE "
    "VAR_GLOBAL g : S; g : INT (* \xFC *) END_VAR METHOD M END_METHOD PROGRAM Main VAR a : INT := "
    "5 b : S; x y; END_VAR b.a := E#Red + g.a; T(q := a); l: { a } 'open\nEND_FUNCTION (* (* *)";

class FailingMalloc : public testing::TestWithParam<Job> {
  protected:
    void SetUp() override {
        WriteFile(InFolder("plant.xml"), ReadFile(LQ_TEST_EXAMPLES "/plant/plant.xml"));
        WriteFile(InFolder("plant.st"), ReadFile(LQ_TEST_EXAMPLES "/plant/plant.st"));
        WriteFile(InFolder("source.st"), source);
        WriteFile(InFolder("input"), GetParam().input);
        ASSERT_EQ(RunShell("mkdir -p japanese/user").status, 0);
        WriteFile(InFolder("japanese/user/registry.ini"), kRegistry);
        ASSERT_EQ(RunLq("translate plant.xml -o plant.lqt").status, 0);
    }

    static std::string InFolder(const std::string& name) { return TestFolder() + "/" + name; }

    // Without a shell, whose memory would fail first.
    Outcome Run(const std::vector<std::string>& variables) {
        WriteFile(InFolder("out"), kOld);
        std::vector<std::string> added = variables;
        added.push_back("LD_PRELOAD=" LQ_TEST_FAILING_MALLOC);
        added.push_back(std::string("LQ_DATA_CONFIG=") + GetParam().config);
        std::vector<char*> environment;
        for (std::string& variable : added) {
            environment.push_back(variable.data());
        }
        environment.push_back(nullptr);
        std::vector<char*> arguments = {const_cast<char*>("lq")};
        for (const char* const argument : GetParam().arguments) {
            arguments.push_back(const_cast<char*>(argument));
        }
        arguments.push_back(nullptr);
        const std::string folder = TestFolder();
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
        constexpr int kWrite = O_WRONLY | O_CREAT | O_TRUNC;
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "input", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, ".out", kWrite, 0666);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, ".err", kWrite, 0666);
        pid_t child = 0;
        int status = -1;
        EXPECT_EQ(
            posix_spawn(&child, LQ_TOOL, &actions, nullptr, arguments.data(), environment.data()),
            0);
        waitpid(child, &status, 0);
        posix_spawn_file_actions_destroy(&actions);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
                ReadFile(InFolder(".out")), ReadFile(InFolder(".err"))};
    }
};

bool IsWhole(const Outcome& outcome, const Outcome& right) {
    return outcome.status == right.status && outcome.out == right.out && outcome.err == right.err;
}

// What was said of the input before memory was short stays.
bool EndsWithOneSentence(const Outcome& outcome, const Outcome& right) {
    constexpr int kCannotWork = 2;
    return outcome.status == kCannotWork && right.out.starts_with(outcome.out) &&
           std::any_of(std::begin(kSentences), std::end(kSentences), [&](std::string_view said) {
               return outcome.err.ends_with(said) && right.err.starts_with(outcome.err.substr(
                                                         0, outcome.err.size() - said.size()));
           });
}

TEST_P(FailingMalloc, EveryResultIsWholeOrNone) {
    const Outcome right = Run({"LQ_COUNT_TO=count"});
    const std::string written = ReadFile(InFolder("out"));
    const long count = std::atol(ReadFile(InFolder("count")).c_str());
    const std::vector<std::string> files = FilesIn(TestFolder());
    ASSERT_GT(count, 500);
    const char* const every = std::getenv("LQ_TEST_EVERY");
    const long distance = every ? std::max(1L, std::atol(every)) : count / kSamples + 1;
    // From job to job others of the allocations that all have in common.
    const long first = static_cast<long>(std::hash<std::string_view>()(GetParam().name) %
                                         static_cast<size_t>(distance));
    long cutShort = 0;
    for (const bool all : {false, true}) {
        for (long at = 1 + (first + (all ? distance / 2 : 0)) % distance; at <= count;
             at += distance) {
            const Outcome outcome =
                Run({"LQ_FAIL_AT=" + std::to_string(at), all ? "LQ_FAIL_ALL=1" : "LQ_FAIL_ONE=1"});
            const std::string now = ReadFile(InFolder("out"));
            const bool isWhole = IsWhole(outcome, right) && now == written;
            cutShort += isWhole ? 0 : 1;
            ASSERT_TRUE(isWhole ||
                        (EndsWithOneSentence(outcome, right) &&
                         (now == written || (now == kOld && !outcome.err.ends_with(kSaved)))))
                << "allocation " << at << " of " << count << (all ? " and all later" : "")
                << ", exit status " << outcome.status << ", " << outcome.err << "output:\n"
                << outcome.out << "\nfile:\n"
                << now.substr(0, 1000);
            ASSERT_EQ(FilesIn(TestFolder()), files) << at;
        }
    }
    EXPECT_GT(cutShort, 0);
}

// clang-format off
const Job kJobs[] = {
    {"Help", {"--help"}}, {"Version", {"--version"}}, {"HelpOfShow", {"show", "-h"}},
    {"ManPage", {"--generate", "man"}}, {"NoCommand", {"nonsense"}},
    {"NoOption", {"show", "plant.xml", "--nonsense"}}, {"Types", {"types"}},
    {"TypesJson", {"types", "--json"}},
    {"Value", {"value", "300", "-5", "T#1h30m", "16#FF", "1.5E400", "no"}},
    {"ValueJson", {"value", "-", "--json"}, "1\n2.5\nDT#2024-02-29-12:00:00\nX\n"},
    {"Scan", {"scan", "source.st"}}, {"ScanJson", {"scan", "source.st", "--json"}},
    {"ScanErrors", {"scan", "--errors", "source.st"}}, {"ScanNoText", {"scan", "-"}, "a\xE2\x82"},
    {"Translate", {"translate", "plant.xml", "-o", "out"}},
    {"TranslateToOutput", {"translate", "plant.xml", "-o", "-"}},
    {"TranslateJson", {"translate", "plant.xml", "--json"}},
    {"TranslateNoXml", {"translate", "-"}, "<project><a></project>"},
    {"TranslateNoFile", {"translate", "nowhere.xml"}}, {"ShowProject", {"show", "plant.xml"}},
    {"ShowImage", {"show", "plant.lqt"}},
    {"ShowJson", {"show", "plant.lqt", "--json", "-t", "units", "-t", "names"}},
    {"ShowFind", {"show", "plant.xml", "--find", "Mixing.stirring"}},
    {"ShowFindsNothing", {"show", "plant.lqt", "--find", "Pressurs"}},
    {"ShowNoImage", {"show", "source.st"}},
    {"ShowSave", {"show", "plant.lqt", "-t", "arrays", "--save", "out"}},
    {"ReportOfProject", {"report", "plant.xml", "-o", "out"}},
    {"ReportOfImage", {"report", "plant.lqt", "-o", "out"}},
    {"Pou", {"pou", "plant.xml", "Mixing"}},
    {"PouInterface", {"pou", "plant.xml", "Clamp", "--interface", "--json"}},
    {"PouOfNone", {"pou", "plant.xml", "Clmp"}}, {"Fb", {"fb", "plant.xml", "Mixing", "stirring"}},
    {"FbOfNone", {"fb", "plant.xml", "Mixing", "stiring"}}, {"Tasks", {"tasks", "plant.xml"}},
    {"TasksJson", {"tasks", "plant.xml", "--json"}},
    {"Symbols", {"symbols", "plant.xml", "-e", "--csv", "-s", "name", "-o", "out"}},
    {"Uses", {"uses", "plant.xml", "litres"}},
    {"TranslateUses", {"translate", "plant.xml", "--uses"}},
    {"SymbolsJson", {"symbols", "plant.xml", "-u", "Clamp", "--json"}},
    {"Diff", {"diff", "plant.xml", "-"}, "<project><types/></project>"},
    {"DiffJson", {"diff", "-", "plant.lqt", "--json"}, "<project><types/></project>"},
    {"TranslateText", {"translate", "plant.st", "-o", "out"}},
    {"TranslateFaults", {"translate", "-"}, faults.c_str()},
    {"CheckText", {"check", "plant.st"}}, {"CheckFaults", {"check", "-"}, faults.c_str()},
    {"UsesInText", {"uses", "plant.st", "litres"}},
    {"DiffOfTexts", {"diff", "plant.xml", "plant.st"}},
    {"DiffOfFaults", {"diff", "plant.st", "-", "--json"}, faults.c_str()},
    {"JapaneseTasks", {"tasks", "plant.xml"}, "", "japanese"},
    {"JapaneseValue", {"value", "1", "X"}, "", "japanese"},
    {"JapaneseNoXml", {"show", "-"}, "<project><a></project>", "japanese"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Commands, FailingMalloc, testing::ValuesIn(kJobs),
                         [](const auto& job) { return job.param.name; });

}  // namespace
}  // namespace lq::test
