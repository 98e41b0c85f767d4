// The two ways to walk a token's characters. Every literal's rule is written once, over either.
//
// InPlace walks text that lies whole in the reader's half, its position in a register; the reader
// moves only when a token is certain. At the end of the half it stands on a mark, which belongs to
// no token: whatever rule stops there, the text goes on elsewhere, and the token is begun again
// with a Ring. That moves the reader itself, which refills its halves and keeps what they lose.
#pragma once

#include <cstdint>
#include <string_view>

#include "scanner/buffer_pair.h"

namespace lq::scanner {

class InPlace {
  public:
    static constexpr bool kIsWhole = true;

    explicit InPlace(const BufferPair& reader)
        : reader_(reader), at_(reader.At()), start_(reader.At()) {}

    char16_t Current() const { return *at_; }
    const char16_t* At() const { return at_; }
    void Next() { ++at_; }
    void Skip(int32_t count) { at_ += count; }
    // The character behind the current one, when it CanPeek.
    char16_t Peek() const { return at_[1]; }
    bool CanPeek() const { return !GoesOnBehind(at_ + 1); }
    // Whether the current character lies elsewhere.
    bool IsElsewhere() const { return GoesOnBehind(at_); }

    // Moves onto the first character, from the current one on, that does not belong to the run;
    // `take` is given what was passed.
    template <typename Run, typename Take>
    void PassRun(Run run, Take take) {
        const char16_t* const from = at_;
        at_ = run.Hurry(from);
        while (run.Belongs(*at_)) {
            ++at_;
        }
        take(from, static_cast<int32_t>(at_ - from));
    }

    void BeginBlanks() {}
    void BeginToken() { start_ = at_; }
    void EndToken(BufferPair& reader) const { reader.MoveTo(at_); }

    // The token's text; in `spare` when it is in pieces. That of a token that goes on is a
    // beginning when it is too long, that of an ended one has then its mark.
    std::u16string_view TextSoFar(char16_t* /*spare*/) const {
        return {start_, static_cast<size_t>(at_ - start_)};
    }
    std::u16string_view EndedText(char16_t* /*spare*/) const { return TextSoFar(nullptr); }
    // Copies the beginning of a token that may go on; leaves room for so many more characters.
    int32_t CopySoFar(char16_t* dest, int32_t /*room*/) const {
        BufferPair::CopyAll(dest, start_, Length());
        return Length();
    }
    // Makes the whole text of that beginning when the token has ended.
    int32_t CompleteCopy(char16_t* dest, int32_t length) const {
        dest[length] = 0;
        return length;
    }
    // The text of an ended token without so many characters at its ends.
    int32_t CopyText(char16_t* dest, int32_t offset, int32_t cut) const {
        const int32_t length = Length() - offset - cut;
        BufferPair::CopyAll(dest, start_ + offset, length);
        dest[length] = 0;
        return length;
    }

  private:
    bool GoesOnBehind(const char16_t* at) const {
        return *at == Scanner::kEndOfInput && reader_.IsEndOfHalf(at);
    }
    int32_t Length() const { return static_cast<int32_t>(at_ - start_); }

    const BufferPair& reader_;
    const char16_t* at_;
    const char16_t* start_;
};

// The same operations where text may be anywhere.
class Ring {
  public:
    static constexpr bool kIsWhole = false;

    explicit Ring(BufferPair& reader) : reader_(reader) {}

    char16_t Current() const { return reader_.Current(); }
    const char16_t* At() const { return reader_.At(); }
    void Next() { reader_.NextChar(); }
    char16_t Peek() const { return reader_.Peek(); }
    static constexpr bool CanPeek() { return true; }
    static constexpr bool IsElsewhere() { return false; }

    template <typename Run, typename Take>
    void PassRun(Run run, Take take) {
        reader_.PassRun(run, take);
    }

    void BeginBlanks() { reader_.BeginBlanks(); }
    void BeginToken() { reader_.BeginToken(); }
    void EndToken(BufferPair& /*reader*/) const {}

    std::u16string_view TextSoFar(char16_t* spare) const {
        return {spare, static_cast<size_t>(CopySoFar(spare, 0))};
    }
    std::u16string_view EndedText(char16_t* spare) const {
        return {spare, static_cast<size_t>(CopyText(spare, 0, 0))};
    }
    int32_t CopySoFar(char16_t* dest, int32_t room) const {
        return reader_.CopyBeginning(dest, Scanner::kBufferSize - room);
    }
    int32_t CompleteCopy(char16_t* dest, int32_t /*length*/) const { return CopyText(dest, 0, 0); }
    int32_t CopyText(char16_t* dest, int32_t offset, int32_t cut) const {
        return reader_.CopyText(dest, Scanner::kBufferSize, offset, cut);
    }

  private:
    BufferPair& reader_;
};

}  // namespace lq::scanner
