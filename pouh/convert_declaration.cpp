// One declaration of the project model to one record: its texts are checked, erroneous ones marked,
// and its type decides which specification the record gets.
#include <memory>

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_base.h"
#include "pouh/attributes.h"
#include "pouh/declarations.h"
#include "pouh/record_types.h"
#include "pouh/type_class.h"

namespace lq::pouh {

namespace {

// The name of a return value is that of its function, which the model has checked; only its length
// counts here.
constexpr std::size_t kMaxResultNameLength = 32;

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

Classification ClassifyDeclaredType(const char16_t* text, TypeClass& type) {
    type = TypeClass::kElementary;
    return chars::Equal(text, u"VOID") ? Classification::kRejected : ClassifyType(text, type);
}

int FillByType(DECL_TYP* decl, TypeClass type, const DeclContent& content) {
    switch (type) {
        case TypeClass::kString:
            return FillStringDeclaration(decl, content);
        case TypeClass::kArray:
            return FillArrayDeclaration(decl, content);
        case TypeClass::kFbInstance:
            return FillFBInstDeclaration(decl, content.scope, content.name, content.typeText,
                                         content.comment, 0, content.comment2);
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
         bool isReturn) {
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
    const Classification classification = ClassifyDeclaredType(typeText.Get(), type);
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
                       .comment2 = source.GetDeclComment2()});
}

// A global declaration has its address itself. An external one has the address and the initial
// value of the global that it names.
int FillFrom(DECL_TYP* decl, LQOBJECT& source, bool isReturn) {
    const DECL_SCOPE scope = ScopeOf(source);
    if (source.GetKind() == LQ_KIND_GVL_DECL) {
        return StoreText(decl->address, source.GetAddress()) &&
               Fill(decl, source, scope, source.GetInitValue(), isReturn);
    }
    if (!IsExternal(scope)) {
        return Fill(decl, source, scope, source.GetInitValue(), isReturn);
    }
    const std::unique_ptr<LQDECL> global(FindGVLDeclByName(source.GetName()));
    if (!global) {
        return Fill(decl, source, scope, u"", isReturn);
    }
    return StoreText(decl->address, global->GetAddress()) &&
           Fill(decl, source, scope, global->GetInitValue(), isReturn);
}

}  // namespace

DECL_SCOPE ScopeOf(LQOBJECT& source) {
    switch (source.GetKind()) {
        case LQ_KIND_GVL_DECL: {
            const auto* decl = dynamic_cast<const LQGVLDECL*>(&source);
            return GetDeclScope(decl ? decl->GetClass() : nullptr);
        }
        case LQ_KIND_LOCAL_DECL:
            return DS_VAR;
        default: {
            const auto* decl = dynamic_cast<const LQPOUHDECL*>(&source);
            return GetDeclScope(decl ? decl->GetClass() : nullptr);
        }
    }
}

// When memory ran short in one of the model's checks, its answer means nothing, and what was
// checked may be wrong: the conversion then fails.
DECL_TYP* ConvertDeclaration(LQOBJECT& source, bool isReturn) {
    const MemoryWatch watch;
    DECL_TYP* decl = CreateDecl();
    if (decl && (!FillFrom(decl, source, isReturn) || watch.WasShort())) {
        DestroyDecl(decl);
        return nullptr;
    }
    return decl;
}

}  // namespace lq::pouh
