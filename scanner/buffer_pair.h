// The scanner's reader: a ring of two halves that are refilled in turn from a character stream.
//
// Each half ends in one slot that is never text. When a half was filled completely, the
// end-of-input mark in that slot only says "go on in the other half"; anywhere else the mark is the
// real end. So reading a character is a load and a compare, and one place decides what a mark
// means.
//
// Characters are not copied while a token is scanned: its text is copied out once, from where it
// began. Only when the half in which a token began is overwritten before the token ends does its
// text move to the owner's overflow block.
#pragma once

#include <cstdint>

#include "lq_base.h"
#include "lq_data/scanner.h"
#include "lq_framework.h"

class BufferPair : public CObject {
    LQ_DECLARE_DYNAMIC(BufferPair)
  public:
    // `half` is the size of one half in characters, its mark included; at least 2. When memory is
    // short the reader is at its end from the start, until a Bind finds memory.
    BufferPair(STREAM_W& stream, int32_t half);
    ~BufferPair() override;
    BufferPair(const BufferPair&) = delete;
    BufferPair& operator=(const BufferPair&) = delete;

    // Whether there is a ring to read into.
    bool IsUsable() const { return buffer_ != endOnly_; }
    void SetOwner(Scanner* owner) { owner_ = owner; }
    // Starts over on another stream, from that stream's read position.
    void Bind(STREAM_W& stream);
    // Unbinds the stream and moves its read position to GetPosition(); null when none is bound.
    STREAM_W* Unbind();

    // Moves onto the next character and returns it; the end of input stays where it is.
    char16_t NextChar() {
        const char16_t c = buffer_[index_ + 1];
        if (c == Scanner::kEndOfInput) {
            return PassMark();
        }
        ++index_;
        return c;
    }

    // The character that NextChar would return, without moving.
    char16_t Peek();

    // The stream offset of the current character; at the end of input that of the last one.
    int32_t GetPosition() const;

    // A token begins at the current character.
    void BeginToken() {
        start_ = index_;
        spilled_ = false;
        spillLost_ = false;
    }
    // What is read from here on belongs to no token.
    void BeginBlanks() { start_ = kNoToken; }

    // Copies the first characters of the token so far, which may go on: at most `destSize` - 1 and
    // a terminator. Returns their number.
    int32_t CopyBeginning(char16_t* dest, int32_t destSize) const;

    // For the end of a token. Copies its text from its character `offset` up to, not including, the
    // current character: at most `destSize` - 1 characters and a terminator. Then removes the last
    // `cut` characters. Text that does not fit ends in a mark: "..*)" in a comment, "..'" in a
    // string in single quotes, ".." otherwise. Returns the number of characters.
    int32_t CopyText(char16_t* dest, int32_t destSize, int32_t offset, int32_t cut);

  private:
    static constexpr int32_t kNoToken = -1;

    char16_t PassMark();
    // Refills half 0 or 1.
    void Fill(int which);
    // Moves text of a half that is about to be overwritten to the owner's overflow block.
    void SaveHalf(int which);
    // Appends to the overflow block, allocating it first when there is none. When memory is short
    // the block keeps its text, takes no more and never counts as complete.
    void Spill(const char16_t* text, int32_t count);
    void CompleteSpill();
    int32_t CopyFromRing(char16_t* dest, int32_t room, int32_t offset) const;
    int32_t CopyFromSpill(char16_t* dest, int32_t room, int32_t offset) const;

    int HalfOf(int32_t slot) const { return slot >= half_ ? 1 : 0; }
    int32_t FirstSlot(int which) const { return which == 0 ? 0 : half_; }
    int32_t MarkSlot(int which) const { return FirstSlot(which) + half_ - 1; }

    STREAM_W* stream_;
    Scanner* owner_ = nullptr;
    char16_t* buffer_;
    char16_t endOnly_[4];  // stands in for a buffer that could not be allocated
    int32_t wantedHalf_;
    int32_t half_;
    int32_t index_ = -1;          // slot of the current character
    int32_t start_ = kNoToken;    // slot where the current token began
    uint32_t firstPosition_ = 0;  // stream offset of the first slot of the current half
    bool bound_ = true;
    bool spilled_ = false;       // the token's beginning is in the owner's overflow block
    bool spillLost_ = false;     // memory ran short for the overflow block
    bool filledAhead_ = false;   // the other half was refilled before the current one was left
    int32_t spillCapacity_ = 0;  // characters allocated for the overflow block
};
