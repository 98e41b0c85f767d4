// Blocks of data types.

#include "host/text_source/parts.h"
#include "lq_data/host/text/utf.h"

namespace lq::host::text_source {

namespace {

class TypeBlockReader {
  public:
    explicit TypeBlockReader(Context& context) : context_(context), cursor_(context.cursor) {}

    void Read() {
        const Piece word = cursor_.Take();
        for (;;) {
            PassModifiers(context_);
            const Word next = cursor_.Peek().word;
            const bool isAtBoundary = IsAtBoundary(context_);
            const bool isStray =  // of what could not be read
                isAtBoundary && (next == Word::kEndStruct || next == Word::kEndUnion);
            if (cursor_.Peek().Is(OP_SEMICOLON) || isStray) {
                cursor_.Take();
            } else if (!isAtBoundary) {
                ReadOne();
            } else if (next == Word::kEndType) {
                cursor_.Take();
                return;
            } else {
                WarnMissing(context_, word.spot, Spelled(Word::kEndType));
                return;
            }
        }
    }

  private:
    void ReadOne() {
        name_ = cursor_.Take();
        if (!cursor_.IsName(name_)) {
            cursor_.Warn(name_, kNotRead, Say("this is no declaration and was left out"));
            PassDeclaration(context_);
            return;
        }
        comment_ = cursor_.CommentBefore(name_);
        TakeBase();
        if (cursor_.Peek().Is(OP_COLON)) {
            cursor_.Take();
        } else if (cursor_.Peek().word == Word::kStruct) {  // its members are not lost
            WarnMissing(context_, cursor_.EndOf(cursor_.Last()), ":");
        } else {
            Refuse();
            return;
        }
        if (cursor_.Peek().word == Word::kStruct) {
            ReadStructure();
        } else if (cursor_.Peek().word == Word::kUnion) {
            cursor_.Take();
            cursor_.Warn(name_, kNotKept,
                         Say("{} '{}' was left out", Spelled(Word::kUnion), Name()));
            LeaveUnion();
        } else {
            ReadPlain();
        }
    }

    void TakeBase() {
        if (cursor_.Peek().word != Word::kExtends) {
            return;
        }
        cursor_.Take();
        const Piece base = cursor_.Peek();
        while (!cursor_.Peek().Is(OP_COLON) && !IsAtBoundary(context_)) {
            cursor_.Take();
        }
        cursor_.Warn(
            base, kNotKept,
            Say("the members that '{}' has from '{}' are missing", Name(), Quoted(context_, base)));
    }

    // With the structures in it.
    void LeaveUnion() {
        while (!IsAtBoundary(context_) || cursor_.Peek().word == Word::kEndStruct) {
            cursor_.Take();
        }
        if (cursor_.Peek().word == Word::kEndUnion) {
            cursor_.Take();
        }
    }

    void ReadStructure() {
        const Piece word = cursor_.Take();
        DataType type;
        type.structure = true;
        const ID id = Enter(type, context_.project.Intern(comment_));
        ReadDeclarations(context_, {id, {}}, Word::kEndStruct, word.spot);
        if (cursor_.Peek().Is(OP_ASSIGN)) {
            const Piece sign = cursor_.Take();
            std::u16string value;
            ReadValue(context_, value);
            cursor_.Warn(sign, kNotKept, Say("the value of structure '{}' was left out", Name()));
        }
        PassSemicolon(context_);
    }

    void ReadPlain() {
        Spec spec;
        Reading reading = Reading::kDone;
        const uint32_t openStrings = cursor_.OpenStrings();
        if (!ReadType(context_, spec, true)) {
            Refuse();
            return;
        }
        if (cursor_.Peek().Is(OP_ASSIGN)) {
            cursor_.Take();
            reading = ReadValue(context_, spec.value);
        } else if (!cursor_.Peek().Is(OP_SEMICOLON)) {
            const bool isNext =
                IsAtBoundary(context_) || (cursor_.IsName(cursor_.Peek()) && IsDeclared(context_));
            reading = isNext ? Reading::kMissing : Reading::kBroken;
        }
        if (reading == Reading::kBroken) {
            Refuse();
            return;
        }
        // The last one needs none: "); END_TYPE", but also ") END_TYPE".
        if (reading == Reading::kDone) {
            cursor_.Take();
        } else if (cursor_.OpenStrings() == openStrings) {
            WarnMissing(context_, cursor_.EndOf(cursor_.Last()), ";");
        }
        if (spec.hasArguments) {
            cursor_.Warn(name_, kNotKept, Say("the arguments of '{}' were left out", Name()));
        }
        DataType type;
        type.baseType = context_.project.Intern(spec.type);
        type.initValue = context_.project.Intern(spec.value);
        Enter(type, context_.project.Intern(cursor_.CommentOn(name_)));
    }

    ID Enter(DataType& type, Text comment) {
        Project& project = context_.project;
        type.name = project.Intern(cursor_.TextOf(name_));
        type.line = name_.spot.line;
        type.column = cursor_.ColumnOf(name_.spot);
        type.comment = comment;
        if (project.FindDataType(type.name) != ID()) {
            cursor_.Warn(name_, kDuplicateUnit,
                         Say("the name of data type '{}' is taken: the first one is used", Name()));
        }
        return project.AddDataType(type);
    }

    void Refuse() {
        cursor_.Warn(name_, kNotRead,
                     Say("'{}' was left out: its declaration cannot be read", Name()));
        PassDeclaration(context_);
    }

    std::string Name() const { return Quoted(context_, name_); }

    Context& context_;
    Cursor& cursor_;
    Piece name_;
    std::u16string comment_;
};

}  // namespace

void ReadTypes(Context& context) {
    TypeBlockReader(context).Read();
}

}  // namespace lq::host::text_source
