// Lines of the tables: globals, which have an index, beside a map of structures; and walking past
// lines of a table without one.
#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <unordered_map>

#include <benchmark/benchmark.h>

#include "bench/comparison.h"
#include "bench/declared_global.h"
#include "bench/inputs.h"
#include "lq_data/cgtab.h"
#include "lq_data/cgtab_compiler.h"
#include "lq_data/containers.h"
#include "lq_data/host/base/streams.h"

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

// What finds a global, beside its line.
void IndexBytes(benchmark::State& state, std::size_t count) {
    const auto tables = Filled(Names(count));
    for (auto _ : state) {
        constexpr double kSlotBytes = 8;
        const auto pass = [](void*, uint32_t, int32_t) {};
        const uint32_t slots = CgTabCompiler::ViewIndex(*tables, CgTab::TAB_GLB, pass, nullptr);
        state.counters["bytes"] = slots * kSlotBytes / static_cast<double>(count);
    }
}

// The component of a unit among `count` units that have the same four names.
void LookUpComponents(benchmark::State& state, std::size_t count) {
    const auto tables = NewTables();
    POU_HEADER_TYP* const header = CreatePOUHeader();
    POUH_DECL_LIST_TYP* const record = CreatePOUHDeclList();
    SetAttrOfPOUHeader(header, POUH_DECLLIST, &record);
    FLIST* decls = CreateList(0, LET_MEMORY, sizeof(void*), nullptr);
    SetAttrOfPOUHDeclList(record, POUH_LIST, &decls);
    const std::vector<Text> names = Names(4);
    std::vector<DeclaredGlobal> declared(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        DECL_TYP* const decl = declared[i].Named(names[i]);
        InsertElementOfList(decls, &decl, LC_LAST, 0);
    }
    std::vector<CgTab::POS_DSC> units(count);
    for (CgTab::POS_DSC& unit : units) {
        POU_LIST instances;
        CgTabCompiler::AppendCmp(*tables, header, 0, &instances, unit, 1);
    }
    std::shuffle(units.begin(), units.end(), std::mt19937(1));
    std::size_t i = 0;
    std::size_t found = 0;
    for (auto _ : state) {
        i = i + 1 < count ? i + 1 : 0;
        CgTab::CMP_LINE line;
        found += tables->Look(units[i], names[i % 4].c_str(), &line, 0) >= units[i].start ? 1 : 0;
    }
    if (found != static_cast<std::size_t>(state.iterations())) {
        state.SkipWithError("a component was not found");
    }
    state.SetItemsProcessed(state.iterations());
    for (std::size_t left = names.size(); left != 0; --left) {
        RemoveElementOfList(decls, nullptr, nullptr, LC_LAST, 0);
    }
    DestroyPOUHeader(header);
}

// The jumps of one of `count` labels with one name, as units bring them.
void ResetJumps(benchmark::State& state, std::size_t count) {
    const auto filled = NewTables();
    filled->Insert(u"again", CgTab::kLabelDefinition);
    MEMSTREAM_A line;
    const int32_t size = filled->Put(CgTab::TAB_LBL, line);
    const auto tables = NewTables();
    std::vector<int32_t> labels(count);
    for (std::size_t i = 0; i < count; ++i) {
        labels[i] = static_cast<int32_t>(i) * size;
        MEMSTREAM_A copy;
        copy.PutBlock(line.GetData(), size, nullptr);
        tables->Get(CgTab::TAB_LBL, copy, size);
    }
    std::shuffle(labels.begin(), labels.end(), std::mt19937(1));
    std::size_t i = 0;
    int done = 1;
    for (auto _ : state) {
        i = i + 1 < count ? i + 1 : 0;
        done &= tables->ResetJumps(labels[i]);
    }
    if (done != 1) {
        state.SkipWithError("a label was not found");
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

// A name that is there is entered again, and counted.
void CountName(benchmark::State& state) {
    const auto tables = NewTables();
    const std::vector<Text> names = Names(kWalkedLines);
    for (const Text& name : names) {
        tables->Insert(name.c_str());
    }
    std::size_t i = 0;
    for (auto _ : state) {
        i = i + 1 < names.size() ? i + 1 : 0;
        benchmark::DoNotOptimize(tables->Insert(names[i].c_str()));
    }
    state.SetItemsProcessed(state.iterations());
}

const bool kRegistered = [] {
    const auto add = [](const std::string& name, auto code) {
        benchmark::RegisterBenchmark(name.c_str(), code);
        return name;
    };
    // Of appending 10,000, 100,000 and 1,000,000, which also decodes the declaration and looks for
    // its address, its constant and its name.
    const std::map<std::size_t, double> kAppendGoals = {
        {10'000, 2.5}, {100'000, 1.5}, {1'000'000, 1.0}};
    for (const std::string operation : {"append", "look up", "look up in order"}) {
        const bool append = operation == "append";
        const bool shuffled = operation == "look up";
        std::string first;
        for (const std::size_t count : {10'000u, 100'000u, 1'000'000u}) {
            const std::string base = "tables/" + operation + "/" + std::to_string(count) + "/";
            const std::string ours = add(base + "lq_data", [=](auto& state) {
                append ? Append(state, count, Filled) : Look(state, count, shuffled, Filled);
            });
            const std::string rival = add(base + "unordered_map", [=](auto& state) {
                append ? Append(state, count, FilledMap) : Look(state, count, shuffled, FilledMap);
            });
            Compare({operation + " " + std::to_string(count) + " globals, a line", ours, rival,
                     append ? kAppendGoals.at(count) : 1.0});
            first = first.empty() ? ours : first;
            if (count == 1'000'000) {
                Compare({operation + " globals, 1000000 beside 10000", ours, first});
            }
        }
    }
    for (const std::size_t count : {10'000u, 100'000u, 1'000'000u}) {
        const std::string text = std::to_string(count);
        Compare({"index of " + text + " globals, bytes a line",
                 add("tables/index/" + text, [=](auto& state) { IndexBytes(state, count); }), "",
                 30.0, "bytes", Unit::kBytes});
    }
    for (const bool isLabel : {false, true}) {
        const std::string work = isLabel ? "reset the jumps of a label" : "look up a component";
        const auto at = [&](std::size_t count) {
            return add("tables/" + work + "/" + std::to_string(count), [=](auto& state) {
                isLabel ? ResetJumps(state, count) : LookUpComponents(state, count);
            });
        };
        const std::string few = at(1'000);
        Compare({work + ", 10000 units", at(10'000), "", 300.0});
        Compare({work + ", 30000 units beside 1000", at(30'000), few, 3.0});
    }
    Compare(
        {"walk past a debug record", add("tables/walk/debug records", WalkDebugRecords), "", 15.0});
    Compare({"count a use of one of 10000 other names", add("tables/names", CountName), "", 300.0});
    return true;
}();

}  // namespace
}  // namespace lq::bench
