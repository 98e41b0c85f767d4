#include "host/text_source/spelling.h"

namespace lq::host::text_source {

void Spelling::Add(const Piece& piece) {
    Add(piece, cursor_.TextOf(piece));
}

void Spelling::Add(const Piece& piece, std::u16string_view text) {
    // "LTOD#12:00": a ":" behind a number, without blanks.
    isInLiteral_ =
        before_.Touches(piece) &&
        (before_.Is(OP_COLON) ? isInLiteral_ : piece.Is(OP_COLON) && before_.kind != TK_IDENTIFIER);
    if (!text_.empty() && NeedsBlank(piece)) {
        text_ += u' ';
    }
    text_ += text;
    before_ = piece;
}

bool Spelling::NeedsBlank(const Piece& piece) const {
    const auto isOne = [](const Piece& of, std::initializer_list<OPERATOR_CODE> codes) {
        for (const OPERATOR_CODE code : codes) {
            if (of.Is(code)) {
                return true;
            }
        }
        return false;
    };
    const bool isOpening = isOne(piece, {OP_LPAREN, OP_LBRACKET});
    if (isOne(piece, {OP_COMMA, OP_SEMICOLON, OP_RPAREN, OP_RBRACKET, OP_RANGE, OP_DOT}) ||
        isOne(before_, {OP_LPAREN, OP_LBRACKET, OP_RANGE, OP_DOT}) ||
        before_.kind == TK_RANGE_START) {
        return false;
    }
    if (isOne(piece, {OP_ASSIGN, OP_ARROW, OP_COLON}) ||
        isOne(before_, {OP_ASSIGN, OP_ARROW, OP_COLON, OP_COMMA, OP_SEMICOLON})) {
        return !isInLiteral_;
    }
    if (isOpening && before_.word == Word::kArray) {
        return true;
    }
    const bool isCounted = before_.kind == TK_INTEGER || before_.kind == TK_IDENTIFIER;
    return !(isOpening && isCounted) && !before_.Touches(piece);
}

}  // namespace lq::host::text_source
