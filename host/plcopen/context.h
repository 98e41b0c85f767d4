// What the parts of the reader share: the project that is filled, and the reports on the file.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/model/report_codes.h"
#include "host/model/report_list.h"
#include "host/plcopen/xml_element.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/plcopen/plcopen.h"
#include "lq_data/scanner.h"

namespace lq::host::plcopen {

class Context {
  public:
    Context(Project& target, std::string fileName, std::vector<Report>& reports)
        : project(target), reports_(std::move(fileName), reports) {}

    void BeginFile() { project.BeginFile({Intern(reports_.FileName())}); }

    Text Intern(std::string_view utf8);
    Text InternType(std::string_view utf8);  // the last one again is not searched
    Text Store(std::string_view utf8);
    Text Documentation(const Element& element);  // of its child of that name

    // The code says which check it is; without one what was read was not kept as a whole.
    void Warn(const Element& where, ReportCode code, std::string message);
    void Warn(const Element& where, std::string message) {
        Warn(where, kNotKept, std::move(message));
    }
    void Fail(uint32_t line, uint32_t column, std::string message) {
        reports_.Fail(line, column, std::move(message));
    }

    // The scanner of all bodies, without keywords; bound to no stream. Throws std::bad_alloc.
    Scanner& CodeScanner();

    Project& project;

  private:
    ReportList reports_;
    std::u16string buffer_;
    std::string lastType_;
    Text lastTypeText_ = u"";
    std::unique_ptr<CObject> scanner_;
};

// The attribute's value; a missing or blank one is reported as what the element lacks.
std::string_view Required(Context& context, const Element& element, std::string_view attribute);

// The name of what holds others. Each report on one of them tells it, so that a long name would
// make long reports of a short document: such a name is reported, and the answer is empty.
std::string_view HolderName(Context& context, const Element& holder, std::string_view name);

}  // namespace lq::host::plcopen
