// Where the paths of VAR_ACCESS and VAR_CONFIG lead: over resources, program instances and members.
#pragma once

#include "host/uses/names.h"

namespace lq::host::uses {

class Paths {
  public:
    explicit Paths(Names& names) : names_(names) {}

    // Hands each variable on the path, with its name, to `take`; `owner` is the configuration or
    // unit that the path is declared in. What is not found ends it.
    template <typename Take>
    void ForEach(ID owner, u16string_view path, Take take) {
        owner_ = owner;
        at_ = {};
        isFirst_ = true;
        while (!path.empty()) {
            const u16string_view name = TakeStep(path);
            if (!Go(name)) {
                return;
            }
            if (at_.object == UseObject::kVariable || at_.object == UseObject::kGlobal) {
                take(name, at_);
            }
        }
    }

  private:
    static u16string_view TakeStep(u16string_view& path);
    bool Go(u16string_view name);
    ID Below(ID parent, u16string_view name);

    Names& names_;
    FlatIndex<uint32_t> below_;  // numbers of resources and program instances, by what they are in
    bool isRead_ = false;
    ID owner_;    // what the path stands in, then the resource that it leads to
    Meaning at_;  // what it leads to
    bool isFirst_ = true;
};

}  // namespace lq::host::uses
