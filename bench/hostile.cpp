// Whether `lq translate` takes time and memory in proportion to the document, whatever its shape:
// each is translated at one size and at four times that size. What counts is the processor time of
// the process and its peak of memory, less those of `lq --version`.
//
// In proportion are at most twice the time and twice the memory a byte at the larger size that
// there were at the smaller one, and at most kMostPeak bytes of memory a byte of the larger
// document. The floors keep chance out of small figures. Exit status 1 when a hostile shape is out
// of proportion.
//
// usage: lq_hostile [WORDS [BYTES]]: the shapes with WORDS in their names, of that smaller size.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <unistd.h>

#include "bench/launcher.h"
#include "bench/shapes.h"

namespace lq::bench {
namespace {

constexpr std::size_t kSmaller = 1 << 20;
constexpr std::size_t kGrowth = 4;
constexpr double kMostMore = 2;   // of time and memory a byte
constexpr double kMostPeak = 64;  // bytes a byte
constexpr double kLeastSeconds = 0.02;
constexpr double kLeastBytes = 1 << 20;
constexpr rlim_t kMostSeconds = 20;  // of one run
constexpr rlim_t kMostMemory = rlim_t{4} << 30;

void Execute(const char* argument, const char* file) {
    const rlimit time = {kMostSeconds, kMostSeconds};
    const rlimit memory = {kMostMemory, kMostMemory};
    setrlimit(RLIMIT_CPU, &time);
    setrlimit(RLIMIT_AS, &memory);
    if (std::freopen("/dev/null", "w", stdout) && std::freopen("/dev/null", "w", stderr)) {
        execl(LQ_TOOL, "lq", argument, file, nullptr);
    }
}

void Translate(const char* file) {
    Execute("translate", file);
}

void Start(const char*) {
    Execute("--version", nullptr);
}

// The least of three, unless one takes long.
Cost Measure(Work work, const std::string& file) {
    Cost least = RunAlone(work, file);
    for (int i = 0; i < 2 && least.seconds < 0.2; ++i) {
        const Cost cost = RunAlone(work, file);
        least.seconds = std::min(least.seconds, cost.seconds);
        least.peak = std::min(least.peak, cost.peak);
    }
    return least;
}

class Comparison {
  public:
    Comparison() : start_(Measure(Start, "")) {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "lq_hostile_XXXXXX").string();
        const int file = mkstemp(pattern.data());
        if (file >= 0) {
            close(file);
            path_ = pattern;
        }
    }
    ~Comparison() { unlink(path_.c_str()); }

    bool Works() const { return !path_.empty() && start_.succeeded; }

    // Prints whether the shape is in proportion.
    bool Compare(const char* kind, const Shape& shape, std::size_t bytes) {
        const Run smaller = Translated(shape, bytes * shape.times);
        const Run larger = Translated(shape, bytes * shape.times * kGrowth);
        const double growth = larger.bytes / smaller.bytes;
        const double time = larger.seconds / smaller.seconds / growth;
        const double memory = larger.peak / smaller.peak / growth;
        const double peak = larger.peak / larger.bytes;
        const bool isFine =
            larger.isWhole && time <= kMostMore && memory <= kMostMore && peak <= kMostPeak;
        std::printf("%-7s %-40s %7.0f KB %8.3f s %7.1f MB %5.2f %5.2f %6.1f  %s%s\n", kind,
                    shape.name, larger.bytes / 1024, larger.seconds, larger.peak / (1 << 20), time,
                    memory, peak, isFine ? "in proportion" : "not in proportion",
                    larger.isWhole ? "" : ": ended by the limits");
        std::fflush(stdout);
        return isFine;
    }

  private:
    struct Run {
        double bytes, seconds, peak;
        bool isWhole;
    };

    Run Translated(const Shape& shape, std::size_t bytes) const {
        const std::string document = shape.document(bytes);
        std::ofstream(path_, std::ios::binary) << document;
        const Cost cost = Measure(Translate, path_);
        return {static_cast<double>(document.size()),
                std::max(cost.seconds - start_.seconds, kLeastSeconds),
                std::max(cost.peak - start_.peak, kLeastBytes),
                cost.status >= 0 && cost.status <= 2};
    }

    std::string path_;
    Cost start_;
};

int Main(std::string_view word, std::size_t bytes) {
    Comparison comparison;
    if (!comparison.Works()) {
        std::fputs("lq cannot be started\n", stderr);
        return 2;
    }
    std::printf("%-48s %10s %10s %10s %5s %5s %6s\n", "", "file", "time", "peak", "time", "peak",
                "peak");
    std::printf("%-48s %10s %10s %10s %11s %6s\n", "", "", "", "", "a byte, 4:1", "/ file");
    const auto areFine = [&](const char* kind, std::span<const Shape> shapes) {
        bool all = true;
        for (const Shape& shape : shapes) {
            if (std::string_view(shape.name).find(word) != std::string_view::npos) {
                all = comparison.Compare(kind, shape, bytes) && all;
            }
        }
        return all;
    };
    areFine("honest", HonestShapes());
    return areFine("hostile", HostileShapes()) ? 0 : 1;
}

}  // namespace
}  // namespace lq::bench

int main(int argc, char** argv) {
    lq::bench::StartLauncher();
    const long bytes = argc > 2 ? std::atol(argv[2]) : 0;
    return lq::bench::Main(argc > 1 ? argv[1] : "",
                           bytes > 0 ? static_cast<std::size_t>(bytes) : lq::bench::kSmaller);
}
