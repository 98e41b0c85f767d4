// The way to the private parts of hash tables, for tests and the table's own check.
#pragma once

#include <cstdint>

#include "lq_data/hash_table.h"

namespace lq::containers {

struct HashTableAccess {
    static bool Check(const HashTable& table) { return table.Check(); }
    static uint32_t HashIndex(const HashTable& table, const char16_t* key) {
        return table.HashIndex(table.KeyOf(key));
    }
    static uint32_t FullHash(const HashTable& table, const char16_t* key) {
        return table.FullHash(table.KeyOf(key));
    }
    static uint32_t BlockCount(const CMemBlock& memory) {
        uint32_t n = 0;
        for (const CMemBlock::BLOCK* block = memory.blocks_; block; block = block->next) {
            ++n;
        }
        return n;
    }
};

}  // namespace lq::containers
