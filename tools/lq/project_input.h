// Projects and table sets as inputs of commands.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lq_data/cgtab.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/plcopen/plcopen.h"
#include "tools/lq/input.h"
#include "tools/lq/translation.h"

namespace lq::tool {

// Reads a PLCopen project, piece by piece, into `project`, which becomes the current one. What the
// reader has to say is added to `reports`. Throws CommandError when the document was not read to
// its end.
void ReadProject(const std::string& path, host::Project& project,
                 std::vector<host::Report>& reports);
// The same for a document that was opened or read already; `path` names it.
void ReadProject(InputBuffer& bytes, const std::string& path, host::Project& project,
                 std::vector<host::Report>& reports);
void ReadProject(const std::string& path, std::string_view bytes, host::Project& project,
                 std::vector<host::Report>& reports);

// The same for commands that only look at the project: the reports go to standard error, and the
// result is the exit status so far.
int ReadAndReport(const std::string& path, host::Project& project);

// The same for a project in several files, and libraries, whose reports are left out unless
// `checkLibraries`. Throws CommandError for a file that is given twice and an image.
int ReadAndReport(const std::vector<std::string>& projects,
                  const std::vector<std::string>& libraries, bool checkLibraries,
                  host::Project& project);

// "no unit is called 'Mixin'; did you mean 'Mixing'?"
std::string NoSuchUnit(const host::Project& project, const std::string& name, bool withTypes);

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

struct TableInput {
    std::unique_ptr<CgTab> tables;
    bool isProject = false;
    std::vector<Refusal> refusals;
    int status = 0;  // an ExitStatus
    std::vector<host::Report> reports;
};

// The input's tables: an image's, or those that a project translates to. What is wrong with the
// project goes to standard error. Throws CommandError.
TableInput ReadTables(const std::string& path);
// The same; a project is read into `project` and becomes the current one.
TableInput ReadTables(const std::string& path, host::Project& project);

}  // namespace lq::tool
