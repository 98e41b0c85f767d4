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

// The entry of the type, or a new one at the end of the chain.
POU_LIST* EntryOf(POU_LIST& list, const char16_t* typeName) {
    char16_t cut[CgTab::kNameSize];
    CopyCut(typeName, cut);
    POU_LIST* entry = &list;
    while (!chars::EqualNoCase(entry->typeName, cut)) {
        if (!entry->next) {
            entry->next = new POU_LIST;
            if (entry->next) {
                CopyCut(typeName, entry->next->typeName);
            }
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
