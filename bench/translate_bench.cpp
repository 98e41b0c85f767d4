// `lq translate` of generated projects with 1,000 units, beside a parser that does nothing with
// what it sees. Both are processes of their own: their processor time and their peak of memory
// count.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#include <benchmark/benchmark.h>
#include <expat.h>

#include "bench/comparison.h"
#include "bench/inputs.h"
#include "bench/launcher.h"
#include "bench/workplace.h"

namespace lq::bench {
namespace {

namespace fs = std::filesystem;

constexpr int64_t kUnits = 1000;
constexpr int64_t kGlobals[] = {1000, 10'000, 100'000};

fs::path ProjectFile(int64_t globals) {
    fs::path path = TheWorkplace() / (std::to_string(globals) + ".xml");
    if (!fs::exists(path)) {
        std::ofstream(path) << Project(globals, kUnits);
    }
    return path;
}

void Translate(const char* project) {
    const std::string image = std::string(project) + ".lqt";
    if (std::freopen("/dev/null", "w", stdout)) {
        execl(LQ_TOOL, "lq", "translate", project, "-o", image.c_str(), nullptr);
    }
}

void Parse(const char* project) {
    const XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
    XML_SetElementHandler(
        parser, [](void*, const XML_Char*, const XML_Char**) {}, [](void*, const XML_Char*) {});
    XML_SetCharacterDataHandler(parser, [](void*, const XML_Char*, int) {});
    std::FILE* file = std::fopen(project, "rb");
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

void RunOften(benchmark::State& state, int64_t globals, Work work) {
    const fs::path project = ProjectFile(globals);
    Cost cost;
    for (auto _ : state) {
        cost = RunAlone(work, project.string());
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
    const auto add = [](const std::string& name, int64_t globals, Work work) {
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
