// The record file: bytes in memory, in which the tables lie.
#pragma once

#include <atomic>
#include <cstdint>

#include "lq_data/export.h"
#include "lq_data/memory.h"

// A growable byte file held in memory, in blocks of equal size reached through a ring of nodes.
// Beside the operations of a low-level file it opens gaps, deletes in the middle and compares in
// place. It never holds a hole: seeking past the end is refused.
//
// Invariants (R_FILE::Check verifies them):
//  1. The nodes form a ring; the first node follows the last. An open file has a first block.
//  2. The block that the end position names exists, even when no byte lies in it; nothing exists
//     behind it.
//  3. Every position's offset is below the block size.
//  4. 0 <= current position <= length.
//  5. The n-th node of the ring lies in the n-th place of the chunks.
//
// All positions and sizes are in bytes. `whence` is 0 (start), 1 (current position) or 2 (end).
// When memory is short, growth fails and the file keeps its length and content.
class LQ_DATA_API R_FILE {
  public:
    // The argument of Cmp.
    struct CMP_TYP {
        const void* data;
        uint32_t len;   // bytes to compare
        int32_t total;  // bytes that the position advances by in any case
        int nocase;     // non-zero ignores the case of ASCII letters, byte by byte
    };

    // The file is open and empty afterwards, or not open when memory is short or the block size is
    // 0.
    explicit R_FILE(uint32_t blockSize = 256);
    ~R_FILE();
    R_FILE(const R_FILE&) = delete;
    R_FILE& operator=(const R_FILE&) = delete;

    // 1 when the file is open.
    int IsOpen() const { return blockSize_ != 0 ? 1 : 0; }
    // Whether the last destruction of any record file tore it down; 1 before the first.
    static int IsClosed() { return bClosed.load(std::memory_order_relaxed); }
    // Block slots of a node.
    static uint16_t BlCnt() { return 15; }

    // Moves to a position and returns it; -1 and no change when it lies outside 0 to the length.
    int32_t Lseek(int32_t offset, int whence);
    // The current position.
    int32_t Tell() const { return cur_.pos; }
    // 1 at the end.
    int Eof() const { return cur_.pos == end_.pos ? 1 : 0; }
    // The length.
    int32_t Filelength() const { return end_.pos; }

    // Copies at most `n` bytes to `buf` and passes over them; returns how many.
    uint32_t Read(void* buf, uint32_t n);
    // Copies at most `n` bytes at `pos`, the current position staying; returns how many, 0 outside
    // 0 to the length.
    uint32_t ReadAt(int32_t pos, void* buf, uint32_t n) const;
    // Writes `n` bytes, growing the file as needed; returns n, or 0 when it cannot grow.
    uint32_t Write(const void* buf, uint32_t n);
    // Opens a gap (Insert) and writes into it (Write); returns n, or 0 when the insertion failed.
    uint32_t InsWrite(const void* buf, uint32_t n);

    // These return 0, or -1 without a change.
    int Insert(int32_t n);     // opens a gap of unspecified content at the current position
    int Delete(int32_t n);     // removes n bytes at the current position
    int Chsize(int32_t size);  // not below the current position; growth reads as 0

    // Compares c.len bytes at the current position and moves it c.total bytes on. `*result` is
    // below, equal to or above 0 as c.data is to the file; it keeps its value when nothing is
    // compared. 0; or -1 and no change when fewer than c.total bytes remain or c.len exceeds
    // c.total.
    int Cmp(const CMP_TYP& c, int* result);

    // The bytes readable at `p` without crossing a block: moves behind them and returns their
    // number, 0 at the end. They stay readable until the file changes.
    uint32_t BlRead(const void*& p);
    // The same at `pos`, the current position staying; 0 outside 0 to the length.
    uint32_t Peek(int32_t pos, const void*& p) const;
    // The same at the current position of an open file, which stays.
    uint32_t Peek(const void*& p) const {
        p = BytesAt(cur_);
        const uint32_t room = RoomAt(cur_);
        return room < Rest() ? room : Rest();
    }

    LQ_ALLOCATED

  private:
    friend struct RecordFileTestAccess;

    static constexpr uint32_t kSlots = 15;
    static constexpr uint32_t kChunks = 28;  // enough for 2^31 blocks of one byte

