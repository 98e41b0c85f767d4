// What names stand for: a project's names by what they belong to, found in one step each.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "host/uses/globals.h"
#include "lq_data/host/model/flat_index.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/uses/uses.h"

namespace lq::host::uses {

// What a name stands for; ForEachUse's words.
struct Meaning {
    UseObject object = UseObject::kUnknown;
    ID id;
    ID global;
    const SharedName* shared =
        nullptr;  // the globals that may be meant, where `global` is not known

    explicit operator bool() const { return object != UseObject::kUnknown; }
    std::span<const ID> Globals() const {
        return shared ? std::span<const ID>(shared->globals) : std::span<const ID>();
    }
    // The declaration that has a type; null for none.
    ID Typed() const {
        const ID first = shared && shared->isOneType ? shared->globals.front() : global;
        return id != ID() ? id : first;
    }
};

class Names {
  public:
    explicit Names(const Project& project);

    // A name of the unit alone; its declarations and implicit parameters.
    Meaning OfUnit(ID unit, u16string_view name);
    // A name of no unit, as it is meant in `place`: a unit, a resource or a configuration.
    Meaning OfProject(ID place, u16string_view name);
    // What stands behind the point of something, be it an instance, a structure, an array of these,
    // a unit or a list.
    Meaning MemberOf(const Meaning& what, u16string_view name);
    // A value of an enumeration, behind "#" or in a declaration of its type.
    Meaning ValueOf(u16string_view type, u16string_view name) const;
    bool IsEnumeration(u16string_view type) const;
    Meaning ValueNamed(u16string_view name) const;  // the first of the name
    // The data type or unit that a type's text ends with: the type, or that of its elements.
    // Aliases are followed to what has members.
    ID TypeIn(u16string_view text) const;
    Meaning TypeNamed(u16string_view name) const;

    // The function block of an instance, a function or function block by name; null for none.
    ID CalleeOf(const Meaning& what) const;
    // The parameters of a POU in the order in which a call without names has them.
    const IdList& ParametersOf(ID pou);

    const Project& GetProject() const { return project_; }

  private:
    struct Value {
        u16string_view name;
        ID of;  // the data type or declaration
    };

    static uint32_t HashIn(ID owner, u16string_view name);
    Meaning Declared(ID owner, u16string_view name);
    void AddDeclarations();
    void AddValues(Text type, ID of);

    const Project& project_;
    Globals globals_;
    FlatIndex<uint32_t> declarations_;  // numbers of identifiers, by owner and name
    FlatIndex<uint32_t> lists_;         // likewise, by name
    FlatIndex<uint32_t> values_;        // places in the next from 1, by name
    std::vector<Value> allValues_;
    FlatIndex<uint32_t> ownValues_;                    // likewise, by type and name
    std::vector<std::unique_ptr<IdList>> parameters_;  // by POU
};

}  // namespace lq::host::uses
