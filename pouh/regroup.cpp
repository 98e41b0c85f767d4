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

// Calls `function` with each element of the list, until one answers false.
template <typename Function>
bool ForEachDecl(FLIST* list, Function function) {
    void* slot = nullptr;
    for (uint32_t at = ListGet(list, slot, nullptr, LC_FIRST, 0); at != 0;
         at = ListGet(list, slot, nullptr, LC_NEXT, 0)) {
        if (!function(slot)) {
            return false;
        }
    }
    return true;
}

unsigned GroupOfSlot(const void* slot) {
    const DECL_TYP* decl = *static_cast<DECL_TYP* const*>(slot);
    return GroupOf(decl ? decl->scope : DS_UNKNOWN);
}

// Most headers are declared in the order of the groups. The list stands before its first element
// afterwards, as a regrouped one does.
bool IsGrouped(FLIST* list) {
    unsigned last = 0;
    const bool isGrouped = ForEachDecl(list, [&last](const void* slot) {
        const unsigned group = GroupOfSlot(slot);
        const bool inOrder = group >= last;
        last = group;
        return inOrder;
    });
    FindElementOfList(list, nullptr, nullptr, LC_REWIND, 0);
    return isGrouped;
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
    const bool isWhole = ForEachDecl(from, [&](void* slot) {
        void*& end = last[GroupOfSlot(slot)];
        void* node = AddListElementAt(to, slot, end);
        end = node;
        return node != nullptr;
    });
    for (void* marker : markers) {
        RemoveElementAt(to, marker);
    }
    return isWhole;
}

}  // namespace

int RegroupByScope(LQ_LIST_RECORD& record) {
    if (CardinalityOfList(record.list) < 2 || IsGrouped(record.list)) {
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
