// The hash table of 16-bit texts, and the allocator of its entries.
//
// Nothing here is locked; an object is used by one thread at a time.
//
// Owns the global names HashTable; for translation units with another owner: names.h.
#pragma once

#include <cstddef>
#include <cstdint>

#include "lq_data/env/lq_framework.h"
#include "lq_data/export.h"
#include "lq_data/memory.h"

namespace lq::containers {
struct HashTableAccess;  // the tests' way to the private parts of hash tables
}

// An allocator of raw blocks that are released all together.
class LQ_DATA_API CMemBlock : public CObject {
    LQ_DECLARE_DYNAMIC(CMemBlock)
  public:
    CMemBlock() = default;
    ~CMemBlock() override;
    CMemBlock(const CMemBlock&) = delete;
    CMemBlock& operator=(const CMemBlock&) = delete;

    // A new object; null when memory is short.
    static CObject* CreateObject();

  protected:
    // `size` bytes, aligned for pointers; null when memory is short or `size` is negative. Valid
    // until DeleteBlocks or destruction.
    void* GetNewBlock(int size);
    void DeleteBlocks();

  private:
    friend struct lq::containers::HashTableAccess;

    // The link to the block before; the usable area follows.
    struct BLOCK {
        BLOCK* next;
    };

    BLOCK* blocks_ = nullptr;
};

// Texts to 32-bit identifiers, with or without regard to case (upper-case forms), one entry a key
// or, by one operation, several. A null key is in no table.
//
// Positions and key copies stay valid until their entry is removed. A key is shorter than 2^32
// characters.
//
// Memory: an insertion that gets none leaves the entries as they were.
//
// Entries are ordered by chains, one a bucket, which grow long: names that end in running numbers
// share few values of the hash that numbers the buckets. So no search walks them: a directory
// leads from a key to its newest entry, and from there `older` leads to the others of that key. The
// buckets are made when they are needed: for the order of the entries, and for chaining by hand.
//
// A derived class may chain entries by hand (NewAssoc); the table then does without the directory
// until RemoveAll.
//
// Invariants (Check verifies them):
//  1. Every entry is in exactly one chain or in the free list. While there are no buckets, one
//     list, newest in front, stands for the chains.
//  2. The count is the number of entries in chains.
//  3. In a chain are the entries of one bucket, newer ones in front.
//  4. The directory holds the newest entry of every key; `older` is the next one of the same key in
//     the chain.
class LQ_DATA_API HashTable : public CMemBlock {
    LQ_DECLARE_DYNAMIC(HashTable)
  public:
    struct CAssoc {
        CAssoc* next;     // the next entry of the chain, once there are buckets
        char16_t* key;    // owned by the entry
        uint32_t bucket;  // the index of the bucket whose chain the entry is in, once there are any
        uint32_t value;
        uint32_t length;  // of the key, in characters
        uint32_t hash;    // of the key, for the directory
        CAssoc* older;    // the next older entry of the same key, while there is a directory
        CAssoc** link;    // the pointer that leads to the entry, while there is a directory
    };

    // A table with 233 buckets that regards case.
    HashTable();
    // A table with `size` buckets, 0 counting as 1. `caseSensitive` non-zero regards case.
    HashTable(uint32_t size, int caseSensitive);
    ~HashTable() override;

    // A new object; null when memory is short.
    static CObject* CreateObject();

    // Gives an empty table `size` buckets, 0 counting as 1. A table with entries stays as it is.
    void InitHashTable(unsigned int size);
    // Releases entries, buckets and blocks. The number of buckets to be made stays.
    void RemoveAll();
    // Removes all entries.
    void Clear() { RemoveAll(); }

    // 1 and the value of the first equal entry, or 0.
    int Lookup(const char16_t* key, uint32_t& value) const;
    // The value of the first equal entry, or of a new one with value 0. Without memory, a zero that
    // belongs to no entry.
    uint32_t& operator[](const char16_t* key);
    // Sets the value of the first equal entry, or enters one.
    void SetAt(const char16_t* key, uint32_t value) { (*this)[key] = value; }
    // The new entry's key copy; null when an equal key exists or memory is short.
    const char16_t* Insert(const char16_t* key, int32_t id) { return Insert(key, id, 0); }
    // With `allowDuplicate` non-zero an equal key is no obstacle.
    const char16_t* Insert(const char16_t* key, int32_t id, int allowDuplicate);
    // Remove the newest entry with an equal key, or the newest with that key and value. 1, or 0
    // when there is none.
    int RemoveKey(const char16_t* key);
    // Removes the newest entry with that key and value: 1, or 0 when there is none.
    int RemoveKey(const char16_t* key, int32_t id);
    // Removes the newest entry with an equal key, if there is one.
    void Delete(const char16_t* key) { RemoveKey(key); }

