#include "pouh/load_declarations.h"

#include "pouh/attributes.h"
#include "pouh/convert_declaration.h"
#include "pouh/list_memory.h"
#include "pouh/lists.h"
#include "pouh/owned.h"
#include "pouh/records.h"

namespace lq::pouh {

namespace {

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
bool IsParameter(LQOBJECT& object, ListMemory& memory) {
    const auto* decl = dynamic_cast<const LQPOUHDECL*>(&object);
    return decl && IsParameterScope(memory.GetDeclScope(decl->GetClass()));
}

}  // namespace

bool LoadDeclarations(FLIST* list, LQOBJECT& owner, bool onlyParameters) {
    LQSELECTION* selection = owner.GetSelection();
    LQDECLMAN* manager = LQDECLMAN::Get();
    if (!selection || !manager) {
        return true;
    }
    ListMemory memory;
    const MemoryWatch watch;
    const int32_t count = selection->GetCount();
    for (int32_t i = 0; i < count; ++i) {
        const Owned<LQOBJECT> source(manager->Get(selection->GetID(i)));
        if (watch.WasShort()) {
            return false;  // perhaps the model had no memory for the object
        }
        if (!source || (onlyParameters && !IsParameter(*source, memory))) {
            continue;
        }
        if (!AddDecl(list, ConvertDeclaration(*source, false, memory), LC_LAST)) {
            return false;
        }
    }
    return true;
}

bool PrependResult(FLIST* list, LQFUN& function) {
    const Owned<LQPOUHDECL> result(GetRetDecl(function.GetName(), function.GetResultType()));
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
    DestroyPOUHDeclList(header.declList);
    header.info = CreatePOUHInfo();
    header.declList = CreatePOUHDeclList();
    if (!header.info || !header.declList) {
        return false;
    }
    header.declList->list = NewDeclList();
    return header.declList->list != nullptr;
}

}  // namespace lq::pouh
