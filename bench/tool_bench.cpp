// Commands of the tool that print what they read, beside the ones that read it: of 3,000 units with
// 100 variables each, and of a source text.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "bench/comparison.h"
#include "bench/launcher.h"
#include "bench/workplace.h"

namespace lq::bench {
namespace {

constexpr int kUnits = 3000;
constexpr int kVariables = 100;
constexpr int kLines = 20'000;

template <typename... Arguments>
void RunTool(const Arguments&... arguments) {
    if (std::freopen("/dev/null", "w", stdout)) {
        execl(LQ_TOOL, "lq", arguments..., nullptr);
    }
}

std::string ImageOf(const char* project) {
    return std::string(project) + ".lqt";
}

void Translate(const char* project) {
    RunTool("translate", project, "-o", ImageOf(project).c_str());
}

// Reads an image and prints a table without lines.
void ReadImage(const char* project) {
    RunTool("show", ImageOf(project).c_str(), "--table", "arrays");
}

std::string ProjectFile() {
    const std::string path = TheWorkplace() / "units.xml";
    if (!std::filesystem::exists(path)) {
        std::ofstream out(path);
        out << "<project xmlns='http://www.plcopen.org/xml/tc6_0201'><types><pous>";
        for (int unit = 0; unit < kUnits; ++unit) {
            out << "<pou name='Unit_" << unit << "' pouType='functionBlock'><interface><localVars>";
            for (int i = 0; i < kVariables; ++i) {
                out << "<variable name='Var_" << i
                    << "'><type><INT/></type><initialValue><simpleValue value='" << i
                    << "'/></initialValue></variable>\n";
            }
            out << "</localVars></interface></pou>\n";
        }
        out << "</pous></types></project>\n";
        out.close();
        RunAlone(Translate, path);  // for its image
    }
    return path;
}

std::string SourceFile() {
    const std::string path = TheWorkplace() / "source.st";
    if (!std::filesystem::exists(path)) {
        std::ofstream out(path);
        for (int i = 0; i < kLines; ++i) {
            out << "Level := 16#1F + 3.5 * (Speed_" << i
                << " - 12); IF Open THEN Delay := T#1h; END_IF; (* as it was *)\n";
        }
    }
    return path;
}

void RunOften(benchmark::State& state, std::string (*file)(), Work work) {
    const std::string path = file();
    Cost cost;
    for (auto _ : state) {
        cost = RunAlone(work, path);
        if (!cost.succeeded) {
            state.SkipWithError("the process failed");
            return;
        }
        state.SetIterationTime(cost.seconds);
    }
    state.SetItemsProcessed(state.iterations());
    state.counters["peak"] = cost.peak;
}

const bool kRegistered = [] {
    const auto add = [](const std::string& name, std::string (*file)(), Work work) {
        benchmark::RegisterBenchmark(("tool/" + name).c_str(), RunOften, file, work)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        return "tool/" + name;
    };
    const auto compare = [](const std::string& work, const std::string& ours,
                            const std::string& rival, double time, double peak) {
        Compare({work, ours, rival, time});
        Compare({work + ", peak", ours, rival, peak, "peak", Unit::kBytes});
    };
    const std::string translate = add("translate", ProjectFile, Translate);
    const std::string image = add("read an image", ProjectFile, ReadImage);
    const std::string scan =
        add("scan", SourceFile, [](const char* source) { RunTool("scan", source); });
    compare("lq show beside translate",
            add("show", ProjectFile, [](const char* project) { RunTool("show", project); }),
            translate, 2.5, 1.5);
    compare("lq show --json beside translate",
            add("show json", ProjectFile, [](const char* p) { RunTool("show", p, "--json"); }),
            translate, 2.5, 1.5);
    compare("lq report beside translate",
            add("report", ProjectFile,
                [](const char* project) {
                    RunTool("report", project, "-o", (std::string(project) + ".html").c_str());
                }),
            translate, 3.0, 2.0);
    compare("lq show --find in an image",
            add("find", ProjectFile,
                [](const char* project) {
                    RunTool("show", ImageOf(project).c_str(), "--find", "Unit_1500.Var_50");
                }),
            image, 2.0, 2.0);
    Compare({"lq scan --json beside plain",
             add("scan json", SourceFile,
                 [](const char* source) { RunTool("scan", source, "--json"); }),
             scan, 3.0});
    return true;
}();

}  // namespace
}  // namespace lq::bench
