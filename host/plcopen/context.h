// What the parts of the reader share: the project that is filled, and the reports on the file.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/plcopen/report_codes.h"
#include "host/plcopen/xml_element.h"
#include "lq_data/host/model/flat_index.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/plcopen/plcopen.h"
#include "lq_data/scanner.h"

namespace lq::host::plcopen {

class Context {
  public:
    Context(Project& target, std::string fileName, std::vector<Report>& reports)
        : project(target), fileName_(std::move(fileName)), reports_(reports) {}

    void BeginFile() { project.BeginFile({Intern(fileName_)}); }

    Text Intern(std::string_view utf8);
    Text InternType(std::string_view utf8);  // the last one again is not searched
    Text Store(std::string_view utf8);
    Text Documentation(const Element& element);  // of its child of that name

    // Reports of one message are grouped; of different ones the first thousand are kept.
    // The code says which check it is.
    void Warn(const Element& where, uint16_t code, std::string message);
    void Fail(uint32_t line, uint32_t column, std::string message);

    // The scanner of all bodies, without keywords; bound to no stream. Throws std::bad_alloc.
    Scanner& CodeScanner();

    Project& project;

  private:
    std::string fileName_;
    std::vector<Report>& reports_;
    std::unordered_map<std::string, std::size_t, BytesHash> byMessage_;  // indexes of reports_
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
