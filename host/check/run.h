// What the checks share: the project with what is known of it, and where findings go.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/check/graph.h"
#include "host/check/type_info.h"
#include "lq_data/host/check/check.h"
#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"

namespace lq::host::check {

inline std::string Utf8(u16string_view text) {
    return EncodeUtf8(text);
}

class Run {
  public:
    Run(const Project& project, const CheckOptions& options);

    // Whether the code is looked for.
    bool Wants(uint16_t code) const { return SeverityOf(code) != Severity::kOff; }
    Severity SeverityOf(uint16_t code) const;

    // A finding at the object; when the code is not looked for, one that goes nowhere. What the
    // check says of the severity yields to what the options say.
    Finding& Report(uint16_t code, ID object, std::string message);
    // The same for a finding that is less, or more, than the check's severity.
    Finding& Report(uint16_t code, Severity severity, ID object, std::string message);
    void Relate(Finding& finding, ID object, std::string message) const;

    // Whether what the object says is checked: it is the project's own.
    bool IsOwn(ID object) const;
    // What owns declarations and is checked: POUs, structures, lists of global variables.
    const IdList& Owners() const { return owners_; }
    // Whether the files have a resource: without one they are a library.
    bool HasResource() const { return hasResource_; }

    // Where names may come from files that are not there.
    Severity OpenSeverity() const {
        return isOpen_ && !options.closed ? Severity::kWarning : Severity::kError;
    }
    Severity ClosedSeverity() const {
        return options.closed ? Severity::kError : Severity::kWarning;
    }

    // What the object is directly in; null for what is in nothing.
    ID HolderOf(ID object) const;
    // The unit, the type, or "Configuration.Resource".
    std::string PathOf(ID object) const;

    // All findings, as they are handed out.
    CheckCounts Deliver(const TakeFinding& take);

    const Project& project;
    const CheckOptions& options;
    Types types;
    Graph graph;

  private:
    struct Entry {
        Finding finding;
        std::size_t file = 0;  // its place among the files
    };

    void FindOwners();
    std::size_t RankOf(const std::string& file);
    void TakeReports();

    std::vector<const Check*> byCode_;
    std::deque<Entry> entries_;
    Finding nowhere_;
    IdList owners_;
    bool hasResource_ = false;
    bool isOpen_ = false;
    std::unordered_map<std::string, std::size_t> files_;
};

}  // namespace lq::host::check
