// What was said of the project: by its reader, by the checks and by the tables.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "lq_data/host/check/check.h"
#include "tools/lq/project_input.h"
#include "tools/report/file_names.h"
#include "tools/report/report_page.h"

namespace lq::tool {

// What the checks find, as `lq check` has it: with its settings, and the reader's reports among it.
// Libraries that only the settings name are read, too; they are in no table. Null for an image.
// Throws CommandError.
std::unique_ptr<host::Findings> FindingsOf(const ProjectFiles& files, TableInput& input,
                                           host::Project& project);

// Adds the members "messages", the worst first, and "checks", the explanations of their codes.
// `rowOf` tells where the page has an object, as JSON.
void WriteMessages(const TableInput& input, const host::Findings* findings,
                   const std::function<std::string(ID)>& rowOf, FileNames& files, ReportPage& page);

}  // namespace lq::tool
