// The two ways to walk a token's characters. Every literal's rule is written once, as a template
// over either of them.
//
// InPlace walks text that lies whole in one half of the reader, with its position in a register;
// the reader moves only when a token is certain. At the end of the half it stands on a mark. No
// token has a mark in it, so that every rule stops there; the text goes on in the other half, and
// the token is begun again with a Ring. That moves the reader itself, which refills its halves and
// keeps the text of the token that they lose.
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
    // The character behind the current one; only when CanPeek says that it lies here.
    char16_t Peek() const { return at_[1]; }
    bool CanPeek() const { return !GoesOnBehind(at_ + 1); }
    // Whether this is the end of the half, and the current character lies in the other one.
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

    // The token's text up to here, and the text of a token that has ended. Text that lies in pieces
    // is put together in `spare`. What is too long for that is cut: a token that goes on has its
    // beginning there, and one that has ended a mark in place of its last characters.
    std::u16string_view TextSoFar(char16_t* /*spare*/) const {
        return {start_, static_cast<size_t>(at_ - start_)};
    }
    std::u16string_view EndedText(char16_t* /*spare*/) const { return TextSoFar(nullptr); }
    // Copies the token's text up to here, as far as `dest` has room for it and for `room` more
    // characters; returns the length.
    int32_t CopySoFar(char16_t* dest, int32_t /*room*/) const {
        BufferPair::CopyAll(dest, start_, Length());
        return Length();
    }
    // Makes that copy, of so many characters, the text of the token, which has ended.
    int32_t CompleteCopy(char16_t* dest, int32_t length) const {
        dest[length] = 0;
        return length;
    }
    // Copies the text of a token that has ended, without its first `offset` and its last `cut`
    // characters; returns the length.
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
