// Operation sequences on the record file and the hash table, beside plain models.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "cgtab/record_file_test_access.h"
#include "containers/hash_table_access.h"
#include "fuzz/targets.h"
#include "lq_data/cgtab.h"
#include "lq_data/containers.h"
#include "lq_data/detail/chars.h"

namespace lq::fuzz {

void RecordFile(const uint8_t* data, size_t size) {
    Input input(data, size);
    R_FILE file(input.Below(70) + 1);
    std::vector<unsigned char> model;
    size_t at = 0;
    const auto here = [&] { return model.begin() + static_cast<std::ptrdiff_t>(at); };
    while (!input.IsEmpty()) {
        const uint32_t count = input.Below(500);
        const std::vector<unsigned char> bytes(count, input.Byte());
        const auto n = static_cast<int32_t>(count);
        switch (input.Below(6)) {
            case 0:
                Require((file.Lseek(n, 0) == n) == (count <= model.size()), "seek within the file");
                at = count <= model.size() ? count : at;
                break;
            case 1:
                Require(file.Write(bytes.data(), count) == count, "write");
                model.resize(std::max(model.size(), at + count));
                std::copy(bytes.begin(), bytes.end(), here());
                at += count;
                break;
            case 2:
                Require(file.InsWrite(bytes.data(), count) == count, "insert");
                model.insert(here(), bytes.begin(), bytes.end());
                at += count;
                break;
            case 3: {
                const bool fits = at + count <= model.size();
                Require((file.Delete(n) == 0) == fits, "delete");
                if (fits) {
                    model.erase(here(), here() + n);
                }
                break;
            }
            case 4: {
                const bool fits = count >= at;
                Require((file.Chsize(n) == 0) == fits, "change the size");
                if (fits) {
                    model.resize(count);
                }
                break;
            }
            default: {
                std::vector<unsigned char> got(count);
                const size_t expected = std::min<size_t>(count, model.size() - at);
                Require(file.Read(got.data(), count) == expected, "read");
                Require(
                    std::equal(here(), here() + static_cast<std::ptrdiff_t>(expected), got.begin()),
                    "read what was written");
                at += expected;
            }
        }
        Require(file.Filelength() == static_cast<int32_t>(model.size()), "the length");
        Require(file.Tell() == static_cast<int32_t>(at), "the position");
        Require(RecordFileTestAccess::Check(file), "the file is sound");
    }
    std::vector<unsigned char> content(model.size());
    file.Lseek(0, 0);
    file.Read(content.data(), static_cast<uint32_t>(content.size()));
    Require(content == model, "the content");
}

namespace {

// A hash table's entries, the newest in front.
class HashModel {
  public:
    using Entry = std::pair<std::u16string, uint32_t>;

    explicit HashModel(bool caseSensitive) : caseSensitive_(caseSensitive) {}

    std::vector<Entry>::iterator Find(const std::u16string& key, const uint32_t* value = nullptr) {
        return std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) {
            return IsEqual(entry.first, key) && (!value || entry.second == *value);
        });
    }
    void Add(const std::u16string& key, uint32_t value) {
        entries.insert(entries.begin(), {key, value});
    }
    bool Remove(const std::u16string& key, const uint32_t* value) {
        const auto found = Find(key, value);
        if (found == entries.end()) {
            return false;
        }
        entries.erase(found);
        return true;
    }
    std::vector<uint32_t> All(const std::u16string& key) const {
        std::vector<uint32_t> values;
        for (const auto& [name, value] : entries) {
            if (IsEqual(name, key)) {
                values.push_back(value);
            }
        }
        return values;
    }

    std::vector<Entry> entries;

  private:
    bool IsEqual(const std::u16string& a, const std::u16string& b) const {
        return caseSensitive_ ? a == b : chars::EqualNoCase(a.c_str(), b.c_str());
    }

    bool caseSensitive_;
};

