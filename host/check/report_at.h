// Findings in the bodies of units.
#pragma once

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

}  // namespace lq::host::check
