// Operation sequences on the record file and the hash table, beside plain models.
#include <algorithm>
#include <map>
#include <vector>

#include "cgtab/record_file_test_access.h"
#include "containers/hash_table_access.h"
#include "fuzz/targets.h"
#include "lq_data/cgtab.h"
#include "lq_data/containers.h"

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

void Hash(const uint8_t* data, size_t size) {
    Input input(data, size);
    HashTable table(input.Below(7) + 1, 1);
    const bool removes = input.Below(2) != 0;  // what is never removed from has no buckets
    std::multimap<std::u16string, uint32_t> model;
    while (!input.IsEmpty()) {
        const std::u16string key = input.Text();
        const uint32_t id = input.Below(100);
        const bool known = model.count(key) != 0;
        switch (input.Below(removes ? 4 : 3)) {
            case 0:
                Require((table.Insert(key.c_str(), static_cast<int32_t>(id)) == nullptr) == known,
                        "a key once");
                if (!known) {
                    model.emplace(key, id);
                }
                break;
            case 1:
                Require(table.Insert(key.c_str(), static_cast<int32_t>(id), 1) != nullptr,
                        "a key once more");
                model.emplace(key, id);
                break;
            case 2: {
                const auto newest = known ? std::prev(model.upper_bound(key)) : model.end();
                Require(
                    table.GetID(key.c_str()) == (known ? static_cast<int32_t>(newest->second) : -1),
                    "the newest of a key");
                break;
            }
            default:
                Require(table.RemoveKey(key.c_str()) == (known ? 1 : 0), "remove");
                if (known) {  // the newest, which a multimap keeps last
                    model.erase(std::prev(model.upper_bound(key)));
                }
        }
        Require(table.GetCount() == static_cast<int32_t>(model.size()), "the count");
        Require(containers::HashTableAccess::Check(table), "the table is sound");
    }
    size_t visited = 0;
    for (void* pos = table.GetStartPosition(); pos; ++visited) {
        const char16_t* key = nullptr;
        uint32_t id = 0;
        table.GetNextAssoc(pos, key, id);
        Require(model.count(key) != 0, "only what was inserted");
    }
    Require(visited == model.size(), "every entry once");
}

}  // namespace lq::fuzz
