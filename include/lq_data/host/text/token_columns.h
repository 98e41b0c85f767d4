// Where a scanner's tokens begin: the scanner counts lines only, up to a token's end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "lq_data/export.h"

class Scanner;
class Token;

namespace lq::host {

class LQ_DATA_API TokenColumns {
  public:
    // `text` is all that the scanner reads and must live as long; its first character stands in
    // column `first`.
    explicit TokenColumns(std::u16string_view text, uint32_t first = 1)
        : text_(text), lineColumn_(first) {}

    // The column of the token that the scanner has just delivered, from 1, in characters. To be
    // asked for each token.
    uint32_t Next(const Scanner& scanner, const Token& token);

    // The line in which that token begins; the text's first is 1.
    uint32_t Line() const { return tokenLine_; }

  private:
    void Pass(std::size_t end);

    std::u16string_view text_;
    std::size_t passed_ = 0;
    uint32_t line_ = 1;  // of the character at passed_, as the next
    uint32_t lineColumn_;
    uint32_t tokenLine_ = 1;
};

}  // namespace lq::host
