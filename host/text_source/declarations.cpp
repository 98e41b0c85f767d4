// Variables and members, and the sections of variables.

#include <algorithm>
#include <utility>

#include "host/text_source/parts.h"
#include "lq_data/detail/chars.h"
#include "lq_data/host/text/utf.h"

namespace lq::host::text_source {

namespace {

constexpr struct {
    Word word;
    Scope scope;
} kSections[] = {
    {Word::kVar, Scope::kLocal},        {Word::kVarInput, Scope::kInput},
    {Word::kVarOutput, Scope::kOutput}, {Word::kVarInOut, Scope::kInOut},
    {Word::kVarTemp, Scope::kTemp},     {Word::kVarExternal, Scope::kExternal},
    {Word::kVarGlobal, Scope::kGlobal}, {Word::kVarInst, Scope::kLocal},
    {Word::kVarStat, Scope::kLocal},    {Word::kVarConfig, Scope::kConfig},
    {Word::kVarAccess, Scope::kAccess},
};

constexpr struct {
    Word word;
    unsigned mark;
} kMarks[] = {
    {Word::kConstant, kMarkConstant},
    {Word::kRetain, kMarkRetain},
    {Word::kNonRetain, kMarkNonRetain},
    {Word::kPersistent, kMarkPersistent},
};

class DeclarationReader {
  public:
    DeclarationReader(Context& context, const Holder& holder)
        : context_(context), cursor_(context.cursor), holder_(holder), names_(context.names) {}

    void Read() {
        names_.clear();
        openStrings_ = cursor_.OpenStrings();
        first_ = cursor_.Peek();
        if (!cursor_.IsName(first_) || (first_.word == Word::kAt && !IsDeclared(context_))) {
            LeaveNameless();
            return;
        }
        TakeNames();
        if (IsExtensible()) {
            cursor_.Warn(first_, kNotKept, Say("an extensible input was left out"));
            PassDeclaration(context_);
            return;
        }
        std::u16string address;
        if ((Is(Scope::kConfig) && path_.empty()) || !TakeAddress(address) ||
            !cursor_.Peek().Is(OP_COLON)) {
            Refuse();
            PassDeclaration(context_);
            return;
        }
        cursor_.Take();
        if (Is(Scope::kAccess) && !TakePath()) {
            Refuse();
            PassDeclaration(context_);
            return;
        }
        ReadRest(address);
    }

  private:
    void LeaveNameless() {
        if (first_.word == Word::kAt) {  // the language has it
            cursor_.Warn(first_, kNotKept, Say("a variable without a name was left out"));
        } else {
            cursor_.Warn(first_, kNotRead, Say("this is no declaration and was left out"));
        }
        cursor_.Take();
        PassDeclaration(context_);
    }

    bool Is(Scope scope) const { return holder_.section.scope == scope; }

    void TakeNames() {
        names_.push_back(cursor_.Take());
        if (Is(Scope::kConfig)) {
            TakeInstancePath();
        }
        while (cursor_.Peek().Is(OP_COMMA) && cursor_.IsName(cursor_.Peek(1))) {
            cursor_.Take();
            names_.push_back(cursor_.Take());
        }
    }

    // "resource.program.blocks[1].x", behind the first name; without a path when it is broken.
    void TakeInstancePath() {
        path_ = cursor_.TextOf(names_.back());
        for (bool isInIndex = false;;) {
            const Piece next = cursor_.Peek();
            const bool isPart =
                isInIndex || cursor_.Last().Is(OP_DOT) || next.Is(OP_DOT) || next.Is(OP_LBRACKET);
            if (!isPart || next.Is(OP_COLON) || next.Is(OP_SEMICOLON) || IsAtBoundary(context_)) {
                names_.back().end = cursor_.Last().end;
                path_.resize(isInIndex ? 0 : path_.size());
                return;
            }
            isInIndex = (isInIndex || next.Is(OP_LBRACKET)) && !next.Is(OP_RBRACKET);
            path_ += cursor_.TextOf(cursor_.Take());
        }
    }

    // "IN 1 .. : INT".
    bool IsExtensible() {
        return cursor_.Peek().kind == TK_RANGE_START ||
               (cursor_.Peek().kind == TK_INTEGER && cursor_.Peek(1).Is(OP_RANGE));
    }

    bool TakeAddress(std::u16string& address) {
        if (cursor_.Peek().word != Word::kAt) {
            return true;
        }
        cursor_.Take();
        const auto isOver = [this] {
            const Piece next = cursor_.Peek();
            const bool isNext = next.isFirst && cursor_.IsName(next) && IsDeclared(context_);
            return next.Is(OP_COLON) || next.Is(OP_SEMICOLON) || isNext || IsAtBoundary(context_);
        };
        while (!isOver()) {
            const Piece last = cursor_.Last();
            const Piece piece = cursor_.Take();
            address += address.empty() || last.Touches(piece) ? u"" : u" ";
            address += cursor_.TextOf(piece);
        }
        return !address.empty();
    }

