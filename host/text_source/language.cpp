// What a body is written in, by how it begins.
//
// A statement of ST ends with a semicolon, an instruction of IL with its line; and in ST no name
// has an operand behind it without an operator between the two. What begins a body may be either: a
// call with its arguments in brackets, a name for a line of its own. Then what follows decides.

#include <algorithm>
#include <cstddef>

#include "host/text_source/parts.h"
#include "lq_data/detail/chars.h"
#include "lq_data/host/words/words.h"

namespace lq::host::text_source {

namespace {

constexpr std::size_t kMostTokens = 4096;  // that are looked at

constexpr std::u16string_view kStatements[] = {u"CASE", u"CONTINUE", u"EXIT",   u"FOR",  u"GOTO",
                                               u"IF",   u"REPEAT",   u"RETURN", u"WHILE"};
constexpr std::u16string_view kAssignments[] = {u"R", u"REF", u"S"};  // before "="

template <std::size_t kWords>
bool IsAnyOf(std::u16string_view name, const std::u16string_view (&words)[kWords]) {
    return std::ranges::any_of(words, [name](std::u16string_view word) {
        return name.size() == word.size() &&
               chars::CompareNoCase(name.data(), word.data(), word.size()) == 0;
    });
}

class Beginning {
  public:
    explicit Beginning(Cursor& cursor) : cursor_(cursor) {}

    Language Find() {
        if (IsChart()) {
            return Language::kSfc;
        }
        bool isLikelyIl = false;
        while (!IsOver()) {
            const Sign sign = TakeOne();
            if (sign == Sign::kSt || sign == Sign::kIl) {
                return sign == Sign::kIl ? Language::kIl : Language::kSt;
            }
            isLikelyIl = isLikelyIl || sign == Sign::kLikelyIl;
        }
        return isLikelyIl ? Language::kIl : Language::kSt;
    }

  private:
    enum class Sign { kNone, kSt, kIl, kLikelyIl };

    Piece Here() { return cursor_.Peek(at_); }
    std::u16string_view TextHere() { return cursor_.TextOf(Here()); }

    bool IsChart() {
        const Word word = Here().word;
        const Piece name = cursor_.Peek(1);
        const bool isTransition = word == Word::kTransition;
        return (word == Word::kInitialStep || word == Word::kStep || isTransition) &&
               ((cursor_.IsName(name) && !name.isFirst) ||
                (isTransition && name.Is(OP_LPAREN) && cursor_.Peek(2).word == Word::kPriority));
    }

    bool IsOver() {
        const Piece here = Here();
        return at_ >= kMostTokens || here.IsEnd() || IsEnd(here.word) ||
               here.word == Word::kEndAction || (here.isFirst && at_ != 0 && IsPart(here.word));
    }

    bool IsPart(Word word) {
        const Piece name = cursor_.Peek(at_ + 1);
        return IsSection(word) ||
               (IsHeader(word) && cursor_.IsName(name) && !IsOfCode(name.word)) ||
               (word == Word::kAction && cursor_.Peek(at_ + 2).Is(OP_COLON));
    }

    // What could begin an instruction, or a statement, is here, where one may have ended.
    bool IsNext() {
        const Piece here = Here();
        return IsOver() || here.kind != TK_OPERATOR || (here.isFirst && here.Is(OP_AMPERSAND));
    }

    // Passes an instruction or a statement, as far as it must be known.
    Sign TakeOne() {
        while (!IsOver() && cursor_.IsName(Here()) && cursor_.Peek(at_ + 1).Is(OP_COLON)) {
            at_ += 2;
        }
        if (IsOver()) {
            return Sign::kNone;
        }
        const Piece first = Here();
        const std::u16string_view name = TextHere();
        if (!cursor_.IsName(first) || IsAnyOf(name, kStatements)) {
            return first.Is(OP_AMPERSAND) ? Sign::kIl : Sign::kSt;
        }
        ++at_;
        const bool isPath = PassPath();
        const bool isInstruction = !isPath && IsInstruction(name);
        const Piece next = Here();
        if (IsOver() || next.isFirst) {
            const Sign alone = isInstruction ? Sign::kIl : Sign::kNone;
            return IsNext() ? alone : Sign::kSt;
        }
        if (next.Is(OP_LPAREN)) {
            const bool isOfLines = cursor_.Peek(at_ + 1).isFirst;  // as IL has it
            PassBrackets();
            const Sign likely = isOfLines ? Sign::kLikelyIl : Sign::kNone;
            return IsNext() ? likely : Sign::kSt;
        }
        return TakeOperands(isInstruction || (!isPath && IsStandardFunction(name)));
    }

    // Behind a name that is an instruction, or a function of the standard, or neither.
    Sign TakeOperands(bool isKnown) {
        const bool isSigned = IsSign();
        const bool isAssigned =
            IsAnyOf(TextHere(), kAssignments) && cursor_.Peek(at_ + 1).Is(OP_EQ);
        const bool isOperator =
            isSigned ? cursor_.Peek(at_ + 1).isFirst : Here().kind == TK_OPERATOR;
        if (isAssigned || isOperator) {
            return Sign::kSt;
        }
        PassOperands();
        if (Here().Is(OP_SEMICOLON)) {  // that some put behind instructions, too
            ++at_;
            return isKnown && !isSigned ? Sign::kLikelyIl : Sign::kSt;
        }
        if (!IsNext() && (isSigned || !isKnown)) {
            return Sign::kSt;
        }
        return isKnown ? Sign::kIl : Sign::kLikelyIl;
    }

    bool IsOperand() { return !IsOver() && !Here().isFirst && Here().kind != TK_OPERATOR; }
    bool IsSign() { return Here().Is(OP_PLUS) || Here().Is(OP_MINUS); }

    // "a.b[1]^": what is behind the name. False when nothing is.
    bool PassPath() {
        const std::size_t begin = at_;
        while (!IsOver()) {
            if (Here().Is(OP_DOT)) {
                at_ += 2;
            } else if (Here().Is(OP_LBRACKET)) {
                PassBrackets();
            } else if (TextHere() == u"^") {
                ++at_;
            } else {
                break;
            }
        }
        return at_ != begin;
    }

    // To behind the bracket that closes the one that is here.
    void PassBrackets() {
        std::size_t depth = 0;
        do {
            const Piece here = Here();
            depth += here.Is(OP_LPAREN) || here.Is(OP_LBRACKET) ? 1u : 0u;
            depth -= here.Is(OP_RPAREN) || here.Is(OP_RBRACKET) ? 1u : 0u;
            ++at_;
        } while (depth != 0 && !IsOver());
    }

    // "-1, INT#5, t(IN := a)".
    void PassOperands() {
        do {
            at_ += Here().Is(OP_COMMA) ? 1 : 0;
            at_ += IsSign() ? 1 : 0;
            while (TextHere().ends_with(u'#') && !IsOver()) {
                ++at_;
                at_ += IsSign() ? 1 : 0;
            }
            at_ += IsOperand() ? 1 : 0;
            PassPath();
            if (Here().Is(OP_LPAREN)) {
                PassBrackets();
            }
        } while (Here().Is(OP_COMMA) && !IsOver());
    }

    Cursor& cursor_;
    std::size_t at_ = 0;
};

}  // namespace

Language LanguageHere(Context& context) {
    return Beginning(context.cursor).Find();
}

}  // namespace lq::host::text_source