    struct NODE {
        unsigned char* block[kSlots];  // null behind the end position's block
        NODE* next;
    };

    // A position: where it is, and the block that holds it.
    struct POS_TYP {
        int32_t pos;
        NODE* node;
        uint16_t idx;
        uint32_t off;
    };

    static NODE*& NextPNode(NODE* node) { return node->next; }

    // Splits a position, 0 to the length, into node, slot and offset.
    POS_TYP Locate(int32_t pos) const;
    // Moves `p` to a position, 0 to the length; most are in its block, and need no division. Writes
    // its parts one by one: what reads them behind that would wait for one that was copied whole.
    void MoveTo(POS_TYP& p, int32_t pos) const {
        const int64_t inBlock = int64_t{pos} - p.pos + p.off;
        if (inBlock >= 0 && inBlock < blockSize_) {
            p.off = static_cast<uint32_t>(inBlock);
        } else {
            const POS_TYP found = Locate(pos);
            p.node = found.node;
            p.idx = found.idx;
            p.off = found.off;
        }
        p.pos = pos;
    }
    // The node of that number, counted from 0 along the ring.
    NODE* FindNode(uint32_t number) const;
    uint32_t BlockNumber(const POS_TYP& p) const {
        const auto place = static_cast<uint32_t>(p.pos);
        return blockShift_ >= 0 ? place >> blockShift_ : place / blockSize_;
    }
    uint32_t NodeNumber(const POS_TYP& p) const { return BlockNumber(p) / kSlots; }

    // Move `p` forward and backward; the blocks on the way exist.
    static void _add_size(POS_TYP& p, uint32_t n, uint32_t blockSize);
    void _sub_size(POS_TYP& p, uint32_t n) const { p = Locate(p.pos - static_cast<int32_t>(n)); }

    static unsigned char*& BlockAt(const POS_TYP& p) { return p.node->block[p.idx]; }
    static unsigned char* BytesAt(const POS_TYP& p) { return BlockAt(p) + p.off; }
    uint32_t RoomAt(const POS_TYP& p) const { return blockSize_ - p.off; }
    uint32_t Rest() const { return static_cast<uint32_t>(end_.pos - cur_.pos); }

    // Sets the length; 0, or -1 and no change. Growth reads as 0 only when `zero` is non-zero.
    int _chsize(int32_t size, int zero);
    int Grow(uint32_t n, bool zero);
    void Shrink(int32_t size);

    // Adds the block behind the end position's, in a new node if need be. False, and no change,
    // when memory is short.
    bool AppendBlock();
    NODE* NewNode(uint32_t number);
    static void ReleaseBlocks(NODE* node, uint32_t firstSlot);
    // Releases the chunks that hold none of the first `nodeCount` nodes.
    void ReleaseChunks(uint32_t nodeCount);

    // Insertion and deletion in the middle move all bytes behind the gap, unless the gap is a few
    // whole blocks: then no byte moves but pointers to blocks. To open the gap the file grows at
    // its end, and the blocks from the gap on are rotated up, so that the new blocks come to the
    // gap; to close it they are rotated down, so that the blocks of the gap come to the end, where
    // the file shrinks. A rotation goes through the nodes once and carries the blocks that leave a
    // node over into the next, which is why there may be no more of them than a node has slots.
    bool AreFewBlocks(int32_t n) const;
    void RotateBlocks(const POS_TYP& first, uint32_t count, bool up);
    void MoveUp(POS_TYP from, POS_TYP to, uint32_t count);
    void MoveDown(POS_TYP from, POS_TYP to, uint32_t count);
    static void MovePiece(const POS_TYP& from, const POS_TYP& to, uint32_t size);

    // Whether the invariants hold; for tests.
    bool Check() const;

    static std::atomic<int> bClosed;  // files of several threads end

    uint32_t blockSize_ = 0;  // 0: not open
    int blockShift_ = -1;     // for sizes that are a power of two
    POS_TYP cur_ = {};
    POS_TYP end_ = {};  // its `pos` is the length

    // Where the nodes lie: the k-th chunk has room for 2^k of them, so that a node is found by its
    // number and never moves. Null for the chunks behind the one of the end position's node.
    NODE* chunks_[kChunks] = {};
};
