// What the report's page shows, as the JSON document that its script reads.
#pragma once

#include <string>

#include "lq_data/host/model/project.h"
#include "tools/lq/project_input.h"
#include "tools/report/report_page.h"

namespace lq::tool {

// `path` names the input, `project` is what was read from it, if it is a project. What is damaged
// becomes a message and changes the status.
void WriteReportData(const std::string& path, TableInput& input, const host::Project& project,
                     ReportPage& page);

}  // namespace lq::tool
