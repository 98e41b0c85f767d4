// From a variable to its elementary members.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/symbols/configured.h"
#include "host/symbols/type_text.h"
#include "lq_data/host/symbols/symbols.h"

namespace lq::host::symbols {

class Expansion {
  public:
    // Hands `take` the members; with `locatedOnly` those that have an address, or are in a variable
    // that has one.
    Expansion(const Project& project, const ConfiguredAddresses& configured, bool locatedOnly,
              const TakeSymbol& take)
        : project_(project), configured_(configured), locatedOnly_(locatedOnly), take_(take) {}

    // The holder is the POU, configuration or resource.
    void Run(const Symbol& variable, ID holder, Scope scope);

  private:
    // A variable or member on the way. The name of the one that is looked at lies in name_.
    struct Item {
        Symbol symbol;
        bool isReference = false;
        bool isValueSet = false;    // something that it is in has a value
        bool isLocated = false;     // it has an address, or something that it is in
        std::u16string_view start;  // the address of what begins with it
    };

    // What stands behind the names of types.
    struct Target {
        Unexpanded unexpanded = Unexpanded::kNone;
        std::u16string_view text;  // a type without a name of its own, or the unknown name
        TypeText type;             // of this text
        ID holder;                 // the structure or function block
        bool hasValue = false;
    };

    Target Resolve(std::u16string_view text) const;
    Target Innermost(std::u16string_view text) const;
    bool HasSizeOf(std::u16string_view address, const Target& target) const;
    Unexpanded Obstacle(const Item& item, const Target& target) const;

    void Visit(Item item);
    void Place(Item& item) const;
    void Hold(const Item& item);
    void TellHeld();
    void VisitElements(const Item& item, const TypeText& array);
    void VisitMembers(const Item& item, ID holder);
    void Take(const Item& item, const Target& target, Unexpanded reason);

    const Project& project_;
    const ConfiguredAddresses& configured_;
    const bool locatedOnly_;
    const TakeSymbol& take_;

    ID unit_;  // that the variable stands in, or what else it does
    std::u16string name_;
    // What has an address and was taken apart, until the first member is there that has it, or has
    // not; and how much of name_ is its name.
    const Symbol* held_ = nullptr;
    std::size_t heldName_ = 0;
    std::vector<ID> open_;  // structures and function blocks, null for arrays
    std::size_t taken_ = 0;
};

}  // namespace lq::host::symbols
