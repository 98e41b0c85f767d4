#include <memory>

#include "lq_data/host/text/message.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/output_file.h"
#include "tools/lq/progress.h"
#include "tools/lq/project_input.h"
#include "tools/report/report_data.h"
#include "tools/report/report_messages.h"
#include "tools/report/report_page.h"

namespace lq::tool {

using host::Say;

int RunReport(const ReportOptions& options) {
    RefuseInputAsOutput(options.files, options.output);
    CurrentProject current;
    current.project.KeepCode();  // for the checks
    TableInput input = ReadTables(options.files, current.project);
    const std::unique_ptr<host::Findings> findings =
        FindingsOf(options.files, input, current.project);
    const Progress progress(Say("writing {}", options.output));
    OutputFile file(options.output);
    ReportPage page(file);
    WriteReportTables(options.files.projects.front(), input, current.project, page);
    page.EndTables();
    WriteReportProject(options.files, input, findings.get(), current.project, page);
    page.Finish();
    file.Finish();
    return input.status;
}

}  // namespace lq::tool
