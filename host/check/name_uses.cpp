#include "host/check/name_uses.h"

#include <algorithm>
#include <unordered_set>

#include "host/check/checks.h"

namespace lq::host::check {

NameUses::NameUses(Run& run, const LeftOut& leftOut)
    : run_(run),
      leftOut_(leftOut),
      wantsSpelling_(run.Wants(1013)),
      isInstance_(run.project.Declarations().size()),
      deeds_(run.project.Declarations().size()),
      isUsed_(run.project.DataTypes().size()) {
    for (const ID owner : run.Owners()) {
        const Pou* pou = run.project.GetPou(owner);
        for (const ID id : pou && !leftOut.Of(owner) ? pou->declarations : IdList()) {
            const Declaration& declaration = *run.project.GetDeclaration(id);
            if (declaration.section.scope == Scope::kLocal) {
                const TypeInfo& type = run.types.Of(declaration.type);
                isInstance_[IndexOf(id)] = type.kind == TypeInfo::Kind::kBlock;
            }
        }
    }
}

void NameUses::Take(const Use& use) {
    if (pending_ != ID()) {
        const Declaration* member = run_.project.GetDeclaration(use.id);
        const ID block = run_.types.Of(run_.project.GetDeclaration(pending_)->type).object;
        const bool isInIt =
            use.body && (use.object == UseObject::kMember || (member && member->owner == block));
        // A method of an instance may do all that a call does.
        deeds_[IndexOf(pending_)] |= isInIt && use.kind != UseKind::kCall ? kNamed : kCalled;
        pending_ = {};
    }
    if (use.object == UseObject::kVariable && use.id != ID() && isInstance_[IndexOf(use.id)]) {
        TakeInstance(use);
    } else if (use.object == UseObject::kType && use.id != use.where &&
               run_.HolderOf(use.where) != use.id) {
        isUsed_[IndexOf(use.id)] = true;
    } else if (use.object == UseObject::kEnumerator) {
        TakeEnumerator(use);
    }
    isQualified_ = use.object == UseObject::kType;
    if (use.role == PieceRole::kBlock) {
        TakeBlock(use);
    }
    if (use.kind == UseKind::kCall) {
        TakeCall(use);
    }
    if (wantsSpelling_) {
        TakeSpelling(use);
    }
}

// -- Instances ------------------------------------------------------------------------------------

void NameUses::TakeInstance(const Use& use) {
    if (use.kind == UseKind::kCall || use.kind == UseKind::kUnknown) {
        deeds_[IndexOf(use.id)] |= kCalled;
    } else {
        pending_ = use.id;  // whether it is handed on as a whole, the next use tells
    }
}

void NameUses::CheckInstances() {
    for (uint32_t i = 0; i < deeds_.size(); ++i) {
        if (deeds_[i] != kNamed) {
            continue;
        }
        const ID id = MakeId(Sort::kDeclaration, i);
        const Declaration& instance = *run_.project.GetDeclaration(id);
        const Pou& block = *run_.project.GetPou(run_.types.Of(instance.type).object);
        if (block.isStandard || !block.bodies.empty()) {  // else a call does nothing
            run_.Report(8014, id,
                        Say("the instance '{}' of '{}' is never called", Utf8(instance.name),
                            Utf8(block.name)));
        }
    }
}

// -- Calls and blocks -----------------------------------------------------------------------------

// The function block that a type's text ends with: its own, or that of elements or what is referred
// to.
ID NameUses::BlockIn(u16string_view text) const {
    constexpr int kMostAliases = 64;
    for (int i = 0; i < kMostAliases; ++i) {
        const u16string_view name = uses::LastWord(text);
        const DataType* type = run_.project.GetDataType(run_.project.FindDataType(name));
        if (!type) {
            const ID block = run_.project.FindAnyPou(name);
            const Pou* pou = run_.project.GetPou(block);
            return pou && pou->kind == LQ_KIND_FUNCTION_BLOCK ? block : ID();
        }
        text = type->baseType;
    }
    return {};
}

// What is called: a unit by its name, or the block that an instance is of.
void NameUses::TakeCall(const Use& use) {
    const Declaration* declaration =
        run_.project.GetDeclaration(use.id != ID() ? use.id : use.global);
    const ID callee = use.object == UseObject::kUnit ? use.id
                      : declaration                  ? BlockIn(declaration->type)
                                                     : ID();
    if (callee == ID() || use.unit == ID() || !use.body) {
        return;
    }
    const uint64_t call = (uint64_t{IndexOf(use.unit)} << 32) | IndexOf(callee);
    if (knownCalls_.insert(call).second) {
        calls_.push_back({use.unit, callee});
    }
}

// The type of a box comes first, then the path of its instance.
void NameUses::TakeBlock(const Use& use) {
    if (use.object == UseObject::kUnit && use.kind != UseKind::kRead) {
        const Pou* pou = run_.project.GetPou(use.id);
        const bool isBlock = pou && pou->kind == LQ_KIND_FUNCTION_BLOCK;
        block_ = isBlock && use.kind == UseKind::kDeclare ? use.id : ID();
        if (isBlock && use.kind == UseKind::kCall && run_.IsOwn(use.unit)) {
            ReportAt(run_, 8025, use.unit, SpotOf(use),
                     Say("the block of type '{}' has no instance", Utf8(use.name)));
        }
    } else if (use.kind == UseKind::kCall && block_ != ID()) {
        CheckBlock(use);
        block_ = {};
    }
}

void NameUses::CheckBlock(const Use& use) {
    if (!run_.IsOwn(use.unit)) {
        return;
    }
    const std::string name = Utf8(use.name);
    if (use.object == UseObject::kUnknown) {
        if (!leftOut_.Of(use.unit) && !leftOut_.MayDeclare()) {
            ReportAt(run_, 8025, run_.OpenSeverity(), use.unit, SpotOf(use),
                     Say("no instance is called '{}'", name));
        }
        return;
    }
    const ID instance = use.id != ID() ? use.id : use.global;
    const Declaration* declaration = run_.project.GetDeclaration(instance);
    if (!declaration) {
        return;  // a member that is not known, or one of several globals
    }
    const TypeInfo& whole = run_.types.Resolved(declaration->type);
    const TypeInfo& declared = use.isElement ? run_.types.Innermost(whole) : whole;
    const bool isOther = declared.kind == TypeInfo::Kind::kBlock
                             ? declared.object != block_
                             : declared.kind != TypeInfo::Kind::kUnknown &&
                                   declared.kind != TypeInfo::Kind::kUnchecked;
    if (isOther) {
        Finding& finding =
            ReportAt(run_, 8025, use.unit, SpotOf(use),
                     Say("'{}' is of the type '{}', the block of '{}'", name,
                         Utf8(declaration->type), Utf8(run_.project.NameOf(block_))));
        run_.Relate(finding, instance, Say("it is declared here"));
    }
}

// -- Enumerations ---------------------------------------------------------------------------------

void NameUses::TakeEnumerator(const Use& use) {
    if (use.id != use.where && SortOf(use.id) == Sort::kDataType) {
        isUsed_[IndexOf(use.id)] = true;
    }
    if (!use.body || use.isInPragma || isQualified_ || !run_.IsOwn(use.unit)) {
        return;
    }
    const IdList& types = run_.types.EnumerationsWith(use.name);
    const auto other = std::ranges::find_if(types, [&](ID type) {
        return type != use.id &&
               !EqualNames(run_.project.NameOf(type), run_.project.NameOf(use.id));
    });
    if (other == types.end()) {
        return;
    }
    for (const ID type : types) {
        isUsed_[IndexOf(type)] = true;  // any of them may be meant
    }
    if (shared_.IsTold(use.unit, Upper(use.name))) {
        return;
    }
    Finding& finding =
        ReportAt(run_, 1012, use.unit, SpotOf(use),
                 Say("'{}' is a value of '{}' and of '{}'", Utf8(use.name),
                     Utf8(run_.project.NameOf(use.id)), Utf8(run_.project.NameOf(*other))));
    run_.Relate(finding, *other, Say("declared here"));
    shared_.Tell(finding);
}

// -- Spellings ------------------------------------------------------------------------------------

// As the project has it; empty for what it does not declare.
u16string_view NameUses::DeclaredName(const Use& use) {
    const ID object = use.id != ID() ? use.id : use.global;
    const Declaration* declaration = run_.project.GetDeclaration(object);
    const bool isOwn = run_.IsOwn(object) && (!declaration || run_.IsOwn(declaration->owner));
    switch (use.object) {
        case UseObject::kVariable:
        case UseObject::kGlobal:
        case UseObject::kResult:
        case UseObject::kUnit:
        case UseObject::kType:
        case UseObject::kList:
            return isOwn ? run_.project.NameOf(object) : u"";
        case UseObject::kEnumerator: {
            const DataType* type = run_.project.GetDataType(object);
            const Text listed = type ? type->baseType : declaration ? declaration->type : u"";
            const TypeInfo& info = run_.types.Of(listed);
            const auto value = std::ranges::find_if(
                info.values, [&](u16string_view name) { return EqualNames(name, use.name); });
            return isOwn && value != info.values.end() ? *value : u"";
        }
        default:
            return {};
    }
}

void NameUses::TakeSpelling(const Use& use) {
    if (!use.body || use.isInPragma || use.role == PieceRole::kIl || !run_.IsOwn(use.unit)) {
        return;
    }
    const u16string_view declared = DeclaredName(use);
    if (declared == use.name || !EqualNames(declared, use.name)) {
        return;
    }
    if (!spellings_.IsTold(use.unit, use.name)) {
        spellings_.Tell(ReportAt(run_, 1013, use.unit, SpotOf(use),
                                 Say("'{}' is declared as '{}'", Utf8(use.name), Utf8(declared))));
    }
}

// -- Types ----------------------------------------------------------------------------------------

void NameUses::AddTypesIn(ID holder, Text text) {
    u16string_view rest(text);
    while (!rest.empty()) {
        const u16string_view word = TakeWord(rest);
        const ID type = word.empty() ? ID() : run_.project.FindDataType(word);
        if (type != ID() && type != holder) {
            isUsed_[IndexOf(type)] = true;
        }
        const bool isSign = word.empty() && !rest.empty() && !IsWordCharacter(rest.front());
        rest.remove_prefix(isSign ? 1 : 0);
    }
}

void NameUses::CheckTypes() {
    const Project& project = run_.project;
    std::unordered_set<Text> known;  // those of units and lists repeat
    for (const Declaration& declaration : project.Declarations()) {
        const bool isMember = SortOf(declaration.owner) == Sort::kDataType;
        if (declaration.owner != ID() && (isMember || known.insert(declaration.type).second)) {
            AddTypesIn(declaration.owner, declaration.type);
        }
    }
    for (uint32_t i = 0; i < project.DataTypes().size(); ++i) {
        AddTypesIn(MakeId(Sort::kDataType, i), project.DataTypes()[i].baseType);
    }
    for (const Pou& pou : project.Pous()) {
        AddTypesIn({}, pou.resultType);
    }
    for (const ID owner : run_.Owners()) {
        if (const DataType* type = project.GetDataType(owner);
            type && !isUsed_[IndexOf(owner)] && !project.IsOfLibrary(owner) &&
            project.FindDataType(type->name) == owner) {
            run_.Report(2014, owner, Say("nothing uses the type '{}'", Utf8(type->name)));
        }
    }
}

void NameUses::Finish() {
    if (pending_ != ID()) {
        deeds_[IndexOf(pending_)] |= kCalled;
    }
    CheckInstances();
    if (run_.project.KeepsCode()) {
        run_.graph.ReplaceCalls(run_.Owners(), calls_);
    }
    CheckCalls(run_);
    if (run_.Wants(2014) && run_.HasResource() && run_.project.KeepsCode() && !leftOut_.Any()) {
        CheckTypes();
    }
}

namespace {

constexpr Check kRows[] = {
    {1012, "shared-enumerator", Severity::kNote,
     Message("A value that two enumerations have is named with its type, as in Color#Red"),
     Message("Which of the two is meant depends on who reads the body"),
     "TYPE Light : (Red, Green); END_TYPE\nTYPE Wine : (White, Red); END_TYPE\n"
     "PROGRAM Main\nVAR\n  a : Light;\nEND_VAR\na := Red;\nEND_PROGRAM",
     "TYPE Light : (Red, Green); END_TYPE\nTYPE Wine : (White, Red); END_TYPE\n"
     "PROGRAM Main\nVAR\n  a : Light;\nEND_VAR\na := Light#Red;\nEND_PROGRAM",
     CheckVariableUses},
    {1013, "case-differs", Severity::kOff,
     Message("A body spells a name as it is declared; IL is in capitals anyway"),
     Message("Readers take two spellings for two names"),
     "PROGRAM Main\nVAR\n  Level : INT;\nEND_VAR\nLevel := level + 1;\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  Level : INT;\nEND_VAR\nLevel := Level + 1;\nEND_PROGRAM",
     CheckVariableUses},
    {2014, "unused-type", Severity::kNote,
     Message("In a project that has a resource, something uses each data type"),
     Message("It is left over, or another one is used in its place"),
     "TYPE Level : INT; END_TYPE\nPROGRAM Main\nVAR\n  a : INT;\nEND_VAR\na := a + 1;\n"
     "END_PROGRAM\nCONFIGURATION c\nRESOURCE r\nTASK t(INTERVAL := T#10ms, PRIORITY := 1);\n"
     "PROGRAM p WITH t : Main;\nEND_RESOURCE\nEND_CONFIGURATION",
     "TYPE Level : INT; END_TYPE\nPROGRAM Main\nVAR\n  a : Level;\nEND_VAR\na := a + 1;\n"
     "END_PROGRAM\nCONFIGURATION c\nRESOURCE r\nTASK t(INTERVAL := T#10ms, PRIORITY := 1);\n"
     "PROGRAM p WITH t : Main;\nEND_RESOURCE\nEND_CONFIGURATION",
     CheckVariableUses},
    {8014, "instance-never-called", Severity::kNote,
     Message("A unit calls the instances of function blocks whose inputs or outputs it names"),
     Message("The instance never works, and its outputs keep their first values"),
     "PROGRAM Main\nVAR\n  t : TON;\n  a : BOOL;\nEND_VAR\nt.IN := a;\na := t.Q;\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  t : TON;\n  a : BOOL;\nEND_VAR\nt(IN := a);\na := t.Q;\nEND_PROGRAM",
     CheckVariableUses},
    {8025, "block-instance", Severity::kError,
     Message("A function block in a drawing has an instance of its type"),
     Message("The body cannot be built"),
     "<pou name='Main' pouType='program'><interface><localVars><variable name='t'><type><derived "
     "name='TOF'/></type></variable></localVars></interface><body><FBD><block localId='1' "
     "typeName='TON' instanceName='t'/></FBD></body></pou>",
     "<pou name='Main' pouType='program'><interface><localVars><variable name='t'><type><derived "
     "name='TON'/></type></variable></localVars></interface><body><FBD><block localId='1' "
     "typeName='TON' instanceName='t'/></FBD></body></pou>",
     CheckVariableUses},
};

}  // namespace

Rows NameUseRows() {
    return kRows;
}

}  // namespace lq::host::check
