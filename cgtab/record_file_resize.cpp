// The record file: what changes its length.
//
// A file grows at its end only. A gap in the middle is growth followed by moving the tail up, a
// deletion is moving the tail down followed by shrinking. Where both ends of a move stand at the
// start of a block, the blocks change places instead of their bytes.

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "lq_data/record_file.h"

int R_FILE::_chsize(int32_t size, int zero) {
    if (!IsOpen()) {
        return -1;
    }
    if (size > end_.pos) {
        return Grow(static_cast<uint32_t>(size - end_.pos), zero != 0);
    }
    if (size < end_.pos) {
        Shrink(size);
    }
    return 0;
}

int R_FILE::Grow(uint32_t n, bool zero) {
    const int32_t oldLength = end_.pos;
    while (n != 0) {
        const uint32_t piece = std::min(n, RoomAt(end_));
        if (zero) {
            std::memset(BytesAt(end_), 0, piece);
        }
        if (piece == RoomAt(end_) && !AppendBlock()) {
            Shrink(oldLength);
            return -1;
        }
        _add_size(end_, piece, blockSize_);
        n -= piece;
    }
    return 0;
}

bool R_FILE::AppendBlock() {
    unsigned char* const block = lq::AllocateArray<unsigned char>(blockSize_);
    if (!block) {
        return false;
    }
    if (end_.idx + 1u < kSlots) {
        end_.node->block[end_.idx + 1] = block;
        return true;
    }
    NODE* const node = NewNode(NodeNumber(end_) + 1);
    if (!node) {
        lq::Release(block);
        return false;
    }
    node->block[0] = block;
    NextPNode(node) = NextPNode(end_.node);
    NextPNode(end_.node) = node;
    return true;
}

void R_FILE::Shrink(int32_t size) {
    const POS_TYP newEnd = Locate(size);
    NODE* const first = NextPNode(end_.node);
    ReleaseBlocks(newEnd.node, newEnd.idx + 1u);
    for (NODE* node = NextPNode(newEnd.node); node != first; node = NextPNode(node)) {
        ReleaseBlocks(node, 0);
    }
    NextPNode(newEnd.node) = first;
    end_ = newEnd;
    ReleaseChunks(NodeNumber(end_) + 1);
}

void R_FILE::ReleaseBlocks(NODE* node, uint32_t firstSlot) {
    for (uint32_t slot = firstSlot; slot < kSlots; ++slot) {
        lq::Release(std::exchange(node->block[slot], nullptr));
    }
}

int R_FILE::Chsize(int32_t size) {
    return size < cur_.pos ? -1 : _chsize(size, 1);
}

int R_FILE::Insert(int32_t n) {
    if (n < 0 || n > std::numeric_limits<int32_t>::max() - end_.pos) {
        return -1;
    }
    const POS_TYP oldEnd = end_;
    if (_chsize(end_.pos + n, 0) != 0) {
        return -1;
    }
    if (n == 0 || cur_.pos == oldEnd.pos) {
        return 0;
    }
    if (AreFewBlocks(n)) {
        RotateBlocks(cur_, static_cast<uint32_t>(n) / blockSize_, true);
    } else {
        MoveUp(oldEnd, end_, static_cast<uint32_t>(oldEnd.pos - cur_.pos));
    }
    return 0;
}

int R_FILE::Delete(int32_t n) {
    if (n < 0 || static_cast<uint32_t>(n) > Rest()) {
        return -1;
    }
    if (n == 0) {
        return 0;
    }
    if (AreFewBlocks(n)) {
        RotateBlocks(cur_, static_cast<uint32_t>(n) / blockSize_, false);
    } else {
        const POS_TYP from = Locate(cur_.pos + n);
        MoveDown(from, cur_, static_cast<uint32_t>(end_.pos - from.pos));
    }
    return _chsize(end_.pos - n, 0);
}

bool R_FILE::AreFewBlocks(int32_t n) const {
    const uint32_t size = static_cast<uint32_t>(n);
    return cur_.off == 0 && size % blockSize_ == 0 && size / blockSize_ <= kSlots;
}

// Rotates the blocks from `first` to the end by `count` slots: up, so that the last blocks become
// the first, or down, so that the first become the last. Passes through the nodes once and carries
// the `count` blocks that leave a node over into the next.
void R_FILE::RotateBlocks(const POS_TYP& first, uint32_t count, bool up) {
    const uint32_t firstNode = NodeNumber(first);
    const uint32_t lastNode = NodeNumber(end_);
    const uint32_t carried = up ? BlockNumber(end_) + 1 - count : BlockNumber(first);
    unsigned char* carry[kSlots];
    for (uint32_t i = 0; i < count; ++i) {
        carry[i] = FindNode((carried + i) / kSlots)->block[(carried + i) % kSlots];
    }
    for (uint32_t step = 0; step <= lastNode - firstNode; ++step) {
        const uint32_t number = up ? firstNode + step : lastNode - step;
        const uint32_t begin = number == firstNode ? first.idx : 0;
        const uint32_t size = (number == lastNode ? end_.idx + 1 : kSlots) - begin;
        unsigned char** const slots = FindNode(number)->block + begin;
        unsigned char* row[2 * kSlots];
        std::copy_n(slots, size, row + (up ? count : 0));
        std::copy_n(carry, count, row + (up ? 0 : size));
        std::copy_n(row + (up ? 0 : count), size, slots);
        std::copy_n(row + (up ? size : 0), count, carry);
    }
}

// Moves the `count` bytes before `from` to before `to`, the last byte first.
void R_FILE::MoveUp(POS_TYP from, POS_TYP to, uint32_t count) {
    while (count != 0) {
        uint32_t piece = std::min(count, blockSize_);
        piece = from.off != 0 ? std::min(piece, from.off) : piece;
        piece = to.off != 0 ? std::min(piece, to.off) : piece;
        _sub_size(from, piece);
        _sub_size(to, piece);
        MovePiece(from, to, piece);
        count -= piece;
    }
}

// Moves the `count` bytes at `from` to `to`, the first byte first.
void R_FILE::MoveDown(POS_TYP from, POS_TYP to, uint32_t count) {
    while (count != 0) {
        const uint32_t piece = std::min({count, RoomAt(from), RoomAt(to)});
        MovePiece(from, to, piece);
        _add_size(from, piece, blockSize_);
        _add_size(to, piece, blockSize_);
        count -= piece;
    }
}

// At the start of two blocks the rest of neither holds anything that is still wanted.
void R_FILE::MovePiece(const POS_TYP& from, const POS_TYP& to, uint32_t size) {
    if (from.off == 0 && to.off == 0) {
        std::swap(BlockAt(from), BlockAt(to));
    } else {
        std::memmove(BytesAt(to), BytesAt(from), size);
    }
}
