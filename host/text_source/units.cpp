// Units: their headers, their sections, and their bodies.

#include <algorithm>
#include <optional>
#include <utility>

#include "host/model/code_reader.h"
#include "host/text_source/parts.h"
#include "lq_data/detail/chars.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/host/words/words.h"

namespace lq::host::text_source {

namespace {

LQ_OBJECT_KIND KindOf(Word word) {
    return word == Word::kFunction        ? LQ_KIND_FUNCTION
           : word == Word::kFunctionBlock ? LQ_KIND_FUNCTION_BLOCK
                                          : LQ_KIND_PROGRAM;
}

bool BeginsStatement(std::u16string_view name) {
    constexpr std::u16string_view kWords[] = {u"CASE", u"CONTINUE", u"EXIT",   u"FOR",  u"GOTO",
                                              u"IF",   u"REPEAT",   u"RETURN", u"WHILE"};
    return std::ranges::any_of(kWords, [name](std::u16string_view word) {
        return name.size() == word.size() &&
               chars::CompareNoCase(name.data(), word.data(), word.size()) == 0;
    });
}

// What the body that begins here is written in.
Language LanguageHere(Context& context) {
    Cursor& cursor = context.cursor;
    const Word word = cursor.Peek().word;
    if (word == Word::kInitialStep || word == Word::kStep || word == Word::kTransition ||
        word == Word::kAction) {
        return Language::kSfc;
    }
    const std::size_t at =
        cursor.Peek().kind == TK_IDENTIFIER && cursor.Peek(1).Is(OP_COLON) ? 2 : 0;
    const Piece instruction = cursor.Peek(at);
    const Piece operand = cursor.Peek(at + 1);
    if (instruction.kind != TK_IDENTIFIER) {
        return instruction.Is(OP_AMPERSAND) ? Language::kIl : Language::kSt;
    }
    const std::u16string_view name = cursor.TextOf(instruction);
    if (operand.isFirst || operand.IsEnd()) {
        return IsInstruction(name) ? Language::kIl : Language::kSt;
    }
    // A function is one, too, where its operands follow without brackets; and a name of which
    // nothing else is known, where its line ends behind one operand, as no statement does.
    const Piece next = cursor.Peek(at + 2);
    const bool isIl =
        operand.kind != TK_OPERATOR && (IsInstruction(name) || IsStandardFunction(name) ||
                                        (next.isFirst && !BeginsStatement(name)));
    return isIl ? Language::kIl : Language::kSt;
}

class UnitReader {
  public:
    explicit UnitReader(Context& context)
        : context_(context), cursor_(context.cursor), project_(context.project) {}

    void Read() {
        word_ = cursor_.Take();
        PassModifiers(context_);
        name_ = cursor_.Take();
        Pou pou;
        pou.comment = project_.Intern(cursor_.CommentBefore(word_, true));
        pou.name = project_.Intern(cursor_.TextOf(name_));
        pou.kind = KindOf(word_.word);
        pou.line = word_.spot.line;
        pou.column = cursor_.ColumnOf(word_.spot);
        TakeParents();
        const Piece next = cursor_.Peek();
        if (next.Is(OP_COLON)) {
            cursor_.Take();
            TakeResult(pou);
        } else if (word_.word == Word::kFunction && cursor_.IsName(next) && !next.isFirst &&
                   !IsSection(next.word) && IsSection(cursor_.Peek(1).word)) {
            WarnMissing(context_, cursor_.EndOf(name_), ":");
            TakeResult(pou);
        } else if (IsForward()) {
            return;
        }
        PassSemicolon(context_);
        if (project_.FindPou(pou.name) != ID()) {
            cursor_.Warn(word_, kDuplicateUnit,
                         Say("the name of POU '{}' is taken: the first one is used", Name()));
        }
        pou_ = project_.AddPou(pou);
        ReadParts();
        eno_.Close(project_, pou_);
    }

  private:
    // "EXTENDS a", "IMPLEMENTS a, b".
    void TakeParents() {
        while (cursor_.Peek().word == Word::kExtends || cursor_.Peek().word == Word::kImplements) {
            const Word word = cursor_.Take().word;
            if (word == Word::kExtends) {
                cursor_.Warn(cursor_.Last(), kNotKept,
                             Say("the members that '{}' has from '{}' are missing", Name(),
                                 Quoted(context_, cursor_.Peek())));
            }
            do {
                cursor_.Take();
            } while (!cursor_.Peek().isFirst && IsOfParents(cursor_.Peek()));
        }
    }

    bool IsOfParents(const Piece& piece) const {
        const bool isBehind = cursor_.Last().Is(OP_DOT) || cursor_.Last().Is(OP_COMMA);
        return piece.Is(OP_DOT) || piece.Is(OP_COMMA) || (isBehind && cursor_.IsName(piece));
    }

    void TakeResult(Pou& pou) {
        Spec spec;
        if (!ReadType(context_, spec)) {
            cursor_.Warn(cursor_.Peek(), kNotRead, Say("the type of '{}' cannot be read", Name()));
        }
        pou.resultType = project_.Intern(spec.type);
    }

    // "FUNCTION f;" tells that there is one.
    bool IsForward() {
        if (word_.word != Word::kFunction || !cursor_.Peek().Is(OP_SEMICOLON) ||
            IsSection(cursor_.Peek(1).word)) {
            return false;
        }
        cursor_.Take();
        return true;
    }

