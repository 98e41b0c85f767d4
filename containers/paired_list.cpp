// Paired lists. Every operation works on one list, the leader, with the caller's code, and then
// goes to the same index of the other, the follower. So the pairs stay aligned even when the two
// positions have drifted apart, which a search without success can bring about.
#include "containers/list_access.h"
#include "lq_data/containers.h"

using lq::containers::Code;
using lq::containers::CodeOf;
using lq::containers::IsFunction;
using lq::containers::ListAccess;

namespace {

bool IsValid(const _ASSAY* assay) {
    return assay && assay->magic == _ASSAY::kMagic;
}

// Valid, and both lists could be built.
bool IsUsable(const _ASSAY* assay) {
    return IsValid(assay) && ListAccess::IsValid(assay->list1) && ListAccess::IsValid(assay->list2);
}

// Codes 3 to 7: they address a pair by its place, not by one of its elements.
bool IsPlaceCode(LIST_CALLBACK code) {
    return CodeOf(code) >= Code::kAtIndex && CodeOf(code) <= Code::kLast;
}

bool IsSearch(LIST_CALLBACK code) {
    return code == LC_NOT_LESS || code == LC_EQUAL || IsFunction(code);
}

// Which list leads an operation, and what the leader is given for `param`.
struct Roles {
    FLIST* leader = nullptr;  // null when the operation has nothing to do
    FLIST* follower = nullptr;
    int32_t param = 0;
    bool isFirst = true;  // the first list leads
};

Roles RolesFor(const _ASSAY* assay, LIST_CALLBACK code, int32_t column) {
    if (!IsUsable(assay)) {
        return {};
    }
    if (IsPlaceCode(code)) {
        return {assay->list1, assay->list2, column, true};
    }
    if (IsSearch(code) && column == 1) {
        return {assay->list1, assay->list2, 0, true};
    }
    if (IsSearch(code) && column == 2) {
        return {assay->list2, assay->list1, 0, false};
    }
    return {};
}

void Rewind(FLIST* list) {
    list->FindElement(nullptr, nullptr, LC_REWIND, 0);
}

void GoTo(FLIST* list, uint32_t index) {
    list->FindElement(nullptr, nullptr, LC_AT_INDEX, static_cast<int32_t>(index));
}

uint32_t WriteAt(FLIST* list, const void* value, uint32_t index) {
    return list->WriteElement(value, nullptr, LC_AT_INDEX, static_cast<int32_t>(index));
}

// Result of an insertion; not complete when memory ran out for a node or a text.
struct Insertion {
    uint32_t index;
    bool complete;
};

Insertion Insert(_ASSAY* assay, const void* first, const void* second, LIST_CALLBACK code,
                 int32_t column) {
    const Roles roles = RolesFor(assay, code, column);
    if (!roles.leader) {
        return {0, true};
    }
    // With both nodes at hand, the second insertion cannot fail behind the first.
    if (!ListAccess::Reserve(*roles.leader) || !ListAccess::Reserve(*roles.follower)) {
        return {0, false};
    }
    if (code == LC_EQUAL) {
        Rewind(roles.leader);
    }
    const void* const led = roles.isFirst ? first : second;
    const void* const following = roles.isFirst ? second : first;
    const uint32_t before = roles.leader->Cardinality();
    const auto inserted = ListAccess::Insert(*roles.leader, led, led, code, roles.param);
    if (roles.leader->Cardinality() == before) {
        GoTo(roles.follower, inserted.index);
        return {inserted.index, true};
    }
    const auto partner = ListAccess::Insert(*roles.follower, following, following, LC_AT_INDEX,
                                            static_cast<int32_t>(inserted.index));
    return {partner.index, inserted.complete && partner.complete};
}

}  // namespace

_ASSAY* CreateAssay(uint32_t userDataSize, LIST_ELEMENT_TYPE type1, uint32_t size1,
                    LIST_ELEMENT_TYPE type2, uint32_t size2, LIST_CALLBACK callback) {
    auto* assay = lq::New<_ASSAY>();
    if (!assay) {
        return nullptr;
    }
    if (!assay->userData.Resize(userDataSize)) {
        lq::Delete(assay);
        return nullptr;
    }
    assay->list1 = CreateList(0, type1, size1, callback);
    assay->list2 = CreateList(0, type2, size2, callback);
    assay->type1 = type1;
    assay->size1 = size1;
    assay->type2 = type2;
    assay->size2 = size2;
    assay->callback = callback;
    return assay;
}

int DestroyAssay(_ASSAY* assay) {
    if (!IsValid(assay)) {
        return 0;
    }
    DestroyList(assay->list1);
    DestroyList(assay->list2);
    // So that a handle that somebody still holds does not pass for a table. The store is volatile,
    // since a compiler may leave out ordinary stores to an object whose life ends behind them.
    static_cast<volatile uint32_t&>(assay->magic) = 0;
    lq::Delete(assay);
    return 1;
}

uint32_t SetUserDataOfAssay(_ASSAY* assay, const void* from) {
    return IsValid(assay) && assay->userData.Set(from) ? assay->userData.Size() : 0;
}

