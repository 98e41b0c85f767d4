// Declarations that belong to no POU: the implicit parameters that the library builds, each with
// texts of its own. One that memory was too short for is null.

#include "host/model/records.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/env/lq_model.h"
#include "lq_data/host/model/section.h"

namespace lq::host {

namespace {

class NewDeclaration final : public LQPOUHDECL {
  public:
    const char16_t* GetName() const override { return KeptText(name_); }
    int32_t GetKind() const override { return kKindHeaderDeclaration; }
    const char16_t* GetType() const override { return KeptText(type_); }
    const char16_t* GetInitValue() const override { return KeptText(initValue_); }
    const char16_t* GetClass() const override { return KeywordOf({scope_}); }

    void SetName(const char16_t* text) override { name_ = text; }
    void SetType(const char16_t* text) override { type_ = text; }
    void SetInitValue(const char16_t* text) override { initValue_ = text; }
    void SetClass(int32_t declarationClass) override {
        if (declarationClass == LQ_CLASS_INPUT) {
            scope_ = Scope::kInput;
        } else if (declarationClass == LQ_CLASS_OUTPUT) {
            scope_ = Scope::kOutput;
        }
    }

  private:
    static const char16_t* KeptText(const CLQString& text) {
        return text.HasFailed() ? nullptr : text.GetText();
    }

    CLQString name_;
    CLQString type_;
    CLQString initValue_;
    Scope scope_ = Scope::kLocal;
};

}  // namespace

}  // namespace lq::host

LQPOUHDECL* LQPOUHDECL::CreateObject() {
    return new lq::host::NewDeclaration();
}
