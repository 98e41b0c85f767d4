// What is said of a type or an initial value that the tables do not take.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "lq_data/host/model/flat_index.h"
#include "lq_data/host/model/project.h"

namespace lq::tool {

struct FaultWords {
    std::string text;
    bool isOfTables = false;  // the language permits it, and only the tables do not take it
};

// An initial value: what it is, and how to write it where that is known.
FaultWords ValueFault(std::u16string_view value);

class TypeFaults {
  public:
    explicit TypeFaults(const host::Project& project) : project_(project) {}

    // What is not supported in the type, or which name in it is unknown, with what is near it.
    FaultWords Of(std::u16string_view type);

  private:
    FaultWords OfArray(std::u16string_view type);
    std::string UnknownName(const std::string& name);

    const host::Project& project_;
    std::unordered_map<std::string, std::string, host::BytesHash> unknown_;  // what is said of each
};

}  // namespace lq::tool
