// Where a scanner's tokens begin: the scanner counts lines only, up to a token's end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "lq_data/export.h"

class Scanner;
class Token;

namespace lq::host {

// Where a text was put together from parts of a file: from the character `at` on, counted from 0 at
// the text's beginning, it runs through the file from there.
struct PlaceBreak {
    std::size_t at = 0;
    uint32_t line = 0;
    uint32_t column = 0;
};

// Walks through a text and tells where it is: lines and columns from 1, columns in characters.
class TextPlaces {
  public:
    TextPlaces(std::u16string_view text, uint32_t line, uint32_t column)
        : text_(text), line_(line), column_(column) {}
    // `breaks` are in the order of the text and must live as long.
    TextPlaces(std::u16string_view text, std::span<const PlaceBreak> breaks)
        : text_(text), breaks_(breaks) {
        TakeBreak();
    }

    // Goes on to the unit `end` of the text, or to the text's end.
    void Pass(std::size_t end) {
        for (; passed_ < end && passed_ < text_.size(); ++passed_) {
            const char16_t c = text_[passed_];
            if (c >= 0xDC00 && c <= 0xDFFF) {
                continue;  // the second half of a character
            }
            line_ += c == u'\n' ? 1 : 0;
            column_ = c == u'\n' ? 1 : column_ + 1;
            ++characters_;
            TakeBreak();
        }
    }

    std::size_t Position() const { return passed_; }
    uint32_t Line() const { return line_; }
    uint32_t Column() const { return column_; }

  private:
    void TakeBreak() {
        while (!breaks_.empty() && breaks_.front().at == characters_) {
            line_ = breaks_.front().line;
            column_ = breaks_.front().column;
            breaks_ = breaks_.subspan(1);
        }
    }

    std::u16string_view text_;
    std::span<const PlaceBreak> breaks_;
    std::size_t passed_ = 0;
    std::size_t characters_ = 0;
    uint32_t line_ = 1;
    uint32_t column_ = 1;
};

class LQ_DATA_API TokenColumns {
  public:
    // `text` is all that the scanner reads and must live as long; its first character stands in
    // column `first`.
    explicit TokenColumns(std::u16string_view text, uint32_t first = 1)
        : text_(text), places_(text, 1, first) {}
    // The same of a text that was put together: `Line` and columns are the file's then.
    TokenColumns(std::u16string_view text, std::span<const PlaceBreak> breaks)
        : text_(text), places_(text, breaks) {}

    // The column of the token that the scanner has just delivered, from 1, in characters. To be
    // asked for each token.
    uint32_t Next(const Scanner& scanner, const Token& token);

    // The line in which that token begins; the text's first is 1.
    uint32_t Line() const { return tokenLine_; }

  private:
    std::u16string_view text_;
    TextPlaces places_;
    uint32_t tokenLine_ = 1;
};

}  // namespace lq::host
