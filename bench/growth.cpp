// How the costs of a translation grow: processor time and memory a declaration, less what the tool
// takes without a project, from 1,000 declarations to 1,000,000, as a plot.
//
//   lq_growth FILE.svg
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/inputs.h"
#include "bench/launcher.h"
#include "bench/workplace.h"

namespace lq::bench {
namespace {

namespace fs = std::filesystem;

constexpr int64_t kCounts[] = {1000, 3000, 10'000, 30'000, 100'000, 300'000, 1'000'000};
constexpr int kRuns = 5;  // of which the best counts

struct Shape {
    const char* name;
    const char* colour;
    std::string (*project)(int64_t declarations);
};
constexpr Shape kShapes[] = {
    {"globals", "#1f6fb4", [](int64_t n) { return Project(n, 0); }},
    {"locals of one unit", "#c8541b", [](int64_t n) { return ProjectOfUnits(1, n); }},
    {"units of 100 variables", "#2f8f3e", [](int64_t n) { return ProjectOfUnits(n / 100, 100); }},
};

// A panel of the plot: the figure of each shape and count, on a logarithmic scale.
struct Panel {
    const char* title;
    double low, high;  // powers of ten between which the figures lie
    int left;          // its place in the plot
    std::vector<double> figures[std::size(kShapes)];
};

Cost Best(Work work, const std::string& file) {
    Cost best = RunAlone(work, file);
    for (int run = 1; run < kRuns; ++run) {
        const Cost cost = RunAlone(work, file);
        best.succeeded = best.succeeded && cost.succeeded;
        best.seconds = std::min(best.seconds, cost.seconds);
        best.peak = std::min(best.peak, cost.peak);
    }
    return best;
}

bool Measure(Panel& time, Panel& memory) {
    const Cost nothing = Best(TellVersion, "");
    bool succeeded = nothing.succeeded;
    for (std::size_t shape = 0; shape < std::size(kShapes); ++shape) {
        for (const int64_t count : kCounts) {
            const std::string file = (TheWorkplace() / "growth.xml").string();
            std::ofstream(file) << kShapes[shape].project(count);
            const Cost cost = Best(TranslateProject, file);
            succeeded = succeeded && cost.succeeded;
            const auto declarations = static_cast<double>(count);
            time.figures[shape].push_back((cost.seconds - nothing.seconds) * 1e6 / declarations);
            memory.figures[shape].push_back((cost.peak - nothing.peak) / declarations);
            std::fprintf(stderr, "%s, %lld: %.2f us, %.0f B\n", kShapes[shape].name,
                         static_cast<long long>(count), time.figures[shape].back(),
                         memory.figures[shape].back());
        }
    }
    return succeeded;
}

constexpr int kWidth = 300, kHeight = 200, kTop = 40;

double Across(const Panel& panel, std::size_t count) {
    const double of = std::log10(static_cast<double>(kCounts[count])) - 3;
    return panel.left + kWidth * of / 3;
}
double Down(const Panel& panel, double figure) {
    const double low = std::log10(panel.low), high = std::log10(panel.high);
    const double of = (std::log10(std::clamp(figure, panel.low, panel.high)) - low) / (high - low);
    return kTop + kHeight * (1 - of);
}

void Draw(std::FILE* to, const Panel& panel) {
    std::fprintf(to, "<text x='%d' y='%d' font-weight='bold'>%s</text>\n", panel.left, kTop - 14,
                 panel.title);
    const double steps[] = {1, 2, 5};
    for (double power = panel.low; power <= panel.high; power *= 10) {
        for (const double step : steps) {
            if (power * step > panel.high) {
                break;
            }
            const double y = Down(panel, power * step);
            std::fprintf(to, "<path d='M%d %.0fh%d' stroke='#ddd'/>", panel.left, y, kWidth);
            std::fprintf(to, "<text x='%d' y='%.0f' text-anchor='end'>%g</text>\n", panel.left - 6,
                         y + 4, power * step);
        }
    }
    const char* const labels[] = {"1,000", "10,000", "100,000", "1,000,000"};
    for (std::size_t i = 0; i < std::size(labels); ++i) {
        const double x = Across(panel, 2 * i);
        std::fprintf(to, "<path d='M%.0f %dv%d' stroke='#ddd'/>", x, kTop, kHeight);
        std::fprintf(to, "<text x='%.0f' y='%d' text-anchor='middle'>%s</text>\n", x,
                     kTop + kHeight + 18, labels[i]);
    }
    for (std::size_t shape = 0; shape < std::size(kShapes); ++shape) {
        std::fprintf(to, "<polyline fill='none' stroke-width='2' stroke='%s' points='",
                     kShapes[shape].colour);
        for (std::size_t i = 0; i < std::size(kCounts); ++i) {
            std::fprintf(to, "%.1f,%.1f ", Across(panel, i), Down(panel, panel.figures[shape][i]));
        }
        std::fprintf(to, "'/>\n");
    }
}

bool WritePlot(const char* file) {
    Panel time = {"processor time a declaration, \xC2\xB5s", 1, 10, 60, {}};
    Panel memory = {"memory a declaration, bytes", 100, 2000, 440, {}};
    std::FILE* const to = Measure(time, memory) ? std::fopen(file, "w") : nullptr;
    if (!to) {
        return false;
    }
    std::fprintf(to,
                 "<svg xmlns='http://www.w3.org/2000/svg' width='780' height='300' "
                 "font-family='sans-serif' font-size='12'>\n"
                 "<rect width='780' height='300' fill='white'/>\n");
    Draw(to, time);
    Draw(to, memory);
    int x = 60;
    for (const Shape& shape : kShapes) {
        std::fprintf(to,
                     "<path d='M%d 284h24' stroke-width='2' stroke='%s'/>"
                     "<text x='%d' y='288'>%s</text>\n",
                     x, shape.colour, x + 30, shape.name);
        x += 200;
    }
    std::fprintf(to, "</svg>\n");
    return std::fclose(to) == 0;
}

}  // namespace
}  // namespace lq::bench

int main(int argc, char** argv) {
    lq::bench::StartLauncher();
    if (argc != 2) {
        std::fprintf(stderr, "usage: lq_growth FILE.svg\n");
        return 2;
    }
    return lq::bench::WritePlot(argv[1]) ? 0 : 1;
}
