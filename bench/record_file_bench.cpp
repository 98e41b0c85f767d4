// The record file with the tables' block size, beside containers of bytes and of blocks.
#include <array>
#include <deque>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/comparison.h"
#include "lq_data/record_file.h"

namespace lq::bench {
namespace {

constexpr uint32_t kBlockSize = 4096;
constexpr std::size_t kSize = 64 << 20;
constexpr int32_t kMiddle = kSize / 2;

using Block = std::array<unsigned char, kBlockSize>;

const Block& Filling() {
    static const Block block = [] {
        Block filled;
        filled.fill(0x5A);
        return filled;
    }();
    return block;
}
const unsigned char* Bytes() {
    return Filling().data();
}

void AppendTo(R_FILE& file, uint32_t piece) {
    file.Write(Bytes(), piece);
}
void AppendTo(std::deque<Block>& blocks, uint32_t) {
    blocks.push_back(Filling());
}
template <typename Container>
void AppendTo(Container& bytes, uint32_t piece) {
    bytes.insert(bytes.end(), Bytes(), Bytes() + piece);
}

template <typename Container>
void Fill(Container& container, uint32_t piece, std::size_t size = kSize) {
    for (std::size_t done = 0; done < size; done += piece) {
        AppendTo(container, piece);
    }
}

template <typename Make>
void Append(benchmark::State& state, uint32_t piece, Make make) {
    for (auto _ : state) {
        auto container = make();
        Fill(*container, piece);
        state.PauseTiming();
        container.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kSize / piece));
}

std::unique_ptr<R_FILE> NewFile() {
    return std::unique_ptr<R_FILE>(new R_FILE(kBlockSize));
}

void ReadBlocks(benchmark::State& state) {
    const auto file = NewFile();
    Fill(*file, kBlockSize);
    uint64_t sum = 0;
    for (auto _ : state) {
        file->Lseek(0, 0);
        const void* block = nullptr;
        while (const uint32_t size = file->BlRead(block)) {
            const auto* bytes = static_cast<const unsigned char*>(block);
            for (uint32_t i = 0; i < size; ++i) {
                sum += bytes[i];
            }
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kSize / kBlockSize));
}

template <typename Container>
void ReadContainer(benchmark::State& state) {
    Container container;
    Fill(container, kBlockSize);
    uint64_t sum = 0;
    for (auto _ : state) {
        for (const unsigned char byte : container) {
            sum += byte;
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kSize / kBlockSize));
}

// Opens a gap of a block in the middle and closes it again: two operations.
void InsertAndDelete(benchmark::State& state, int32_t offset) {
    const auto file = NewFile();
    Fill(*file, kBlockSize);
    for (auto _ : state) {
        file->Lseek(kMiddle + offset, 0);
        file->Insert(static_cast<int32_t>(kBlockSize));
        file->Delete(static_cast<int32_t>(kBlockSize));
    }
    state.SetItemsProcessed(state.iterations() * 2);
}

template <typename Container>
void InsertAndErase(benchmark::State& state) {
    Container container;
    Fill(container, kBlockSize);
    for (auto _ : state) {
        const auto middle = container.begin() + kMiddle;
        container.insert(middle, Bytes(), Bytes() + kBlockSize);
        const auto again = container.begin() + kMiddle;
        container.erase(again, again + kBlockSize);
    }
    state.SetItemsProcessed(state.iterations() * 2);
}

// To random places; with `reads` a byte is read there, which waits for memory once the file is
// larger than the caches.
void Seek(benchmark::State& state, std::size_t size, bool reads) {
    const auto file = NewFile();
    Fill(*file, kBlockSize, size);
    uint32_t random = 1;
    for (auto _ : state) {
        random = random * 1664525 + 1013904223;
        benchmark::DoNotOptimize(file->Lseek(static_cast<int32_t>(random % size), 0));
        unsigned char byte = 0;
        if (reads) {
            file->Read(&byte, 1);
        }
        benchmark::DoNotOptimize(byte);
    }
    state.SetItemsProcessed(state.iterations());
}

const bool kRegistered = [] {
    const auto add = [](const std::string& name, auto code) {
        benchmark::RegisterBenchmark(name.c_str(), code)->Unit(benchmark::kMillisecond);
        return name;
    };
    using Vector = std::vector<unsigned char>;
    using Deque = std::deque<unsigned char>;
    for (const uint32_t piece : {kBlockSize, 40u}) {
        const std::string base = "file/append/" + std::to_string(piece) + "/";
        const auto ours = add(base + "lq_data", [=](auto& s) { Append(s, piece, NewFile); });
        const auto deque =
            add(base + "deque", [=](auto& s) { Append(s, piece, std::make_unique<Deque>); });
        const auto vector =
            add(base + "vector", [=](auto& s) { Append(s, piece, std::make_unique<Vector>); });
        const std::string work = "append 64 MiB, " + std::to_string(piece) + " bytes";
        if (piece == kBlockSize) {
            Compare({work, ours,
                     add(base + "deque of blocks",
                         [=](auto& s) { Append(s, piece, std::make_unique<std::deque<Block>>); }),
                     1.1});
        }
        Compare({work, ours, deque, piece == kBlockSize ? 0.0 : 1.0});
        Compare({work, ours, vector});
    }
    const auto read = add("file/read/lq_data", ReadBlocks);
    Compare(
        {"read 64 MiB and add up, a block", read, add("file/read/deque", ReadContainer<Deque>)});
    Compare(
        {"read 64 MiB and add up, a block", read, add("file/read/vector", ReadContainer<Vector>)});

    const auto vector = add("file/middle/vector", InsertAndErase<Vector>);
    const auto deque = add("file/middle/deque", InsertAndErase<Deque>);
    for (const int32_t offset : {0, 100}) {
        const std::string where = offset == 0 ? "aligned" : "not aligned";
        const auto ours =
            add("file/middle " + where + "/lq_data", [=](auto& s) { InsertAndDelete(s, offset); });
        const std::string work = "insert, delete 4096 in the middle, " + where;
        Compare({work, ours, vector, offset == 0 ? 0.01 : 0.0});
        Compare({work, ours, deque});
    }
    for (const bool reads : {false, true}) {
        const std::string work = reads ? "seek and read a byte" : "seek";
        const auto name = [&](const char* size) { return "file/" + work + "/" + size; };
        const auto small = add(name("1 MiB"), [=](auto& s) { Seek(s, 1 << 20, reads); });
        const auto large = add(name("64 MiB"), [=](auto& s) { Seek(s, kSize, reads); });
        Compare({work + ", 64 MiB beside 1 MiB", large, small, reads ? 0.0 : 5.0});
    }
    return true;
}();

}  // namespace
}  // namespace lq::bench
