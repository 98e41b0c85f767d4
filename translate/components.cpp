#include "translate/components.h"

#include <algorithm>

#include "lq_data/containers.h"
#include "lq_data/detail/chars.h"
#include "lq_data/detail/text_hash.h"
#include "lq_data/records.h"

namespace lq::translate {

namespace {

struct RecordElement {
    using Value = DECL_TYP*;
    static Value From(void* slot) { return *static_cast<DECL_TYP**>(slot); }
};

std::u16string_view Unmarked(const char16_t* text) {
    std::u16string_view view(text);
    if (IsMarked(text) && view.size() > 1) {
        view.remove_prefix(1);
        view.remove_suffix(1);
    }
    return view;
}

}  // namespace

bool IsGlobalScope(uint32_t scope) {
    return scope == DS_VAR_GLOBAL || scope == DS_VAR_GLOBAL_RETAIN ||
           scope == DS_VAR_GLOBAL_CONSTANT || scope == DS_VAR_GLOBAL_CONSTANT_RETAIN;
}

bool IsExternalScope(uint32_t scope) {
    return scope == DS_VAR_EXTERNAL || scope == DS_VAR_EXTERNAL_RETAIN ||
           scope == DS_VAR_EXTERNAL_CONSTANT || scope == DS_VAR_EXTERNAL_CONSTANT_RETAIN;
}

bool Components::Open(const LQSELECTION* declarations) {
    DestroyDropped();
    names_.Clear();
    components_.Clear();
    texts_.Clear();
    entered_.Clear();
    declarations_ = declarations;
    manager_ = LQDECLMAN::Get();
    const int32_t count = declarations ? declarations->GetCount() : 0;
    return declared_.Assign(static_cast<uint32_t>(std::max(count, 0)), {});
}

bool Components::TakePart(POU_HEADER_TYP* header) {
    DestroyDropped();
    bool isWhole = true;
    for (DECL_TYP* decl : ListRange<RecordElement>(pouh::ListOf(header))) {
        isWhole = isWhole && AddRecord(decl);
    }
    isWhole = isWhole && (kept_ == part_.Count() || KeepOnly(header));
    if (!isWhole) {
        part_.Clear();  // they are the header's
    }
    return isWhole;
}

void Components::DestroyDropped() {
    for (const PartRecord& record : part_) {
        if (!record.isKept) {
            DestroyDecl(record.decl);
        }
    }
    part_.Clear();
    kept_ = 0;
}

// The header has the declarations in the order of their scopes; which of one name comes first is
// told by the order of the model.
bool Components::AddRecord(DECL_TYP* decl) {
    const char16_t* const name = pouh::TextOf(decl, POUH_NAME);
    uint32_t scope = 0;
    GetAttrOfDecl(decl, POUH_SCOPE, &scope);
    int32_t index = GetIndexOfDecl(decl);
    index = index < static_cast<int32_t>(declared_.Count()) ? index : -1;
    const bool isDeclared = index >= 0 && !IsGlobalScope(scope);
    uint32_t number = 0;
    if (isDeclared || !IsMarked(name)) {
        number = FindOrAdd(Unmarked(name), isDeclared ? index : -1);
        if (number == 0) {
            return false;
        }
    }
    if (isDeclared) {
        Declared& declared = declared_[static_cast<uint32_t>(index)];
        declared.component = number;
        declared.isVar = scope == DS_VAR;
    }
    const bool isKept = !IsMarked(name) && !At(number).isTaken;
    if (!part_.Append({decl, index, number, scope, isKept})) {
        return false;
    }
    if (isKept) {
        At(number).isTaken = true;
        At(number).kept = index;
        ++kept_;
    }
    return true;
}

bool Components::HasName(const Component& component, std::u16string_view name) {
    std::unique_ptr<LQOBJECT> object;
    const char16_t* known = nullptr;
    if (component.source >= 0) {
        object.reset(manager_ ? manager_->Get(declarations_->GetID(component.source)) : nullptr);
        known = object ? object->GetName() : nullptr;
    } else {
        known = &texts_[~static_cast<uint32_t>(component.source)];
    }
    return known && chars::Length(known) == name.size() &&
           chars::CompareNoCase(known, name.data(), name.size()) == 0;
}

uint32_t Components::FindOrAdd(std::u16string_view name, int32_t index) {
    const uint32_t hash = text_hash::OfName(name.data(), name.size());
    const cgtab::LineIndex::Slot* const slot = names_.Find(
        hash, [&](int32_t number) { return HasName(At(static_cast<uint32_t>(number)), name); });
    if (slot) {
        int32_t& source = At(static_cast<uint32_t>(slot->at)).source;
        source = index >= 0 && (source < 0 || index < source) ? index : source;
        return static_cast<uint32_t>(slot->at);
    }
    int32_t source = index;
    if (index < 0) {
        source = ~static_cast<int32_t>(texts_.Count());
        bool isWhole = true;
        for (const char16_t c : name) {
            isWhole = isWhole && texts_.Append(c);
        }
        if (!isWhole || !texts_.Append(0)) {
            return 0;
        }
    }
    const uint32_t number = components_.Count() + 1;
    return components_.Append({.source = source}) &&
                   names_.Insert(hash, static_cast<int32_t>(number))
               ? number
               : 0;
}

bool Components::KeepOnly(POU_HEADER_TYP* header) {
    FLIST* const all = pouh::ListOf(header);
    FLIST* list = CreateList(0, LET_MEMORY, sizeof(void*), nullptr);
    bool isWhole = list != nullptr;
    for (PartRecord& record : part_) {
        isWhole =
            isWhole && (!record.isKept || InsertElementOfList(list, &record.decl, LC_LAST, 0) != 0);
    }
    POUH_DECL_LIST_TYP* record = nullptr;
    GetAttrOfPOUHeader(header, POUH_DECLLIST, &record);
    if (!isWhole || !SetAttrOfPOUHDeclList(record, POUH_LIST, &list)) {
        DestroyList(list);
        return false;
    }
    DestroyList(all);
    return true;
}

bool Components::NoteEntered(uint32_t number) {
    At(number).isEntered = true;
    return entered_.Append(number) != nullptr;
}

void Components::ForgetEntered() {
    for (const uint32_t number : entered_) {
        At(number).isEntered = false;
    }
    entered_.Clear();
}

}  // namespace lq::translate
