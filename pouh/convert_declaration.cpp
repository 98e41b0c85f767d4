#include "pouh/convert_declaration.h"

#include "frame/chars.h"
#include "lq_base.h"
#include "pouh/attributes.h"
#include "pouh/fill_declaration.h"
#include "pouh/list_memory.h"
#include "pouh/owned.h"
#include "pouh/records.h"

namespace lq::pouh {

namespace {

// The name of a return value is the function's, which the model has checked as such.
constexpr std::size_t kMaxResultNameLength = 32;

DECL_SCOPE ScopeOf(LQOBJECT& source, ListMemory& memory) {
    switch (source.GetKind()) {
        case LQ_KIND_GVL_DECL: {
            const auto* decl = dynamic_cast<const LQGVLDECL*>(&source);
            return memory.GetDeclScope(decl ? decl->GetClass() : nullptr);
        }
        case LQ_KIND_LOCAL_DECL:
            return DS_VAR;
        default: {
            const auto* decl = dynamic_cast<const LQPOUHDECL*>(&source);
            return memory.GetDeclScope(decl ? decl->GetClass() : nullptr);
        }
    }
}

bool IsExternal(DECL_SCOPE scope) {
    return scope == DS_VAR_EXTERNAL || scope == DS_VAR_EXTERNAL_CONSTANT ||
           scope == DS_VAR_EXTERNAL_RETAIN || scope == DS_VAR_EXTERNAL_CONSTANT_RETAIN;
}

// A text of the model, or its marked form.
class CheckedText {
  public:
    explicit CheckedText(const char16_t* text) : text_(text) {}

    void Mark() {
        marked_.x_MarkErrorString(text_);
        text_ = marked_.GetText();
    }
    const char16_t* Get() const { return text_; }
    bool HasFailed() const { return marked_.HasFailed() != 0; }

  private:
    const char16_t* text_;
    CLQString marked_;
};

bool IsBadName(const char16_t* name, TypeClass type, bool isReturn) {
    if (isReturn && type == TypeClass::kElementary) {
        return chars::Length(name) > kMaxResultNameLength;
    }
    return CheckIdentifier(nullptr, name, 0) != 0;
}

Classification ClassifyDeclaredType(const char16_t* text, TypeClass& type, ListMemory& memory) {
    type = TypeClass::kElementary;
    return chars::Equal(text, u"VOID") ? Classification::kRejected
                                       : memory.ClassifyType(text, type);
}

int FillByType(DECL_TYP* decl, TypeClass type, const DeclContent& content) {
    switch (type) {
        case TypeClass::kString:
            return FillStringDeclaration(decl, content);
        case TypeClass::kArray:
            return FillArrayDeclaration(decl, content);
        case TypeClass::kFbInstance:
            return FillFBInstDeclaration(decl, content.scope, content.name, content.typeText,
                                         content.comment, content.word, content.comment2) &&
                   FillFlagsInDeclaration(decl, content.set);
        case TypeClass::kStructInstance:
            return FillStructDeclaration(decl, content);
        case TypeClass::kElementary:
        case TypeClass::kStructText:
        case TypeClass::kOtherStructText:
            break;
    }
    return FillSimpleDeclaration(decl, content);
}

// Reads, checks and stores everything but the address.
int Fill(DECL_TYP* decl, LQOBJECT& source, DECL_SCOPE scope, const char16_t* initText,
         bool isReturn, ListMemory& memory) {
    const char16_t* const declaredName = source.GetName();
    const char16_t* const declaredType = source.GetType();
    if (!declaredName || !declaredType || !initText) {
        return 0;  // a new declaration that memory was too short for
    }
    CheckedText init(initText);
    if (source.GetKind() != LQ_KIND_GVL_DECL && CheckInitSyntax(nullptr, initText)) {
        init.Mark();
    }
    TypeClass type = TypeClass::kElementary;
    CheckedText typeText(declaredType);
    const Classification classification = ClassifyDeclaredType(typeText.Get(), type, memory);
    if (classification == Classification::kUnavailable) {
        return 0;
    }
    if (classification == Classification::kRejected) {
        typeText.Mark();
    }
    CheckedText name(declaredName);
    if (IsBadName(name.Get(), type, isReturn)) {
        name.Mark();
    }
    if (init.HasFailed() || typeText.HasFailed() || name.HasFailed()) {
        return 0;
    }
    return FillByType(decl, type,
                      {.scope = scope,
                       .name = name.Get(),
                       .typeText = typeText.Get(),
                       .initValue = init.Get(),
                       .comment = source.GetDeclComment(),
                       .word = 0,
                       .set = 0,
                       .comment2 = source.GetDeclComment2()});
}

// Takes the address, and for an external declaration the initial value, from where they are kept.
int FillFrom(DECL_TYP* decl, LQOBJECT& source, bool isReturn, ListMemory& memory) {
    const DECL_SCOPE scope = ScopeOf(source, memory);
    if (source.GetKind() == LQ_KIND_GVL_DECL) {
        return StoreText(decl->address, source.GetAddress()) &&
               Fill(decl, source, scope, source.GetInitValue(), isReturn, memory);
    }
    if (!IsExternal(scope)) {
        return Fill(decl, source, scope, source.GetInitValue(), isReturn, memory);
    }
    const Owned<LQDECL> global(FindGVLDeclByName(source.GetName()));
    if (!global) {
        return Fill(decl, source, scope, u"", isReturn, memory);
    }
    return StoreText(decl->address, global->GetAddress()) &&
           Fill(decl, source, scope, global->GetInitValue(), isReturn, memory);
}

}  // namespace

// A check of the model that found no memory has no answer, so that what it was asked about is not
// known to be right.
DECL_TYP* ConvertDeclaration(LQOBJECT& source, bool isReturn, ListMemory& memory) {
    const MemoryWatch watch;
    DECL_TYP* decl = CreateDecl();
    if (decl && (!FillFrom(decl, source, isReturn, memory) || watch.WasShort())) {
        DestroyDecl(decl);
        return nullptr;
    }
    return decl;
}

DECL_TYP* ConvertDeclaration(LQOBJECT& source, bool isReturn) {
    ListMemory memory;
    return ConvertDeclaration(source, isReturn, memory);
}

}  // namespace lq::pouh
