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
    std::size_t start = passed_;
    while (start < text_.size() && isBetween(start)) {
        ++start;
    }
    Pass(start);
    const uint32_t column = lineColumn_;
    tokenLine_ = line_;
    Pass(static_cast<std::size_t>(std::max(scanner.GetStreamPosition(), 0)));
    return column;
}

void TokenColumns::Pass(std::size_t end) {
    for (; passed_ < std::min(end, text_.size()); ++passed_) {
        const char16_t c = text_[passed_];
        const bool isSecondHalf = c >= 0xDC00 && c <= 0xDFFF;
        line_ += c == u'\n' ? 1 : 0;
        lineColumn_ = c == u'\n' ? 1 : lineColumn_ + (isSecondHalf ? 0 : 1);
    }
}

}  // namespace lq::host
