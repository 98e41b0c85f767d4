// Lists of 32-bit values, beside std::list.
#include <list>
#include <memory>

#include <benchmark/benchmark.h>

#include "bench/comparison.h"
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

// Reads every value, from the first by code 5 or by ascending indexes.
template <bool kByIndex>
void Walk(benchmark::State& state) {
    const ListPtr list = NewList();
    FillList(list.get());
    uint32_t sum = 0;
    for (auto _ : state) {
        FindElementOfList(list.get(), nullptr, nullptr, LC_REWIND, 0);
        uint32_t value = 0;
        for (uint32_t i = 1; i <= kCount; ++i) {
            FindElementOfList(list.get(), &value, nullptr, kByIndex ? LC_AT_INDEX : LC_NEXT,
                              static_cast<int32_t>(i));
            sum += value;
        }
    }
    benchmark::DoNotOptimize(sum);
    CountItems(state);
}

void WalkStd(benchmark::State& state) {
    const std::list<uint32_t> list = FilledStdList();
    uint32_t sum = 0;
    for (auto _ : state) {
        for (const uint32_t value : list) {
            sum += value;
        }
        benchmark::DoNotOptimize(sum);
    }
    CountItems(state);
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
        void (*rival)(benchmark::State&);
        double limit;
    };
    constexpr Row kRows[] = {
        {"append", Append, AppendStd, 1.0},
        {"walk by code 5", Walk<false>, WalkStd, 1.0},
        {"index by code 3, forward", Walk<true>, WalkStd, 0.0},
        {"sort", Sort, SortStd, 4.0},
    };
    for (const Row& row : kRows) {
        const std::string ours = std::string("list/") + row.work + "/lq_data";
        const std::string rival = std::string("list/") + row.work + "/std::list";
        benchmark::RegisterBenchmark(ours.c_str(), row.ours);
        benchmark::RegisterBenchmark(rival.c_str(), row.rival);
        Compare(
            {std::string("list of 100000, ") + row.work + ", an element", ours, rival, row.limit});
    }
    return true;
}();

}  // namespace
}  // namespace lq::bench
