// Images of 100 MB: saving and restoring tables, beside copies of the same bytes.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <benchmark/benchmark.h>

#include "bench/comparison.h"
#include "lq_data/cgtab.h"
#include "lq_data/env/lq_base.h"

namespace lq::bench {
namespace {

constexpr std::size_t kSize = 100'000'000;

// A stream over a fixed block, so that nothing but the tables' own work is measured.
class BlockStream : public STREAM_A {
  public:
    BlockStream(unsigned char* bytes, std::size_t size) : bytes_(bytes), size_(size) {}

    int32_t GetBlock(void* buffer, int32_t count, STREAMERROR*) override {
        const std::size_t n = Fitting(count);
        std::memcpy(buffer, bytes_ + at_, n);
        at_ += n;
        return static_cast<int32_t>(n);
    }
    int32_t PutBlock(const void* buffer, int32_t count, STREAMERROR*) override {
        const std::size_t n = Fitting(count);
        std::memcpy(bytes_ + at_, buffer, n);
        at_ += n;
        return static_cast<int32_t>(n);
    }
    std::size_t At() const { return at_; }

  private:
    std::size_t Fitting(int32_t count) const {
        return std::min(static_cast<std::size_t>(count), size_ - at_);
    }

    unsigned char* bytes_;
    std::size_t size_;
    std::size_t at_ = 0;
};

std::unique_ptr<CgTab> NewTables() {
    int ok = 0;
    return std::make_unique<CgTab>(ok, nullptr);
}

// Debug records up to the size.
std::unique_ptr<CgTab> FilledTables() {
    auto tables = NewTables();
    unsigned char record[250] = {};
    for (std::size_t bytes = 0; bytes < kSize; bytes += sizeof(record) + 5) {
        ++record[bytes % sizeof(record)];
        tables->Insert(CgTab::DBG_INFO{record, sizeof(record)});
    }
    return tables;
}

std::vector<unsigned char>& Image() {
    static std::vector<unsigned char> image = [] {
        std::vector<unsigned char> bytes(kSize + 1000);
        BlockStream stream(bytes.data(), bytes.size());
        FilledTables()->Save(stream);
        bytes.resize(stream.At());
        return bytes;
    }();
    return image;
}

void CountBytes(benchmark::State& state) {
    // A page an item: nanoseconds a byte would all read 0.1.
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(Image().size() / 4096));
}

void Save(benchmark::State& state) {
    const auto tables = FilledTables();
    std::vector<unsigned char> target(Image().size());
    for (auto _ : state) {
        BlockStream stream(target.data(), target.size());
        if (!tables->Save(stream)) {
            state.SkipWithError("not saved");
        }
    }
    CountBytes(state);
}

void Restore(benchmark::State& state) {
    for (auto _ : state) {
        BlockStream stream(Image().data(), Image().size());
        auto tables = NewTables();
        if (!tables->Restore(stream)) {
            state.SkipWithError("not restored");
        }
        state.PauseTiming();
        tables.reset();
        state.ResumeTiming();
    }
    CountBytes(state);
}

void CopyInto(benchmark::State& state) {
    std::vector<unsigned char> target(Image().size());
    for (auto _ : state) {
        std::memcpy(target.data(), Image().data(), target.size());
        benchmark::ClobberMemory();
    }
    CountBytes(state);
}

// Restoring takes memory for what it reads, and so does this.
void CopyIntoNew(benchmark::State& state) {
    for (auto _ : state) {
        void* target = std::malloc(Image().size());
        std::memcpy(target, Image().data(), Image().size());
        benchmark::DoNotOptimize(target);
        benchmark::ClobberMemory();
        state.PauseTiming();
        std::free(target);
        state.ResumeTiming();
    }
    CountBytes(state);
}

void WriteToMemory(benchmark::State& state) {
    std::vector<char> target(Image().size() + 1);
    for (auto _ : state) {
        std::FILE* file = fmemopen(target.data(), target.size(), "wb");
        if (!file || std::fwrite(Image().data(), 1, Image().size(), file) != Image().size()) {
            state.SkipWithError("not written");
        }
        if (file) {
            std::fclose(file);
        }
    }
    CountBytes(state);
}

const bool kRegistered = [] {
    const auto add = [](const char* name, auto code) {
        benchmark::RegisterBenchmark(name, code)->Unit(benchmark::kMillisecond);
        return name;
    };
    const std::string save = add("image/save/lq_data", Save);
    Compare({"save 100 MB, 4096 bytes", save, add("image/save/memcpy", CopyInto), 2.0});
    Compare(
        {"save 100 MB, 4096 bytes", save, add("image/save/fwrite to memory", WriteToMemory), 2.0});
    Compare({"restore 100 MB, 4096 bytes", add("image/restore/lq_data", Restore),
             add("image/restore/memcpy to new memory", CopyIntoNew), 2.0});
    return true;
}();

}  // namespace
}  // namespace lq::bench
