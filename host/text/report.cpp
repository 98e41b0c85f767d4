#include "lq_data/host/text/report.h"

#include "lq_data/host/text/message.h"

namespace lq::host {

std::string ToText(const Report& report) {
    std::string place = report.file;
    if (report.line != 0) {
        place += ":" + std::to_string(report.line) + ":" + std::to_string(report.column);
    }
    std::string text = report.path.empty() ? report.message : report.path + ": " + report.message;
    if (report.more != 0) {
        text = Say("{} (and {} more)", text, report.more);
    }
    return place + ": " + (report.error ? Say("error: {}", text) : text);
}

}  // namespace lq::host
