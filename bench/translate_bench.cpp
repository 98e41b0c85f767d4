// `lq translate` of generated projects with 1,000 units, beside a parser that does nothing with
// what it sees. Both are processes of their own: their processor time, their peak of memory and
// their instructions count.
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "bench/comparison.h"
#include "bench/inputs.h"
#include "bench/launcher.h"
#include "bench/workplace.h"

namespace lq::bench {
namespace {

namespace fs = std::filesystem;

constexpr int64_t kUnits = 1000;
constexpr int64_t kMany = 1'000'000;

// What is translated: so many globals, or so many locals of one unit.
struct Input {
    int64_t count;
    bool areLocals = false;

    int64_t Declarations() const { return count + (areLocals ? 0 : 3 * kUnits); }
};

fs::path ProjectFile(const Input& input) {
    const char* const shape = input.areLocals ? "locals" : "globals";
    fs::path path = TheWorkplace() / (std::to_string(input.count) + shape + ".xml");
    if (!fs::exists(path)) {
        std::ofstream(path) << (input.areLocals ? ProjectOfUnits(1, input.count)
                                                : Project(input.count, kUnits));
    }
    return path;
}

void Parse(const char* project) {
    execl(LQ_EXPAT_ALONE, "lq_expat_alone", project, nullptr);
}

// Of the program that has read nothing.
double PeakOfNothing() {
    static const double peak = RunAlone(TellVersion, "").peak;
    return peak;
}

void RunOften(benchmark::State& state, const Input& input, Work work) {
    const fs::path project = ProjectFile(input);
    Cost cost;
    for (auto _ : state) {
        cost = RunAlone(work, project.string());
        if (!cost.succeeded) {
            state.SkipWithError("the process failed");
            return;
        }
        state.SetIterationTime(cost.seconds);
    }
    const auto size = static_cast<double>(fs::file_size(project));
    state.SetItemsProcessed(state.iterations() * input.Declarations());
    state.counters["peak"] = cost.peak;
    state.counters["own/file"] = (cost.peak - PeakOfNothing()) / size;
}

// Once, as it is the same each time.
void CountOnce(benchmark::State& state, const Input& input, bool isOurs) {
    static std::map<std::pair<int64_t, bool>, double> all;
    double& count = all[{input.count, isOurs}];
    for (auto _ : state) {
        if (count == 0) {
            const std::string project = ProjectFile(input).string();
            count = CountInstructions(isOurs ? LQ_TOOL " translate " + project + " -o " + project +
                                                   ".lqt"
                                             : LQ_EXPAT_ALONE " " + project);
        }
    }
    if (count == 0) {
        state.SkipWithError("the instructions were not counted");
    }
    state.counters["instructions"] = count;
}

const bool kRegistered = [] {
    const auto add = [](const std::string& name, const Input& input, Work work) {
        benchmark::RegisterBenchmark(name.c_str(), RunOften, input, work)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        return name;
    };
    const auto addCount = [](const std::string& name, const Input& input, bool isOurs) {
        benchmark::RegisterBenchmark(name.c_str(), CountOnce, input, isOurs)->Iterations(1);
        return name;
    };
    const struct {
        int64_t globals;
        double time;  // the largest ratios, or 0
        double instructions;
        double memory;
    } kGoals[] = {
        {1000, 0, 2.3, 0}, {10'000, 0, 2.1, 2.0}, {100'000, 2.4, 0, 2.0}, {kMany, 0, 0, 2.0}};
    std::string last;
    for (const auto& goal : kGoals) {
        const Input input = {goal.globals};
        const std::string base = "translate/" + std::to_string(goal.globals) + "/";
        const std::string ours = add(base + "lq", input, TranslateProject);
        const std::string rival = add(base + "expat alone", input, Parse);
        const std::string work = "translate " + std::to_string(goal.globals) + " globals";
        Compare({work + ", a declaration", ours, rival, goal.time});
        if (goal.instructions > 0) {
            Compare({work + ", instructions", addCount(base + "counted/lq", input, true),
                     addCount(base + "counted/expat alone", input, false), goal.instructions,
                     "instructions", Unit::kNumber});
        }
        Compare(
            {work + ", own peak beside file", ours, "", goal.memory, "own/file", Unit::kNumber});
        if (!last.empty()) {
            Compare({work + ", beside a tenth", ours, last, 1.2});
        }
        last = ours;
    }
    const std::string locals = add("translate/locals", {kMany, true}, TranslateProject);
    Compare({"translate 1000000 locals, peak beside as many globals", locals, last, 1.3, "peak",
             Unit::kBytes});
    return true;
}();

}  // namespace
}  // namespace lq::bench
