// From a variable to its elementary members.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/symbols/type_text.h"
#include "lq_data/host/symbols/symbols.h"

namespace lq::host::symbols {

class Expansion {
  public:
    // Hands `take` the members; with `locatedOnly` those that have an address, or are in a variable
    // that has one.
    Expansion(const Project& project, bool locatedOnly, const TakeSymbol& take)
        : project_(project), locatedOnly_(locatedOnly), take_(take) {}

    void Run(const Symbol& variable, Scope scope);

  private:
    // A variable or member on the way. The name of the one that is looked at lies in name_.
    struct Item {
        Symbol symbol;
        bool isReference = false;
        bool isAtStart = false;   // where the located variable begins
        bool isValueSet = false;  // something that it is in has a value
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
    Unexpanded Obstacle(const Item& item, const Target& target) const;

    void Visit(Item item);
    void VisitElements(const Item& item, const TypeText& array);
    void VisitMembers(const Item& item, ID holder);
    void Take(const Item& item, const Target& target, Unexpanded reason);

    const Project& project_;
    const bool locatedOnly_;
    const TakeSymbol& take_;

    const Symbol* variable_ = nullptr;
    std::u16string name_;
    std::vector<ID> open_;  // structures and function blocks, null for arrays
    std::size_t taken_ = 0;
};

}  // namespace lq::host::symbols
