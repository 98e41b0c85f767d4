// The lists inside list records, and the scope order of declarations.

#include "pouh/record_lists.h"

#include <algorithm>
#include <iterator>

#include "lq_data/records.h"
#include "pouh/record_types.h"

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

// The scopes of the groups, in the order of the groups. One more group, the last, takes every other
// scope.
struct ScopeGroup {
    DECL_SCOPE scope;
    unsigned group;
};
constexpr ScopeGroup kGroups[] = {
    {DS_VAR_INPUT, 0},
    {DS_VAR_INPUT_CONSTANT, 0},
    {DS_VAR_IN_EXT, 1},
    {DS_VAR_INPUT_RETAIN, 2},
    {DS_VAR_IN_OUT, 3},
    {DS_VAR_OUTPUT, 4},
    {DS_VAR_OUTPUT_RETAIN, 5},
    {DS_VAR_EXTERNAL, 6},
    {DS_VAR_EXTERNAL_CONSTANT, 7},
    {DS_VAR_EXTERNAL_RETAIN, 8},
    {DS_VAR_EXTERNAL_CONSTANT_RETAIN, 9},
    {DS_VAR, 10},
    {DS_VAR_CONSTANT, 11},
    {DS_VAR_RETAIN, 12},
    {DS_VAR_CONSTANT_RETAIN, 13},
};
static_assert(std::ranges::is_sorted(kGroups, {}, &ScopeGroup::group));
static_assert(std::end(kGroups)[-1].group + 2 == kScopeGroups);

unsigned GroupOfSlot(const void* slot) {
    const DECL_TYP* decl = *static_cast<DECL_TYP* const*>(slot);
    return GroupOf(decl ? decl->scope : DS_UNKNOWN);
}

// Whether the declarations are in scope order already. The list then stands in front of its first
// element, as a new one does.
bool IsInGroups(FLIST* list) {
    unsigned before = 0;
    void* slot = nullptr;
    for (uint32_t at = ListGet(list, slot, nullptr, LC_FIRST, 0); at != 0;
         at = ListGet(list, slot, nullptr, LC_NEXT, 0)) {
        const unsigned group = GroupOfSlot(slot);
        if (group < before) {
            return false;
        }
        before = group;
    }
    ListGet(list, slot, nullptr, LC_REWIND, 0);
    return true;
}

// Inserts the declarations of `from` into `to`, which is empty, group by group. `to` gets one empty
// element a group first, as a marker; a declaration then goes directly behind the last element of
// its group, and the markers are removed in the end. So one pass is enough, whatever the number of
// groups, and the declarations of a group keep their order. False when memory is short.
bool CopyInGroups(FLIST* from, FLIST* to) {
    void* markers[kScopeGroups];
    void* last[kScopeGroups];
    for (unsigned group = 0; group < kScopeGroups; ++group) {
        markers[group] = last[group] = AddListElement(to, nullptr);
        if (!markers[group]) {
            return false;
        }
    }
    bool isWhole = true;
    void* slot = nullptr;
    for (uint32_t at = ListGet(from, slot, nullptr, LC_FIRST, 0); at != 0 && isWhole;
         at = ListGet(from, slot, nullptr, LC_NEXT, 0)) {
        void*& end = last[GroupOfSlot(slot)];
        end = AddListElementAt(to, slot, end);
        isWhole = end != nullptr;
    }
    for (void* marker : markers) {
        RemoveElementAt(to, marker);
    }
    return isWhole;
}

}  // namespace

unsigned GroupOf(uint32_t scope) {
    for (const ScopeGroup& entry : kGroups) {
        if (entry.scope == scope) {
            return entry.group;
        }
    }
    return kScopeGroups - 1;
}

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

int RegroupByScope(LQ_LIST_RECORD& record) {
    if (CardinalityOfList(record.list) < 2 || IsInGroups(record.list)) {
        return 1;
    }
    FLIST* grouped = NewDeclList();
    if (!grouped) {
        return 0;
    }
    if (!CopyInGroups(record.list, grouped)) {
        DestroyList(grouped);
        return 0;
    }
    DestroyList(record.list);
    record.list = grouped;
    return 1;
}

}  // namespace lq::pouh
