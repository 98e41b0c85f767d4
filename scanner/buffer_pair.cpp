#include "scanner/buffer_pair.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>

#include "lq_data/memory.h"

LQ_IMPLEMENT_DYNAMIC(BufferPair, CObject, nullptr)

namespace {

constexpr char16_t kEnd = Scanner::kEndOfInput;

void CopyChars(char16_t* to, const char16_t* from, int32_t count) {
    std::memcpy(to, from, static_cast<size_t>(count) * sizeof(char16_t));
}

const char16_t* TruncationMark(const char16_t* text) {
    if (text[0] == u'(' && text[1] == u'*') {
        return u"..*)";
    }
    return text[0] == u'\'' ? u"..'" : u"..";
}

}  // namespace

BufferPair::BufferPair(STREAM_W& stream, int32_t half)
    : stream_(&stream), buffer_(endOnly_ + 1), wantedHalf_(half), half_(2), at_(endOnly_) {
    std::fill(std::begin(endOnly_), std::end(endOnly_), kEnd);
    Bind(stream);
}

BufferPair::~BufferPair() {
    lq::Release(block_);
}

void BufferPair::Bind(STREAM_W& stream) {
    if (!block_) {
        block_ = lq::AllocateArray<char16_t>(1 + 2 * static_cast<size_t>(wantedHalf_) + kStep);
        if (block_) {
            block_[0] = 0;
            buffer_ = block_ + 1;
            half_ = wantedHalf_;
        }
    }
    stream_ = &stream;
    at_ = buffer_ - 1;
    start_ = nullptr;
    bound_ = true;
    spilled_ = false;
    spillLost_ = false;
    filledAhead_ = false;
    firstPosition_ = static_cast<uint32_t>(stream.TellRead());
    Fill(0);
}

STREAM_W* BufferPair::Unbind() {
    if (!bound_) {
        return nullptr;
    }
    bound_ = false;
    stream_->SeekRead(GetPosition(), nullptr);
    return stream_;
}

int32_t BufferPair::GetPosition() const {
    if (IsBeforeFirst()) {
        return static_cast<int32_t>(firstPosition_ - 1);
    }
    const uint32_t uncounted = *at_ == kEnd ? 1 : 0;
    return static_cast<int32_t>(firstPosition_ + static_cast<uint32_t>(PassedOfHalf()) - uncounted);
}

// NextChar has found a mark in the next slot: either the current half is used up, or the input is.
char16_t BufferPair::PassMark() {
    if (*at_ == kEnd) {
        return kEnd;
    }
    const char16_t* next = at_ + 1;
    const int which = HalfOf(next);
    if (next == MarkSlot(which)) {
        const int other = 1 - which;
        if (!filledAhead_) {
            Fill(other);
        }
        filledAhead_ = false;
        next = FirstSlot(other);
        firstPosition_ += static_cast<uint32_t>(half_ - 1);
    }
    at_ = next;
    if (*at_ == kEnd) {
        // The end. A second mark behind the first keeps NextChar from moving on: what lies there is
        // of an earlier filling, or text of the stream behind a mark of its own.
        buffer_[at_ + 1 - buffer_] = kEnd;
    }
    return *at_;
}

char16_t BufferPair::Peek() {
    if (*at_ == kEnd) {
        return kEnd;
    }
    const char16_t c = at_[1];
    if (c != kEnd) {
        return c;
    }
    const int which = HalfOf(at_ + 1);
    if (at_ + 1 != MarkSlot(which)) {
        return kEnd;
    }
    if (!filledAhead_) {
        Fill(1 - which);
        filledAhead_ = true;
    }
    return *FirstSlot(1 - which);
}

void BufferPair::Fill(int which) {
    if (!block_) {
        return;
    }
    SaveHalf(which);
    char16_t* const first = FirstSlot(which);
    int32_t filled = 0;
    // A stream may hand out less than it is asked for before its end; only nothing is the end.
    while (filled < half_ - 1) {
        const int32_t wanted = half_ - 1 - filled;
        const int32_t got = stream_->GetBlock(first + filled, wanted, nullptr);
        if (got <= 0) {
            break;
        }
        filled += std::min(got, wanted);
    }
    first[filled] = kEnd;
}

void BufferPair::SaveHalf(int which) {
    if (!start_ || !owner_) {
        return;
    }
    if (spilled_) {
        Spill(FirstSlot(which), half_ - 1);
    } else if (HalfOf(start_) == which) {
        Spill(start_, static_cast<int32_t>(MarkSlot(which) - start_));
        spilled_ = owner_->SrcEx != nullptr;
        if (!spilled_) {
            start_ = FirstSlot(1 - which);  // all that is left of the token
        }
    }
}

