// `lq translate` of generated projects with 1,000 units, beside a parser that does nothing with
// what it sees. Both are processes of their own: their processor time and their peak of memory
// count.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <benchmark/benchmark.h>
#include <expat.h>

#include "bench/comparison.h"
#include "bench/inputs.h"

namespace lq::bench {
namespace {

namespace fs = std::filesystem;

constexpr int64_t kUnits = 1000;
constexpr int64_t kGlobals[] = {1000, 10'000, 100'000};

// A folder for the generated projects, removed at the end.
class Workplace {
  public:
    Workplace() {
        std::string pattern = (fs::temp_directory_path() / "lq_bench_XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~Workplace() { fs::remove_all(path_); }

    fs::path operator/(const std::string& name) const { return path_ / name; }

  private:
    fs::path path_;
};

const Workplace& TheWorkplace() {
    static const Workplace workplace;
    return workplace;
}

fs::path ProjectFile(int64_t globals) {
    fs::path path = TheWorkplace() / (std::to_string(globals) + ".xml");
    if (!fs::exists(path)) {
        std::ofstream(path) << Project(globals, kUnits);
    }
    return path;
}

[[noreturn]] void Translate(const fs::path& project) {
    const fs::path image = TheWorkplace() / "image.lqt";
    if (std::freopen("/dev/null", "w", stdout)) {
        execl(LQ_TOOL, "lq", "translate", project.c_str(), "-o", image.c_str(), nullptr);
    }
    _exit(3);
}

[[noreturn]] void Parse(const fs::path& project) {
    const XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
    XML_SetElementHandler(
        parser, [](void*, const XML_Char*, const XML_Char**) {}, [](void*, const XML_Char*) {});
    XML_SetCharacterDataHandler(parser, [](void*, const XML_Char*, int) {});
    std::FILE* file = std::fopen(project.c_str(), "rb");
    static char buffer[65536];
    for (;;) {
        const std::size_t size = file ? std::fread(buffer, 1, sizeof(buffer), file) : 0;
        if (XML_Parse(parser, buffer, static_cast<int>(size), size == 0) != XML_STATUS_OK) {
            _exit(1);
        }
        if (size == 0) {
            _exit(0);
        }
    }
}

struct Cost {
    double seconds = 0;
    double peak = 0;  // bytes
    bool succeeded = false;
};

Cost Run(void (*work)(const fs::path&), const fs::path& project) {
    const pid_t child = fork();
    if (child == 0) {
        work(project);
    }
    int status = -1;
    struct rusage usage = {};
    wait4(child, &status, 0, &usage);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) * 1e-6;
    };
    return {seconds(usage.ru_utime) + seconds(usage.ru_stime),
            static_cast<double>(usage.ru_maxrss) * 1024,
            WIFEXITED(status) && WEXITSTATUS(status) == 0};
}

void RunOften(benchmark::State& state, int64_t globals, void (*work)(const fs::path&)) {
    const fs::path project = ProjectFile(globals);
    Cost cost;
    for (auto _ : state) {
        cost = Run(work, project);
        if (!cost.succeeded) {
            state.SkipWithError("the process failed");
            return;
        }
        state.SetIterationTime(cost.seconds);
    }
    state.SetItemsProcessed(state.iterations() * (globals + 3 * kUnits));
    state.counters["peak"] = cost.peak;
    state.counters["file"] = static_cast<double>(fs::file_size(project));
    state.counters["peak/file"] = cost.peak / static_cast<double>(fs::file_size(project));
}

const bool kRegistered = [] {
    const auto add = [](const std::string& name, int64_t globals, auto* work) {
        benchmark::RegisterBenchmark(name.c_str(), RunOften, globals, work)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        return name;
    };
    std::string last;
    for (const int64_t globals : kGlobals) {
        const std::string base = "translate/" + std::to_string(globals) + "/";
        const std::string ours = add(base + "lq", globals, Translate);
        const std::string rival = add(base + "expat alone", globals, Parse);
        const std::string work = "translate " + std::to_string(globals) + " globals";
        Compare({work + ", a declaration", ours, rival, 3.0});
        Compare({work + ", peak beside file", ours, "", 6.0, "peak/file", Unit::kNumber});
        if (!last.empty()) {
            Compare({work + ", beside a tenth", ours, last, 1.2});
        }
        last = ours;
    }
    return true;
}();

}  // namespace
}  // namespace lq::bench
