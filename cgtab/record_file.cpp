// The record file: positions, and what reads and writes in place.
//
// A position carries the node and slot of its block, so that reading on costs no look-up and walks
// along the ring. Every other place is found by Locate in constant time: the nodes lie in chunks of
// 1, 2, 4, ... nodes, where a node's number tells its place.

#include "lq_data/record_file.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <limits>
#include <utility>

#include "lq_data/detail/chars.h"

namespace {

constexpr int32_t kMaxLength = std::numeric_limits<int32_t>::max();

// The chunk that holds the node of that number.
uint32_t ChunkOf(uint32_t number) {
    return static_cast<uint32_t>(std::bit_width(uint64_t{number} + 1)) - 1;
}

unsigned char LowerAscii(unsigned char c) {
    return lq::chars::HasAsciiClass(c, lq::chars::kLetter) ? static_cast<unsigned char>(c | 0x20)
                                                           : c;
}

int CompareNoCase(const unsigned char* a, const unsigned char* b, uint32_t n) {
    for (; n != 0; --n, ++a, ++b) {
        if (const int order = LowerAscii(*a) - LowerAscii(*b)) {
            return order;
        }
    }
    return 0;
}

}  // namespace

constinit std::atomic<int> R_FILE::bClosed = 1;

R_FILE::R_FILE(uint32_t blockSize) {
    if (blockSize == 0) {
        return;
    }
    NODE* const node = NewNode(0);
    unsigned char* const block = lq::AllocateArray<unsigned char>(blockSize);
    if (!node || !block) {
        ReleaseChunks(0);
        lq::Release(block);
        return;
    }
    node->block[0] = block;
    NextPNode(node) = node;
    end_.node = node;
    cur_ = end_;
    blockSize_ = blockSize;
    blockShift_ = std::has_single_bit(blockSize) ? std::countr_zero(blockSize) : -1;
}

R_FILE::~R_FILE() {
    bClosed.store(1, std::memory_order_relaxed);
    if (!IsOpen()) {
        return;
    }
    if (Lseek(0, 0) != 0 || _chsize(0, 0) != 0) {
        // Cannot happen: going to the start and shrinking need no memory.
        bClosed.store(0, std::memory_order_relaxed);
        return;
    }
    blockSize_ = 0;
    ReleaseBlocks(end_.node, 0);
    ReleaseChunks(0);
}

void R_FILE::_add_size(POS_TYP& p, uint32_t n, uint32_t blockSize) {
    p.pos += static_cast<int32_t>(n);
    while (n >= blockSize - p.off) {
        n -= blockSize - p.off;
        p.off = 0;
        if (++p.idx == kSlots) {
            p.idx = 0;
            p.node = NextPNode(p.node);
        }
    }
    p.off += n;
}

R_FILE::POS_TYP R_FILE::Locate(int32_t pos) const {
    POS_TYP found = {pos, nullptr, 0, 0};
    const uint32_t block = BlockNumber(found);
    found.node = FindNode(block / kSlots);
    found.idx = static_cast<uint16_t>(block % kSlots);
    found.off = static_cast<uint32_t>(pos) - block * blockSize_;
    return found;
}

R_FILE::NODE* R_FILE::FindNode(uint32_t number) const {
    const uint32_t chunk = ChunkOf(number);
    return chunks_[chunk] + (number + 1 - (1u << chunk));
}

R_FILE::NODE* R_FILE::NewNode(uint32_t number) {
    const uint32_t chunk = ChunkOf(number);
    if (!chunks_[chunk]) {
        chunks_[chunk] = lq::AllocateArray<NODE>(std::size_t{1} << chunk);
        if (!chunks_[chunk]) {
            return nullptr;
        }
    }
    NODE* const node = FindNode(number);
    *node = {};
    return node;
}

void R_FILE::ReleaseChunks(uint32_t nodeCount) {
    for (uint32_t chunk = nodeCount != 0 ? ChunkOf(nodeCount - 1) + 1 : 0; chunk < kChunks;
         ++chunk) {
        lq::Release(std::exchange(chunks_[chunk], nullptr));
    }
}

int32_t R_FILE::Lseek(int32_t offset, int whence) {
    if (!IsOpen() || whence < 0 || whence > 2) {
        return -1;
    }
    const int32_t base = whence == 0 ? 0 : whence == 1 ? cur_.pos : end_.pos;
    const int64_t target = int64_t{base} + offset;
    if (target < 0 || target > end_.pos) {
        return -1;
    }
    MoveTo(cur_, static_cast<int32_t>(target));
    return cur_.pos;
}

uint32_t R_FILE::Read(void* buf, uint32_t n) {
    n = std::min(n, Rest());
    auto* to = static_cast<unsigned char*>(buf);
    for (uint32_t left = n; left != 0;) {
        const uint32_t piece = std::min(left, RoomAt(cur_));
        std::memcpy(to, BytesAt(cur_), piece);
        _add_size(cur_, piece, blockSize_);
        to += piece;
        left -= piece;
    }
    return n;
}

