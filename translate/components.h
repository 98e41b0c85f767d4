// The components of a unit while they are entered into the tables.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "cgtab/line_index.h"
#include "frame/growing.h"
#include "lq_data/cgtab_compiler.h"
#include "lq_data/env/lq_model.h"
#include "lq_data/pouh.h"

namespace lq::translate {

// A text of a record as the model has it: the loaders put an erroneous one between two "?", with
// which none begins that is right.
inline bool IsMarked(const char16_t* text) {
    return text[0] == u'?';
}

bool IsGlobalScope(uint32_t scope);
bool IsExternalScope(uint32_t scope);

// A name that a unit declares, whatever its case.
struct Component {
    int32_t source = 0;  // the first declaration of that name; below 0 the unit declares none
    int32_t kept = -1;   // the declaration that the header has of it; -1 of one that is implicit
    DeclFault fault = DeclFault::kNone;  // why the table cannot have it
    bool isTaken = false;                // false when the name is no identifier
    bool isEntered = false;
};

// What the model has for a declaration of the unit.
struct Declared {
    uint32_t component = 0;  // its number from 1; 0 for a global of the unit, or without an object
    ID type;                 // the user type or function block that its type names
    bool isVar = false;      // its scope is VAR
    bool lacksGlobal = false;
    bool isMissing = false;  // the table could have taken it, and did not
};

// A record of the part that is loaded.
struct PartRecord {
    DECL_TYP* decl;
    int32_t index;       // of its declaration, or below 0
    uint32_t component;  // its number; 0 of a global of the unit whose name is no identifier
    uint32_t scope;
    bool isKept;  // in the header
};

// The declarations come in parts, whose records go with the next one. What stays takes some 50
// bytes a declaration: a name is read from the model again when another has its hash.
class Components {
  public:
    Components() = default;
    ~Components() { DestroyDropped(); }
    Components(const Components&) = delete;
    Components& operator=(const Components&) = delete;

    // For the next unit, with these declarations, which may be null. False when memory is short.
    bool Open(const LQSELECTION* declarations);
    // The next part. Takes the declarations with erroneous names, which the loader has marked, and
    // those whose name was declared before out of the header and keeps them until the next part.
    // False when memory is short.
    bool TakePart(POU_HEADER_TYP* header);

    // In the order of the header.
    Growing<PartRecord>& Part() { return part_; }
    uint32_t KeptCount() const { return kept_; }

    // By their index in the selection of the owner.
    Growing<Declared>& AllDeclared() { return declared_; }
    Component& Of(const Declared& declared) { return At(declared.component); }
    Component& At(uint32_t number) { return components_[number - 1]; }

    // Notes that the next line is that of a component. False when memory is short.
    bool NoteEntered(uint32_t number);
    // The numbers of those that have lines, in the order of the lines.
    Growing<uint32_t>& Entered() { return entered_; }
    // When the lines have been taken back.
    void ForgetEntered();

  private:
    void DestroyDropped();
    // Its number; 0 when memory is short.
    uint32_t FindOrAdd(std::u16string_view name, int32_t index);
    bool HasName(const Component& component, std::u16string_view name);
    bool AddRecord(DECL_TYP* decl);
    bool KeepOnly(POU_HEADER_TYP* header);

    const LQSELECTION* declarations_ = nullptr;
    LQDECLMAN* manager_ = nullptr;
    cgtab::LineIndex names_;  // to the numbers of components
    Growing<Component> components_;
    Growing<char16_t> texts_;  // the names of components without a source
    Growing<Declared> declared_;
    Growing<uint32_t> entered_;
    Growing<PartRecord> part_;
    uint32_t kept_ = 0;  // of the part
};

}  // namespace lq::translate
