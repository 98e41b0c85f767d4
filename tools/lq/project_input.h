// Projects as inputs of commands.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lq_data/host/model/project.h"
#include "lq_data/host/plcopen/plcopen.h"

namespace lq::tool {

// Reads a PLCopen project, piece by piece, into `project`, which becomes the current one. What the
// reader has to say is added to `reports`. Throws CommandError when the document was not read to
// its end.
void ReadProject(const std::string& path, host::Project& project,
                 std::vector<host::Report>& reports);
// The same for a document that was read already; `path` names it.
void ReadProject(const std::string& path, std::string_view bytes, host::Project& project,
                 std::vector<host::Report>& reports);

// The same for commands that only look at the project: the reports go to standard error, and the
// result is the exit status so far.
int ReadAndReport(const std::string& path, host::Project& project);

// The program that an instance runs: its name as the unit spells it, or as the instance does when
// the project has no such unit.
std::string ProgramName(const host::Project& project, const host::ProgramInstance& instance);

// Sets the current project aside when it goes.
class CurrentProject {
  public:
    CurrentProject() = default;
    ~CurrentProject() { host::SetProject(nullptr); }
    CurrentProject(const CurrentProject&) = delete;
    CurrentProject& operator=(const CurrentProject&) = delete;

    host::Project project;
};

}  // namespace lq::tool
