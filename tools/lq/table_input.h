// Table sets as inputs of commands.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lq_data/cgtab.h"
#include "lq_data/host/model/project.h"
#include "tools/lq/translation.h"

namespace lq::tool {

struct TableInput {
    std::unique_ptr<CgTab> tables;
    bool isProject = false;
    std::vector<Refusal> refusals;
    int status = 0;  // an ExitStatus
};

// The input's tables: an image's, or those that a project translates to. What is wrong with the
// project goes to standard error. Throws CommandError.
TableInput ReadTables(const std::string& path);
// The same; a project is read into `project` and becomes the current one.
TableInput ReadTables(const std::string& path, host::Project& project);

}  // namespace lq::tool