    // "resource.%IX0.0 :", what a name gives access to.
    bool TakePath() {
        path_.clear();
        while (!cursor_.Peek().Is(OP_COLON)) {
            if (cursor_.Peek().Is(OP_SEMICOLON) || IsAtBoundary(context_)) {
                return false;
            }
            path_ += cursor_.TextOf(cursor_.Take());
        }
        cursor_.Take();
        return !path_.empty();
    }

    // Behind the colon.
    void ReadRest(const std::u16string& address) {
        Spec& spec = spec_;
        spec.type.clear();
        spec.value.clear();
        spec.hasArguments = false;
        spec.edge = Word::kNone;
        const bool isBare = cursor_.IsName(cursor_.Peek()) && !TypeIsHere();
        if (isBare || !ReadType(context_, spec)) {
            Refuse();
            if (!isBare) {
                PassDeclaration(context_);
            }
            return;
        }
        const Word direction = cursor_.Peek().word;
        direction_ = direction == Word::kReadOnly    ? kMarkReadOnly
                     : direction == Word::kReadWrite ? kMarkReadWrite
                                                     : 0;
        if (Is(Scope::kAccess) && direction_ != 0) {
            cursor_.Take();
        }
        Reading reading = Reading::kDone;
        if (cursor_.Peek().Is(OP_ASSIGN)) {
            const Piece sign = cursor_.Take();
            reading = ReadValue(context_, spec.value);
            if (spec.value.empty() && reading != Reading::kBroken) {
                cursor_.Warn(sign, kNotRead, Say("a value is missing behind ':='"));
            }
        } else if (!cursor_.Peek().Is(OP_SEMICOLON)) {
            const bool isNext =
                IsAtBoundary(context_) || (cursor_.IsName(cursor_.Peek()) && IsDeclared(context_));
            reading = isNext ? Reading::kMissing : Reading::kBroken;
        }
        if (reading == Reading::kBroken) {
            Refuse();
            PassDeclaration(context_);
            return;
        }
        if (reading == Reading::kDone) {
            cursor_.Take();
        } else if (cursor_.OpenStrings() == openStrings_) {
            WarnMissing(context_, cursor_.EndOf(cursor_.Last()), ";");
        }
        Enter(spec, address);
    }

    // A name with a ":" behind it is the next declaration's: this one has no type.
    bool TypeIsHere() {
        const Piece behind = cursor_.Peek(1);
        return !behind.Is(OP_COLON) &&
               !(behind.Is(OP_COMMA) && TypeWordOf(cursor_.TextOf(cursor_.Peek())).name.empty());
    }

    void Refuse() {
        for (const Piece& name : names_) {
            cursor_.Warn(
                name, kNotRead,
                Say("'{}' was left out: its declaration cannot be read", Quoted(context_, name)));
        }
    }

    void Enter(const Spec& spec, const std::u16string& address) {
        Project& project = context_.project;
        Declaration declaration;
        declaration.type = project.Intern(spec.type);
        declaration.initValue = project.Intern(spec.value);
        declaration.comment = project.Intern(cursor_.CommentOn(first_));
        declaration.owner = holder_.owner;
        declaration.section = holder_.section;
        const bool isAside = Is(Scope::kAccess) || Is(Scope::kConfig);
        if (Is(Scope::kAccess)) {
            declaration.comment2 = project.Intern(path_);
            declaration.section.marks = static_cast<uint8_t>(direction_);
        }
        const bool isMember = SortOf(holder_.owner) == Sort::kDataType;
        if (!isMember) {
            declaration.address = project.Intern(address);
        }
        const bool isGlobal = holder_.section.scope == Scope::kGlobal;
        for (const Piece& piece : names_) {
            const bool isPath = Is(Scope::kConfig) && &piece == names_.data();
            const std::u16string_view name = isPath ? path_ : cursor_.TextOf(piece);
            declaration.name = isGlobal ? project.Store(name) : project.Intern(name);
            declaration.line = piece.spot.line;
            declaration.column = cursor_.ColumnOf(piece.spot);
            WarnOfParts(piece, spec, isMember && !address.empty());
            if (isAside) {
                project.AddAside(declaration);
                continue;
            }
            if (holder_.eno && holder_.eno->Take(project, declaration)) {
                continue;
            }
            ID earlier;
            project.AddDeclaration(declaration, &earlier);
            if (earlier != ID() && project.GetDeclaration(earlier)->owner == holder_.owner) {
                cursor_.Warn(piece, kDuplicateGlobal,
                             Say("the name of global '{}' is taken: the first one is used",
                                 Quoted(context_, piece)));
            }
        }
    }

