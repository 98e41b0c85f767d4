// A declaration record of a global of type INT, used again for every name.
#pragma once

#include <string>

#include "lq_data/pouh.h"

namespace lq::bench {

class DeclaredGlobal {
  public:
    DeclaredGlobal() : decl_(CreateDecl()) {
        UNNAMED_TYPE_TYP* type = CreateUnnamedType();
        SIMPLE_SPEC_TYP* spec = CreateSimpleSpec();
        constexpr uint32_t kScope = DS_VAR_GLOBAL;
        constexpr uint32_t kKind = DT_ELEMENTARY;
        SetAttrOfDecl(decl_, POUH_SCOPE, &kScope);
        SetAttrOfDecl(decl_, POUH_TYPE, &type);
        SetAttrOfUnnamedType(type, POUH_TYPEKIND, &kKind);
        SetAttrOfSimpleSpec(spec, POUH_NAME, u"INT");
        SetAttrOfUnnamedType(type, POUH_TYPESPEC, &spec);
    }
    ~DeclaredGlobal() { DestroyDecl(decl_); }
    DeclaredGlobal(const DeclaredGlobal&) = delete;
    DeclaredGlobal& operator=(const DeclaredGlobal&) = delete;

    DECL_TYP* Named(const std::u16string& name) {
        SetAttrOfDecl(decl_, POUH_NAME, name.c_str());
        return decl_;
    }

  private:
    DECL_TYP* decl_;
};

}  // namespace lq::bench
