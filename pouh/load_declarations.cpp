// The implicit parameters of a POU, and appending the declarations of a model object to a list.
#include <memory>

#include "pouh/attributes.h"
#include "pouh/declarations.h"
#include "pouh/record_lists.h"
#include "pouh/record_types.h"

namespace lq::pouh {

namespace {

LQPOUHDECL* NewEnable(const EnableParameter& parameter) {
    LQPOUHDECL* decl = LQPOUHDECL::CreateObject();
    if (decl) {
        decl->SetName(parameter.name);
        DescribeEnable(*decl, parameter);
    }
    return decl;
}

bool IsParameterScope(DECL_SCOPE scope) {
    switch (scope) {
        case DS_VAR_INPUT:
        case DS_VAR_INPUT_CONSTANT:
        case DS_VAR_INPUT_RETAIN:
        case DS_VAR_IN_EXT:
        case DS_VAR_OUTPUT:
        case DS_VAR_OUTPUT_RETAIN:
        case DS_VAR_IN_OUT:
            return true;
        default:
            return false;
    }
}

// The scope by the section keyword of a POU's declaration, whatever kind the object has.
bool IsParameter(LQOBJECT& object) {
    const auto* decl = dynamic_cast<const LQPOUHDECL*>(&object);
    return decl && IsParameterScope(GetDeclScope(decl->GetClass()));
}

}  // namespace

void DescribeEnable(LQPOUHDECL& decl, const EnableParameter& parameter) {
    decl.SetType(u"BOOL");
    decl.SetClass(parameter.declClass);
    decl.SetInitValue(u"FALSE");
}

bool LoadDeclarations(FLIST* list, LQOBJECT& owner, bool onlyParameters) {
    LQSELECTION* selection = owner.GetSelection();
    LQDECLMAN* manager = LQDECLMAN::Get();
    if (!selection || !manager) {
        return true;
    }
    const MemoryWatch watch;
    const int32_t count = selection->GetCount();
    for (int32_t i = 0; i < count; ++i) {
        const std::unique_ptr<LQOBJECT> source(manager->Get(selection->GetID(i)));
        if (watch.WasShort()) {
            return false;  // the model may have had no memory for the object
        }
        if (!source || (onlyParameters && !IsParameter(*source))) {
            continue;
        }
        DECL_TYP* const decl = ConvertDeclaration(*source, false);
        if (!AddDecl(list, decl, LC_LAST)) {
            return false;
        }
        decl->place = static_cast<uint32_t>(i) + 1;
    }
    return true;
}

bool PrependResult(FLIST* list, LQFUN& function) {
    const std::unique_ptr<LQPOUHDECL> result(
        GetRetDecl(function.GetName(), function.GetResultType()));
    return result && AddDecl(list, ConvertDeclaration(*result, true), LC_FIRST);
}

bool PrependEnable(FLIST* list, LQPOUHDECL& decl, const EnableParameter& parameter) {
    DECL_TYP* record = ConvertDeclaration(decl, false);
    if (record && !StoreText(record->name, parameter.name)) {
        DestroyDecl(record);
        return false;
    }
    return AddDecl(list, record, LC_FIRST);
}

bool RenewHeader(POU_HEADER_TYP& header) {
    DestroyPOUHInfo(header.info);
    header.info = CreatePOUHInfo();
    return RenewDeclarations(header) && header.info;
}

bool RenewDeclarations(POU_HEADER_TYP& header) {
    DestroyPOUHDeclList(header.declList);
    header.declList = CreatePOUHDeclList();
    if (!header.declList) {
        return false;
    }
    header.declList->list = NewDeclList();
    return header.declList->list != nullptr;
}

}  // namespace lq::pouh

DECL_TYP* LoadDecl(LQOBJECT* source) {
    return source ? lq::pouh::ConvertDeclaration(*source, false) : nullptr;
}

LQPOUHDECL* GetRetDecl(const char16_t* name, const char16_t* type) {
    LQPOUHDECL* decl = LQPOUHDECL::CreateObject();
    if (decl) {
        decl->SetName(name);
        decl->SetType(type);
        decl->SetClass(LQ_CLASS_OUTPUT);
        decl->SetClassId(LQ_CLASS_ID_RESULT);
    }
    return decl;
}

LQPOUHDECL* GetEnDecl() {
    return lq::pouh::NewEnable(lq::pouh::kEnable);
}

LQPOUHDECL* GetEnoDecl() {
    return lq::pouh::NewEnable(lq::pouh::kEnableOut);
}
