// What the scanner reads of a source text: blanks in place of what it does not know (pragmas,
// comments of all forms), so that every token stays in its place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "lq_data/env/lq_base.h"

namespace lq::host::text_source {

// A part of the text that is no code.
struct Foreign {
    enum Kind : uint8_t { kComment, kLineComment, kPragma, kString };

    uint32_t begin;
    uint32_t end;
    Kind kind;
    bool isOpen;  // its end is missing; a string is here for that only, and is code
};

// - A comment is read flat, "(* a (* b *)"; as one that holds others only where the next mark
// behind
//   it is one that ends a comment.
// - A pragma ends where as many braces are closed as were opened. One that is never closed, and a
//   string that is not closed on its line, end with their line.
// - What strings hold comes to the scanner as letters: it judges escapes, and takes a string that
// it
//   finds fault with for open. Line breaks and control characters come as blanks.
class SourceFilter final : public STREAM_W {
  public:
    // Without U+001A, which ends an input.
    explicit SourceFilter(std::u16string_view text) : text_(text) {}

    // What was passed is kept, in order, until it is taken; null when none is there yet.
    const Foreign* First() const { return taken_ < foreign_.size() ? &foreign_[taken_] : nullptr; }
    void TakeFirst();

    // One blank more than the text: its last token does not touch the end of the input.
    int32_t GetBlock(char16_t* buffer, int32_t count, STREAMERROR* error) override;
    int32_t PutBlock(const char16_t*, int32_t, STREAMERROR*) override { return 0; }
    int32_t TellRead() override { return static_cast<int32_t>(at_); }
    int32_t TellWrite() override { return 0; }
    int SeekRead(int32_t, STREAMERROR*) override { return 0; }
    int SeekWrite(int32_t, STREAMERROR*) override { return 0; }

  private:
    enum class Show { kCode, kString, kBlank };

    bool At(std::u16string_view mark) const { return text_.substr(at_).starts_with(mark); }
    std::size_t EndOfLine(std::size_t from);
    std::size_t EndOfCode(std::size_t from) const;
    void Begin();
    void BeginString();
    void BeginPragma();
    void BeginForeign(Foreign::Kind kind, std::size_t end, bool isOpen = false);
    void BeginComment(std::u16string_view mark, std::size_t end);
    std::size_t EndOfComment();
    std::size_t EndOfNest() const;
    char16_t* Put(char16_t* to, std::size_t part);

    std::u16string_view text_;
    std::size_t at_ = 0;
    std::size_t begin_ = 0;  // of the part that is being shown
    std::size_t end_ = 0;
    Show show_ = Show::kCode;
    std::size_t lineEnd_ = 0;  // of the line that was searched last
    std::vector<Foreign> foreign_;
    std::size_t taken_ = 0;
    bool nests_ = true;    // no search for the end of a nest was in vain
    int openPragmas_ = 0;  // such searches for pragmas
};

}  // namespace lq::host::text_source