    // What of a declaration the model has no place for.
    void WarnOfParts(const Piece& name, const Spec& spec, bool hasAddress) {
        if (spec.hasArguments) {
            cursor_.Warn(name, kNotKept,
                         Say("the arguments of '{}' were left out", Quoted(context_, name)));
        }
        if (spec.edge != Word::kNone) {
            cursor_.Warn(
                name, kNotKept,
                Say("'{}' was read without {}", Quoted(context_, name), Spelled(spec.edge)));
        }
        if (hasAddress) {
            cursor_.Warn(name, kNotKept,
                         Say("the address of member '{}' was left out", Quoted(context_, name)));
        }
    }

    Context& context_;
    Cursor& cursor_;
    const Holder& holder_;
    std::vector<Piece>& names_;
    Piece first_;
    Spec spec_;               // of the declaration that is read; here for its memory
    std::u16string path_;     // of VAR_ACCESS or VAR_CONFIG
    unsigned direction_ = 0;  // of VAR_ACCESS
    uint32_t openStrings_ = 0;
};

// The marks behind the word of a section. On its line they are marks, unless the sign of a
// declaration follows; behind it they are names.
unsigned TakeMarks(Context& context, std::string& written) {
    Cursor& cursor = context.cursor;
    unsigned marks = 0;
    for (;;) {
        const Piece next = cursor.Peek();
        const bool isDeclared = IsDeclared(context) && cursor.Peek(1).word != Word::kAt;
        if (next.isFirst || isDeclared || (!IsMark(next.word) && !IsModifier(next.word))) {
            return marks;
        }
        for (const auto& row : kMarks) {
            if (row.word == next.word) {
                marks |= row.mark;
                written += " " + Spelled(row.word);
            }
        }
        cursor.Take();
    }
}

// "{attribute 'qualified_only'}" between two tokens.
bool IsQualified(Cursor& cursor, const Piece& last, const Piece& word) {
    bool isQualified = false;
    for (const auto& [begin, end] : cursor.Pragmas()) {
        if (begin.at >= last.end && begin.at < word.spot.at) {
            std::u16string text(cursor.TextBetween(begin.at, end));
            std::ranges::transform(text, text.begin(), chars::ToLower);
            isQualified = isQualified || text.find(u"qualified_only") != text.npos;
        }
    }
    cursor.ForgetPragmas(word.spot.at);
    return isQualified;
}

}  // namespace

void ReadDeclarations(Context& context, const Holder& holder, Word end, const Spot& begin) {
    Cursor& cursor = context.cursor;
    DeclarationReader reader(context, holder);
    for (;;) {
        if (cursor.Peek().Is(OP_SEMICOLON)) {
            cursor.Take();
        } else if (!IsAtBoundary(context)) {
            reader.Read();
        } else if (cursor.Peek().word == end) {
            cursor.Take();
            return;
        } else {
            WarnMissing(context, begin, Spelled(end));
            return;
        }
    }
}

void ReadSection(Context& context, ID parent, EnoPair* eno) {
    Cursor& cursor = context.cursor;
    Project& project = context.project;
    const Piece last = cursor.Last();
    const Piece word = cursor.Take();
    Scope scope = Scope::kLocal;
    for (const auto& row : kSections) {
        scope = row.word == word.word ? row.scope : scope;
    }
    std::string written = Spelled(word.word);
    const unsigned marks = TakeMarks(context, written);
    std::vector<std::string> faults;
    Holder holder{parent, SectionOf(scope, marks, written, faults), eno};
    for (std::string& fault : faults) {
        cursor.Warn(word, kSectionNarrowed, std::move(fault));
    }
    if (scope == Scope::kGlobal) {
        VariableList list;
        list.parent = parent;
        list.name = parent == ID() ? context.fileStem : project.NameOf(parent);
        list.comment = project.Intern(cursor.CommentBefore(word));
        list.qualified = parent == ID() && IsQualified(cursor, last, word);
        list.line = word.spot.line;
        list.column = cursor.ColumnOf(word.spot);
        holder.owner = project.AddVariableList(list);
    }
    ReadDeclarations(context, holder, Word::kEndVar, word.spot);
}

void LeaveSection(Context& context, const char* why) {
    const Piece word = context.cursor.Take();
    context.cursor.Warn(word, kNotRead, Say(why, Spelled(word.word)));
    if (!PassTo(context, Word::kEndVar)) {
        WarnMissing(context, word.spot, Spelled(Word::kEndVar));
    }
}

}  // namespace lq::host::text_source
