// What the checks share: the project with what is known of it, and where findings go.
#pragma once

#include <string>
#include <vector>

#include "host/check/graph.h"
#include "host/check/store.h"
#include "host/check/type_info.h"
#include "lq_data/host/check/check.h"
#include "lq_data/host/text/message.h"

namespace lq::host::check {

class Run {
  public:
    Run(const Project& project, const CheckOptions& options, Store& store);

    // Whether the code is looked for.
    bool Wants(uint16_t code) const { return SeverityOf(code) != Severity::kOff; }
    Severity SeverityOf(uint16_t code) const;

    // A finding at the object; when the code is not looked for, one that goes nowhere. What the
    // check says of the severity yields to what the options say.
    Finding& Report(uint16_t code, ID object, std::string message);
    // The same for a finding that is less, or more, than the check's severity.
    Finding& Report(uint16_t code, Severity severity, ID object, std::string message);
    // The same for what may be said of thousands of objects, in few bytes: the message is the
    // format with the object's name as its only word.
    Finding& ReportName(uint16_t code, Severity severity, ID object, const char* format);
    Finding& ReportName(uint16_t code, ID object, const char* format) {
        return ReportName(code, SeverityOf(code), object, format);
    }
    // An object that belongs to the finding, or another place of the finding's file.
    void Relate(Finding& finding, ID object, std::string message) const;
    void Relate(Finding& finding, uint32_t line, uint32_t column, std::string message) const;

    // Whether what the object says is checked: it is the project's own.
    bool IsOwn(ID object) const;
    // What owns declarations and is checked: POUs, structures, lists of global variables.
    const IdList& Owners() const { return owners_; }
    // Whether the files have a resource: without one they are a library.
    bool HasResource() const { return hasResource_; }
    // Whether the units are there that the program instances name.
    bool KnowsPrograms() const;

    // Where names may come from files that are not there.
    Severity OpenSeverity() const {
        return isOpen_ && !options.closed ? Severity::kWarning : Severity::kError;
    }
    Severity ClosedSeverity() const {
        return options.closed ? Severity::kError : Severity::kWarning;
    }

    // What the object is directly in; null for what is in nothing.
    ID HolderOf(ID object) const { return check::HolderOf(project, object); }

    // To be called behind the checks: adds what the reader reported, puts the findings in order and
    // tells how many are suppressed.
    std::size_t Finish();

    const Project& project;
    const CheckOptions& options;
    Types types;
    uses::Globals globals;
    Graph graph;

  private:
    void FindOwners();
    void ReadTypes();
    Finding& Add(uint16_t code, Severity severity, ID object);
    void TakeReports();

    std::vector<const Check*> byCode_;
    Store& store_;
    Finding nowhere_;  // of a code that is not looked for
    IdList owners_;
    bool hasResource_ = false;
    bool isOpen_ = false;
};

}  // namespace lq::host::check
