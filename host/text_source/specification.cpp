// Types and values.

#include <algorithm>
#include <utility>

#include "host/text_source/parts.h"
#include "host/text_source/spelling.h"

namespace lq::host::text_source {

namespace {

bool Opens(const Piece& piece) {
    return piece.Is(OP_LPAREN) || piece.Is(OP_LBRACKET);
}
bool Closes(const Piece& piece) {
    return piece.Is(OP_RPAREN) || piece.Is(OP_RBRACKET);
}

// What stands in a pair of brackets.
struct Group {
    explicit Group(const Cursor& cursor) : spelling(cursor) {}

    Spelling spelling;      // with the brackets
    bool hasRange = false;  // a ".." in them, and in no inner ones
};

// Elementary types are written in capitals, as the XML has them.
void AddTypeWord(Spelling& spelling, const Cursor& cursor, const Piece& piece) {
    const TypeWord type = TypeWordOf(cursor.TextOf(piece));
    if (type.name.empty()) {
        spelling.Add(piece);
    } else {
        spelling.Add(piece, type.name);
    }
}

// Takes a pair of brackets and what is in it. False, in front of what cannot be in brackets, when
// they are not closed.
bool TakeGroup(Context& context, Group& group) {
    Cursor& cursor = context.cursor;
    std::size_t depth = 0;
    do {
        const Piece next = cursor.Peek();
        if (next.Is(OP_SEMICOLON) || (depth != 0 && IsAtBoundary(context))) {
            return false;
        }
        const Piece piece = cursor.Take();
        depth += Opens(piece) ? 1u : 0u;
        depth -= Closes(piece) ? 1u : 0u;
        const bool isRange = piece.Is(OP_RANGE) || piece.kind == TK_RANGE_START;
        group.hasRange = group.hasRange || (isRange && depth == 1);
        group.spelling.Add(piece);
    } while (depth != 0);
    return true;
}

class TypeReader {
  public:
    TypeReader(Context& context, Spec& spec, bool isDefinition)
        : context_(context), cursor_(context.cursor), spec_(spec), isDefinition_(isDefinition) {}

    bool Read() {
        const bool isRead = ReadPrefix() && ReadElement();
        const Word edge = cursor_.Peek().word;
        if (isRead && (edge == Word::kRisingEdge || edge == Word::kFallingEdge)) {
            spec_.edge = cursor_.Take().word;
        }
        return isRead;
    }

  private:
    // "ARRAY [1..2] OF ", "REF_TO ", as many as there are.
    bool ReadPrefix() {
        for (;;) {
            const Word word = cursor_.Peek().word;
            const bool isTo = cursor_.Peek(1).word == Word::kTo;
            if (word == Word::kArray && cursor_.Peek(1).Is(OP_LBRACKET)) {
                cursor_.Take();
                Group group(cursor_);
                if (!TakeGroup(context_, group) || cursor_.Peek().word != Word::kOf) {
                    return false;
                }
                spec_.type += u"ARRAY " + group.spelling.Text() + u" OF ";
                isArray_ = true;
            } else if (word == Word::kRefTo) {
                spec_.type += u"REF_TO ";
            } else if ((word == Word::kPointer || word == Word::kReference) && isTo) {
                spec_.type += word == Word::kPointer ? u"REF_TO " : u"REFERENCE TO ";
                cursor_.Take();
            } else {
                return true;
            }
            cursor_.Take();
        }
    }

    bool ReadElement() {
        const Piece first = cursor_.Peek();
        if (first.Is(OP_LPAREN)) {
            return ReadEnumeration();
        }
        if (first.word == Word::kStruct) {
            return ReadStructure();
        }
        if (first.word == Word::kString || first.word == Word::kWString) {
            return ReadString();
        }
        const bool isDirection = first.word == Word::kReadOnly || first.word == Word::kReadWrite;
        return cursor_.IsName(first) && !IsOfCode(first.word) && !isDirection && ReadNamed();
    }

    // The base of an enumeration may stand behind it: it is moved to the front.
    bool ReadEnumeration() {
        Group group(cursor_);
        if (!TakeGroup(context_, group)) {
            return false;
        }
        const TypeWord base = TypeWordOf(cursor_.TextOf(cursor_.Peek()));
        if (!base.name.empty() && !IsDeclared(context_)) {
            spec_.type.append(base.name) += u' ';
            cursor_.Take();
        }
        spec_.type += group.spelling.Text();
        return true;
    }

    bool ReadStructure() {
        Spelling text(cursor_);
        for (std::size_t depth = 0;;) {
            const Word word = cursor_.Peek().word;
            if (cursor_.Peek().IsEnd() || (word != Word::kEndStruct && IsAtBoundary(context_))) {
                return false;
            }
            const Piece piece = cursor_.Take();
            if (word == Word::kStruct || word == Word::kEndStruct) {
                text.Add(piece, word == Word::kStruct ? u"STRUCT" : u"END_STRUCT");
            } else {
                AddTypeWord(text, cursor_, piece);
            }
            depth += word == Word::kStruct ? 1u : 0u;
            depth -= word == Word::kEndStruct ? 1u : 0u;
            if (depth == 0) {
                spec_.type += text.Text();
                return true;
            }
        }
    }

    bool ReadString() {
        spec_.type += TypeWordOf(cursor_.TextOf(cursor_.Take())).name;
        if (!Opens(cursor_.Peek())) {
            return true;
        }
        Group group(cursor_);
        if (!TakeGroup(context_, group)) {
            return false;
        }
        const std::u16string& text = group.spelling.Text();
        spec_.type += u"(" + text.substr(1, text.size() - 2) + u")";
        return true;
    }