void BufferPair::Spill(const char16_t* text, int32_t count) {
    if (spillLost_) {
        return;
    }
    const int32_t length = owner_->SrcEx ? owner_->HugeBufLen - 1 : 0;
    constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
    if (count > kMax - 1 - length) {
        spillLost_ = true;  // a token of 2^31 characters
        return;
    }
    const int32_t needed = length + count + 1;
    if (!owner_->SrcEx || needed > spillCapacity_) {
        const int32_t capacity = !owner_->SrcEx || needed > kMax / 2 ? needed : 2 * needed;
        auto* grown = lq::AllocateArray<char16_t>(static_cast<size_t>(capacity));
        if (!grown) {
            spillLost_ = true;
            owner_->HugeBufLen = length + 1;
            return;
        }
        if (owner_->SrcEx) {
            CopyChars(grown, owner_->SrcEx, length);
            lq::Release(owner_->SrcEx);
        }
        owner_->SrcEx = grown;
        spillCapacity_ = capacity;
    }
    CopyChars(owner_->SrcEx + length, text, count);
    owner_->SrcEx[needed - 1] = 0;
    owner_->HugeBufLen = needed;
}

void BufferPair::CompleteSpill() {
    if (owner_->HugeBufComplete || spillLost_) {
        return;
    }
    const int current = HalfOf(at_);
    if (!filledAhead_) {
        Spill(FirstSlot(1 - current), half_ - 1);
    }
    Spill(FirstSlot(current), PassedOfHalf());
    owner_->HugeBufComplete = spillLost_ ? 0 : 1;
}

int32_t BufferPair::CopyFromRing(char16_t* dest, int32_t room, int32_t offset) const {
    const int startHalf = HalfOf(start_);
    const bool wrapped = startHalf != HalfOf(at_);
    const auto firstLength = static_cast<int32_t>((wrapped ? MarkSlot(startHalf) : at_) - start_);
    const int32_t fromFirst = std::min(std::max(firstLength - offset, 0), room);
    CopyChars(dest, start_ + (fromFirst > 0 ? offset : 0), fromFirst);
    if (!wrapped) {
        return fromFirst;
    }
    const int32_t skip = std::max(offset - firstLength, 0);
    const int32_t left = std::max(PassedOfHalf() - skip, 0);
    const int32_t fromSecond = std::min(left, room - fromFirst);
    CopyChars(dest + fromFirst, FirstSlot(1 - startHalf) + (fromSecond > 0 ? skip : 0), fromSecond);
    return fromFirst + fromSecond;
}

int32_t BufferPair::CopyFromSpill(char16_t* dest, int32_t room, int32_t offset) const {
    const int32_t length = std::max(owner_->HugeBufLen - 1 - offset, 0);
    const int32_t copied = std::min(length, room);
    CopyChars(dest, owner_->SrcEx + (copied > 0 ? offset : 0), copied);
    if (copied == room) {
        const char16_t* mark = TruncationMark(dest);
        const int32_t markLength = mark[2] == 0 ? 2 : mark[3] == 0 ? 3 : 4;
        if (markLength <= copied) {
            CopyChars(dest + copied - markLength, mark, markLength);
        }
    }
    return copied;
}

int32_t BufferPair::CopyBeginning(char16_t* dest, int32_t destSize) const {
    const int32_t room = destSize - 1;
    int32_t length = 0;
    const auto append = [&](const char16_t* text, int32_t count) {
        const int32_t copied = std::min(count, room - length);
        CopyChars(dest + length, text, copied);
        length += copied;
    };
    if (!spilled_) {
        length = CopyFromRing(dest, room, 0);
    } else {
        const int current = HalfOf(at_);
        append(owner_->SrcEx, owner_->HugeBufLen - 1);
        if (!filledAhead_ && !spillLost_) {
            append(FirstSlot(1 - current), half_ - 1);
        }
        if (!spillLost_) {
            append(FirstSlot(current), PassedOfHalf());
        }
    }
    dest[length] = 0;
    return length;
}

int32_t BufferPair::CopyText(char16_t* dest, int32_t destSize, int32_t offset, int32_t cut) {
    int32_t length;
    if (spilled_ && owner_->SrcEx) {
        CompleteSpill();
        length = CopyFromSpill(dest, destSize - 1, offset);
    } else {
        length = CopyFromRing(dest, destSize - 1, offset);
    }
    length = std::max(length - std::max(cut, 0), 0);
    dest[length] = 0;
    return length;
}