// The table's iteration goes by ascending bucket, and within a bucket from the newest entry on.
void RequireOrder(const HashTable& table, std::vector<HashModel::Entry> entries) {
    const auto bucketOf = [&table](const HashModel::Entry& entry) {
        return containers::HashTableAccess::HashIndex(table, entry.first.c_str());
    };
    std::stable_sort(entries.begin(), entries.end(),
                     [&](const auto& a, const auto& b) { return bucketOf(a) < bucketOf(b); });
    std::vector<HashModel::Entry> visited;
    for (void* pos = table.GetStartPosition(); pos;) {
        const char16_t* key = nullptr;
        uint32_t value = 0;
        table.GetNextAssoc(pos, key, value);
        Require(key, "a position has an entry");
        visited.emplace_back(key, value);
    }
    Require(visited == entries, "every entry once, in order");
}

std::vector<uint32_t> AllOf(const HashTable& table, const std::u16string& key) {
    std::vector<uint32_t> values;
    void* pos = nullptr;
    for (int32_t id = table.GetPos(key.c_str(), pos); pos; id = table.GetNext(key.c_str(), pos)) {
        values.push_back(static_cast<uint32_t>(id));
    }
    return values;
}

}  // namespace

void Hash(const uint8_t* data, size_t size) {
    static const std::u16string kNames[] = {u"a",
                                            u"A",
                                            u"b",
                                            u"Motor_1",
                                            u"MOTOR_1",
                                            u"",
                                            u"\u00E4",
                                            u"\u00C4",
                                            std::u16string(512, u'z'),
                                            std::u16string(512, u'z') + u'y',
                                            std::u16string(513, u'z')};
    constexpr uint32_t kBuckets[] = {1, 3, 233};
    Input input(data, size);
    const bool caseSensitive = input.Below(2) != 0;
    const bool isOrdered = input.Below(2) != 0;  // otherwise the buckets are first made at the end
    HashTable table(kBuckets[input.Below(3)], caseSensitive ? 1 : 0);
    HashModel model(caseSensitive);
    while (!input.IsEmpty()) {
        const uint32_t name = input.Below(std::size(kNames) + 2);
        const std::u16string key = name < std::size(kNames) ? kNames[name] : input.Text();
        const uint32_t value = input.Below(4);
        const auto id = static_cast<int32_t>(value);
        const bool known = !model.All(key).empty();
        switch (input.Below(16)) {
            case 0:
                table.Clear();
                model.entries.clear();
                break;
            case 1:
                table.InitHashTable(input.Below(5));
                break;
            case 2:
            case 3:
            case 4:
                Require((table.Insert(key.c_str(), id) == nullptr) == known, "a key once");
                if (!known) {
                    model.Add(key, value);
                }
                break;
            case 5:
            case 6:
            case 7:
            case 8:
                Require(table.Insert(key.c_str(), id, 1) == key, "a key once more");
                model.Add(key, value);
                break;
            case 9:
            case 10:
                table.SetAt(key.c_str(), value);
                if (known) {
                    model.Find(key)->second = value;
                } else {
                    model.Add(key, value);
                }
                break;
            case 11:
            case 12:
                Require(table.RemoveKey(key.c_str()) == model.Remove(key, nullptr), "remove");
                break;
            case 13:
            case 14:
                Require(table.RemoveKey(key.c_str(), id) == model.Remove(key, &value),
                        "remove the one of a value");
                break;
            default:
                if (isOrdered) {
                    RequireOrder(table, model.entries);
                }
        }
        const std::vector<uint32_t> all = model.All(key);
        uint32_t newest = 77;
        Require(AllOf(table, key) == all, "all entries of a key");
        Require(table.Lookup(key.c_str(), newest) == (all.empty() ? 0 : 1), "whether it is there");
        Require(newest == (all.empty() ? 77 : all[0]), "the newest of a key");
        Require(table.GetID(key.c_str()) == (all.empty() ? -1 : static_cast<int32_t>(all[0])),
                "the id of a key");
        Require(table.GetCount() == static_cast<int32_t>(model.entries.size()), "the count");
        Require(table.IsEmpty() == model.entries.empty(), "whether it is empty");
        Require(containers::HashTableAccess::Check(table), "the table is sound");
    }
    RequireOrder(table, model.entries);
}

}  // namespace lq::fuzz
