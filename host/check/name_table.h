// Names of one scope, whatever their case.
#pragma once

#include <string_view>

#include "host/check/words.h"
#include "lq_data/host/model/project.h"

namespace lq::host::check {

class NameTable {
  public:
    explicit NameTable(const Project& project) : project_(&project) {}

    // The one that has the name already, or null when `id` is now found by it.
    ID Add(ID id) {
        ID earlier;
        const std::u16string_view name = project_->NameOf(id);
        index_.AddFirst(id.GetNumber(), HashOfName(name), [&](uint32_t number) {
            const bool isSame = IsNamed(number, name);
            earlier = isSame ? ID(number) : earlier;
            return isSame;
        });
        return earlier;
    }
    ID Find(std::u16string_view name) const {
        return ID(
            index_.Find(HashOfName(name), [&](uint32_t number) { return IsNamed(number, name); }));
    }

  private:
    bool IsNamed(uint32_t number, std::u16string_view name) const {
        return EqualNames(project_->NameOf(ID(number)), name);
    }

    const Project* project_;
    FlatIndex<uint32_t> index_;
};

}  // namespace lq::host::check
