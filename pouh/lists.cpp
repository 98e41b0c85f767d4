#include "pouh/lists.h"

namespace lq::pouh {

namespace {

// A list that has a body, or null.
FLIST* Usable(FLIST* list) {
    if (list && !list->GetList()) {
        DestroyList(list);
        return nullptr;
    }
    return list;
}

}  // namespace

FLIST* NewDeclList() {
    return Usable(CreateList(0, LET_MEMORY, sizeof(DECL_TYP*), nullptr));
}

FLIST* NewNameList() {
    return Usable(CreateList(0, LET_STRING, 0, nullptr));
}

bool AddDecl(FLIST* list, DECL_TYP* decl, LIST_CALLBACK where) {
    if (!decl) {
        return false;
    }
    if (InsertElementOfList(list, &decl, where, 0) == 0) {
        DestroyDecl(decl);
        return false;
    }
    return true;
}

bool AppendName(FLIST* list, const char16_t* name) {
    if (InsertElementOfList(list, name, LC_LAST, 0) == 0) {
        return false;
    }
    // An element counts even when its text could not be copied; it then holds none.
    uint32_t charCount = 0;
    SizeOfElementOfList(list, &charCount, nullptr, LC_LAST, 0);
    if (charCount == 0) {
        RemoveElementOfList(list, nullptr, nullptr, LC_LAST, 0);
        return false;
    }
    return true;
}

}  // namespace lq::pouh
