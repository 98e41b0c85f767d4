// Labels of bodies, and the jumps to them.

#include <unordered_map>
#include <unordered_set>

#include "host/check/checks.h"
#include "host/check/findings.h"

namespace lq::host::check {

namespace {

void CheckBody(Run& run, ID unit, const Body& body) {
    std::unordered_map<std::u16string, const Mark*> labels;
    for (const Mark& label : body.labels) {
        const auto [known, isNew] = labels.try_emplace(Upper(label.name), &label);
        if (!isNew) {
            Finding& finding = ReportAt(run, 8009, unit, SpotOf(label),
                                        Say("the label '{}' stands twice", Utf8(label.name)));
            run.Relate(finding, known->second->line, known->second->column,
                       Say("first declared here"));
        }
    }
    std::unordered_set<std::u16string> targets;
    for (const Mark& jump : body.jumps) {
        const std::u16string target = Upper(jump.name);
        if (targets.insert(target).second && !labels.contains(target)) {
            ReportAt(run, 8007, unit, SpotOf(jump),
                     Say("no label is called '{}'", Utf8(jump.name)));
        }
    }
    for (const Mark& label : body.labels) {
        const std::u16string name = Upper(label.name);
        if (!targets.contains(name) && labels[name] == &label) {
            ReportAt(run, 8008, unit, SpotOf(label),
                     Say("nothing jumps to '{}'", Utf8(label.name)));
        }
    }
}

void CheckLabels(Run& run) {
    ForEachBody(run, [&run](ID owner, const Body& body) {
        if (!body.labels.empty() || !body.jumps.empty()) {
            CheckBody(run, owner, body);
        }
    });
}

constexpr Check kRows[] = {
    {8007, "jump-without-label", Severity::kError,
     Message("What a body jumps to is a label of the same body"),
     Message("The body cannot be built"),
     "PROGRAM Main\nVAR\n  a : BOOL;\nEND_VAR\n(* IL *)\nLD a\nJMPC L2\nST a\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  a : BOOL;\nEND_VAR\n(* IL *)\nLD a\nJMPC L2\nST a\nL2: LD "
     "a\nEND_PROGRAM",
     CheckLabels},
    {8008, "label-unused", Severity::kWarning, Message("Something jumps to each label"),
     Message("The label is left over, or a jump goes elsewhere"),
     "PROGRAM Main\nVAR\n  a : BOOL;\nEND_VAR\n(* IL *)\nL1: LD a\nST a\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  a : BOOL;\nEND_VAR\n(* IL *)\nL1: LD a\nST a\nJMPC L1\nEND_PROGRAM",
     CheckLabels},
    {8009, "label-twice", Severity::kError, Message("The labels of a body have different names"),
     Message("Where a jump goes is not certain"),
     "PROGRAM Main\nVAR\n  a : BOOL;\nEND_VAR\n(* IL *)\nL1: LD a\nL1: ST a\nJMPC L1\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  a : BOOL;\nEND_VAR\n(* IL *)\nL1: LD a\nST a\nJMPC L1\nEND_PROGRAM",
     CheckLabels},
};

}  // namespace

Rows LabelRows() {
    return kRows;
}

}  // namespace lq::host::check
