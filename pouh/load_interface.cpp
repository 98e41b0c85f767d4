// Loading the parameters of a function or function block.

#include "pouh/lists.h"
#include "pouh/load_declarations.h"
#include "pouh/owned.h"
#include "pouh/records.h"

namespace lq::pouh {

namespace {

// Takes the declaration over; null fails.
bool PrependOwnEnable(FLIST* list, LQPOUHDECL* decl, const EnableParameter& parameter) {
    const Owned<LQPOUHDECL> owned(decl);
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
