// An arbitrary document is read, or refused with a report.
#include <sstream>

#include "fuzz/targets.h"
#include "host/model/project.h"
#include "host/plcopen/plcopen.h"

namespace lq::fuzz {

void Plcopen(const uint8_t* data, size_t size) {
    std::istringstream document(std::string(reinterpret_cast<const char*>(data), size));
    host::Project project;
    std::vector<host::Report> reports;
    const bool whole = host::ReadPlcopen(document, "input", project, reports);
    Require(whole || (!reports.empty() && reports.back().error), "a refusal has a reason");
}

}  // namespace lq::fuzz
