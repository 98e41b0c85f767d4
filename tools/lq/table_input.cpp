#include "tools/lq/table_input.h"

#include "lq_data/host/text/message.h"
#include "tools/lq/command.h"
#include "tools/lq/image_file.h"
#include "tools/lq/input.h"
#include "tools/lq/input_buffer.h"
#include "tools/lq/messages.h"
#include "tools/lq/progress.h"
#include "tools/lq/project_input.h"

namespace lq::tool {

using host::Say;

TableInput ReadTables(const std::string& path) {
    CurrentProject current;
    return ReadTables(path, current.project);
}

TableInput ReadTables(const std::string& path, host::Project& project) {
    const std::string bytes = ReadInput(path, kMaxProject);
    if (IsImage(bytes) || !LooksLikeXml(bytes)) {
        const Progress progress(Say("restoring {}", DisplayName(path)));
        return {RestoreImage(bytes, path), false, {}, kDone};
    }
    std::vector<host::Report> reports;
    ReadProject(path, bytes, project, reports);
    Translation translation = Translate(project);
    for (const host::Report& report : reports) {
        PrintMessage(report);
    }
    PrintRefusals(DisplayName(path), translation.refusals);
    const bool isFine = reports.empty() && translation.refusals.empty();
    return {std::move(translation.tables), true, std::move(translation.refusals),
            isFine ? kDone : kInputHasFaults};
}

}  // namespace lq::tool
