// Bodies of units, and findings in them; findings of causes that repeat.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "host/check/run.h"

namespace lq::host::check {

// A name in a body.
struct Spot {
    Text name = u"";
    uint32_t line = 0;
    uint32_t column = 0;
};

// What has a place and a text of its own: a token, a use, a label.
inline Spot SpotOf(const BodyToken& token) {
    return {token.text, token.line, token.column};
}
template <typename Named>
Spot SpotOf(const Named& named) {
    return {named.name, named.line, named.column};
}

// A finding there: its unit is the one whose body it is, its name that of the spot.
inline Finding& ReportAt(Run& run, uint16_t code, Severity severity, ID unit, const Spot& spot,
                         std::string message) {
    Finding& finding = run.Report(code, severity, unit, std::move(message));
    finding.SetName(Utf8(run.project.NameOf(unit)), Utf8(spot.name));
    finding.line = spot.line;
    finding.column = spot.column;
    return finding;
}
inline Finding& ReportAt(Run& run, uint16_t code, ID unit, const Spot& spot, std::string message) {
    return ReportAt(run, code, run.SeverityOf(code), unit, spot, std::move(message));
}

// A second object of a name.
inline Finding& ReportTwice(Run& run, uint16_t code, ID object, ID earlier, std::string message) {
    Finding& finding = run.Report(code, object, std::move(message));
    run.Relate(finding, earlier, Say("first declared here"));
    return finding;
}

// One finding a cause, which counts the further places: by the unit, or null, and a name.
class Causes {
  public:
    // Whether the cause has a finding, which counts this place then.
    bool IsTold(ID unit, std::u16string name) {
        last_ = &told_[{unit.GetNumber(), std::move(name)}];
        if (*last_) {
            ++(*last_)->more;
        }
        return *last_ != nullptr;
    }
    // The finding of the cause that was asked for last.
    void Tell(Finding& finding) { *last_ = &finding; }

  private:
    std::map<std::pair<uint32_t, std::u16string>, Finding*> told_;
    Finding** last_ = nullptr;
};

// Hands over each body of the units that are checked, and its unit.
template <typename Look>
void ForEachBody(const Run& run, Look look) {
    for (const ID owner : run.Owners()) {
        if (const Pou* pou = run.project.GetPou(owner)) {
            for (const Body& body : pou->bodies) {
                look(owner, body);
            }
        }
    }
}

// The same for those whose code is kept.
template <typename Look>
void ForEachCode(const Run& run, Look look) {
    ForEachBody(run, [&](ID owner, const Body& body) {
        if (const BodyCode* code = run.project.CodeOf(body)) {
            look(owner, *code);
        }
    });
}

}  // namespace lq::host::check
