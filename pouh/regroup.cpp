// Scope order of a declaration list. The new list starts as one empty marker per group; a
// declaration goes directly behind the last element of its group, and the markers are removed in
// the end. One pass, whatever the number of groups.

#include "pouh/lists.h"
#include "pouh/record_access.h"
#include "pouh/records.h"

namespace lq::pouh {

namespace {

constexpr unsigned kGroupCount = 15;

// The scopes of the groups in their order; the last group takes every other scope.
constexpr struct {
    DECL_SCOPE scope;
    unsigned group;
} kGroups[] = {
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

unsigned GroupOf(uint32_t scope) {
    for (const auto& entry : kGroups) {
        if (entry.scope == scope) {
            return entry.group;
        }
    }
    return kGroupCount - 1;
}

// Inserts the declarations of `from` into `to`, which is empty, between markers that it removes
// again. False when memory is short.
bool CopyInGroups(FLIST* from, FLIST* to) {
    void* markers[kGroupCount];
    void* last[kGroupCount];
    for (unsigned group = 0; group < kGroupCount; ++group) {
        markers[group] = last[group] = AddListElement(to, nullptr);
        if (!markers[group]) {
            return false;
        }
    }
    void* slot = nullptr;
    for (uint32_t at = ListGet(from, slot, nullptr, LC_FIRST, 0); at != 0;
         at = ListGet(from, slot, nullptr, LC_NEXT, 0)) {
        const DECL_TYP* decl = *static_cast<DECL_TYP**>(slot);
        void*& end = last[GroupOf(decl ? decl->scope : DS_UNKNOWN)];
        void* node = AddListElementAt(to, slot, end);
        if (!node) {
            return false;
        }
        end = node;
    }
    for (void* marker : markers) {
        RemoveElementAt(to, marker);
    }
    return true;
}

}  // namespace

int RegroupByScope(LQ_LIST_RECORD& record) {
    if (CardinalityOfList(record.list) < 2) {
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
