// What bodies do with variables, and names in them that nothing has.

#include <algorithm>
#include <set>
#include <unordered_set>
#include <utility>
#include <vector>

#include "host/check/checks.h"
#include "host/check/left_out.h"
#include "host/check/literals.h"
#include "host/check/name_uses.h"

namespace lq::host::check {

namespace {

// How often a variable is used: in the unit that declares it, and anywhere.
struct Count {
    uint32_t own = 0;
    uint32_t reads = 0;
    uint32_t writes = 0;  // or what may be one
};

class VariableUses {
  public:
    explicit VariableUses(Run& run)
        : run_(run),
          leftOut_(run),
          names_(run, leftOut_),
          remnants_(CheckLiterals(run)),
          counts_(run.project.Declarations().size()),
          isAnyUsed_(counts_.size()),
          results_(run.project.Pous().size()),
          hasNames_(run.project.Pous().size()) {}

    void Look();

  private:
    void Take(const Use& use);
    void TakeWrite(const Use& use);
    void TakeUnknown(const Use& use);
    void TakeParameter(const Use& use);
    void CheckUnit(ID unit, const Pou& pou);
    void CheckVariable(ID id, const Declaration& declaration);
    bool IsNamed(ID id, const Declaration& declaration);
    uint16_t CodeOfUnused(const Declaration& declaration);
    bool IsNeverSet(const Declaration& declaration);
    void CheckGlobals();
    bool CallsItself(ID unit) const;
    bool IsPartOfName(const Use& use) const;
    bool HasCode(const Pou& pou) const;
    bool ReturnsValue(const Pou& pou) const;
    bool IsKnown(const Declaration& declaration);

