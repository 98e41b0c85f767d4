// The components of a unit while they are entered into the tables.
#pragma once

#include <cstdint>
#include <vector>

#include "host/model/records.h"
#include "lq_data/detail/chars.h"
#include "lq_data/host/model/flat_index.h"
#include "lq_data/pouh.h"

namespace lq::tool {

// The declarations of a unit by name, whatever its case. Of two of one name the first is there.
class Components {
  public:
    struct Component {
        const char16_t* name;
        const host::Declaration* source = nullptr;  // null of one that the unit has implicitly
        const DECL_TYP* decl = nullptr;             // null when the name is no identifier
        bool isEntered = false;
    };

    // Null when there is none.
    Component* Find(const char16_t* name) { return FindHashed(host::HashOfName(name), name); }

    Component& FindOrAdd(const char16_t* name) {
        const uint32_t hash = host::HashOfName(name);
        if (Component* known = FindHashed(hash, name)) {
            return *known;
        }
        components_.push_back({.name = name});
        index_.Add(static_cast<uint32_t>(components_.size()), hash);
        return components_.back();
    }

  private:
    Component* FindHashed(uint32_t hash, const char16_t* name) {
        const uint32_t found = index_.Find(hash, [&](uint32_t number) {
            return chars::EqualNoCase(components_[number - 1].name, name);
        });
        return found != 0 ? &components_[found - 1] : nullptr;
    }

    std::vector<Component> components_;
    host::FlatIndex<uint32_t> index_;  // of their numbers, from 1
};

}  // namespace lq::tool
