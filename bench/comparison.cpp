#include "bench/comparison.h"

#include <cstdio>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include <benchmark/benchmark.h>

namespace lq::bench {

namespace {

std::vector<Comparison>& Comparisons() {
    static std::vector<Comparison> comparisons;
    return comparisons;
}

struct Figure {
    double median;
    double best;
};

// The figures of every repetition of every benchmark, by counter, "" being the time an item.
class Figures : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            const std::string& name = run.run_name.function_name;
            if (run.error_occurred) {
                std::fprintf(stderr, "%s: %s\n", name.c_str(), run.error_message.c_str());
            } else if (run.run_type == Run::RT_Iteration) {
                Keep(name, run.counters);
            }
        }
    }

    // Nothing when that benchmark did not run.
    std::optional<Figure> Find(const std::string& name, const std::string& counter) const {
        const auto found = figures_.find({name, counter});
        if (found == figures_.end()) {
            return std::nullopt;
        }
        const std::multiset<double>& sorted = found->second;
        const auto count = static_cast<std::ptrdiff_t>(sorted.size());
        const double low = *std::next(sorted.begin(), (count - 1) / 2);
        const double high = *std::next(sorted.begin(), count / 2);
        return Figure{(low + high) / 2, *sorted.begin()};
    }

  private:
    void Keep(const std::string& name, const benchmark::UserCounters& counters) {
        std::fprintf(stderr, "measured %s\n", name.c_str());
        for (const auto& [counter, value] : counters) {
            figures_[{name, counter}].insert(value);
        }
        if (const auto found = counters.find("items_per_second"); found != counters.end()) {
            figures_[{name, std::string()}].insert(1e9 / found->second);
        }
    }

    std::map<std::pair<std::string, std::string>, std::multiset<double>> figures_;
};

std::string Text(double figure, Unit unit) {
    static constexpr struct {
        double above;
        double divisor;
        const char* name;
    } kScales[3][3] = {{{1e6, 1e6, " ms"}, {1e3, 1e3, " us"}, {0, 1, " ns"}},
                       {{1e6, 1e6, " MB"}, {1e4, 1e3, " kB"}, {0, 1, " B"}},
                       {{1e6, 1e6, " M"}, {0, 1, ""}}};
    char text[40] = "";
    for (const auto& scale : kScales[static_cast<int>(unit)]) {
        if (figure >= scale.above) {
            std::snprintf(text, sizeof(text), "%.3g%s", figure / scale.divisor, scale.name);
            break;
        }
    }
    return text;
}

std::string Text(const char* format, double number) {
    char text[40];
    std::snprintf(text, sizeof(text), format, number);
    return text;
}

std::string RatioText(double ratio) {
    return Text(ratio < 0.1 ? "%.2g" : "%.2f", ratio);
}

// As a table that documents can take over. "best" is the ratio of the fastest repetitions, which
// says more than that of the medians where neighbours slow the machine down by fits.
void Print(const Figures& figures) {
    constexpr char kRow[] = "| %-52s | %9s | %-26s | %9s | %6s | %6s | %9s | %-4s |\n";
    std::printf(kRow, "Work", "ours", "rival", "rival's", "ratio", "best", "goal", "met");
    std::printf("|---|---:|---|---:|---:|---:|---:|---|\n");
    for (const Comparison& c : Comparisons()) {
        const auto ours = figures.Find(c.ours, c.counter);
        const auto rival = c.rival.empty() ? std::nullopt : figures.Find(c.rival, c.counter);
        if (!ours || (!rival && !c.rival.empty())) {
            continue;
        }
        const double measured = rival ? ours->median / rival->median : ours->median;
        const std::string limit = rival ? Text("%.3g", c.limit) : Text(c.limit, c.unit);
        std::printf(kRow, c.work.c_str(), Text(ours->median, c.unit).c_str(),
                    c.rival.substr(c.rival.rfind('/') + 1).c_str(),
                    rival ? Text(rival->median, c.unit).c_str() : "",
                    rival ? RatioText(measured).c_str() : "",
                    rival ? RatioText(ours->best / rival->best).c_str() : "",
                    c.limit > 0 ? ("<= " + limit).c_str() : "",
                    c.limit <= 0          ? ""
                    : measured <= c.limit ? "yes"
                                          : "no");
    }
}

}  // namespace

void Compare(Comparison comparison) {
    Comparisons().push_back(std::move(comparison));
}

int RunAndCompare(int argc, char** argv) {
    // Repetitions of all benchmarks alternate, so that what else the machine does meets both sides
    // of a comparison. Arguments of the caller come later and win.
    std::string program = argc > 0 ? argv[0] : "lq_bench";
    std::string defaults[] = {"--benchmark_repetitions=5", "--benchmark_min_time=0.1",
                              "--benchmark_enable_random_interleaving=true"};
    std::vector<char*> arguments = {program.data()};
    for (std::string& flag : defaults) {
        arguments.push_back(flag.data());
    }
    for (int i = 1; i < argc; ++i) {
        arguments.push_back(argv[i]);
    }
    int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 2;
    }
    Figures figures;
    benchmark::RunSpecifiedBenchmarks(&figures);
    Print(figures);
    return 0;
}

}  // namespace lq::bench
