// The components of a unit while they are entered into the tables.
#pragma once

#include <cstdint>
#include <string_view>

#include "cgtab/line_index.h"
#include "lq_data/pouh.h"
#include "translate/growing.h"

namespace lq::translate {

// A text of a record as the model has it: the loaders put an erroneous one between two "?", with
// which none begins that is right.
inline bool IsMarked(const char16_t* text) {
    return text[0] == u'?';
}
std::u16string_view Unmarked(const char16_t* text);

bool IsGlobalScope(uint32_t scope);
bool IsExternalScope(uint32_t scope);

// The names that a unit declares, each once, whatever its case.
struct Component {
    std::u16string_view name;
    int32_t source = -1;       // the first declaration of that name; -1 of one that is implicit
    DECL_TYP* decl = nullptr;  // null when the name is no identifier
    bool isEntered = false;
};

// What the model has for a declaration of the unit.
struct Declared {
    const DECL_TYP* decl = nullptr;  // null when the model has no object for it
    uint32_t component = 0;          // its number from 1; 0 for a global of the unit
    bool isMissing = false;          // the table could have taken it, and did not
};

class Components {
  public:
    Components() = default;
    ~Components();  // before the header
    Components(const Components&) = delete;
    Components& operator=(const Components&) = delete;

    // From a loaded header, whose owner has `count` declarations. Takes the declarations with
    // erroneous names, which the loader has marked, and those whose name was declared before out of
    // the header and keeps them. Once. False when memory is short.
    bool Take(POU_HEADER_TYP* header, uint32_t count);

    // By their index in the selection of the owner.
    Growing<Declared>& AllDeclared() { return declared_; }
    Component& Of(const Declared& declared) { return components_[declared.component - 1]; }
    // The numbers of those that were left in the header, in its order.
    Growing<uint32_t>& Kept() { return kept_; }
    Component& At(uint32_t number) { return components_[number - 1]; }

  private:
    // Its number; 0 when memory is short.
    uint32_t FindOrAdd(std::u16string_view name);
    bool FindSources(FLIST* all);
    bool Sort(FLIST* all);
    bool KeepOnly(POU_HEADER_TYP* header, FLIST* all);

    cgtab::LineIndex names_;  // to the numbers of components
    Growing<Component> components_;
    Growing<Declared> declared_;
    Growing<uint32_t> kept_;
    Growing<DECL_TYP*> dropped_;
};

}  // namespace lq::translate
