// Names: what they may be, which are taken, and what they hide.

#include <set>
#include <unordered_map>

#include "host/check/checks.h"
#include "host/check/findings.h"
#include "lq_data/env/lq_model.h"
#include "lq_data/host/words/words.h"

namespace lq::host {

std::string WhyNoName(std::u16string_view name) {
    if (std::ranges::binary_search(Keywords(), std::u16string_view(check::Upper(name)))) {
        return Say("'{}' is a word of the language and cannot be a name", check::Utf8(name));
    }
    if (!check::IsName(name)) {
        return chars::IsDigit(name.front())
                   ? Say("the name '{}' begins with a digit", check::Utf8(name))
                   : Say("the name '{}' has a character that is no letter, digit or underscore",
                         check::Utf8(name));
    }
    return name.back() == u'_'
               ? Say("the name '{}' ends with an underscore", check::Utf8(name))
               : Say("the name '{}' has two underscores in a row", check::Utf8(name));
}

}  // namespace lq::host

namespace lq::host::check {

namespace {

// -- What is no name ------------------------------------------------------------------------------

// EN and ENO are parameters of the third edition, though words of the language.
bool IsEnable(const Declaration& declaration) {
    const Scope scope = declaration.section.scope;
    return chars::EqualNoCase(declaration.type, u"BOOL") &&
           ((scope == Scope::kInput && chars::EqualNoCase(declaration.name, u"EN")) ||
            (scope == Scope::kOutput && chars::EqualNoCase(declaration.name, u"ENO")));
}

void CheckName(Run& run, ID object, u16string_view name) {
    if (name.empty()) {
        return;
    }
    if (!IsIdentifier(name.data()) && CheckIdentifier(nullptr, name.data(), 1) != 0) {
        run.Report(1001, object, WhyNoName(name));
    }
    if (name.size() > run.options.longestName) {
        run.Report(1014, object, Say("the name '{}' has {} characters", Utf8(name), name.size()));
    }
}

void CheckIdentifiers(Run& run) {
    const Project& project = run.project;
    for (const ID owner : run.Owners()) {
        if (SortOf(owner) != Sort::kVariableList) {  // whose names are those of editors
            const Pou* function = project.GetPou(owner);
            const bool isStandard = function && function->kind == LQ_KIND_FUNCTION &&
                                    IsStandardFunction(function->name);  // MOD, NOT
            if (!isStandard) {
                CheckName(run, owner, project.NameOf(owner));
            }
        }
        for (const ID id : project.Below(owner)) {
            const Declaration& declaration = *project.GetDeclaration(id);
            if (!IsEnable(declaration)) {
                CheckName(run, id, declaration.name);
            }
        }
    }
    ForEachBody(run, [&run](ID owner, const Body& body) {
        for (const Mark& label : body.labels) {
            if (!IsIdentifier(label.name)) {
                ReportAt(run, 1001, owner, SpotOf(label), WhyNoName(label.name));
            }
        }
    });
    const auto checkAll = [&](Sort sort, const auto& records) {
        for (uint32_t i = 0; i < records.size(); ++i) {
            if (run.IsOwn(MakeId(sort, i))) {
                CheckName(run, MakeId(sort, i), records[i].name);
            }
        }
    };
    checkAll(Sort::kTask, project.Tasks());
    checkAll(Sort::kProgramInstance, project.ProgramInstances());
}

// -- Names that are taken -------------------------------------------------------------------------

// A library may write the functions of the standard once for each type.
bool IsOverload(const Project& project, ID one, ID other) {
    const auto isFunction = [&](ID id) {
        const Pou* pou = project.GetPou(id);
        return pou && pou->kind == LQ_KIND_FUNCTION;
    };
    return isFunction(one) && isFunction(other) && IsStandardFunction(project.NameOf(one));
}

void CheckUnitNames(Run& run) {
    const Project& project = run.project;
    for (const ID owner : run.Owners()) {
        if (SortOf(owner) == Sort::kVariableList) {
            continue;
        }
        const Text name = project.NameOf(owner);
        const bool isUnit = SortOf(owner) == Sort::kPou;
        const ID first = isUnit ? project.FindPou(name) : project.FindDataType(name);
        const ID other = isUnit ? project.FindDataType(name) : ID();
        if (first != owner && first != ID() && !IsOverload(project, owner, first)) {
            ReportTwice(run, 1004, owner, first,
                        isUnit ? Say("the project has two units '{}'", Utf8(name))
                               : Say("the project has two data types '{}'", Utf8(name)));
        } else if (other != ID() && run.IsOwn(other)) {
            ReportTwice(run, 1004, owner, other,
                        Say("'{}' is the name of a unit and of a data type", Utf8(name)));
        }
    }
}

void CheckTwiceBelow(Run& run) {
    for (const ID owner : run.Owners()) {
        if (SortOf(owner) == Sort::kVariableList) {
            continue;
        }
        NameTable names(run.project);
        for (const ID id : run.project.Below(owner)) {
            const ID earlier = names.Add(id);
            if (earlier == ID()) {
                continue;
            }
            const std::string name = Utf8(run.project.NameOf(id));
            const std::string holder = Utf8(run.project.NameOf(owner));
            if (SortOf(owner) == Sort::kPou) {
                ReportTwice(run, 1003, id, earlier,
                            Say("'{}' is declared twice in '{}'", name, holder));
            } else {
                ReportTwice(run, 1005, id, earlier,
                            Say("the structure '{}' has two members '{}'", holder, name));
            }
        }
    }
}

void CheckValuesOf(Run& run, ID object, const TypeInfo& type) {
    std::set<std::u16string> met;
    for (const u16string_view value : type.values) {
        if (!met.insert(Upper(value)).second) {
            run.Report(1006, object, Say("the enumeration has two values '{}'", Utf8(value)));
            return;
        }
    }
}

void CheckEnumerators(Run& run) {
    for (const ID owner : run.Owners()) {
        for (const ID id : run.project.Below(owner)) {
            CheckValuesOf(run, id, run.types.Of(run.project.GetDeclaration(id)->type));
        }
        if (const DataType* type = run.project.GetDataType(owner)) {
            CheckValuesOf(run, owner, run.types.Of(type->baseType));
        }
    }
}

// Of two globals of one name the inner one is found first, and the outer one is not seen there.
void CheckGlobals(Run& run) {
    const Project& project = run.project;
    std::unordered_map<std::u16string, IdList> others;  // of globals that are not found first
    for (const ID owner : run.Owners()) {
        const VariableList* list = project.GetVariableList(owner);
        for (const ID id : list ? list->declarations : IdList()) {
            const Text name = project.NameOf(id);
            const ID first = project.FindGlobal(name);
            if (first == id || !run.IsOwn(first)) {
                continue;
            }
            IdList& known = others.try_emplace(Upper(name), IdList{first}).first->second;
            for (const ID earlier : known) {
                const ID parent =
                    project.GetVariableList(project.GetDeclaration(earlier)->owner)->parent;
                const bool isNested =
                    run.HolderOf(parent) == list->parent || run.HolderOf(list->parent) == parent;
                if (parent == list->parent) {
                    ReportTwice(run, 1011, id, earlier,
                                Say("the global '{}' is declared twice", Utf8(name)));
                    break;
                }
                if (isNested) {
                    Finding& finding = run.Report(
                        1011, std::min(run.SeverityOf(1011), Severity::kWarning), id,
                        Say("the global '{}' of the resource hides that of the configuration",
                            Utf8(name)));
                    run.Relate(finding, earlier, Say("first declared here"));
                    break;
                }
            }
            if (known.size() < 64) {  // one a resource is enough
                known.push_back(id);
            }
        }
    }
}

// -- What a name hides ----------------------------------------------------------------------------

// A global that the unit sees by its name; null for none.
ID GlobalSeenBy(Run& run, ID unit, Text name) {
    const ID global = run.globals.Find(unit, name).id;
    if (global == ID() || run.project.IsOfLibrary(global)) {
        return {};
    }
    const VariableList& list =
        *run.project.GetVariableList(run.project.GetDeclaration(global)->owner);
    const ID parent = list.parent;
    const uint64_t runBy = run.graph.RunBy(unit);
    const bool isSeen = SortOf(parent) == Sort::kPou ? parent == unit
                        : run.project.Resources().size() < 2
                            ? true
                            : (run.graph.SeenBy(parent) & runBy) != 0;
    return isSeen && !list.qualified ? global : ID();
}

void CheckVariable(Run& run, ID unit, ID id) {
    const Project& project = run.project;
    const Declaration& variable = *project.GetDeclaration(id);
    const std::string name = Utf8(variable.name);
    if (variable.section.scope != Scope::kExternal) {
        const ID global = GlobalSeenBy(run, unit, variable.name);
        if (global != ID()) {
            // In a list of its own file it may be known by the name of the list only.
            const ID list = project.GetDeclaration(global)->owner;
            const bool isFree = project.GetVariableList(list)->parent == ID();
            Finding& finding = run.Report(
                1007,
                isFree ? std::min(run.SeverityOf(1007), Severity::kNote) : run.SeverityOf(1007), id,
                Say("'{}' hides the global of that name", name));
            run.Relate(finding, global, Say("the global"));
        }
    }
    const ID other = project.FindPou(variable.name);
    const ID type = other != ID() ? other : project.FindDataType(variable.name);
    if (type != ID() && type != unit && !run.project.IsOfLibrary(type)) {
        Finding& finding =
            run.Report(1008, id,
                       SortOf(type) == Sort::kPou
                           ? Say("the variable '{}' has the name of a unit", name)
                           : Say("the variable '{}' has the name of a data type", name));
        run.Relate(finding, type, Say("declared here"));
    }
}

void CheckHiding(Run& run) {
    for (const ID owner : run.Owners()) {
        const Text name = run.project.NameOf(owner);
        const bool isStandard =
            SortOf(owner) != Sort::kVariableList &&
            (run.project.FindLibraryPou(name) != ID() || IsStandardFunction(name));
        if (isStandard && run.HasResource()) {
            run.Report(1009, owner,
                       Say("'{}' takes the place of what the standard calls so", Utf8(name)));
        }
        if (SortOf(owner) == Sort::kPou) {
            for (const ID id : run.project.Below(owner)) {
                CheckVariable(run, owner, id);
            }
        }
    }
}

constexpr Check kRows[] = {
    {1001, "bad-identifier", Severity::kError,
     Message("A name has letters, digits and single underscores, begins with no digit, ends with "
             "no underscore and is no word of the language"),
     Message("No program that reads the language takes it for a name"),
     "VAR\n  Pump__1 : INT;\nEND_VAR", "VAR\n  Pump_1 : INT;\nEND_VAR", CheckIdentifiers},
    {1003, "duplicate-variable", Severity::kError,
     Message("A unit declares a name once, whatever the case and the section"),
     Message("Which of the two is meant depends on who reads the unit"),
     "VAR\n  Level : INT;\n  LEVEL : BOOL;\nEND_VAR",
     "VAR\n  Level : INT;\n  Full : BOOL;\nEND_VAR", CheckTwiceBelow},
    {1004, "duplicate-unit", Severity::kError,
     Message("Units and data types of a project have different names"),
     Message("Only one of the two is used, and edits of the other one have no effect"),
     "TYPE Valve : STRUCT\n  Open : BOOL;\nEND_STRUCT; END_TYPE\n"
     "FUNCTION_BLOCK Valve\nEND_FUNCTION_BLOCK",
     "TYPE ValveState : STRUCT\n  Open : BOOL;\nEND_STRUCT; END_TYPE\n"
     "FUNCTION_BLOCK Valve\nEND_FUNCTION_BLOCK",
     CheckUnitNames},
    {1005, "duplicate-member", Severity::kError,
     Message("The members of a structure have different names"),
     Message("One of the two can never be named"),
     "TYPE Point : STRUCT\n  x : INT;\n  X : INT;\nEND_STRUCT; END_TYPE",
     "TYPE Point : STRUCT\n  x : INT;\n  y : INT;\nEND_STRUCT; END_TYPE", CheckTwiceBelow},
    {1006, "duplicate-enumerator", Severity::kError,
     Message("The values of an enumeration have different names"),
     Message("The name would stand for two values"), "TYPE Color : (Red, Green, RED); END_TYPE",
     "TYPE Color : (Red, Green, Blue); END_TYPE", CheckEnumerators},
    {1007, "hides-global", Severity::kWarning,
     Message("A variable of a unit has no name of a global that the unit could see"),
     Message("What is written to the variable never reaches the global"),
     "PROGRAM Main\nVAR\n  Mode : INT;\nEND_VAR\nEND_PROGRAM\n"
     "CONFIGURATION c\nVAR_GLOBAL\n  Mode : INT;\nEND_VAR\n"
     "RESOURCE r\nTASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;\n"
     "END_RESOURCE\nEND_CONFIGURATION",
     "PROGRAM Main\nVAR_EXTERNAL\n  Mode : INT;\nEND_VAR\nEND_PROGRAM\n"
     "CONFIGURATION c\nVAR_GLOBAL\n  Mode : INT;\nEND_VAR\n"
     "RESOURCE r\nTASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;\n"
     "END_RESOURCE\nEND_CONFIGURATION",
     CheckHiding},
    {1008, "name-of-type-or-unit", Severity::kWarning,
     Message("A variable has no name of a unit or data type of the project"),
     Message("Some programs that read the language then no longer find the unit or type"),
     "FUNCTION_BLOCK Pump\nEND_FUNCTION_BLOCK\n"
     "PROGRAM Main\nVAR\n  Pump : INT;\nEND_VAR\nEND_PROGRAM",
     "FUNCTION_BLOCK Pump\nEND_FUNCTION_BLOCK\n"
     "PROGRAM Main\nVAR\n  Pumps : INT;\nEND_VAR\nEND_PROGRAM",
     CheckHiding},
    {1009, "standard-redefined", Severity::kNote,
     Message("A unit or type does not take the name of a function or block of the standard"),
     Message("A reader expects the behaviour that the standard gives the name"),
     "FUNCTION_BLOCK TON\nEND_FUNCTION_BLOCK\n"
     "PROGRAM Main\nVAR\n  t : TON;\nEND_VAR\nEND_PROGRAM\n"
     "CONFIGURATION c\nRESOURCE r\nTASK t(INTERVAL := T#10ms, PRIORITY := 1);\n"
     "PROGRAM p WITH t : Main;\nEND_RESOURCE\nEND_CONFIGURATION",
     "FUNCTION_BLOCK OnDelay\nEND_FUNCTION_BLOCK\n"
     "PROGRAM Main\nVAR\n  t : OnDelay;\nEND_VAR\nEND_PROGRAM\n"
     "CONFIGURATION c\nRESOURCE r\nTASK t(INTERVAL := T#10ms, PRIORITY := 1);\n"
     "PROGRAM p WITH t : Main;\nEND_RESOURCE\nEND_CONFIGURATION",
     CheckHiding},
    {1011, "duplicate-global", Severity::kError,
     Message("The globals of a configuration, and those of a resource, have different names; that "
             "a resource's hides one of its configuration is a warning"),
     Message("Units see only one of the two"),
     "CONFIGURATION c\nVAR_GLOBAL\n  Mode : INT;\n  mode : INT;\nEND_VAR\nEND_CONFIGURATION",
     "CONFIGURATION c\nVAR_GLOBAL\n  Mode : INT;\n  NextMode : INT;\nEND_VAR\nEND_CONFIGURATION",
     CheckGlobals},
    {1014, "name-too-long", Severity::kOff,
     Message("A name has no more than 32 characters, or as many as --max-name says"),
     Message("Tables and targets may cut it, and two names become one"),
     "VAR\n  TheTemperatureOfTheSecondMixerInHall3 : REAL;\nEND_VAR",
     "VAR\n  Mixer2Temperature : REAL;\nEND_VAR", CheckIdentifiers},
};

}  // namespace

Rows NameRows() {
    return kRows;
}

}  // namespace lq::host::check
