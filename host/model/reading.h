// What the readers of project files have in common.
#pragma once

#include <fstream>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "host/model/report_list.h"
#include "lq_data/export.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/model/section.h"
#include "lq_data/host/text/message.h"

namespace lq::host {

// Runs `read`, which returns success; what it throws becomes a report.
template <typename Function>
bool Contained(const std::string& fileName, std::vector<Report>& reports, Function read) noexcept {
    const char* reason = Message("memory is short");
    try {
        return read();
    } catch (const std::bad_alloc&) {
    } catch (...) {
        reason = Message("the file cannot be read");
    }
    try {
        reports.push_back({fileName, 0, 0, {}, Say(reason), 0, true});
    } catch (...) {  // no memory for the report either
    }
    return false;
}

// Opens the file of the list's name; false, with a report, when it cannot be read as one.
LQ_DATA_API bool OpenSource(std::ifstream& source, ReportList& reports);

// The section that a list of variables stands for: of `scope`, with the marks that it has. What has
// no keyword is added to `faults`, a sentence each; `list` is what they call it.
LQ_DATA_API Section SectionOf(Scope scope, unsigned marks, std::string_view list,
                              std::vector<std::string>& faults);

// The implicit parameters EN and ENO of a unit. No source has a mark for them: a function or
// function block that declares both has them. One with a comment, value or address of its own is a
// declaration, so that these are kept.
class LQ_DATA_API EnoPair {
  public:
    // True when the declaration may be one of the pair, and was taken; to be asked for each of the
    // unit's.
    bool Take(Project& project, const Declaration& declaration);
    // Behind the unit's last one.
    void Close(Project& project, ID pou);

  private:
    IdList taken_;
};

}  // namespace lq::host
