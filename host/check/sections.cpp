// Sections: externals and their globals, and what a section may say of its variables.

#include <algorithm>
#include <unordered_map>

#include "host/check/checks.h"
#include "host/check/findings.h"

namespace lq::host::check {

namespace {

using Kind = TypeInfo::Kind;

// -- Externals ------------------------------------------------------------------------------------

class Externals {
  public:
    explicit Externals(Run& run) : run_(run) {}

    void Take(ID unit, ID id, const Declaration& external) {
        const ID global = GlobalOf(unit, external);
        if (global == ID()) {
            TellMissing(id, external);
            return;
        }
        const Declaration& found = *run_.project.GetDeclaration(global);
        const bool isCertain =
            run_.graph.RunBy(unit) != 0 || run_.project.Configurations().size() < 2;
        if (isCertain && Differ(run_.types.Of(found.type), run_.types.Of(external.type), 0)) {
            Finding& finding =
                run_.Report(5002, id,
                            Say("'{}' is of the type {}, and the global of the type {}",
                                Utf8(external.name), Utf8(external.type), Utf8(found.type)));
            run_.Relate(finding, global, Say("the global"));
        }
        if (found.section.constant && !external.section.constant) {
            Finding& finding = run_.Report(
                5003, id, Say("the global '{}' is constant, and this is not", Utf8(external.name)));
            run_.Relate(finding, global, Say("the global"));
        }
    }

  private:
    // Of several globals of the name one that the unit sees, if any; for a unit that nothing runs
    // one that fits, if there is one; which of those of several configurations is meant is not
    // known.
    ID GlobalOf(ID unit, const Declaration& external) {
        const bool isRun = run_.graph.RunBy(unit) != 0;
        const auto isOne = [&](ID id) {
            return isRun ? IsSeen(unit, id)
                         : !Differ(run_.types.Of(run_.project.GetDeclaration(id)->type),
                                   run_.types.Of(external.type), 0);
        };
        const ID first = run_.project.FindGlobal(external.name);
        if (first == ID() || isOne(first)) {
            return first;
        }
        if (byName_.empty()) {
            for (const VariableList& list : run_.project.VariableLists()) {
                for (const ID id : list.declarations) {
                    byName_[Upper(run_.project.NameOf(id))].push_back(id);
                }
            }
        }
        const IdList& all = byName_[Upper(external.name)];
        const auto found = std::ranges::find_if(all, isOne);
        return found != all.end() ? *found : isRun ? ID() : first;
    }

    bool IsSeen(ID unit, ID global) const {
        const ID list = run_.project.GetDeclaration(global)->owner;
        return (run_.graph.SeenBy(run_.project.GetVariableList(list)->parent) &
                run_.graph.RunBy(unit)) != 0;
    }

    void TellMissing(ID id, const Declaration& external) {
        if (!run_.Wants(5001)) {
            return;
        }
        if (!missing_.IsTold({}, Upper(external.name))) {
            missing_.Tell(run_.Report(5001, run_.ClosedSeverity(), id,
                                      Say("no global is called '{}'", Utf8(external.name))));
        }
    }

    // Whether the types are certainly two.
    bool Differ(const TypeInfo& one, const TypeInfo& other, unsigned depth) {
        const TypeInfo& a = run_.types.Resolve(one);
        const TypeInfo& b = run_.types.Resolve(other);
        const auto isOpen = [](const TypeInfo& type) {
            return type.kind == Kind::kUnknown || type.kind == Kind::kUnchecked ||
                   type.kind == Kind::kGeneric;
        };
        if (&a == &b || isOpen(a) || isOpen(b) || depth > 64) {
            return false;
        }
        if (a.kind != b.kind) {
            return true;
        }
        switch (a.kind) {
            case Kind::kElementary:
                return a.elementary != b.elementary;
            case Kind::kString:
                return a.isWide != b.isWide || DifferNumbers(a.length, b.length);
            case Kind::kStructure:
            case Kind::kBlock:
            case Kind::kUnit:
                return a.object != b.object;
            case Kind::kEnumeration:
                return !std::ranges::equal(a.values, b.values, EqualNames);
            case Kind::kArray:
                return DifferLimits(a, b) ||
                       (a.base && b.base && Differ(*a.base, *b.base, depth + 1));
            case Kind::kSubrange:
                return DifferLimits(a, b) || Differ(*a.base, *b.base, depth + 1);
            default:
                return false;
        }
    }

