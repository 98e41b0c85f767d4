#include "translate/components.h"

#include "lq_data/containers.h"
#include "lq_data/detail/chars.h"
#include "lq_data/detail/text_hash.h"
#include "pouh/record_access.h"

namespace lq::translate {

std::u16string_view Unmarked(const char16_t* text) {
    std::u16string_view view(text);
    if (IsMarked(text) && view.size() > 1) {
        view.remove_prefix(1);
        view.remove_suffix(1);
    }
    return view;
}

bool IsGlobalScope(uint32_t scope) {
    return scope == DS_VAR_GLOBAL || scope == DS_VAR_GLOBAL_RETAIN ||
           scope == DS_VAR_GLOBAL_CONSTANT || scope == DS_VAR_GLOBAL_CONSTANT_RETAIN;
}

bool IsExternalScope(uint32_t scope) {
    return scope == DS_VAR_EXTERNAL || scope == DS_VAR_EXTERNAL_RETAIN ||
           scope == DS_VAR_EXTERNAL_CONSTANT || scope == DS_VAR_EXTERNAL_CONSTANT_RETAIN;
}

bool Components::Take(POU_HEADER_TYP* header, uint32_t count) {
    FLIST* const all = pouh::ListOf(header);
    const bool isWhole = declared_.Assign(count, {}) && FindSources(all) && Sort(all) &&
                         (dropped_.Count() == 0 || KeepOnly(header, all));
    if (!isWhole) {
        dropped_.Clear();  // they are the header's
    }
    return isWhole;
}

Components::~Components() {
    for (DECL_TYP* decl : dropped_) {
        DestroyDecl(decl);
    }
}

uint32_t Components::FindOrAdd(std::u16string_view name) {
    const uint32_t hash = text_hash::OfName(name.data(), name.size());
    const cgtab::LineIndex::Slot* const slot = names_.Find(hash, [&](int32_t number) {
        const std::u16string_view known = At(static_cast<uint32_t>(number)).name;
        return known.size() == name.size() &&
               chars::CompareNoCase(known.data(), name.data(), name.size()) == 0;
    });
    if (slot) {
        return static_cast<uint32_t>(slot->at);
    }
    const uint32_t number = components_.Count() + 1;
    return components_.Append({.name = name}) && names_.Insert(hash, static_cast<int32_t>(number))
               ? number
               : 0;
}

// The header has the declarations in the order of their scopes; which of one name comes first is
// told by the order of the model.
bool Components::FindSources(FLIST* all) {
    for (DECL_TYP* decl = pouh::DeclAt(all, LC_FIRST); decl; decl = pouh::DeclAt(all, LC_NEXT)) {
        const int32_t index = GetIndexOfDecl(decl);
        if (index >= 0 && static_cast<uint32_t>(index) < declared_.Count()) {
            declared_[static_cast<uint32_t>(index)].decl = decl;
        }
    }
    for (uint32_t i = 0; i < declared_.Count(); ++i) {
        Declared& declared = declared_[i];
        uint32_t scope = 0;
        GetAttrOfDecl(declared.decl, POUH_SCOPE, &scope);
        if (!declared.decl || IsGlobalScope(scope)) {
            continue;
        }
        declared.component = FindOrAdd(Unmarked(pouh::TextOf(declared.decl, POUH_NAME)));
        if (declared.component == 0) {
            return false;
        }
        Component& component = Of(declared);
        component.source = component.source < 0 ? static_cast<int32_t>(i) : component.source;
    }
    return true;
}

// Into those that are kept and those that are dropped.
bool Components::Sort(FLIST* all) {
    for (DECL_TYP* decl = pouh::DeclAt(all, LC_FIRST); decl; decl = pouh::DeclAt(all, LC_NEXT)) {
        const char16_t* const name = pouh::TextOf(decl, POUH_NAME);
        uint32_t number = 0;
        if (!IsMarked(name)) {
            const int32_t index = GetIndexOfDecl(decl);
            number = index >= 0 && static_cast<uint32_t>(index) < declared_.Count()
                         ? declared_[static_cast<uint32_t>(index)].component
                         : 0;
            number = number != 0 ? number : FindOrAdd(name);
            if (number == 0) {
                return false;
            }
        }
        if (number != 0 && !At(number).decl) {
            At(number).decl = decl;
            if (!kept_.Append(number)) {
                return false;
            }
        } else if (!dropped_.Append(decl)) {
            return false;
        }
    }
    return true;
}

bool Components::KeepOnly(POU_HEADER_TYP* header, FLIST* all) {
    FLIST* list = CreateList(0, LET_MEMORY, sizeof(void*), nullptr);
    bool isWhole = list != nullptr;
    for (uint32_t i = 0; i < kept_.Count() && isWhole; ++i) {
        DECL_TYP* decl = At(kept_[i]).decl;
        isWhole = InsertElementOfList(list, &decl, LC_LAST, 0) != 0;
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

}  // namespace lq::translate
