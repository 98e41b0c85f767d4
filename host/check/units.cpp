// Units: what calls itself, what nobody uses, and what is not whole.

#include <algorithm>
#include <unordered_set>

#include "host/check/checks.h"
#include "host/check/left_out.h"
#include "host/check/name_uses.h"
#include "host/check/run.h"

namespace lq::host::check {

namespace {

// A block that has an instance of itself is told as such; that it calls it follows.
void CheckRecursiveCalls(Run& run) {
    const Severity severity =
        run.options.edition == Edition::kSecond ? run.SeverityOf(6001) : Severity::kWarning;
    std::unordered_set<uint32_t> told;
    for (const Graph::Cycle& cycle : run.graph.Cycles(Graph::kHolds)) {
        for (const Graph::Step& step : cycle) {
            told.insert(step.from);
        }
    }
    for (const Graph::Cycle& cycle : run.graph.Cycles(Graph::kCalls)) {
        const ID first = run.graph.ObjectOf(cycle.front().from);
        const bool isTold = std::ranges::any_of(
            cycle, [&](const Graph::Step& step) { return told.contains(step.from); });
        if (isTold || !run.IsOwn(first)) {
            continue;
        }
        std::string path;
        for (const Graph::Step& step : cycle) {
            path += Utf8(run.project.NameOf(run.graph.ObjectOf(step.from))) + " -> ";
        }
        const std::string name = Utf8(run.project.NameOf(first));
        run.Report(6001, severity, first,
                   cycle.size() == 1 ? Say("'{}' calls itself", name)
                                     : Say("'{}' calls itself: {}", name, path + name));
    }
}

// Whether the unit has no body, or only texts without a word. What is in a drawing is not known.
bool IsEmpty(const Run& run, const Pou& pou) {
    return std::ranges::all_of(pou.bodies, [&](const Body& body) {
        const BodyCode* code = run.project.CodeOf(body);
        return (body.language == Language::kSt || body.language == Language::kIl) && code &&
               code->tokens.empty() && code->pragmaWords.empty();
    });
}

bool RunsPrograms(const Run& run) {
    return run.HasResource() && !run.project.ProgramInstances().empty();
}

// What no program leads to. What a program that nobody runs leads to is used as soon as that is.
void CheckUnused(Run& run) {
    // What a program uses that stands in a file that is missing is not known, and what a method
    // does.
    if (!RunsPrograms(run) || !run.KnowsPrograms() || LeftOut(run).Any()) {
        return;
    }
    std::vector<bool> reached(run.project.Pous().size() + run.project.DataTypes().size());
    std::vector<ID> pending;
    const auto enter = [&](ID id) {
        if (!reached[run.graph.NodeOf(id)]) {
            reached[run.graph.NodeOf(id)] = true;
            pending.push_back(id);
        }
    };
    for (uint32_t node = 0; node < reached.size(); ++node) {
        if (run.graph.IsRoot(run.graph.ObjectOf(node))) {
            enter(run.graph.ObjectOf(node));
        }
    }
    while (!pending.empty()) {
        const ID id = pending.back();
        pending.pop_back();
        for (const Graph::Edge& edge : run.graph.From(id)) {
            enter(run.graph.ObjectOf(edge.to));
        }
    }
    for (const ID owner : run.Owners()) {
        if (SortOf(owner) == Sort::kPou && !run.project.IsOfLibrary(owner) &&
            !reached[run.graph.NodeOf(owner)]) {
            run.Report(6004, owner, Say("no program uses '{}'", Utf8(run.project.NameOf(owner))));
        }
    }
}

void CheckUnits(Run& run) {
    const LeftOut leftOut(run);
    for (const ID owner : run.Owners()) {
        const Pou* pou = run.project.GetPou(owner);
        if (!pou) {
            continue;
        }
        const std::string name = Utf8(pou->name);
        if (IsEmpty(run, *pou) && !leftOut.Of(owner)) {
            run.Report(6003, owner, Say("'{}' has no body", name));
        }
        if (pou->kind == LQ_KIND_FUNCTION && !*pou->resultType &&
            run.options.edition == Edition::kSecond) {
            run.Report(6006, owner, Say("the function '{}' has no type", name));
        }
        if (RunsPrograms(run) && pou->kind == LQ_KIND_PROGRAM && run.graph.RunBy(owner) == 0) {
            run.Report(7012, owner, Say("no resource runs the program '{}'", name));
        }
    }
}

constexpr Check kRows[] = {
    {6001, "recursion", Severity::kError,
     Message("No unit calls itself, not even through others; a warning with --edition 3"),
     Message("The memory that a cycle takes is to be known before it runs"),
     "FUNCTION Sum : INT\nVAR_INPUT\n  n : INT;\nEND_VAR\nSum := n + Sum(n := n - "
     "1);\nEND_FUNCTION",
     "FUNCTION Sum : INT\nVAR_INPUT\n  n : INT;\nEND_VAR\nSum := n * (n + 1) / 2;\nEND_FUNCTION",
     CheckVariableUses},
    {6003, "empty-body", Severity::kNote, Message("A unit has a body"),
     Message("It does nothing as long as it has none"),
     "<pou name='Main' pouType='program'><interface/></pou>",
     "<pou name='Main' pouType='program'><interface/>"
     "<body><ST><p xmlns='http://www.w3.org/1999/xhtml'>;</p></ST></body></pou>",
     CheckUnits},
    {6004, "unused-unit", Severity::kWarning,
     Message("In a project that runs programs, every function and function block is used by one"),
     Message("Either a call was forgotten or the unit is left over"),
     "FUNCTION_BLOCK Spare\nEND_FUNCTION_BLOCK\nPROGRAM Main\nEND_PROGRAM\n"
     "CONFIGURATION c\nRESOURCE r\nTASK t(INTERVAL := T#10ms, PRIORITY := 1);\n"
     "PROGRAM p WITH t : Main;\nEND_RESOURCE\nEND_CONFIGURATION",
     "FUNCTION_BLOCK Spare\nEND_FUNCTION_BLOCK\nPROGRAM Main\nVAR\n  s : Spare;\nEND_VAR\n"
     "END_PROGRAM\n"
     "CONFIGURATION c\nRESOURCE r\nTASK t(INTERVAL := T#10ms, PRIORITY := 1);\n"
     "PROGRAM p WITH t : Main;\nEND_RESOURCE\nEND_CONFIGURATION",
     CheckVariableUses},
    {6006, "no-return-type", Severity::kError,
     Message("A function has a type; not looked for with --edition 3"),
     Message("Its result can be used nowhere"),
     "<pou name='Half' pouType='function'><interface/>"
     "<body><ST><p xmlns='http://www.w3.org/1999/xhtml'>;</p></ST></body></pou>",
     "<pou name='Half' pouType='function'><interface><returnType><INT/></returnType></interface>"
     "<body><ST><p xmlns='http://www.w3.org/1999/xhtml'>;</p></ST></body></pou>",
     CheckUnits},
    {7012, "program-never-run", Severity::kWarning,
     Message("In a project that runs programs, each program has an instance"),
     Message("What it does never happens"),
     "PROGRAM Main\nEND_PROGRAM\nPROGRAM Other\nEND_PROGRAM\n"
     "CONFIGURATION c\nRESOURCE r\nTASK t(INTERVAL := T#10ms, PRIORITY := 1);\n"
     "PROGRAM p WITH t : Main;\nEND_RESOURCE\nEND_CONFIGURATION",
     "PROGRAM Main\nEND_PROGRAM\nPROGRAM Other\nEND_PROGRAM\n"
     "CONFIGURATION c\nRESOURCE r\nTASK t(INTERVAL := T#10ms, PRIORITY := 1);\n"
     "PROGRAM p WITH t : Main;\nPROGRAM q WITH t : Other;\nEND_RESOURCE\nEND_CONFIGURATION",
     CheckUnits},
};

}  // namespace

void CheckCalls(Run& run) {
    CheckRecursiveCalls(run);
    CheckUnused(run);
}

Rows UnitRows() {
    return kRows;
}

}  // namespace lq::host::check