    static bool DifferLimits(const TypeInfo& a, const TypeInfo& b) {
        if (a.limits.size() != b.limits.size()) {
            return true;
        }
        for (std::size_t i = 0; i < a.limits.size(); ++i) {
            if (DifferNumbers(a.limits[i].lower, b.limits[i].lower) ||
                DifferNumbers(a.limits[i].upper, b.limits[i].upper)) {
                return true;
            }
        }
        return false;
    }

    // Names may stand for the same number.
    static bool DifferNumbers(u16string_view a, u16string_view b) {
        int64_t first = 0;
        int64_t second = 0;
        return Types::ReadNumber(a, first) && Types::ReadNumber(b, second) && first != second;
    }

    Run& run_;
    std::unordered_map<std::u16string, IdList> byName_;  // in capitals
    Causes missing_;
};

void CheckExternals(Run& run) {
    Externals externals(run);
    for (const ID owner : run.Owners()) {
        if (SortOf(owner) != Sort::kPou) {
            continue;
        }
        for (const ID id : run.project.Below(owner)) {
            const Declaration& variable = *run.project.GetDeclaration(id);
            if (variable.section.scope == Scope::kExternal) {
                externals.Take(owner, id, variable);
            }
        }
    }
}

// -- Sections -------------------------------------------------------------------------------------

void CheckVariable(Run& run, const Pou* pou, ID id, const Declaration& variable) {
    const Scope scope = variable.section.scope;
    const bool isRetained = (variable.section.marks & kMarkRetain) != 0;
    const bool isConstant = (variable.section.marks & kMarkConstant) != 0;
    const bool isReference = scope == Scope::kExternal || scope == Scope::kInOut;
    const std::string name = Utf8(variable.name);
    const bool isFunction = pou && pou->kind == LQ_KIND_FUNCTION;
    if (isRetained && (isReference || isFunction)) {
        run.Report(5006, id,
                   isFunction ? Say("'{}' is to be retained, but a function keeps nothing", name)
                              : Say("'{}' is to be retained, but is declared elsewhere", name));
    } else if (isRetained && isConstant) {
        run.Report(5006, Severity::kNote, id, Say("the constant '{}' need not be retained", name));
    }
    if (pou && pou->kind != LQ_KIND_PROGRAM && scope == Scope::kExternal) {
        run.Report(5009, id,
                   Say("'{}' uses the global '{}' past its parameters", Utf8(pou->name), name));
    }
}

void CheckSections(Run& run) {
    for (const ID owner : run.Owners()) {
        const Pou* pou = run.project.GetPou(owner);
        for (const ID id : run.project.Below(owner)) {
            CheckVariable(run, pou, id, *run.project.GetDeclaration(id));
        }
        const VariableList* list = run.project.GetVariableList(owner);
        const Pou* holder = list ? run.project.GetPou(list->parent) : nullptr;
        if (holder && holder->kind != LQ_KIND_PROGRAM) {
            Finding& finding = run.Report(
                5007, owner,
                Say("'{}' is no program and cannot declare globals", Utf8(holder->name)));
            finding.more = list->declarations.empty()
                               ? 0
                               : static_cast<uint32_t>(list->declarations.size() - 1);
        }
    }
}

constexpr Check kRows[] = {
    {5001, "external-without-global", Severity::kWarning,
     Message("What VAR_EXTERNAL names is a global of the configuration, or of a resource that runs "
             "the unit; an error with --closed"),
     Message("The global is misspelt, or the file that has it is missing"),
     "VAR_EXTERNAL\n  Mode : INT;\nEND_VAR",
     "PROGRAM Main\nVAR_EXTERNAL\n  Mode : INT;\nEND_VAR\nEND_PROGRAM\n"
     "CONFIGURATION c\nVAR_GLOBAL\n  Mode : INT;\nEND_VAR\nEND_CONFIGURATION",
     CheckExternals},
    {5002, "external-type", Severity::kError,
     Message("What VAR_EXTERNAL names has the type of its global"),
     Message("The unit reads the bits of one type as those of another"),
     "PROGRAM Main\nVAR_EXTERNAL\n  Mode : BOOL;\nEND_VAR\nEND_PROGRAM\n"
     "CONFIGURATION c\nVAR_GLOBAL\n  Mode : INT;\nEND_VAR\nEND_CONFIGURATION",
     "PROGRAM Main\nVAR_EXTERNAL\n  Mode : INT;\nEND_VAR\nEND_PROGRAM\n"
     "CONFIGURATION c\nVAR_GLOBAL\n  Mode : INT;\nEND_VAR\nEND_CONFIGURATION",
     CheckExternals},
    {5003, "external-constant", Severity::kError,
     Message("What VAR_EXTERNAL names of a constant global is constant, too"),
     Message("The unit could write to a constant"),
     "PROGRAM Main\nVAR_EXTERNAL\n  Limit : INT;\nEND_VAR\nEND_PROGRAM\n"
     "CONFIGURATION c\nVAR_GLOBAL CONSTANT\n  Limit : INT := 9;\nEND_VAR\nEND_CONFIGURATION",
     "PROGRAM Main\nVAR_EXTERNAL CONSTANT\n  Limit : INT;\nEND_VAR\nEND_PROGRAM\n"
     "CONFIGURATION c\nVAR_GLOBAL CONSTANT\n  Limit : INT := 9;\nEND_VAR\nEND_CONFIGURATION",
     CheckExternals},
    {5006, "section-attribute", Severity::kError,
     Message(
         "RETAIN is said of variables that keep a value where they are declared; that a constant "
         "is retained is a note"),
     Message("There is nothing to retain"),
     "PROGRAM Main\nVAR_EXTERNAL RETAIN\n  Mode : INT;\nEND_VAR\nEND_PROGRAM\n"
     "CONFIGURATION c\nVAR_GLOBAL\n  Mode : INT;\nEND_VAR\nEND_CONFIGURATION",
     "VAR RETAIN\n  Mode : INT;\nEND_VAR", CheckSections},
    {5007, "global-in-unit", Severity::kWarning,
     Message("Function blocks and functions declare no globals"),
     Message("The language has them in programs, resources and configurations only"),
     "FUNCTION_BLOCK Lamp\nVAR_GLOBAL\n  Mode : INT;\nEND_VAR\nEND_FUNCTION_BLOCK",
     "FUNCTION_BLOCK Lamp\nVAR\n  Mode : INT;\nEND_VAR\nEND_FUNCTION_BLOCK", CheckSections},
    {5009, "external-in-block", Severity::kOff,
     Message("Function blocks and functions reach globals through their parameters"),
     Message(
         "A unit that names globals cannot be used elsewhere, and its calls do not show what it "
         "changes"),
     "FUNCTION_BLOCK Lamp\nVAR_EXTERNAL\n  Mode : INT;\nEND_VAR\nEND_FUNCTION_BLOCK\n"
     "CONFIGURATION c\nVAR_GLOBAL\n  Mode : INT;\nEND_VAR\nEND_CONFIGURATION",
     "FUNCTION_BLOCK Lamp\nVAR_INPUT\n  Speed : INT;\nEND_VAR\nEND_FUNCTION_BLOCK\n"
     "CONFIGURATION c\nVAR_GLOBAL\n  Mode : INT;\nEND_VAR\nEND_CONFIGURATION",
     CheckSections},
};

}  // namespace

Rows SectionRows() {
    return kRows;
}

}  // namespace lq::host::check
