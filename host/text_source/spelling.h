// The text of a type or value, of its tokens: blanks stand where the XML reader's texts have them,
// and elsewhere one where the source has any.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "host/text_source/cursor.h"

namespace lq::host::text_source {

class Spelling {
  public:
    explicit Spelling(const Cursor& cursor) : cursor_(cursor) {}

    void Add(const Piece& piece);
    // As Add, with another text than the source's.
    void Add(const Piece& piece, std::u16string_view text);

    const std::u16string& Text() const { return text_; }
    std::u16string Take() { return std::move(text_); }
    void Cut(std::size_t size) { text_.resize(size); }

  private:
    bool NeedsBlank(const Piece& piece) const;

    const Cursor& cursor_;
    std::u16string text_;
    Piece before_;
    bool isInLiteral_ = false;
};

}  // namespace lq::host::text_source