    void ReadParts() {
        for (;;) {
            for (Piece piece; reader_ && cursor_.TakePlain(piece);) {
                ReadToken(piece);
            }
            const Piece next = cursor_.Peek();
            if (next.IsEnd()) {
                EndBody();
                return;
            }
            if (next.word != Word::kNone && ReadPart(next.word)) {
                if (isOver_) {
                    return;
                }
            } else {
                ReadCode();
            }
        }
    }

    // What is no code of the body; false when it is.
    bool ReadPart(Word word) {
        if (IsSection(word) && !IsDeclared(context_)) {
            return ReadUnitSection();
        }
        if (IsEndOfUnit(word) || word == Word::kEndType || word == Word::kEndConfiguration) {
            End(word);
            return true;
        }
        if (!IsAtHeader(context_)) {
            return false;
        }
        if (word == Word::kMethod || word == Word::kProperty) {
            LeaveOut(context_);
            return true;
        }
        EndBody();
        isOver_ = true;
        WarnMissing(context_, cursor_.Peek().spot, Spelled(EndOf(word_.word)));
        return true;
    }

    bool ReadUnitSection() {
        const Word word = cursor_.Peek().word;
        if (reader_) {
            if (!cursor_.Peek().isFirst) {
                return false;
            }
            LeaveSection(context_, Message("{} behind the begin of the body was left out"));
        } else if (word == Word::kVarConfig) {
            LeaveSection(context_, Message("{} has no place in a unit and was left out"));
        } else {
            ReadSection(context_, pou_, &eno_);
        }
        return true;
    }

    void End(Word word) {
        EndBody();
        const Piece end = cursor_.Take();
        isOver_ = true;
        if (word != EndOf(word_.word)) {
            cursor_.Warn(end, kNotRead,
                         Say("'{}' ends '{}', which needs '{}'", Spelled(word), Name(),
                             Spelled(EndOf(word_.word))));
        }
    }

    void ReadCode() {
        if (!reader_) {
            cursor_.ForgetPragmas(cursor_.Last().end);
            body_.language = LanguageHere(context_);
            body_.line = cursor_.Peek().spot.line;
            body_.column = cursor_.ColumnOf(cursor_.Peek().spot);
            reader_.emplace(project_, body_.language, *project_.EditPou(pou_), body_);
        }
        ReadToken(cursor_.Take());
    }

    void ReadToken(const Piece& piece) {
        const bool needsColumn = piece.kind == TK_IDENTIFIER || project_.KeepsCode();
        reader_->Take({piece.kind, piece.operation, CodeOf(piece), piece.spot.line,
                       needsColumn ? cursor_.ColumnOf(piece.spot) : 0});
    }

    // As it stands; of strings blanks for what is in them.
    std::u16string_view CodeOf(const Piece& piece) {
        const std::u16string_view text = cursor_.TextOf(piece);
        if (piece.kind != TK_STRING) {
            return text;
        }
        string_ = text.substr(0, 1);
        for (const char16_t c : text.substr(1, text.size() - 2)) {
            string_ += std::u16string_view(u" ").substr(0, c < 0xDC00 || c > 0xDFFF ? 1 : 0);
        }
        return string_ += text.back();
    }

    void TakePragmas() {
        for (const auto& [spot, end] : cursor_.Pragmas()) {
            reader_->TakePragma(cursor_.TextBetween(spot.at, end), spot.line,
                                cursor_.ColumnOf(spot));
        }
        cursor_.ForgetPragmas(cursor_.Last().end);
    }

    void EndBody() {
        if (reader_) {
            reader_->EndLine();
            TakePragmas();
            project_.EditPou(pou_)->bodies.push_back(std::move(body_));
        }
    }

    std::string Name() const { return Quoted(context_, name_); }

    Context& context_;
    Cursor& cursor_;
    Project& project_;
    Piece word_;
    Piece name_;
    ID pou_;
    EnoPair eno_;
    Body body_;
    std::u16string string_;             // a token's code
    std::optional<CodeReader> reader_;  // once the body has begun
    bool isOver_ = false;
};

}  // namespace

void ReadUnit(Context& context) {
    UnitReader(context).Read();
}

void LeaveOut(Context& context) {
    Cursor& cursor = context.cursor;
    const Piece word = cursor.Take();
    PassModifiers(context);
    const bool isNamed = cursor.IsName(cursor.Peek()) && !cursor.Peek().isFirst;
    cursor.Warn(
        word, kNotKept,
        isNamed ? Say("{} '{}' was left out", Spelled(word.word), Quoted(context, cursor.Peek()))
                : Say("{} was left out", Spelled(word.word)));
    const bool isMember = word.word == Word::kMethod || word.word == Word::kProperty;
    const bool holdsUnits = word.word == Word::kInterface && !isNamed;
    const Word end = EndOf(word.word);
    for (;;) {
        const Word next = cursor.Peek().word;
        const bool isInner = !isMember && (next == Word::kMethod || next == Word::kProperty);
        if (cursor.Peek().IsEnd() || (isMember && IsEndOfUnit(next)) ||
            (!holdsUnits && !isInner && IsAtHeader(context))) {
            return;
        }
        cursor.Take();
        if (next == end) {
            return;
        }
    }
}

}  // namespace lq::host::text_source
