// Loading the declarations of any object that has some, and the operations that the interface
// names and nobody needs.

#include "pouh/lists.h"
#include "pouh/load_declarations.h"
#include "pouh/records.h"

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
