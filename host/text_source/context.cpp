// Where the reader is, and how it passes what it does not read.

#include "host/text_source/parts.h"
#include "lq_data/host/text/utf.h"

namespace lq::host::text_source {

namespace {

// The first token behind the modifiers that may stand before a name.
std::size_t BehindModifiers(Context& context, std::size_t at) {
    Cursor& cursor = context.cursor;
    while (IsModifier(cursor.Peek(at).word) && cursor.IsName(cursor.Peek(at + 1))) {
        ++at;
    }
    return at;
}

}  // namespace

std::string Quoted(const Context& context, const Piece& piece) {
    constexpr std::size_t kMost = 64;
    const std::u16string_view text = context.cursor.TextOf(piece);
    return text.size() <= kMost ? EncodeUtf8(text) : EncodeUtf8(text.substr(0, kMost)) + "...";
}

bool IsDeclared(Context& context, std::size_t ahead) {
    const Piece next = context.cursor.Peek(ahead + 1);
    return next.Is(OP_COLON) || next.Is(OP_COMMA) ||
           (next.word == Word::kAt && !IsSection(context.cursor.Peek(ahead).word));
}

bool IsAtHeader(Context& context, bool anywhere) {
    Cursor& cursor = context.cursor;
    const Word word = cursor.Peek().word;
    if (!IsHeader(word) || !(anywhere || cursor.Peek().isFirst) || IsDeclared(context)) {
        return false;
    }
    if (word == Word::kTest) {
        return cursor.Peek(1).kind == TK_STRING;
    }
    const std::size_t name = BehindModifiers(context, 1);
    const Piece behind = cursor.Peek(name + 1);
    const Piece called = cursor.Peek(name);
    const bool isOperator = IsOfCode(called.word) && !behind.Is(OP_COLON);
    const bool isNext = IsSection(called.word) || IsEnd(called.word) ||
                        (called.isFirst && IsHeader(called.word) && cursor.IsName(behind));
    if (!cursor.IsName(called) || isOperator || isNext) {
        return false;
    }
    return word != Word::kType || behind.Is(OP_COLON) || behind.word == Word::kExtends;
}

bool IsAtBoundary(Context& context) {
    const Piece next = context.cursor.Peek();
    if (next.word == Word::kNone) {
        return next.IsEnd();
    }
    if (IsEnd(next.word) || IsSection(next.word)) {
        return !IsDeclared(context);
    }
    return IsAtHeader(context);
}

bool PassTo(Context& context, Word end) {
    while (!IsAtBoundary(context)) {
        context.cursor.Take();
    }
    const bool isThere = context.cursor.Peek().word == end;
    if (isThere) {
        context.cursor.Take();
    }
    return isThere;
}

void PassSemicolon(Context& context) {
    if (context.cursor.Peek().Is(OP_SEMICOLON)) {
        context.cursor.Take();
    }
}

void PassModifiers(Context& context) {
    for (std::size_t count = BehindModifiers(context, 0); count != 0; --count) {
        context.cursor.Take();
    }
}

void WarnMissing(Context& context, const Spot& spot, std::string_view what) {
    context.cursor.Warn(spot, kNotRead, Say("'{}' is missing", what));
}

}  // namespace lq::host::text_source
