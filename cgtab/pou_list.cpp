#include "cgtab/pou_list.h"

#include <algorithm>

#include "frame/chars.h"

// Iterative: chains may be long.
POU_LIST::~POU_LIST() {
    while (first) {
        POU_INST* next_ = first->next;
        delete first;
        first = next_;
    }
    while (next) {
        POU_LIST* entry = next;
        next = entry->next;
        entry->next = nullptr;
        delete entry;
    }
}

namespace lq::cgtab {

namespace {

constexpr size_t kNameLength = CgTab::kNameSize - 1;

void CopyCut(const char16_t* from, char16_t (&to)[CgTab::kNameSize]) {
    const size_t length = std::min(chars::Length(from), kNameLength);
    std::copy_n(from, length, to);
    to[length] = 0;
}

const char16_t* NameOf(const POU_LIST& entry) {
    return entry.longTypeName.IsEmpty() ? entry.typeName : entry.longTypeName.GetText();
}

// Null when memory is short.
POU_LIST* NewEntry(const char16_t* typeName) {
    auto* entry = new POU_LIST;
    if (!entry) {
        return nullptr;
    }
    CopyCut(typeName, entry->typeName);
    if (chars::Length(typeName) > kNameLength) {
        entry->longTypeName = typeName;
    }
    if (entry->longTypeName.HasFailed()) {
        delete entry;
        return nullptr;
    }
    return entry;
}

// The entry of the type, or a new one at the end of the chain.
POU_LIST* EntryOf(POU_LIST& list, const char16_t* typeName) {
    POU_LIST* entry = &list;
    while (!chars::EqualNoCase(NameOf(*entry), typeName)) {
        if (!entry->next) {
            entry->next = NewEntry(typeName);
            return entry->next;
        }
        entry = entry->next;
    }
    return entry;
}

}  // namespace

bool RecordInstance(POU_LIST& list, const NewInstance& instance) {
    POU_LIST* entry = EntryOf(list, instance.typeName);
    auto* record = entry ? new POU_INST : nullptr;
    if (!record) {
        return false;
    }
    if (instance.memberInit[0] != 0) {
        record->init = new DUVMemberInit_C(instance.memberInit);
        if (!record->init) {
            delete record;
            return false;
        }
    }
    record->kind = instance.kind;
    record->pos = instance.pos;
    CopyCut(instance.name, record->name);
    (entry->last ? entry->last->next : entry->first) = record;
    entry->last = record;
    ++entry->count;
    return true;
}

}  // namespace lq::cgtab
