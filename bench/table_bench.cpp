// Lines of the tables: globals, which have an index, beside a map of structures; and walking past
// lines of a table without one.
#include <map>
#include <memory>
#include <unordered_map>

#include <benchmark/benchmark.h>

#include "bench/comparison.h"
#include "bench/declared_global.h"
#include "bench/inputs.h"
#include "lq_data/cgtab.h"

namespace lq::bench {
namespace {

constexpr int32_t kWalkedLines = 10'000;

using Text = std::u16string;

std::unique_ptr<CgTab> NewTables() {
    int ok = 0;
    return std::make_unique<CgTab>(ok, nullptr);
}

std::unique_ptr<CgTab> Filled(const std::vector<Text>& names) {
    auto tables = NewTables();
    DeclaredGlobal global;
    for (const Text& name : names) {
        tables->Insert(global.Named(name));
    }
    return tables;
}

// What a global's line says.
struct Global {
    uint32_t scope = 0;
    int32_t address = -1;
    uint8_t type = 0;
    uint32_t descriptor = 0;
    int32_t constant = -1;
    uint32_t count = 0;
};
using Map = std::unordered_map<Text, Global>;

std::unique_ptr<Map> FilledMap(const std::vector<Text>& names) {
    auto map = std::make_unique<Map>();
    for (const Text& name : names) {
        map->try_emplace(name, Global{DS_VAR_GLOBAL, -1, IEC_INT, 0, -1, 1});
    }
    return map;
}

template <typename Fill>
void Append(benchmark::State& state, std::size_t count, Fill fill) {
    const std::vector<Text> names = Names(count);
    for (auto _ : state) {
        auto filled = fill(names);
        state.PauseTiming();
        filled.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(count));
}

bool LookUp(CgTab& tables, const Text& name) {
    CgTab::GLB_LINE line;
    return tables.Look(name.c_str(), &line, 0) >= 0;
}
bool LookUp(Map& map, const Text& name) {
    return map.find(name) != map.end();
}

template <typename Fill>
void Look(benchmark::State& state, std::size_t count, bool shuffled, Fill fill) {
    static std::map<std::size_t, decltype(fill({}))> all;  // filling takes far longer than looking
    auto& filled = all[count];
    if (!filled) {
        filled = fill(Names(count));
    }
    const std::vector<Text> names = shuffled ? Shuffled(Names(count)) : Names(count);
    LookUp(*filled, names.front());  // builds the index
    std::size_t i = 0;
    std::size_t found = 0;
    for (auto _ : state) {
        i = i + 1 < count ? i + 1 : 0;
        found += LookUp(*filled, names[i]) ? 1 : 0;
    }
    if (found != static_cast<std::size_t>(state.iterations())) {
        state.SkipWithError("a line was not found");
    }
    state.SetItemsProcessed(state.iterations());
}

void WalkDebugRecords(benchmark::State& state) {
    const auto tables = NewTables();
    for (int32_t i = 0; i < kWalkedLines; ++i) {
        const std::string text = "record " + std::to_string(i);
        tables->Insert(CgTab::DBG_INFO{reinterpret_cast<const unsigned char*>(text.data()),
                                       static_cast<uint8_t>(text.size())});
    }
    constexpr unsigned char kAbsent[] = "no record";
    for (auto _ : state) {
        benchmark::DoNotOptimize(tables->Look(CgTab::DBG_INFO{kAbsent, 9}, nullptr));
    }
    state.SetItemsProcessed(state.iterations() * kWalkedLines);
}

// A name that is not there is looked for, and then appended.
void WalkNames(benchmark::State& state) {
    const auto tables = NewTables();
    for (const Text& name : Names(kWalkedLines)) {
        tables->Insert(name.c_str());
    }
    const Text last = Names(kWalkedLines).back();
    for (auto _ : state) {
        benchmark::DoNotOptimize(tables->Insert(last.c_str()));
    }
    state.SetItemsProcessed(state.iterations() * kWalkedLines);
}

const bool kRegistered = [] {
    const auto add = [](const std::string& name, auto code) {
        benchmark::RegisterBenchmark(name.c_str(), code);
        return name;
    };
    for (const std::string operation : {"append", "look up", "look up in order"}) {
        const bool append = operation == "append";
        const bool shuffled = operation == "look up";
        std::string first;
        for (const std::size_t count : {10'000, 100'000, 1'000'000}) {
            const std::string base = "tables/" + operation + "/" + std::to_string(count) + "/";
            const std::string ours = add(base + "lq_data", [=](auto& state) {
                append ? Append(state, count, Filled) : Look(state, count, shuffled, Filled);
            });
            const std::string rival = add(base + "unordered_map", [=](auto& state) {
                append ? Append(state, count, FilledMap) : Look(state, count, shuffled, FilledMap);
            });
            Compare({operation + " " + std::to_string(count) + " globals, a line", ours, rival});
            first = first.empty() ? ours : first;
            if (count == 1'000'000) {
                Compare({operation + " globals, 1000000 beside 10000", ours, first, 2.0});
            }
        }
    }
    Compare(
        {"walk past a debug record", add("tables/walk/debug records", WalkDebugRecords), "", 15.0});
    Compare({"walk past another name", add("tables/walk/names", WalkNames), "", 15.0});
    return true;
}();

}  // namespace
}  // namespace lq::bench
