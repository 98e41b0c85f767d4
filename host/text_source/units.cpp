// Units: their headers, their sections, and their bodies.

#include <optional>
#include <utility>
#include <vector>

#include "host/model/code_reader.h"
#include "host/text_source/parts.h"
#include "lq_data/host/text/utf.h"

namespace lq::host::text_source {

namespace {

LQ_OBJECT_KIND KindOf(Word word) {
    return word == Word::kFunction        ? LQ_KIND_FUNCTION
           : word == Word::kFunctionBlock ? LQ_KIND_FUNCTION_BLOCK
                                          : LQ_KIND_PROGRAM;
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
    // The unit's own body, or an action.
    struct Part {
        Body body;
        std::optional<CodeReader> reader;  // once its code has begun
    };

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
            for (Piece piece; open_->reader && cursor_.TakePlain(piece);) {
                ReadToken(piece);
            }
            const Piece next = cursor_.Peek();
            if (next.IsEnd()) {
                EndBodies();
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
        if (word == Word::kAction && IsAction()) {
            BeginAction();
            return true;
        }
        if (word == Word::kEndAction && IsInAction()) {
            EndAction();
            cursor_.Take();
            cursor_.ForgetPragmas(cursor_.Last().end);
            return true;
        }
        if (word == Word::kUsing && !hasCode_ && cursor_.IsName(cursor_.Peek(1))) {
            cursor_.Take();
            PassDeclaration(context_);
            return true;
        }
        if (!IsAtHeader(context_)) {
            return false;
        }
        if (word == Word::kMethod || word == Word::kProperty) {
            LeaveOut(context_);
            return true;
        }
        EndBodies();
        isOver_ = true;
        WarnMissing(context_, cursor_.Peek().spot, Spelled(EndOf(word_.word)));
        return true;
    }

    bool ReadUnitSection() {
        const Word word = cursor_.Peek().word;
        if (hasCode_) {
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
        EndBodies();
        const Piece end = cursor_.Take();
        isOver_ = true;
        if (word != EndOf(word_.word)) {
            cursor_.Warn(end, kNotRead,
                         Say("'{}' ends '{}', which needs '{}'", Spelled(word), Name(),
                             Spelled(EndOf(word_.word))));
        }
    }

    void ReadCode() {
        if (!open_->reader) {
            cursor_.ForgetPragmas(cursor_.Last().end);
            const Language language = LanguageHere(context_);  // looks ahead
            Begin(*open_, language, cursor_.Peek().spot);
        }
        ReadToken(cursor_.Take());
    }

    void Place(Body& body, Language language, Spot spot) {
        hasCode_ = true;
        body.language = language;
        body.line = spot.line;
        body.column = cursor_.ColumnOf(spot);
    }

    void Begin(Part& part, Language language, Spot spot) {
        Place(part.body, language, spot);
        part.reader.emplace(project_, language, *project_.EditPou(pou_), part.body);
    }

    bool IsInAction() const { return open_ == &action_; }

    // "ACTION name:", where a statement can begin; in a chart also without the sign.
    bool IsAction() {
        if (!cursor_.IsName(cursor_.Peek(1))) {
            return false;
        }
        const bool isCode = IsInAction() || (own_.reader && own_.body.language != Language::kSfc);
        const bool isBegin = cursor_.Peek().isFirst || cursor_.Last().Is(OP_SEMICOLON) ||
                             cursor_.Last().word == Word::kEndAction;
        return !isCode || (isBegin && cursor_.Peek(2).Is(OP_COLON));
    }

    void BeginAction() {
        if (IsInAction()) {
            EndActionEarly();
        } else if (own_.reader) {
            TakePragmas(own_);
        }
        cursor_.Take();
        const Piece name = cursor_.Take();
        action_.body = {};
        action_.body.name = project_.Intern(cursor_.TextOf(name));
        Place(action_.body, Language::kSt, name.spot);
        if (cursor_.Peek().Is(OP_COLON)) {
            cursor_.Take();
        }
        cursor_.ForgetPragmas(cursor_.Last().end);
        open_ = &action_;
    }

    void EndActionEarly() {
        WarnMissing(context_, cursor_.Peek().spot, Spelled(Word::kEndAction));
        EndAction();
    }

    void EndAction() {
        if (!action_.reader && !cursor_.Pragmas().empty()) {
            Begin(action_, Language::kSt, cursor_.Pragmas().front().first);
        }
        EndPart(action_);
        project_.EditPou(pou_)->bodies.push_back(std::move(action_.body));
        open_ = &own_;
    }

    void ReadToken(const Piece& piece) {
        const bool needsColumn = piece.kind == TK_IDENTIFIER || project_.KeepsCode();
        open_->reader->Take({piece.kind, piece.operation, CodeOf(piece), piece.spot.line,
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

    void TakePragmas(Part& part) {
        for (const auto& [spot, end] : cursor_.Pragmas()) {
            part.reader->TakePragma(cursor_.TextBetween(spot.at, end), spot.line,
                                    cursor_.ColumnOf(spot));
        }
        cursor_.ForgetPragmas(cursor_.Last().end);
    }

    void EndPart(Part& part) {
        if (part.reader) {
            part.reader->EndLine();
            TakePragmas(part);
            part.reader.reset();
        }
    }

    // The unit's own comes first. One that is nothing but pragmas is written elsewhere.
    void EndBodies() {
        if (IsInAction()) {
            EndActionEarly();
        }
        const Spot pragma = cursor_.LastPragma();
        if (!hasCode_ && pragma.at >= cursor_.Last().end && pragma.at < cursor_.Peek().spot.at) {
            cursor_.ForgetPragmas(cursor_.Last().end);
            Begin(own_, Language::kSt, pragma);
        }
        if (own_.reader) {
            EndPart(own_);
            std::vector<Body>& bodies = project_.EditPou(pou_)->bodies;
            bodies.insert(bodies.begin(), std::move(own_.body));
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
    Part own_;
    Part action_;  // the one that is read
    Part* open_ = &own_;
    std::u16string string_;  // a token's code
    bool hasCode_ = false;   // any part of the unit has begun
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