uint32_t GetUserDataOfAssay(_ASSAY* assay, void* to) {
    return IsValid(assay) && assay->userData.Get(to) ? assay->userData.Size() : 0;
}

uint32_t CardinalityOfAssay(_ASSAY* assay) {
    return IsUsable(assay) ? assay->list1->Cardinality() : 0;
}

FLIST* GetListOfAssay(_ASSAY* assay, int32_t which) {
    if (!IsValid(assay)) {
        return nullptr;
    }
    return which == 1 ? assay->list1 : which == 2 ? assay->list2 : nullptr;
}

uint32_t InsertElementOfAssay(_ASSAY* assay, const void* first, const void* second,
                              LIST_CALLBACK code, int32_t column) {
    return Insert(assay, first, second, code, column).index;
}

uint32_t WriteElementOfAssay(_ASSAY* assay, const void* first, const void* second,
                             LIST_CALLBACK code, int32_t column) {
    const Roles roles = RolesFor(assay, code, column);
    if (!roles.leader) {
        return 0;
    }
    const void* const led = roles.isFirst ? first : second;
    const void* const following = roles.isFirst ? second : first;
    if (code == LC_EQUAL) {
        Rewind(roles.leader);
    }
    const void* const key = code == LC_EQUAL ? led : nullptr;
    const uint32_t index = roles.leader->FindElement(nullptr, key, code, roles.param);
    if (index == 0) {
        return 0;
    }
    const bool written = code == LC_EQUAL || WriteAt(roles.leader, led, index) != 0;
    return written || IsPlaceCode(code) ? WriteAt(roles.follower, following, index) : 0;
}

uint32_t RemoveElementOfAssay(_ASSAY* assay, void* first, void* second, LIST_CALLBACK code,
                              int32_t column) {
    const Roles roles = RolesFor(assay, code, column);
    if (!roles.leader) {
        return 0;
    }
    void* const led = roles.isFirst ? first : second;
    void* const following = roles.isFirst ? second : first;
    const uint32_t index = IsPlaceCode(code)
                               ? roles.leader->RemoveElement(led, nullptr, code, roles.param)
                               : roles.leader->RemoveElement(nullptr, led, code, roles.param);
    if (index == 0) {
        if (IsPlaceCode(code)) {
            Rewind(roles.follower);  // as the removal has left the other list
        }
        return 0;
    }
    return roles.follower->RemoveElement(following, nullptr, LC_AT_INDEX,
                                         static_cast<int32_t>(index));
}

uint32_t FindElementOfAssay(_ASSAY* assay, void* first, void* second, LIST_CALLBACK code,
                            int32_t column) {
    if (code == LC_REWIND && IsUsable(assay)) {
        Rewind(assay->list1);
        Rewind(assay->list2);
    }
    const Roles roles = RolesFor(assay, code, column);
    if (!roles.leader) {
        return 0;
    }
    if (code == LC_EQUAL) {
        Rewind(roles.leader);
    }
    void* const led = roles.isFirst ? first : second;
    void* const following = roles.isFirst ? second : first;
    const uint32_t index = IsPlaceCode(code)
                               ? roles.leader->FindElement(led, nullptr, code, roles.param)
                               : roles.leader->FindElement(nullptr, led, code, roles.param);
    return index == 0 ? 0
                      : roles.follower->FindElement(following, nullptr, LC_AT_INDEX,
                                                    static_cast<int32_t>(index));
}

uint32_t SizeOfElementOfAssay(_ASSAY* assay, void* size1, void* size2, LIST_CALLBACK code,
                              int32_t param) {
    if (!IsUsable(assay)) {
        return 0;
    }
    auto* const firstSize = static_cast<uint32_t*>(size1);
    auto* const secondSize = static_cast<uint32_t*>(size2);
    const uint32_t index = assay->list1->SizeOfElement(firstSize, nullptr, code, param);
    if (code == LC_REWIND || IsFunction(code)) {
        return assay->list2->SizeOfElement(secondSize, nullptr, code, param);
    }
    return index == 0 ? 0
                      : assay->list2->SizeOfElement(secondSize, nullptr, LC_AT_INDEX,
                                                    static_cast<int32_t>(index));
}

uint32_t SortElementOfAssay(_ASSAY* assay, LIST_CALLBACK code, int32_t param) {
    if (!RolesFor(assay, code, param).leader || (IsPlaceCode(code) && code != LC_FIRST)) {
        return 0;
    }
    _ASSAY* const sorted = CreateAssay(assay->userData.Size(), assay->type1, assay->size1,
                                       assay->type2, assay->size2, nullptr);
    bool complete = IsUsable(sorted);
    const uint32_t count = CardinalityOfAssay(assay);
    for (uint32_t index = 1; complete && index <= count; ++index) {
        GoTo(assay->list1, index);
        GoTo(assay->list2, index);
        complete = Insert(sorted, ListAccess::CurrentValue(*assay->list1),
                          ListAccess::CurrentValue(*assay->list2), code, param)
                       .complete;
    }
    if (complete) {
        ListAccess::TakeContent(*assay->list1, *sorted->list1);
        ListAccess::TakeContent(*assay->list2, *sorted->list2);
    }
    DestroyAssay(sorted);
    return complete ? CardinalityOfAssay(assay) : 0;
}