    // A name, with its library's in front of it, and what its brackets say: bounds, the names of an
    // enumeration, or arguments.
    bool ReadNamed() {
        const std::u16string_view name = cursor_.TextOf(cursor_.Take());
        const TypeWord base = TypeWordOf(name);
        spec_.type += base.name.empty() ? name : base.name;
        while (cursor_.Peek().Is(OP_DOT) && cursor_.IsName(cursor_.Peek(1))) {
            cursor_.Take();
            (spec_.type += u'.') += cursor_.TextOf(cursor_.Take());
        }
        if (isArray_ && cursor_.Peek().Is(OP_LBRACKET)) {
            spec_.hasArguments = true;
            return PassBrackets(context_);
        }
        if (!cursor_.Peek().Is(OP_LPAREN)) {
            return true;
        }
        Group group(cursor_);
        if (!TakeGroup(context_, group)) {
            return false;
        }
        if (group.hasRange || base.isWhole || isDefinition_) {
            spec_.type += u" " + group.spelling.Text();
        } else {
            spec_.hasArguments = true;
        }
        return true;
    }

    Context& context_;
    Cursor& cursor_;
    Spec& spec_;
    const bool isDefinition_;
    bool isArray_ = false;
};

// Follows a declaration for the names, outside of all brackets, that a ":" may show to be those of
// the next one.
class NextNames {
  public:
    explicit NextNames(std::vector<Piece>& names) : names_(names) { names_.clear(); }

    // Whether `piece` begins what may be names.
    bool Take(const Cursor& cursor, const Piece& piece, bool mayBegin) {
        const bool isName = cursor.IsName(piece) && !IsOfCode(piece.word);
        const bool goesOn = !names_.empty() && (names_.back().Is(OP_COMMA) ? isName
                                                : piece.Is(OP_COMMA)       ? true
                                                                           : IsOfAddress(piece));
        if (!goesOn) {
            names_.clear();
        }
        const bool begins = !goesOn && isName && mayBegin;
        if (goesOn || begins) {
            names_.push_back(piece);
        }
        return begins;
    }

  private:
    bool IsOfAddress(const Piece& piece) const {
        return piece.word == Word::kAt || names_.back().word == Word::kAt;
    }

    std::vector<Piece>& names_;
};

}  // namespace

bool ReadType(Context& context, Spec& spec, bool isDefinition) {
    return TypeReader(context, spec, isDefinition).Read();
}

bool PassBrackets(Context& context) {
    Group group(context.cursor);
    return TakeGroup(context, group);
}

namespace {

// The value up to some token.
struct ValueEnd {
    std::size_t size = 0;
    Piece last;
    bool isOnePair = false;  // of round brackets
};

// The brackets of members go.
void SetValue(std::u16string& value, std::u16string&& text, bool isOfMembers) {
    value = isOfMembers ? text.substr(1, text.size() - 2) : std::move(text);
}

}  // namespace

Reading ReadValue(Context& context, std::u16string& value) {
    Cursor& cursor = context.cursor;
    Spelling text(cursor);
    NextNames names(context.putBack);
    ValueEnd beforeNames;
    ValueEnd beforeComma;
    std::size_t depth = 0;
    bool isFirst = true;
    bool isBehindComma = false;
    bool hasMembers = false;  // a ":=" in one pair of brackets
    bool isOnePair = false;
    for (;; isFirst = false) {
        const Piece next = cursor.Peek();
        if (next.Is(OP_SEMICOLON) || IsAtBoundary(context)) {
            break;
        }
        // "LTOD#12:00:00" is more than one token.
        const bool isOfLiteral = !isFirst && cursor.Last().Touches(next);
        if (depth == 0 && next.Is(OP_COLON) && (!context.putBack.empty() || !isOfLiteral)) {
            if (context.putBack.empty()) {
                return Reading::kBroken;
            }
            text.Cut(beforeNames.size);
            cursor.PutBack(context.putBack, beforeNames.last);
            SetValue(value, text.Take(), beforeNames.isOnePair && hasMembers);
            return Reading::kMissing;
        }
        const ValueEnd before{text.Text().size(), cursor.Last(), isOnePair && !isFirst};
        const Piece piece = cursor.Take();
        if (Closes(piece) && depth == 0) {
            return Reading::kBroken;
        }
        if (depth == 0 && !Opens(piece)) {
            if (names.Take(cursor, piece, !isFirst || piece.isFirst)) {
                // A comma in front of them stands for the sign that is missing.
                beforeNames = isBehindComma ? beforeComma : before;
            }
        } else {
            context.putBack.clear();
        }
        isBehindComma = piece.Is(OP_COMMA);
        beforeComma = isBehindComma ? before : beforeComma;
        isOnePair = isFirst ? piece.Is(OP_LPAREN) : isOnePair && depth != 0;
        depth += Opens(piece) ? 1u : 0u;
        depth -= Closes(piece) ? 1u : 0u;
        hasMembers = hasMembers || (depth == 1 && piece.Is(OP_ASSIGN));
        text.Add(piece);
    }
    if (depth != 0) {
        return Reading::kBroken;
    }
    SetValue(value, text.Take(), isOnePair && hasMembers);
    return cursor.Peek().Is(OP_SEMICOLON) ? Reading::kDone : Reading::kMissing;
}

void PassDeclaration(Context& context) {
    Cursor& cursor = context.cursor;
    NextNames names(context.putBack);
    while (!IsAtBoundary(context)) {
        if (cursor.Peek().Is(OP_COLON) && !context.putBack.empty()) {
            cursor.PutBack(context.putBack, cursor.Last());
            return;
        }
        const Piece piece = cursor.Take();
        if (piece.Is(OP_SEMICOLON)) {
            return;
        }
        names.Take(cursor, piece, piece.isFirst);
    }
}

}  // namespace lq::host::text_source
