#include "lq_data/host/text/message.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/output_conflict.h"
#include "tools/lq/output_file.h"
#include "tools/lq/progress.h"
#include "tools/lq/project_input.h"
#include "tools/lq/report_data.h"
#include "tools/lq/report_page.h"
#include "tools/lq/table_input.h"

namespace lq::tool {

using host::Say;

int RunReport(const ReportOptions& options) {
    RefuseInputAsOutput(options.input, options.output);
    CurrentProject current;
    TableInput input = ReadTables(options.input, current.project);
    std::string page;
    {
        const Progress progress(Say("composing the page"));
        page = ReportPage(ReportData(options.input, input, current.project));
    }
    const Progress progress(Say("writing {}", options.output));
    OutputFile file(options.output);
    if (const int error = WriteAll(file.Descriptor(), page)) {
        CannotWrite(file.Name(), error);
    }
    file.Finish();
    return input.status;
}

}  // namespace lq::tool
