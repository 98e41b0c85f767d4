// What the report's page shows, as the two JSON documents that its script reads.
#pragma once

#include <string>

#include "lq_data/host/check/check.h"
#include "lq_data/host/model/project.h"
#include "tools/lq/project_input.h"
#include "tools/report/report_page.h"

namespace lq::tool {

// The tables, their links and what is needed to draw their files. `path` names the input, `project`
// is what was read from it, if it is a project. What is damaged becomes a message and changes the
// status.
void WriteReportTables(const std::string& path, TableInput& input, const host::Project& project,
                       ReportPage& page);

// What the engineer wrote: units, types, lists, tasks and symbols of the project, and what was said
// of it, by the checks too. Of an image there are only its tables, and no findings.
void WriteReportProject(const ProjectFiles& files, const TableInput& input,
                        const host::Findings* findings, const host::Project& project,
                        ReportPage& page);

}  // namespace lq::tool
