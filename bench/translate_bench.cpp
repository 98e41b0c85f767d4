// `lq translate` of projects with a growing number of globals: time and memory a declaration should
// stay the same.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

namespace {

namespace fs = std::filesystem;

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

Workplace& TheWorkplace() {
    static Workplace workplace;
    return workplace;
}

fs::path Project(int64_t globals) {
    fs::path path = TheWorkplace() / (std::to_string(globals) + ".xml");
    if (fs::exists(path)) {
        return path;
    }
    std::ofstream file(path);
    file << "<?xml version='1.0' encoding='utf-8'?>\n"
            "<project xmlns='http://www.plcopen.org/xml/tc6_0201'>"
            "<fileHeader companyName='c' productName='p' productVersion='1' "
            "creationDateTime='2024-01-01T00:00:00'/>"
            "<contentHeader name='generated'><coordinateInfo><fbd><scaling x='0' y='0'/></fbd>"
            "<ld><scaling x='0' y='0'/></ld><sfc><scaling x='0' y='0'/></sfc></coordinateInfo>"
            "</contentHeader><types><dataTypes/><pous/></types><instances><configurations>"
            "<configuration name='c'><resource name='r'><globalVars>\n";
    for (int64_t i = 0; i < globals; ++i) {
        file << "<variable name='Conveyor_Motor_" << i << "'><type><INT/></type><initialValue>"
             << "<simpleValue value='" << i % 1000 << "'/></initialValue></variable>\n";
    }
    file << "</globalVars></resource></configuration></configurations></instances></project>\n";
    return path;
}

// Runs the tool; the peak of its memory in bytes, 0 when it failed.
int64_t Run(const fs::path& project, const fs::path& image) {
    const pid_t child = fork();
    if (child == 0) {
        if (!std::freopen("/dev/null", "w", stdout)) {
            _exit(3);
        }
        execl(LQ_TOOL, "lq", "translate", project.c_str(), "-o", image.c_str(), nullptr);
        _exit(3);
    }
    int status = -1;
    struct rusage usage = {};
    wait4(child, &status, 0, &usage);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? usage.ru_maxrss * 1024 : 0;
}

void TranslateGlobals(benchmark::State& state) {
    const fs::path project = Project(state.range(0));
    const fs::path image = TheWorkplace() / "image.lqt";
    int64_t peak = 0;
    for (auto _ : state) {
        peak = Run(project, image);
        if (peak == 0) {
            state.SkipWithError("the tool failed");
            return;
        }
    }
    const auto bytes = static_cast<double>(fs::file_size(image));
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["image"] = bytes;
    state.counters["peak/image"] = static_cast<double>(peak) / bytes;
}

BENCHMARK(TranslateGlobals)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(50000)
    ->Arg(100000)
    ->Arg(200000)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
