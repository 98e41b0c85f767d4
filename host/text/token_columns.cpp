#include "lq_data/host/text/token_columns.h"

#include <algorithm>

#include "lq_data/scanner.h"

namespace lq::host {

uint32_t TokenColumns::Next(const Scanner& scanner, const Token& token) {
    // Between two tokens there are blanks and line breaks only, one of which may be the token.
    const auto isBetween = [&](std::size_t at) {
        const char16_t c = text_[at];
        const bool isLineBreak =
            c == u'\n' || (c == u'\r' && at + 1 < text_.size() && text_[at + 1] == u'\n');
        return c == u' ' || c == u'\t' || (isLineBreak && token.kind != TK_NEWLINE);
    };
    std::size_t start = places_.Position();
    while (start < text_.size() && isBetween(start)) {
        ++start;
    }
    places_.Pass(start);
    const uint32_t column = places_.Column();
    tokenLine_ = places_.Line();
    places_.Pass(static_cast<std::size_t>(std::max(scanner.GetStreamPosition(), 0)));
    return column;
}

}  // namespace lq::host
