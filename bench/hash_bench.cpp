// The hash table with 10001 buckets, as the tables' indexes have it, beside two maps of the same
// texts. Without regard to case the maps hold and look up the upper-case form.
#include <absl/container/flat_hash_map.h>
#include <algorithm>
#include <malloc.h>
#include <map>
#include <memory>
#include <unordered_map>

#include <benchmark/benchmark.h>

#include "bench/comparison.h"
#include "bench/inputs.h"
#include "lq_data/detail/chars.h"
#include "lq_data/hash_table.h"

namespace lq::bench {
namespace {

constexpr uint32_t kBuckets = 10001;

using Text = std::u16string;

class OurTable {
  public:
    explicit OurTable(bool caseSensitive) : table_(kBuckets, caseSensitive ? 1 : 0) {}

    void Insert(const Text& name, int32_t id) { table_.Insert(name.c_str(), id); }
    int32_t Find(const Text& name) const { return table_.GetID(name.c_str()); }

  private:
    HashTable table_;
};

template <typename Map>
class MapTable {
  public:
    explicit MapTable(bool caseSensitive) : caseSensitive_(caseSensitive) {}

    void Insert(const Text& name, int32_t id) {
        map_.try_emplace(caseSensitive_ ? name : Upper(name), static_cast<uint32_t>(id));
    }
    int32_t Find(const Text& name) const {
        const auto found = caseSensitive_ ? map_.find(name) : map_.find(Upper(name));
        return found != map_.end() ? static_cast<int32_t>(found->second) : -1;
    }

  private:
    static Text Upper(Text text) {
        std::transform(text.begin(), text.end(), text.begin(), chars::ToUpper);
        return text;
    }

    bool caseSensitive_;
    Map map_;
};

using StdTable = MapTable<std::unordered_map<Text, uint32_t>>;
using AbslTable = MapTable<absl::flat_hash_map<Text, uint32_t>>;

std::size_t BytesInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// Absent ones of the same make.
std::vector<Text> Absent(std::vector<Text> names) {
    for (Text& name : names) {
        name.back() = name.back() == u'x' ? u'y' : u'x';
    }
    return names;
}

template <typename Table>
std::unique_ptr<Table> Filled(const std::vector<Text>& names, bool caseSensitive) {
    auto table = std::make_unique<Table>(caseSensitive);
    int32_t id = 0;
    for (const Text& name : names) {
        table->Insert(name, id++);
    }
    return table;
}

void CountItems(benchmark::State& state, std::size_t count) {
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(count));
}

template <typename Table>
void Insert(benchmark::State& state, std::size_t count, bool caseSensitive) {
    const std::vector<Text> names = Names(count);
    std::size_t bytes = 0;
    for (auto _ : state) {
        const std::size_t before = BytesInUse();
        auto table = Filled<Table>(names, caseSensitive);
        bytes = BytesInUse() - before;
        state.PauseTiming();  // the release is not the insertion's
        table.reset();
        state.ResumeTiming();
    }
    CountItems(state, count);
    state.counters["bytes"] = static_cast<double>(bytes) / static_cast<double>(count);
}

template <typename Table, bool kHit>
void Find(benchmark::State& state, std::size_t count, bool caseSensitive) {
    const std::vector<Text> names = Names(count);
    const std::vector<Text> keys = Shuffled(kHit ? names : Absent(names));
    static std::map<std::pair<std::size_t, bool>, std::unique_ptr<Table>> all;
    auto& table = all[{count, caseSensitive}];
    if (!table) {
        table = Filled<Table>(names, caseSensitive);
    }
    std::size_t found = 0;
    for (auto _ : state) {
        found = 0;
        for (const Text& key : keys) {
            found += table->Find(key) >= 0 ? 1 : 0;
        }
    }
    if (found != (kHit ? count : 0)) {
        state.SkipWithError("a key was lost or made up");
    }
    CountItems(state, count);
}

constexpr const char* kOperations[] = {"insert", "hit", "miss"};
using Operation = void (*)(benchmark::State&, std::size_t, bool);

template <typename Table>
constexpr Operation kCode[] = {Insert<Table>, Find<Table, true>, Find<Table, false>};

const bool kRegistered = [] {
    for (const bool caseSensitive : {true, false}) {
        for (int i = 0; i < 3; ++i) {
            const std::string operation =
                std::string(kOperations[i]) + (caseSensitive ? "" : ", any case");
            const auto name = [&](std::size_t count, const char* who) {
                return "hash/" + operation + "/" + std::to_string(count) + "/" + who;
            };
            for (const std::size_t count : {1000, 10'000, 100'000, 1'000'000}) {
                const std::string ours = name(count, "lq_data");
                const std::string std = name(count, "unordered_map");
                const std::string absl = name(count, "flat_hash_map");
                benchmark::RegisterBenchmark(ours.c_str(), kCode<OurTable>[i], count,
                                             caseSensitive);
                benchmark::RegisterBenchmark(std.c_str(), kCode<StdTable>[i], count, caseSensitive);
                benchmark::RegisterBenchmark(absl.c_str(), kCode<AbslTable>[i], count,
                                             caseSensitive);
                const std::string work = operation + ", " + std::to_string(count) + " names";
                Compare({work, ours, std, count <= 100'000 ? 1.0 : 0.0});
                Compare({work, ours, absl});
                if (i == 0 && caseSensitive) {
                    Compare({"bytes an entry, " + std::to_string(count), ours, std, 1.0, "bytes",
                             Unit::kBytes});
                }
            }
            Compare({operation + ", 1000000 names beside 100000", name(1'000'000, "lq_data"),
                     name(100'000, "lq_data"), 3.0});
        }
    }
    return true;
}();

}  // namespace
}  // namespace lq::bench
