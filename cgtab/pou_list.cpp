#include "cgtab/pou_list.h"

#include <algorithm>

#include "lq_data/detail/chars.h"
#include "lq_data/detail/text_hash.h"

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

}  // namespace

// The entry of the type, or a new one at the end of the chain; null when memory is short.
POU_LIST* InstanceRecorder::WalkTo(const char16_t* typeName) {
    POU_LIST* entry = &list_;
    while (!chars::EqualNoCase(NameOf(*entry), typeName)) {
        if (!entry->next) {
            return entry->next = NewEntry(typeName);
        }
        entry = entry->next;
    }
    return entry;
}

bool InstanceRecorder::IndexEntry(POU_LIST* entry) {
    if (!entries_.Append(entry)) {
        return false;
    }
    const char16_t* const name = NameOf(*entry);
    const uint32_t hash = text_hash::OfName(name).hash;
    return Find(hash, name) || index_.Insert(hash, static_cast<int32_t>(entries_.Count() - 1));
}

// Of entries with one name the first, as by walking.
const LineIndex::Slot* InstanceRecorder::Find(uint32_t hash, const char16_t* name) {
    return index_.Find(hash, [&](int32_t number) {
        return chars::EqualNoCase(NameOf(*entries_[static_cast<uint32_t>(number)]), name);
    });
}

bool InstanceRecorder::IndexChain() {
    for (POU_LIST* entry = entries_.Count() == 0 ? &list_ : nullptr; entry; entry = entry->next) {
        if (!IndexEntry(entry)) {
            return false;
        }
    }
    return true;
}

POU_LIST* InstanceRecorder::EntryOf(const char16_t* typeName) {
    if (walks_ < kWalks) {
        ++walks_;
        return WalkTo(typeName);
    }
    if (!IndexChain()) {
        return nullptr;
    }
    const LineIndex::Slot* const slot = Find(text_hash::OfName(typeName).hash, typeName);
    if (slot) {
        return entries_[static_cast<uint32_t>(slot->at)];
    }
    POU_LIST* const entry = NewEntry(typeName);
    if (entry && !IndexEntry(entry)) {
        delete entry;
        return nullptr;
    }
    if (entry) {
        entries_[entries_.Count() - 2]->next = entry;
    }
    return entry;
}

bool InstanceRecorder::Record(const NewInstance& instance) {
    POU_LIST* entry = EntryOf(instance.typeName);
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