    // The value of the first equal entry, or -1.
    int32_t GetID(const char16_t* key) const;
    // GetPos, then GetNext until -1: all entries of the key, newest first. `pos` is null at the
    // end.
    int32_t GetPos(const char16_t* key, void*& pos) const;
    // The next entry of the key, behind GetPos; -1 at the end.
    int32_t GetNext(const char16_t* key, void*& pos) const;

    // Iteration over all entries: while the position is not null, GetNextAssoc yields one and moves
    // on. Buckets ascend; within a bucket newer entries come first.
    void* GetStartPosition() const;
    // The entry at `pos`, which moves on.
    void GetNextAssoc(void*& pos, const char16_t*& key, uint32_t& value) const;

    // The number of entries.
    int32_t GetCount() const { return count_; }
    // 1 when there is no entry.
    int IsEmpty() const { return count_ == 0 ? 1 : 0; }
    // The number of buckets.
    unsigned int GetHashTableSize() const { return size_; }
    // The buckets, each with the newest entry of its chain. Null before the first insertion, unless
    // InitHashTable made them, and when memory is short for them.
    CAssoc** GetHashTableAssoc();

  protected:
    // For chaining by hand: a new entry, which is counted and in no chain yet; null when memory is
    // short. The caller puts it at the head of a chain of GetHashTableAssoc, with `next` as the
    // head before it, and must set its `bucket` to the index of that chain, which GetAssocAt gives
    // for a key. In a new entry it is 0. An entry whose `bucket` is not set is found by its key all
    // the same; but iteration goes on behind the bucket that the entry names, which leaves entries
    // out or never ends, and the removal of the entry looks for it along the chain of that bucket
    // and runs off its end.
    CAssoc* NewAssoc();
    // A new entry with a copy of the key, and that value.
    CAssoc* NewAssoc(const char16_t* key, uint32_t value);
    // Gives back an entry that the caller has taken out of its chain.
    void FreeAssoc(CAssoc* entry);
    // The newest entry with an equal key, or null. `bucket` becomes the index of the key's bucket,
    // whether or not there is an entry.
    CAssoc* GetAssocAt(const char16_t* key, unsigned int& bucket) const;

  private:
    friend struct lq::containers::HashTableAccess;

    static constexpr uint32_t kBlockEntries = 20;

    // A key that is looked for, measured and hashed once. Its text may be null.
    struct KEY {
        const char16_t* text;
        uint32_t length;
        uint32_t hash;
    };

    uint32_t FullHash(const KEY& key) const;
    uint32_t HashIndex(const KEY& key) const { return FullHash(key) % size_; }
    bool IsEqual(const char16_t* a, const char16_t* b) const;
    uint32_t BucketOf(const CAssoc& entry) const;
    bool MakeChains() const;
    void Chain(CAssoc* entry) const;
    void Unchain(CAssoc* entry);
    CAssoc* FindInChain(CAssoc* entry, const char16_t* key) const;
    CAssoc* FindBehind(const CAssoc& at, const char16_t* key) const;
    CAssoc* NextInChain(const CAssoc& entry) const;
    CAssoc* FirstFrom(uint32_t bucket) const;
    CAssoc* Find(const KEY& key) const;
    CAssoc* Find(const char16_t* text) const;
    CAssoc* Enter(const KEY& key, uint32_t value, bool mayRepeat);
    int RemoveFirst(const char16_t* key, const uint32_t* value);
    CAssoc* TakeEntry();
    CAssoc* TakeEntry(const KEY& key, uint32_t value);
    void ReturnEntry(CAssoc* entry);
    bool Check() const;

    KEY KeyOf(const char16_t* text) const;
    bool Matches(const CAssoc& entry, const KEY& key) const;
    uint32_t SlotOf(const KEY& key) const;
    bool IsTaken(uint32_t slot) const;
    void EnterInDirectory(uint32_t slot, CAssoc* entry);
    void RemoveFromDirectory(const KEY& key, const CAssoc* entry, CAssoc* newer);
    void SetSlot(uint32_t slot, uint16_t tag, CAssoc* entry);
    uint32_t FreeSlotFor(uint32_t hash) const;
    bool ReserveSlot();
    void EmptySlot(uint32_t slot);
    bool LeaveDirectory();
    void DropDirectory();
    bool CheckDirectory() const;

    int caseSensitive_;
    // Mutable, since asking for the order of the entries makes the buckets.
    mutable CAssoc** buckets_ = nullptr;
    mutable CAssoc* unchained_ = nullptr;  // all entries while there are no buckets
    uint32_t size_;
    int32_t count_ = 0;
    CAssoc* freeList_ = nullptr;
    // The directory, open addressing: a key's newest entry lies at its hash or behind it, without a
    // gap in between. A slot whose tag is 0 is empty. Both arrays lie in one block.
    CAssoc** newest_ = nullptr;
    uint16_t* tags_ = nullptr;
    uint32_t slotCount_ = 0;  // a power of two; 0 before the first insertion
    uint32_t keyCount_ = 0;   // slots in use
    bool hasDirectory_ = true;
    uint32_t noEntry_ = 0;  // what operator[] refers to without memory
};
