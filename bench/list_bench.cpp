// Lists of 32-bit values: what changes them beside std::list, walks beside a cursor that another
// library exports.
#include <list>
#include <memory>

#include <benchmark/benchmark.h>

#include "bench/comparison.h"
#include "bench/rivals/rivals.h"
#include "lq_data/containers.h"

namespace lq::bench {
namespace {

constexpr uint32_t kCount = 100'000;

struct Destroyer {
    void operator()(FLIST* list) const { DestroyList(list); }
};
using ListPtr = std::unique_ptr<FLIST, Destroyer>;

uint32_t Value(uint32_t i) {
    return i * 2654435761u;
}

ListPtr NewList() {
    return ListPtr(CreateList(0, LET_UNSIGNED_1, sizeof(uint32_t), nullptr));
}

void FillList(FLIST* list) {
    for (uint32_t i = 0; i < kCount; ++i) {
        const uint32_t value = Value(i);
        InsertElementOfList(list, &value, LC_LAST, 0);
    }
}

std::list<uint32_t> FilledStdList() {
    std::list<uint32_t> list;
    for (uint32_t i = 0; i < kCount; ++i) {
        list.push_back(Value(i));
    }
    return list;
}

void CountItems(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * kCount);
}

void Append(benchmark::State& state) {
    for (auto _ : state) {
        ListPtr list = NewList();
        FillList(list.get());
        state.PauseTiming();
        list.reset();
        state.ResumeTiming();
    }
    CountItems(state);
}

void AppendStd(benchmark::State& state) {
    for (auto _ : state) {
        auto list = FilledStdList();
        state.PauseTiming();
        list.clear();
        state.ResumeTiming();
    }
    CountItems(state);
}

// The sum of all values, as each way to walk gives it.
enum class Way { kByNext, kByIndex, kBySlot };

template <Way kWay>
uint32_t WalkedSum(FLIST* list) {
    FindElementOfList(list, nullptr, nullptr, LC_REWIND, 0);
    uint32_t sum = 0;
    if constexpr (kWay == Way::kBySlot) {
        void* slot = nullptr;
        while (ListGet(list, slot, nullptr, LC_NEXT, 0) != 0) {
            sum += *static_cast<const uint32_t*>(slot);
        }
    } else {
        uint32_t value = 0;
        for (int32_t i = 1;
             FindElementOfList(list, &value, nullptr, kWay == Way::kByIndex ? LC_AT_INDEX : LC_NEXT,
                               i) != 0;
             ++i) {
            sum += value;
        }
    }
    return sum;
}

uint32_t SumOfAll() {
    uint32_t sum = 0;
    for (uint32_t i = 0; i < kCount; ++i) {
        sum += Value(i);
    }
    return sum;
}

// `walk` gives the sum.
template <typename Walk>
void WalkAll(benchmark::State& state, Walk walk) {
    uint32_t sum = 0;
    for (auto _ : state) {
        sum = walk();
        benchmark::DoNotOptimize(sum);
    }
    if (sum != SumOfAll()) {
        state.SkipWithError("the walk did not meet every element");
    }
    CountItems(state);
}

template <Way kWay>
void Walk(benchmark::State& state) {
    const ListPtr list = NewList();
    FillList(list.get());
    WalkAll(state, [&] { return WalkedSum<kWay>(list.get()); });
}

template <bool kBySlot>
void WalkCursor(benchmark::State& state) {
    Cursor cursor;
    for (uint32_t i = 0; i < kCount; ++i) {
        cursor.Append(Value(i));
    }
    WalkAll(state, [&] {
        cursor.Rewind();
        uint32_t sum = 0;
        if constexpr (kBySlot) {
            void* slot = nullptr;
            while (cursor.StepToSlot(slot) != 0) {
                sum += *static_cast<const uint32_t*>(slot);
            }
        } else {
            uint32_t value = 0;
            while (cursor.Step(&value) != 0) {
                sum += value;
            }
        }
        return sum;
    });
}

void WalkStd(benchmark::State& state) {
    const std::list<uint32_t> list = FilledStdList();
    WalkAll(state, [&] {
        uint32_t sum = 0;
        for (const uint32_t value : list) {
            sum += value;
        }
        return sum;
    });
}

void Sort(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        const ListPtr list = NewList();
        FillList(list.get());
        state.ResumeTiming();
        SortElementOfList(list.get(), LC_EQUAL, 0);
    }
    CountItems(state);
}

void SortStd(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto list = FilledStdList();
        state.ResumeTiming();
        list.sort();
    }
    CountItems(state);
}

const bool kRegistered = [] {
    struct Row {
        const char* work;
        void (*ours)(benchmark::State&);
        const char* name;
        void (*rival)(benchmark::State&);
        double limit;
    };
    constexpr Row kRows[] = {
        {"append", Append, "std::list", AppendStd, 1.0},
        {"walk by code 5", Walk<Way::kByNext>, "exported cursor", WalkCursor<false>, 1.3},
        {"walk by code 5", Walk<Way::kByNext>, "std::list", WalkStd, 0.0},
        {"walk to slots by code 5", Walk<Way::kBySlot>, "exported cursor", WalkCursor<true>, 1.3},
        {"index by code 3, forward", Walk<Way::kByIndex>, "exported cursor", WalkCursor<false>,
         0.0},
        {"sort", Sort, "std::list", SortStd, 4.0},
    };
    std::string last;
    for (const Row& row : kRows) {
        const std::string base = std::string("list/") + row.work;
        const std::string ours = base + "/lq_data";
        const std::string rival = base + "/" + row.name;
        if (ours != last) {
            benchmark::RegisterBenchmark(ours.c_str(), row.ours);
        }
        last = ours;
        benchmark::RegisterBenchmark(rival.c_str(), row.rival);
        Compare(
            {std::string("list of 100000, ") + row.work + ", an element", ours, rival, row.limit});
    }
    return true;
}();

}  // namespace
}  // namespace lq::bench
