// The scanner's reader: a ring of two halves that are refilled in turn from a character stream.
//
// It is the buffer pair with sentinels of Aho, Lam, Sethi and Ullman (Compilers: Principles,
// Techniques, and Tools, 2nd edition, section 3.2). Each half ends in one slot that is never text
// and always holds the end-of-input mark. When the half was filled completely, that mark only says
// "go on in the other half"; a mark in front of that slot is the real end of the input. So reading
// a character is a load and a compare with the mark, without a test for the end of the buffer, and
// one place, PassMark, decides what a mark means.
//
// Runs of characters of one class are passed in one go: the mark belongs to no class, so that the
// inner loop needs no other end.
//
// Characters are not copied while a token is scanned: its text is copied out once, from where it
// began. Nearly every token lies within one half. When a token goes on into the other half, both
// are copied from; when it is so long that the half in which it began is filled again before the
// token ends, its text moves to the owner's overflow block first.
#pragma once

#include <cstdint>
#include <cstring>

#include "lq_data/env/lq_base.h"
#include "lq_data/env/lq_framework.h"
#include "lq_data/scanner.h"
#include "scanner/runs.h"

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
    bool IsUsable() const { return block_ != nullptr; }
    void SetOwner(Scanner* owner) { owner_ = owner; }
    // Starts over on another stream, from that stream's read position.
    void Bind(STREAM_W& stream);
    // Unbinds the stream and moves its read position to GetPosition(); null when none is bound.
    STREAM_W* Unbind();

    // Moves onto the next character and returns it. At the end of the input, onto which this has
    // moved, it stays there.
    char16_t NextChar() {
        const char16_t c = at_[1];
        if (c == Scanner::kEndOfInput) {
            return PassMark();
        }
        ++at_;
        return c;
    }
    // The current character, and where it lies; only after NextChar. What follows it up to a mark
    // follows it in the stream, and MoveTo moves onto any of that.
    char16_t Current() const { return *at_; }
    const char16_t* At() const { return at_; }
    void MoveTo(const char16_t* at) { at_ = at; }
    // Whether the mark there only ends a half: text may follow it in the other one.
    bool IsEndOfHalf(const char16_t* mark) const { return mark == MarkSlot(HalfOf(mark)); }

    // Moves onto the first character, from the current one on, that does not belong to the run;
    // `take` is given what was passed, piece by piece. Only after NextChar; the end of input must
    // not belong.
    template <typename Run, typename Take>
    void PassRun(Run run, Take take) {
        do {
            const char16_t* const from = at_;
            const char16_t* at = run.Hurry(from);
            while (run.Belongs(*at)) {
                ++at;
            }
            take(from, static_cast<int32_t>(at - from));
            if (*at != Scanner::kEndOfInput || at == from) {
                at_ = at;
                return;
            }
            at_ = at - 1;
        } while (run.Belongs(PassMark()));
    }

    // The character that NextChar would return, without moving.
    char16_t Peek();

    // The stream offset of the current character; at the end of input that of the last one.
    int32_t GetPosition() const;

    // A token begins at the current character.
    void BeginToken() {
        start_ = at_;
        spilled_ = false;
        spillLost_ = false;
    }
    // What is read from here on belongs to no token.
    void BeginBlanks() { start_ = nullptr; }

    // Short texts are copied in steps of a fixed size, as a copy of an arbitrary size first has to
    // find out which way of copying suits it. Up to kStep - 1 characters more than asked for are
    // read and written.
    static constexpr int32_t kStep = lq::scanner::kReadAhead;
    static constexpr int32_t kShort = 64;
    static void CopyShort(char16_t* to, const char16_t* from, int32_t count) {
        int32_t done = 0;
        do {
            std::memcpy(to + done, from + done, kStep * sizeof(char16_t));
            done += kStep;
        } while (done < count);
    }

    // Copies a piece of text; there must be room for another kStep characters behind it.
    static void CopyAll(char16_t* to, const char16_t* from, int32_t count) {
        if (count <= kShort) {
            CopyShort(to, from, count);
        } else {
            std::memcpy(to, from, static_cast<size_t>(count) * sizeof(char16_t));
        }
    }
    // Copies as much of it as there is room for; returns how much that is.
    static int32_t CopyPiece(char16_t* to, int32_t room, const char16_t* from, int32_t count) {
        const int32_t copied = count < room ? count : room;
        CopyAll(to, from, copied);
        return copied;
    }

    // Copies the first characters of the token so far, which may go on: at most `destSize` - 1 and
    // a terminator. Returns their number.
    int32_t CopyBeginning(char16_t* dest, int32_t destSize) const;

    // For the end of a token. Copies its text from its character `offset` up to, not including, the
    // current character: at most `destSize` - 1 characters and a terminator. The text of a token
    // in the overflow block that fills the destination, even if it just fits, ends in a mark:
    // "..*)" in a comment, "..'" in a string in single quotes, ".." otherwise. Then removes the
    // last `cut` characters. Returns the number of characters.
    int32_t CopyText(char16_t* dest, int32_t destSize, int32_t offset, int32_t cut);

  private:
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

    int HalfOf(const char16_t* slot) const { return slot >= buffer_ + half_ ? 1 : 0; }
    char16_t* FirstSlot(int which) const { return which == 0 ? buffer_ : buffer_ + half_; }
    char16_t* MarkSlot(int which) const { return FirstSlot(which) + half_ - 1; }
    bool IsBeforeFirst() const { return at_ < buffer_; }
    // The characters of the current half before the current one.
    int32_t PassedOfHalf() const { return static_cast<int32_t>(at_ - FirstSlot(HalfOf(at_))); }

    STREAM_W* stream_;
    Scanner* owner_ = nullptr;
    // What buffer_ lies in, with one more slot before it and kStep behind it.
    char16_t* block_ = nullptr;
    char16_t* buffer_;
    char16_t endOnly_[5 + kStep];  // stands in for a block that could not be allocated
    int32_t wantedHalf_;
    int32_t half_;
    const char16_t* at_;               // slot of the current character; at first the one before
    const char16_t* start_ = nullptr;  // slot where the current token began, or null
    uint32_t firstPosition_ = 0;       // stream offset of the first slot of the current half
    bool bound_ = true;
    bool spilled_ = false;       // the token's beginning is in the owner's overflow block
    bool spillLost_ = false;     // memory ran short for the overflow block
    bool filledAhead_ = false;   // the other half was refilled before the current one was left
    int32_t spillCapacity_ = 0;  // characters allocated for the overflow block
};
