// Figures beside their rivals'.
//
// A benchmark counts items (SetItemsProcessed); its figure is the processor time an item, or one of
// its counters. A comparison sets two figures of one run side by side, or one beside a fixed limit.
#pragma once

#include <string>
#include <vector>

namespace lq::bench {

enum class Unit { kTime, kBytes, kNumber };

struct Comparison {
    std::string work;
    std::string ours;          // names of benchmarks
    std::string rival;         // empty: `limit` is a figure, not a ratio
    double limit = 0;          // the largest ratio allowed; 0: for information
    std::string counter = {};  // empty: nanoseconds an item
    Unit unit = Unit::kTime;
};

// Kept until Report; benchmarks announce theirs while they are registered.
void Compare(Comparison comparison);

// Runs the benchmarks that the arguments select and prints the comparisons of those that ran. The
// exit status.
int RunAndCompare(int argc, char** argv);

}  // namespace lq::bench
