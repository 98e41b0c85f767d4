// The names of the types of variables. A line of the tables keeps of a structure, of any other data
// type and of a function block only that it is one, or an array of them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

#include "lq_data/cgtab.h"
#include "lq_data/host/model/flat_index.h"
#include "lq_data/host/model/project.h"
#include "tools/lq/table_rows.h"

namespace lq::tool {

// The declarations that rows of variables are made of.
class LineDeclarations {
  public:
    explicit LineDeclarations(const host::Project& project) : project_(project) {}

    // Null for none. Asking for one of a unit after the other is quick.
    const host::Declaration* Find(const Variable& variable);

  private:
    void Enter(std::string_view unit);

    const host::Project& project_;
    std::string unit_;
    std::unordered_map<std::string, const host::Declaration*, host::BytesHash> ofUnit_;
};

class TypeNames {
  public:
    // As the project declares them, or where `isProject` is false as the tables' other names tell:
    // where only one can be the name of a structure, it is.
    TypeNames(CgTab& tables, const host::Project& project, bool isProject);

    // Puts its name in place of a type without one (RowReader::LacksTypeName), if it is known.
    void Name(const Variable& variable, std::string& type);

    // What stays without a name, wherever it occurs.
    bool HasUntoldStructures() const { return !isProject_ && structures_ > 1; }
    bool HasUntoldBlocks() const { return !isProject_ && structures_ + blocks_ > 1; }
    // Whether Name met such a type.
    bool HasLeft() const { return hasLeft_; }

  private:
    void CountNames(CgTab& tables, const host::Project& project);

    const bool isProject_;
    LineDeclarations declarations_;
    std::size_t structures_ = 0;  // names of the image that may be those of data types
    std::size_t blocks_ = 0;      // the other ones
    std::string structure_;       // the last of the first
    std::string any_;             // the last of all
    bool hasLeft_ = false;
};

}  // namespace lq::tool