    Run& run_;
    const LeftOut leftOut_;
    NameUses names_;
    const Places remnants_;  // of malformed literals; what is there is no name
    std::vector<Count> counts_;
    std::vector<bool> isAnyUsed_;  // of globals that are found first: one of their name, or more
    std::vector<bool> results_;    // of functions that are written to
    std::vector<bool> hasNames_;   // of units in whose bodies names stand
    Causes unknown_;
    std::set<std::pair<uint32_t, std::u16string>> calledHere_;  // unit, name
    Causes writes_;
};

void VariableUses::Look() {
    ForEachUse(run_.project, {.declarations = true, .libraries = run_.options.checkLibraries},
               [this](const Use& use) {
                   Take(use);
                   names_.Take(use);
               });
    names_.Finish();
    for (const ID owner : run_.Owners()) {
        if (const Pou* pou = run_.project.GetPou(owner)) {
            CheckUnit(owner, *pou);
        }
    }
    CheckGlobals();
}

// -- Uses -----------------------------------------------------------------------------------------

void VariableUses::Take(const Use& use) {
    const bool isWrite = use.kind == UseKind::kWrite || use.kind == UseKind::kReadWrite ||
                         use.kind == UseKind::kCall || use.kind == UseKind::kUnknown;
    const bool isRead = use.kind != UseKind::kWrite;
    if (use.body) {
        hasNames_[IndexOf(use.unit)] = true;
    }
    const auto count = [&](ID id) {
        if (const Declaration* declaration = run_.project.GetDeclaration(id)) {
            Count& counted = counts_[IndexOf(id)];
            // Paths from outside a unit are uses of its variables, too.
            counted.own += use.unit == ID() || declaration->owner == use.unit ? 1 : 0;
            counted.reads += isRead ? 1 : 0;
            counted.writes += isWrite ? 1 : 0;
        }
    };
    count(use.id);
    if (use.global != use.id) {
        count(use.global);
    }
    if (!use.globals.empty()) {
        isAnyUsed_[IndexOf(use.globals.front())] = true;
    }
    if (use.object == UseObject::kResult && isWrite) {
        results_[IndexOf(use.id)] = true;
    }
    if (!run_.IsOwn(use.unit) || use.isInPragma || use.unit == ID()) {
        return;
    }
    if (use.kind == UseKind::kWrite || use.kind == UseKind::kReadWrite) {
        TakeWrite(use);
    }
    if (use.object == UseObject::kUnknown && use.body) {
        TakeUnknown(use);
    } else if (use.object == UseObject::kParameter && use.id != ID()) {
        TakeParameter(use);
    } else if (use.object == UseObject::kAddress) {
        ReportAt(run_, 8012, use.unit, SpotOf(use),
                 Say("the body names the address {}", Utf8(use.name)));
    }
}

// One finding a variable and unit.
void VariableUses::TakeWrite(const Use& use) {
    const Declaration* own = run_.project.GetDeclaration(use.id);
    const Declaration* global = run_.project.GetDeclaration(use.global);
    const bool isHere = own && own->owner == use.unit;  // and no member or parameter of another
    // Through a pointer something else is written to.
    const bool isItself =
        !isHere || run_.types.Resolved(own->type).kind != TypeInfo::Kind::kUnchecked;
    const Text address = use.object == UseObject::kAddress ? use.name
                         : global                          ? global->address
                         : isHere                          ? own->address
                                                           : u"";
    const bool isConstant = (isHere && isItself && own->section.constant) ||
                            (global && global->section.constant) ||
                            use.object == UseObject::kEnumerator;
    const bool isSet = use.kind == UseKind::kWrite;  // and not handed to what may do so
    const bool isInput = isSet && isHere && isItself && own->section.scope == Scope::kInput &&
                         !CallsItself(use.unit);  // which may name it as a parameter
    const bool isProcessInput = isSet && Upper(u16string_view(address).substr(0, 2)) == u"%I";
    if (!isConstant && !isInput && !isProcessInput) {
        return;
    }
    if (writes_.IsTold(use.unit, Upper(use.name))) {
        return;
    }
    const std::string name = Utf8(use.name);
    Finding& finding = ReportAt(
        run_, isConstant ? 8010 : 8035, use.unit, SpotOf(use),
        isConstant ? Say("'{}' is a constant", name)
        : isInput
            ? Say("'{}' is an input and written to", name)
            : Say("'{}' is an input of the process, {}, and written to", name, Utf8(address)));
    writes_.Tell(finding);
    if (isConstant) {
        run_.Relate(finding, global ? use.global : use.id, Say("it is declared here"));
    }
}

bool VariableUses::CallsItself(ID unit) const {
    return std::ranges::any_of(run_.graph.From(unit), [&](const Graph::Edge& edge) {
        return edge.way == Graph::kCalls && edge.to == run_.graph.NodeOf(unit);
    });
}

// Whether it is part of a name that is declared and is none of the language: "Input/Output".
bool VariableUses::IsPartOfName(const Use& use) const {
    const u16string_view name(use.name);
    return std::ranges::any_of(run_.project.GetPou(use.unit)->declarations, [&](ID id) {
        const u16string_view declared(run_.project.NameOf(id));
        return declared.find(name) != declared.npos && !IsName(declared);
    });
}

// One finding a name and unit, for functions one a name.
void VariableUses::TakeUnknown(const Use& use) {
    if (use.role == PieceRole::kBlock ||
        remnants_.contains({use.unit.GetNumber(), use.line, use.column})) {
        return;  // told as blocks and literals
    }
    if (leftOut_.Of(use.unit) || leftOut_.MayDeclare()) {
        return;  // a method, what a base has, or a name for all
    }
    // What is called is missing for all units.
    const bool isCall = use.kind == UseKind::kCall;
    const std::pair<uint32_t, std::u16string> inUnit(use.unit.GetNumber(), Upper(use.name));
    if (isCall) {
        calledHere_.insert(inUnit);
    } else if (calledHere_.contains(inUnit)) {
        return;  // an output of what was told as a call
    }
    if (unknown_.IsTold(isCall ? ID() : use.unit, Upper(use.name)) || IsPartOfName(use)) {
        return;
    }
    const bool isAction = use.role == PieceRole::kAction || use.role == PieceRole::kTransition;
    const bool isText = use.body->language == Language::kSt ||
                        use.body->language == Language::kIl ||
                        (use.body->language == Language::kSfc && use.role <= PieceRole::kIl);
    const uint16_t code = isAction ? 8024 : isText ? 8006 : 8022;
    unknown_.Tell(ReportAt(
        run_, code, isAction ? run_.ClosedSeverity() : run_.OpenSeverity(), use.unit, SpotOf(use),
        isAction ? Say("no action, transition or variable is called '{}'", Utf8(use.name))
                 : Say("nothing is called '{}' here", Utf8(use.name))));
}

// EN and ENO are there for all, the result of a function by many names.
void VariableUses::TakeParameter(const Use& use) {
    const Pou& pou = *run_.project.GetPou(use.id);
    const std::u16string name = Upper(use.name);
    const bool isOutput = use.kind == UseKind::kRead;
    const bool isResult = isOutput && pou.kind == LQ_KIND_FUNCTION;
    // Drawings list all outputs that an editor's own edition of a standard block has.
    const bool isMissing = leftOut_.Of(use.id);
    const bool isListed = isOutput && pou.isStandard && use.role == PieceRole::kOutput;
    if (name != u"EN" && name != u"ENO" && !isResult && !isListed && !isMissing) {
        ReportAt(run_, 8028, use.unit, SpotOf(use),
                 Say("'{}' has no parameter '{}'", Utf8(pou.name), Utf8(use.name)));
    }
}

// -- Declarations ---------------------------------------------------------------------------------

// A unit whose bodies hold only pragmas, or that has none, is written elsewhere.
bool VariableUses::HasCode(const Pou& pou) const {
    bool has = false;
    for (const Body& body : pou.bodies) {
        const BodyCode* code = run_.project.CodeOf(body);
        has = has || (code && !code->pieces.empty());
    }
    return has;
}

// "RETURN a;" sets the result in some dialects.
bool VariableUses::ReturnsValue(const Pou& pou) const {
    for (const Body& body : pou.bodies) {
        const BodyCode* code = run_.project.CodeOf(body);
        for (std::size_t i = 0; code && i + 1 < code->tokens.size(); ++i) {
            if (EqualNames(code->tokens[i].text, u"RETURN") &&
                !code->tokens[i + 1].Is(OP_SEMICOLON)) {
                return true;
            }
        }
    }
    return false;
}

// What is of an unknown type, or of a data type of a library, may be read by what brings the type:
// a visualisation, a driver.
bool VariableUses::IsKnown(const Declaration& declaration) {
    const TypeInfo& type = run_.types.Named(declaration.type);
    return type.kind != TypeInfo::Kind::kUnknown &&
           !(run_.project.GetDataType(type.object) && run_.project.IsOfLibrary(type.object));
}

void VariableUses::CheckUnit(ID unit, const Pou& pou) {
    if (!HasCode(pou) || leftOut_.Of(unit)) {
        return;
    }
    bool hasOutput = false;
    for (const ID id : pou.declarations) {
        const Declaration& declaration = *run_.project.GetDeclaration(id);
        hasOutput = hasOutput || declaration.section.scope == Scope::kOutput;
        CheckVariable(id, declaration);
    }
    // One whose bodies name nothing is written elsewhere, too; one of an unknown type may have no
    // result, as with VOID.
    if (pou.kind == LQ_KIND_FUNCTION && hasNames_[IndexOf(unit)] && !results_[IndexOf(unit)] &&
        !hasOutput && *pou.resultType &&
        run_.types.Named(pou.resultType).kind != TypeInfo::Kind::kUnknown && !ReturnsValue(pou)) {
        run_.Report(8013, unit, Say("the result of '{}' is never set", Utf8(pou.name)));
    }
}

// Whether a body can mean it: what is no name, or is declared twice, is told as such.
bool VariableUses::IsNamed(ID id, const Declaration& declaration) {
    return IsName(declaration.name) &&
           run_.types.Members(declaration.owner).Find(declaration.name) == id;
}

// The code of the check that finds an unused one; 0 for none.
uint16_t VariableUses::CodeOfUnused(const Declaration& declaration) {
    switch (declaration.section.scope) {
        case Scope::kLocal:
        case Scope::kTemp:
            return IsKnown(declaration) ? 8001 : 0;
        case Scope::kInput:
            return run_.HasResource() && IsKnown(declaration) ? 8002 : 0;
        case Scope::kOutput:
            return run_.HasResource() && IsKnown(declaration) ? 8003 : 0;
        case Scope::kExternal:
            return 8004;
        default:
            return 0;
    }
}

bool VariableUses::IsNeverSet(const Declaration& declaration) {
    const TypeInfo& type = run_.types.Of(declaration.type);
    const TypeInfo::Kind kind = run_.types.Resolve(type).kind;
    return !*declaration.initValue && !*declaration.address && !declaration.section.constant &&
           IsKnown(declaration) && !run_.types.GivesValue(type) &&
           (kind == TypeInfo::Kind::kElementary || kind == TypeInfo::Kind::kString);
}

void VariableUses::CheckVariable(ID id, const Declaration& declaration) {
    const Count& count = counts_[IndexOf(id)];
    const Scope scope = declaration.section.scope;
    const bool isLocal = scope == Scope::kLocal || scope == Scope::kTemp;
    if (count.own == 0) {
        const uint16_t code = CodeOfUnused(declaration);
        if (code != 0 && IsNamed(id, declaration)) {
            const bool isNote = code == 8001 && *declaration.address;
            run_.ReportName(code, isNote ? Severity::kNote : run_.SeverityOf(code), id,
                            Message("'{}' is never used"));
            return;
        }
    }
    if (isLocal && count.reads > 0 && count.writes == 0 && IsNeverSet(declaration) &&
        IsNamed(id, declaration)) {
        run_.ReportName(8033, id, Message("'{}' is read and never written to"));
    }
}

// An external is a use, unless it is told to be none.
void VariableUses::CheckGlobals() {
    if (!run_.Wants(8005) || !run_.HasResource() || leftOut_.Any() || leftOut_.OfConfigurations()) {
        return;
    }
    std::vector<bool> isNamed(counts_.size());
    for (uint32_t i = 0; i < counts_.size(); ++i) {
        const Declaration& external = run_.project.Declarations()[i];
        const Pou* pou = run_.project.GetPou(external.owner);
        if (external.section.scope != Scope::kExternal || !pou ||
            (counts_[i].own == 0 && run_.IsOwn(external.owner) && HasCode(*pou))) {
            continue;
        }
        const uses::GlobalFound global = run_.globals.Find(external.owner, external.name);
        if (global.shared) {
            isAnyUsed_[IndexOf(global.shared->globals.front())] = true;
        } else if (global.id != ID()) {
            isNamed[IndexOf(global.id)] = true;
        }
    }
    for (const ID owner : run_.Owners()) {
        const VariableList* list =
            run_.project.IsOfLibrary(owner) ? nullptr : run_.project.GetVariableList(owner);
        for (const ID id : list ? list->declarations : IdList()) {
            const Declaration& declaration = *run_.project.GetDeclaration(id);
            const Count& count = counts_[IndexOf(id)];
            const bool isUsed = count.reads + count.writes > 0 || isNamed[IndexOf(id)] ||
                                isAnyUsed_[IndexOf(run_.project.FindGlobal(declaration.name))];
            if (!isUsed && !*declaration.address && IsKnown(declaration)) {
                run_.ReportName(8005, id, Message("'{}' is never used"));
            }
        }
    }
}

constexpr Check kRows[] = {
    {8001, "unused-variable", Severity::kWarning,
     Message("A variable of a unit is used in it; a note where it has an address, nothing where "
             "its type is not known"),
     Message("It is left over, or another one is used in its place"),
     "PROGRAM Main\nVAR\n  a, b : INT;\nEND_VAR\na := a + 1;\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  a, b : INT;\nEND_VAR\na := b + 1;\nb := a;\nEND_PROGRAM",
     CheckVariableUses},
    {8002, "unused-input", Severity::kNote, Message("A unit uses its inputs"),
     Message("What callers give has no effect"),
     "CONFIGURATION C\nRESOURCE R ON Plc\n  TASK T(INTERVAL := T#1s, PRIORITY := 1);\n  PROGRAM P "
     "WITH T : Main;\nEND_RESOURCE\nEND_CONFIGURATION\nPROGRAM Main\nVAR\n  p : "
     "Pump;\nEND_VAR\np();\nEND_PROGRAM\n"
     "FUNCTION_BLOCK Pump\nVAR_INPUT\n  go : BOOL;\nEND_VAR\nVAR_OUTPUT\n  done : BOOL;\n"
     "END_VAR\ndone := TRUE;\nEND_FUNCTION_BLOCK",
     "CONFIGURATION C\nRESOURCE R ON Plc\n  TASK T(INTERVAL := T#1s, PRIORITY := 1);\n  PROGRAM P "
     "WITH T : Main;\nEND_RESOURCE\nEND_CONFIGURATION\nPROGRAM Main\nVAR\n  p : "
     "Pump;\nEND_VAR\np();\nEND_PROGRAM\n"
     "FUNCTION_BLOCK Pump\nVAR_INPUT\n  go : BOOL;\nEND_VAR\nVAR_OUTPUT\n  done : BOOL;\n"
     "END_VAR\ndone := go;\nEND_FUNCTION_BLOCK",
     CheckVariableUses},
    {8003, "unused-output", Severity::kNote, Message("A unit uses its outputs"),
     Message("Callers read the first value for ever"),
     "CONFIGURATION C\nRESOURCE R ON Plc\n  TASK T(INTERVAL := T#1s, PRIORITY := 1);\n  PROGRAM P "
     "WITH T : Main;\nEND_RESOURCE\nEND_CONFIGURATION\nPROGRAM Main\nVAR\n  p : "
     "Pump;\nEND_VAR\np();\nEND_PROGRAM\n"
     "FUNCTION_BLOCK Pump\nVAR_OUTPUT\n  done, late : BOOL;\nEND_VAR\ndone := TRUE;\n"
     "END_FUNCTION_BLOCK",
     "CONFIGURATION C\nRESOURCE R ON Plc\n  TASK T(INTERVAL := T#1s, PRIORITY := 1);\n  PROGRAM P "
     "WITH T : Main;\nEND_RESOURCE\nEND_CONFIGURATION\nPROGRAM Main\nVAR\n  p : "
     "Pump;\nEND_VAR\np();\nEND_PROGRAM\n"
     "FUNCTION_BLOCK Pump\nVAR_OUTPUT\n  done, late : BOOL;\nEND_VAR\ndone := TRUE;\n"
     "late := FALSE;\nEND_FUNCTION_BLOCK",
     CheckVariableUses},
    {8004, "unused-external", Severity::kWarning, Message("A unit uses its externals"),
     Message("It is left over, or another one is used in its place"),
     "CONFIGURATION C\nVAR_GLOBAL\n  g : INT;\nEND_VAR\nEND_CONFIGURATION\n"
     "PROGRAM Main\nVAR_EXTERNAL\n  g : INT;\nEND_VAR\nVAR\n  a : INT;\nEND_VAR\na := a + "
     "1;\nEND_PROGRAM",
     "CONFIGURATION C\nVAR_GLOBAL\n  g : INT;\nEND_VAR\nEND_CONFIGURATION\n"
     "PROGRAM Main\nVAR_EXTERNAL\n  g : INT;\nEND_VAR\nVAR\n  a : INT;\nEND_VAR\na := g + 1;\ng := "
     "a;\nEND_PROGRAM",
     CheckVariableUses},
    {8005, "unused-global", Severity::kNote, Message("A unit uses each global"),
     Message("It is left over, or another one is used in its place"),
     "CONFIGURATION C\nVAR_GLOBAL\n  g : INT;\nEND_VAR\n"
     "RESOURCE R ON Plc\n  TASK T(INTERVAL := T#1s, PRIORITY := 1);\n  PROGRAM P WITH T : "
     "Main;\nEND_RESOURCE\nEND_CONFIGURATION\n"
     "PROGRAM Main\nVAR\n  a : INT;\nEND_VAR\na := a + 1;\nEND_PROGRAM",
     "CONFIGURATION C\nVAR_GLOBAL\n  g : INT;\nEND_VAR\n"
     "RESOURCE R ON Plc\n  TASK T(INTERVAL := T#1s, PRIORITY := 1);\n  PROGRAM P WITH T : "
     "Main;\nEND_RESOURCE\nEND_CONFIGURATION\n"
     "PROGRAM Main\nVAR_EXTERNAL\n  g : INT;\nEND_VAR\ng := g + 1;\nEND_PROGRAM",
     CheckVariableUses},
    {8006, "undeclared-name", Severity::kError,
     Message("A name in a body is declared, or one of the language"),
     Message("The body cannot be built"),
     "PROGRAM Main\nVAR\n  a : INT;\nEND_VAR\na := a + b;\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  a, b : INT;\nEND_VAR\na := a + b;\nb := a;\nEND_PROGRAM",
     CheckVariableUses},
    {8010, "write-to-constant", Severity::kError, Message("A body writes to no constant"),
     Message("The body cannot be built"),
     "PROGRAM Main\nVAR CONSTANT\n  k : INT := 1;\nEND_VAR\nk := 2;\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  k : INT := 1;\nEND_VAR\nk := k + 1;\nEND_PROGRAM", CheckVariableUses},
    {8012, "address-in-body", Severity::kOff, Message("A body names variables, and no addresses"),
     Message("Where an address moves, each body that names it has to change"),
     "PROGRAM Main\nVAR\n  a : BOOL;\nEND_VAR\na := %IX0.0 AND NOT a;\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  a : BOOL;\n  door AT %IX0.0 : BOOL;\nEND_VAR\na := door AND NOT "
     "a;\nEND_PROGRAM",
     CheckVariableUses},
    {8013, "result-never-set", Severity::kWarning, Message("A function sets its result"),
     Message("Callers get the first value of its type"),
     "FUNCTION F : INT\nVAR_INPUT\n  n : INT;\nEND_VAR\nVAR\n  a : INT;\nEND_VAR\na := n;\n"
     "END_FUNCTION",
     "FUNCTION F : INT\nVAR_INPUT\n  n : INT;\nEND_VAR\nF := n + 1;\nEND_FUNCTION",
     CheckVariableUses},
    {8022, "undeclared-in-drawing", Severity::kError,
     Message("A name in a drawing is declared, or one of the language"),
     Message("The body cannot be built"),
     "<pou name='Main' pouType='program'><interface/><body><FBD><outVariable localId='1'>"
     "<expression>lamp</expression></outVariable></FBD></body></pou>",
     "<pou name='Main' pouType='program'><interface><localVars><variable name='lamp'><type><BOOL/>"
     "</type></variable></localVars></interface><body><FBD><outVariable localId='1'><expression>"
     "lamp</expression></outVariable></FBD></body></pou>",
     CheckVariableUses},
    {8024, "action-unknown", Severity::kWarning,
     Message("A chart refers to actions, transitions and variables of its unit"),
     Message("A step does nothing, or a transition has no condition"),
     "<pou name='Main' pouType='program'><interface/><body><SFC><step localId='1' name='S' "
     "initialStep='true'/><actionBlock localId='2'><action localId='3'><reference name='Fill'/>"
     "</action></actionBlock></SFC></body></pou>",
     "<pou name='Main' pouType='program'><interface/><actions><action name='Fill'><body><ST>"
     "<p xmlns='http://www.w3.org/1999/xhtml'>;</p></ST></body></action></actions><body><SFC><step "
     "localId='1' name='S' initialStep='true'/><actionBlock localId='2'><action localId='3'>"
     "<reference name='Fill'/></action></actionBlock></SFC></body></pou>",
     CheckVariableUses},
    {8028, "block-parameter", Severity::kError, Message("A call names parameters of what it calls"),
     Message("The body cannot be built"),
     "PROGRAM Main\nVAR\n  t : TON;\nEND_VAR\nt(INN := TRUE);\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  t : TON;\nEND_VAR\nt(IN := TRUE);\nEND_PROGRAM", CheckVariableUses},
    {8033, "read-never-written", Severity::kNote,
     Message("What is read is written to, or has a value from the beginning"),
     Message("It has the first value of its type for ever"),
     "PROGRAM Main\nVAR\n  a, b : INT;\nEND_VAR\na := a + b;\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  a : INT;\n  b : INT := 2;\nEND_VAR\na := a + b;\nEND_PROGRAM",
     CheckVariableUses},
    {8035, "write-to-input", Severity::kWarning, Message("A body writes to no input"),
     Message("The next reading of inputs, or the next call, takes it back"),
     "PROGRAM Main\nVAR\n  door AT %IX0.0 : BOOL;\nEND_VAR\ndoor := TRUE;\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  door AT %MX0.0 : BOOL;\nEND_VAR\ndoor := TRUE;\nEND_PROGRAM",
     CheckVariableUses},
};

}  // namespace

void CheckVariableUses(Run& run) {
    VariableUses(run).Look();
}

Rows VariableUseRows() {
    return kRows;
}

}  // namespace lq::host::check
