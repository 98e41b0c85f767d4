// Projects and table sets as inputs of commands.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lq_data/cgtab.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/plcopen/plcopen.h"
#include "tools/lq/commands.h"
#include "tools/lq/messages.h"
#include "tools/lq/output.h"
#include "tools/lq/translation.h"

namespace lq::tool {

// Reads one file, a document or a text, as ReadProject does.
void ReadFile(const std::string& path, const std::string& encoding, host::Project& project,
              std::vector<host::Report>& reports);

// Reads a project, file by file, into `project`, which becomes the current one. What the reader
// has to say is added to `reports`, of libraries only where that is asked for. Throws CommandError
// for a document that was not read to its end, a file that is given twice, and an image.
void ReadProject(const ProjectFiles& files, host::Project& project,
                 std::vector<host::Report>& reports);

// The same for what may be one image: its tables, or null for a project, which is read.
std::unique_ptr<CgTab> ReadImageOrProject(const ProjectFiles& files, host::Project& project,
                                          std::vector<host::Report>& reports);

// The same for commands that only look at the project: the reports go to standard error, and the
// result is the exit status so far.
int ReadAndReport(const ProjectFiles& files, host::Project& project);

// Throws when `output` leads to one of the files.
void RefuseInputAsOutput(const ProjectFiles& files, const std::string& output);

// The place of what concerns the project as a whole: its file, or of several none but the tool.
Place WholeOf(const ProjectFiles& files);

// Names the files in a document, as its members "files" and "libraries".
void NameFiles(const ProjectFiles& files, Json& document);

// "no unit is called 'Mixin'; did you mean 'Mixing'?"
[[noreturn]] void ThrowNoUnit(const ProjectFiles& files, const host::Project& project,
                              const std::string& name, bool withTypes);

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

// The input's tables: an image's, or those that a project translates to, which is read into
// `project` and becomes the current one. What is wrong with the project goes to standard error.
// Throws CommandError.
TableInput ReadTables(const ProjectFiles& files, host::Project& project);

}  // namespace lq::tool