[[gnu::noinline]] uint32_t R_FILE::ReadAt(int32_t pos, void* buf, uint32_t n) const {
    auto* to = static_cast<unsigned char*>(buf);
    const void* from = nullptr;
    uint32_t done = 0;
    while (done != n) {
        const uint32_t piece = std::min(n - done, Peek(pos + static_cast<int32_t>(done), from));
        if (piece == 0) {
            break;
        }
        std::memcpy(to + done, from, piece);
        done += piece;
    }
    return done;
}

uint32_t R_FILE::Peek(int32_t pos, const void*& p) const {
    if (!IsOpen() || pos < 0 || pos >= end_.pos) {
        p = nullptr;
        return 0;
    }
    POS_TYP at = cur_;
    MoveTo(at, pos);
    p = BytesAt(at);
    return std::min(RoomAt(at), static_cast<uint32_t>(end_.pos - pos));
}

uint32_t R_FILE::Write(const void* buf, uint32_t n) {
    if (n == 0) {
        return 0;
    }
    if (n > Rest()) {
        if (n > static_cast<uint32_t>(kMaxLength - cur_.pos)) {
            return 0;
        }
        // A piece appended within the last block, which is what tables mostly do.
        if (cur_.pos == end_.pos && n < RoomAt(end_)) {
            std::memcpy(BytesAt(end_), buf, n);
            end_.pos = cur_.pos += static_cast<int32_t>(n);
            end_.off = cur_.off += n;
            return n;
        }
        if (_chsize(cur_.pos + static_cast<int32_t>(n), 0) != 0) {
            return 0;
        }
    }
    const auto* from = static_cast<const unsigned char*>(buf);
    for (uint32_t left = n; left != 0;) {
        const uint32_t piece = std::min(left, RoomAt(cur_));
        std::memcpy(BytesAt(cur_), from, piece);
        _add_size(cur_, piece, blockSize_);
        from += piece;
        left -= piece;
    }
    return n;
}

uint32_t R_FILE::InsWrite(const void* buf, uint32_t n) {
    if (n > static_cast<uint32_t>(kMaxLength) || Insert(static_cast<int32_t>(n)) != 0) {
        return 0;
    }
    return Write(buf, n);
}

uint32_t R_FILE::BlRead(const void*& p) {
    if (!IsOpen()) {
        p = nullptr;
        return 0;
    }
    p = BytesAt(cur_);
    const uint32_t count = std::min(RoomAt(cur_), Rest());
    _add_size(cur_, count, blockSize_);
    return count;
}

int R_FILE::Cmp(const CMP_TYP& c, int* result) {
    if (c.total < 0 || static_cast<uint32_t>(c.total) > Rest() ||
        c.len > static_cast<uint32_t>(c.total)) {
        return -1;
    }
    const auto* data = static_cast<const unsigned char*>(c.data);
    uint32_t left = static_cast<uint32_t>(c.total);
    int order = 0;
    for (uint32_t len = c.len; len != 0 && order == 0;) {
        const uint32_t piece = std::min(len, RoomAt(cur_));
        order = c.nocase ? CompareNoCase(data, BytesAt(cur_), piece)
                         : std::memcmp(data, BytesAt(cur_), piece);
        *result = order;
        _add_size(cur_, piece, blockSize_);
        data += piece;
        len -= piece;
        left -= piece;
    }
    _add_size(cur_, left, blockSize_);
    return 0;
}

bool R_FILE::Check() const {
    if (!IsOpen()) {
        return !cur_.node && !end_.node && !chunks_[0];
    }
    const auto isNormal = [this](const POS_TYP& p) {
        const POS_TYP found = Locate(p.pos);
        return p.node == found.node && p.idx == found.idx && p.off == found.off;
    };
    if (cur_.pos < 0 || cur_.pos > end_.pos || !isNormal(cur_) || !isNormal(end_)) {
        return false;
    }
    const uint32_t blockCount = BlockNumber(end_) + 1;
    const uint32_t nodeCount = NodeNumber(end_) + 1;
    NODE* node = NextPNode(end_.node);
    for (uint32_t number = 0; number < nodeCount; ++number, node = NextPNode(node)) {
        if (node != FindNode(number)) {
            return false;
        }
        for (uint32_t slot = 0; slot < kSlots; ++slot) {
            if ((node->block[slot] != nullptr) != (number * kSlots + slot < blockCount)) {
                return false;
            }
        }
    }
    const uint32_t unused = ChunkOf(nodeCount - 1) + 1;
    return node == FindNode(0) && std::all_of(chunks_ + unused, std::end(chunks_),
                                              [](const NODE* chunk) { return !chunk; });
}
