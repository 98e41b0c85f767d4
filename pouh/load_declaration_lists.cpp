// Loading lists of declarations: the parameters of a function or function block, and what any
// object declares. The operations at the end belong to the interface and do nothing.

#include <memory>

#include "pouh/declarations.h"
#include "pouh/record_lists.h"
#include "pouh/record_types.h"

namespace lq::pouh {

namespace {

// Puts the parameter in front, converted from `decl`, which this takes over. False for null.
bool PrependOwnEnable(FLIST* list, LQPOUHDECL* decl, const EnableParameter& parameter) {
    const std::unique_ptr<LQPOUHDECL> owned(decl);
    return owned && PrependEnable(list, *owned, parameter);
}

bool PrependImplicit(FLIST* list, LQPOU& pou) {
    if (pou.GetKind() == LQ_KIND_FUNCTION) {
        auto* function = dynamic_cast<LQFUN*>(&pou);
        if (!function || !PrependResult(list, *function)) {
            return false;
        }
    }
    return !pou.GetEnoFlag() || (PrependOwnEnable(list, GetEnDecl(), kEnable) &&
                                 PrependOwnEnable(list, GetEnoDecl(), kEnableOut));
}

}  // namespace

}  // namespace lq::pouh

int LoadInterface(POUH_DECL_LIST_TYP* list, LQPOU* pou) {
    if (!list || !pou) {
        return 0;
    }
    const int32_t kind = pou->GetKind();
    if (kind != LQ_KIND_FUNCTION_BLOCK && kind != LQ_KIND_FUNCTION) {
        return 0;
    }
    FLIST* decls = lq::pouh::NewDeclList();
    if (!decls) {
        return 0;
    }
    list->list = decls;
    LQOBJECT* header = pou->GetHeader();
    if (!header || !lq::pouh::LoadDeclarations(decls, *header, true) ||
        !lq::pouh::PrependImplicit(decls, *pou)) {
        return 0;
    }
    return lq::pouh::RegroupByScope(*list);
}

int LoadSelectedSymbolTable(SYMBOL_TABLE_TYP* table, ID id) {
    LQNAVIOBJECTMAN* manager = LQNAVIOBJECTMAN::Get();
    LQNAVIOBJECT* object = manager ? manager->Get(id) : nullptr;
    FLIST* list = table && object ? lq::pouh::NewDeclList() : nullptr;
    if (!list) {
        return 0;
    }
    table->list = list;
    return lq::pouh::LoadDeclarations(list, *object, false);
}

int LoadSymbolTable(SYMBOL_TABLE_TYP*) {
    return 1;
}

int GetDecl(DECL_TYP*, LQDATADECL*) {
    return 0;
}

int SaveDeclList(FLIST*, LQDECLLIST*) {
    return 0;
}

int SavePOUHeader(POU_HEADER_TYP*, LQLIB*, ID*) {
    return 0;
}
