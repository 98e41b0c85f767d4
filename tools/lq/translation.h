// A project to tables: what `lq translate` does, and what `lq show` does first with a project.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "lq_data/cgtab.h"
#include "lq_data/host/check/check.h"
#include "lq_data/host/model/project.h"

namespace lq::tool {

// Something of the project that was not entered.
struct Refusal {
    std::string list;  // the variable list or unit
    std::string name;
    std::string type;  // as written
    std::string reason;
    const host::Check* check = nullptr;  // that says the same
    std::string file;
    uint32_t line = 0;  // in the file, as the next
    uint32_t column = 0;
};

struct Translation {
    std::unique_ptr<CgTab> tables;
    std::vector<Refusal> refusals;  // in the order of the project
    uint32_t declarations = 0;      // that were to be entered
};

// The user type or function block type that a declaration names, if only as the element type of an
// array; the null identifier for none. The table of other names holds it as Project::NameOf spells
// it.
ID NamedType(const host::Project& project, const host::Declaration& declaration);

// The file that an object came from, as messages call it; empty for none.
std::string FileNameOf(const host::Project& project, ID id);

// One message a refusal.
void PrintRefusals(const std::vector<Refusal>& refusals);

// Fills a new table set from the project: its globals, with their address, constant and array
// lines; the units with their components; labels and jumps of their bodies and their temporaries,
// under names in front of which the unit's stands ("Unit.L1"); the user types and function block
// types that declarations use; one debug record a unit. The project becomes the current one.
Translation Translate(host::Project& project);

}  // namespace lq::tool
