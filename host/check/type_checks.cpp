// Types: whether they are known, whole, and where they may stand.

#include <set>
#include <span>
#include <unordered_map>
#include <vector>

#include "host/check/checks.h"
#include "host/check/left_out.h"
#include "host/check/run.h"
#include "lq_data/env/lq_model.h"
#include "lq_data/host/text/nearest_name.h"
#include "lq_data/host/words/words.h"

namespace lq::host::check {

namespace {

using Kind = TypeInfo::Kind;

// Calls `take(object, text)` for each type text that is checked.
template <typename Take>
void ForEachType(Run& run, Take take) {
    for (const ID owner : run.Owners()) {
        if (const DataType* type = run.project.GetDataType(owner); type && !type->structure) {
            take(owner, type->baseType);
        }
        if (const Pou* pou = run.project.GetPou(owner); pou && *pou->resultType) {
            take(owner, pou->resultType);
        }
        for (const ID id : run.project.Below(owner)) {
            take(id, run.project.GetDeclaration(id)->type);
        }
    }
    for (uint32_t i = 0; i < run.project.Declarations().size(); ++i) {
        const Declaration& declaration = run.project.Declarations()[i];
        const Scope scope = declaration.section.scope;
        const ID id = MakeId(Sort::kDeclaration, i);
        if ((scope == Scope::kConfig || scope == Scope::kAccess) && declaration.owner != ID() &&
            run.IsOwn(id)) {
            take(id, declaration.type);
        }
    }
}

// -- Names of types -------------------------------------------------------------------------------

// Looked for once a name: a large project may miss many.
std::string NearestType(const Run& run, const std::string& name) {
    NearestName nearest(name);
    for (const DataType& type : run.project.DataTypes()) {
        nearest.Consider(Utf8(type.name));
    }
    for (const Pou& pou : run.project.Pous()) {
        // "CTU_UDINT" is near to any type that ends so.
        const std::string unit = Utf8(pou.name);
        const bool isOverload = pou.isStandard && unit.find('_') != unit.npos;
        if (pou.kind == LQ_KIND_FUNCTION_BLOCK && !isOverload) {
            nearest.Consider(unit);
        }
    }
    for (const IEC_TYPE_DSC& type : std::span(GetIecTypeDsc(), GetIecDscSize())) {
        if (IsElementaryType(type.id)) {
            nearest.Consider(Utf8(type.name));
        }
    }
    return nearest.Found().empty() ? "" : Say("; did you mean '{}'?", nearest.Found());
}

class UnknownTypes {
  public:
    explicit UnknownTypes(Run& run) : run_(run) {}

    void Take(ID object, const TypeInfo& type) {
        const auto [known, isNew] = findings_.try_emplace(Upper(type.name), nullptr);
        if (!isNew) {
            ++known->second->more;
            return;
        }
        const std::string name = Utf8(type.name);
        constexpr std::size_t kMostSearched = 1000;
        const std::string nearest =
            findings_.size() <= kMostSearched ? NearestType(run_, name) : std::string();
        Finding& finding =
            run_.Report(2001, run_.OpenSeverity(), object,
                        Say("no data type and no function block is called '{}'", name) + nearest);
        finding.SetName({}, name);
        known->second = &finding;
    }

  private:
    Run& run_;
    std::unordered_map<std::u16string, Finding*> findings_;
};

void CheckTypeNames(Run& run) {
    UnknownTypes unknown(run);
    const bool isCertain = !LeftOut(run).MayDeclare();
    ForEachType(run, [&](ID object, Text text) {
        const TypeInfo& type = run.types.Named(text);
        const TypeInfo& named = type.kind == Kind::kSubrange ? *type.base : type;
        if (named.kind == Kind::kUnknown && IsStandardFunction(named.name)) {
            run.Report(2018, run.OpenSeverity(), object,
                       Say("the function '{}' stands for a type", Utf8(named.name)));
        } else if (named.kind == Kind::kUnknown) {
            if (isCertain && run.Wants(2001)) {
                unknown.Take(object, named);
            }
        } else if (named.kind == Kind::kUnit) {
            run.Report(2018, run.OpenSeverity(), object,
                       run.project.GetPou(named.object)->kind == LQ_KIND_PROGRAM
                           ? Say("the program '{}' stands for a type", Utf8(named.name))
                           : Say("the function '{}' stands for a type", Utf8(named.name)));
        } else if (named.kind == Kind::kGeneric) {
            run.Report(2015, object,
                       Say("the generic type '{}' is one of the standard's own units", Utf8(text)));
        }
    });
}

// -- What contains itself -------------------------------------------------------------------------

std::string PathText(const Run& run, const Graph::Cycle& cycle) {
    std::string path;
    for (const Graph::Step& step : cycle) {
        const std::string member = Utf8(run.project.NameOf(step.edge->declaration));
        path += Utf8(run.project.NameOf(run.graph.ObjectOf(step.from)));
        path += (member.empty() ? "" : "." + member) + " -> ";
    }
    return path + Utf8(run.project.NameOf(run.graph.ObjectOf(cycle.front().from)));
}

void CheckRecursion(Run& run) {
    for (const Graph::Cycle& cycle : run.graph.Cycles(Graph::kHolds)) {
        const auto isOfUnit = [&](const Graph::Step& step) {
            return SortOf(run.graph.ObjectOf(step.from)) == Sort::kPou;
        };
        const auto unit = std::ranges::find_if(cycle, isOfUnit);
        const Graph::Step& first = unit == cycle.end() ? cycle.front() : *unit;
        const ID holder = run.graph.ObjectOf(first.from);
        if (!run.IsOwn(holder)) {
            continue;
        }
        const ID place = first.edge->declaration != ID() ? first.edge->declaration : holder;
        if (unit == cycle.end()) {
            run.Report(2002, place,
                       Say("the type '{}' contains itself: {}", Utf8(run.project.NameOf(holder)),
                           PathText(run, cycle)));
        } else {
            run.Report(2003, place,
                       Say("the function block '{}' has an instance of itself: {}",
                           Utf8(run.project.NameOf(holder)), PathText(run, cycle)));
        }
    }
}

// -- Bounds and limits ----------------------------------------------------------------------------

class Bounds {
  public:
    Bounds(Run& run, ID object) : run_(run), object_(object) {}

    void Take(const TypeInfo& type) {
        if (type.kind == Kind::kArray) {
            TakeArray(type);
        } else if (type.kind == Kind::kSubrange) {
            TakeSubrange(type);
        } else if (type.kind == Kind::kString) {
            TakeString(type);
        }
    }

  private:
    // A number, or a constant with one for a value.
    bool Read(u16string_view text, int64_t& number) {
        if (Types::ReadNumber(text, number)) {
            return true;
        }
        const Declaration* declaration = run_.project.GetDeclaration(FindVariable(text).id);
        return declaration && declaration->section.constant &&
               Types::ReadNumber(declaration->initValue, number);
    }

    uses::GlobalFound FindVariable(u16string_view name) {
        const ID owner = run_.HolderOf(object_);
        const ID local = SortOf(owner) == Sort::kPou ? run_.types.Members(owner).Find(name) : ID();
        const VariableList* list = run_.project.GetVariableList(owner);
        return local != ID() ? uses::GlobalFound{local}
                             : run_.globals.Find(list ? list->parent : owner, name);
    }

    void CheckBound(u16string_view text) {
        if (!IsName(text) || !run_.Wants(2012)) {
            return;
        }
        const uses::GlobalFound found = FindVariable(text);
        if (found.shared) {
            return;  // which is meant is not known
        }
        const Declaration* declaration = run_.project.GetDeclaration(found.id);
        if (declaration && !declaration->section.constant &&
            declaration->section.scope != Scope::kExternal) {
            run_.Report(2012, object_,
                        Say("the bound '{}' is a variable and no constant", Utf8(text)));
        } else if (!declaration && run_.types.EnumerationsWith(text).empty()) {
            run_.Report(2012, run_.ClosedSeverity(), object_,
                        Say("no constant is called '{}'", Utf8(text)));
        }
    }

    void TakeArray(const TypeInfo& type) {
        double elements = 1;
        bool isKnown = !type.limits.empty() && type.base;
        for (const Limits& limits : type.limits) {
            CheckBound(limits.lower);
            CheckBound(limits.upper);
            int64_t lower = 0;
            int64_t upper = 0;
            if (!Read(limits.lower, lower) || !Read(limits.upper, upper)) {
                isKnown = false;
                continue;
            }
            if (lower > upper) {
                run_.Report(2004, object_,
                            Say("the lower bound {} of the array is above the upper bound {}",
                                Utf8(limits.lower), Utf8(limits.upper)));
                return;
            }
            elements *= static_cast<double>(upper - lower) + 1;
        }
        constexpr double kMost = 4294967295.0;
        const IEC_TYPE element = isKnown ? run_.types.Resolve(*type.base).elementary : IEC_NO_TYPE;
        const double bytes = elements * std::max(1u, IecTypeSize().Get(element));
        if (isKnown && (elements > kMost || bytes > kMost)) {
            run_.Report(2005, object_,
                        Say("the array takes more than {} bytes", uint64_t{4294967295}));
        }
        if (type.base) {
            Take(*type.base);
        }
    }

    void TakeSubrange(const TypeInfo& type) {
        const TypeInfo& base = run_.types.WithoutLimits(*type.base);
        if (type.limits.size() != 1 || base.kind == Kind::kUnknown ||
            base.kind == Kind::kUnchecked) {
            return;
        }
        CheckBound(type.limits[0].lower);
        CheckBound(type.limits[0].upper);
        const Limits& limits = type.limits.front();
        if (base.kind != Kind::kElementary ||
            (static_cast<uint32_t>(MapTypeToBitset(base.elementary)) & TB_ANY_INT) == 0) {
            run_.Report(2008, object_,
                        Say("a subrange is one of whole numbers, not of '{}'", Utf8(type.name)));
            return;
        }
        int64_t lower = 0;
        int64_t upper = 0;
        if (Read(limits.lower, lower) && Read(limits.upper, upper) && lower >= upper) {
            if (lower > upper) {
                run_.Report(2006, object_,
                            Say("the lower limit {} of the subrange is above the upper limit {}",
                                Utf8(limits.lower), Utf8(limits.upper)));
            } else {
                run_.Report(2006, Severity::kNote, object_,
                            Say("the subrange has one value, {}", Utf8(limits.lower)));
            }
            return;
        }
        for (const u16string_view limit : {limits.lower, limits.upper}) {
            const Constant constant = ReadConstant(limit);
            if (constant.kind == Constant::Kind::kInteger &&
                (TypesOf(constant) & static_cast<uint32_t>(MapTypeToBitset(base.elementary))) ==
                    0) {
                run_.Report(2007, object_,
                            Say("the limit {} is no value of {}", Utf8(limit), Utf8(base.name)));
                return;
            }
        }
    }

    void TakeString(const TypeInfo& type) {
        constexpr int64_t kMost = 65535;
        int64_t length = 0;
        if (type.length.empty()) {
            return;
        }
        if (!Types::ReadNumber(type.length, length)) {
            CheckBound(type.length);
            return;
        }
        if (length < 1) {
            run_.Report(2009, object_,
                        Say("a string cannot have {} characters", Utf8(type.length)));
        } else if (length > kMost) {
            run_.Report(2009, Severity::kWarning, object_,
                        Say("few targets have strings of {} characters", Utf8(type.length)));
        }
    }

    Run& run_;
    const ID object_;
};

void CheckBounds(Run& run) {
    ForEachType(run, [&](ID object, Text text) { Bounds(run, object).Take(run.types.Of(text)); });
}

// -- Where types may stand ------------------------------------------------------------------------

void CheckEmptyTypes(Run& run) {
    for (const ID owner : run.Owners()) {
        const DataType* type = run.project.GetDataType(owner);
        const bool isEmpty =
            type && (type->structure ? type->members.empty()
                                     : run.types.Of(type->baseType).kind == Kind::kEnumeration &&
                                           run.types.Of(type->baseType).values.empty());
        if (isEmpty) {
            run.Report(2010, owner,
                       type->structure
                           ? Say("the structure '{}' has no members", Utf8(type->name))
                           : Say("the enumeration '{}' has no values", Utf8(type->name)));
        }
    }
}

// Whether a variable of the type is an instance of a function block, or has one in it.
bool HasBlock(Run& run, const TypeInfo& type) {
    std::vector<const TypeInfo*> pending{&type};
    std::set<uint32_t> met;
    while (!pending.empty()) {
        const TypeInfo& held = run.types.Innermost(*pending.back());
        pending.pop_back();
        if (held.kind == Kind::kBlock) {
            return true;
        }
        if (held.kind == Kind::kStructure && met.insert(held.object.GetNumber()).second) {
            for (const ID member : run.project.Below(held.object)) {
                pending.push_back(&run.types.Of(run.project.GetDeclaration(member)->type));
            }
        }
    }
    return false;
}

void CheckBlocks(Run& run) {
    for (const ID owner : run.Owners()) {
        const Pou* pou = run.project.GetPou(owner);
        const bool isFunction = pou && pou->kind == LQ_KIND_FUNCTION;
        for (const ID id : run.project.Below(owner)) {
            const Declaration& variable = *run.project.GetDeclaration(id);
            const Scope scope = variable.section.scope;
            const bool isOwn = scope != Scope::kExternal && scope != Scope::kInOut;
            const bool isLocal = scope == Scope::kLocal || scope == Scope::kTemp;
            if (!(isFunction && isLocal) && !(variable.section.constant && isOwn)) {
                continue;
            }
            if (!HasBlock(run, run.types.Of(variable.type))) {
                continue;
            }
            const std::string name = Utf8(variable.name);
            if (isFunction) {
                run.Report(2013, id,
                           Say("the function has the instance '{}' of a function block", name));
            } else {
                run.Report(2017, id,
                           Say("the instance '{}' of a function block is constant", name));
            }
        }
    }
}

constexpr Check kRows[] = {
    {2001, "unknown-type", Severity::kWarning,
     Message("Every type is one of the language, a data type or a function block of the project; "
             "an error with --closed"),
     Message("A type that no file brings is misspelt, or a file is missing"),
     "FUNCTION_BLOCK Pump\nEND_FUNCTION_BLOCK\n"
     "PROGRAM Main\nVAR\n  p : Pmup;\nEND_VAR\nEND_PROGRAM",
     "FUNCTION_BLOCK Pump\nEND_FUNCTION_BLOCK\n"
     "PROGRAM Main\nVAR\n  p : Pump;\nEND_VAR\nEND_PROGRAM",
     CheckTypeNames},
    {2002, "recursive-type", Severity::kError, Message("No type contains itself"),
     Message("It would have no end"), "TYPE Node : STRUCT\n  next : Node;\nEND_STRUCT; END_TYPE",
     "TYPE Node : STRUCT\n  next : INT;\nEND_STRUCT; END_TYPE", CheckRecursion},
    {2003, "recursive-instance", Severity::kError,
     Message("No function block has an instance of itself, not even through others"),
     Message("It would have no end"),
     "FUNCTION_BLOCK A\nVAR\n  inner : B;\nEND_VAR\nEND_FUNCTION_BLOCK\n"
     "FUNCTION_BLOCK B\nVAR\n  inner : A;\nEND_VAR\nEND_FUNCTION_BLOCK",
     "FUNCTION_BLOCK A\nVAR\n  inner : B;\nEND_VAR\nEND_FUNCTION_BLOCK\n"
     "FUNCTION_BLOCK B\nVAR_IN_OUT\n  other : A;\nEND_VAR\nEND_FUNCTION_BLOCK",
     CheckRecursion},
    {2004, "bounds-order", Severity::kError,
     Message("The lower bound of an array is not above the upper one"),
     Message("The array would have no elements"), "VAR\n  a : ARRAY [5..1] OF INT;\nEND_VAR",
     "VAR\n  a : ARRAY [1..5] OF INT;\nEND_VAR", CheckBounds},
    {2005, "array-too-large", Severity::kWarning,
     Message("An array takes no more than 4294967295 bytes"),
     Message("No target has the memory, and most have far less"),
     "VAR\n  a : ARRAY [0..65535, 0..65535] OF INT;\nEND_VAR",
     "VAR\n  a : ARRAY [0..255, 0..255] OF INT;\nEND_VAR", CheckBounds},
    {2006, "subrange-order", Severity::kError,
     Message("The lower limit of a subrange is below the upper one; that they are equal is a note"),
     Message("The type would have no values"), "VAR\n  a : INT (10..1);\nEND_VAR",
     "VAR\n  a : INT (1..10);\nEND_VAR", CheckBounds},
    {2007, "subrange-outside-base", Severity::kError,
     Message("The limits of a subrange are values of its base type"),
     Message("The type cannot hold what the limits allow"), "VAR\n  a : SINT (0..300);\nEND_VAR",
     "VAR\n  a : INT (0..300);\nEND_VAR", CheckBounds},
    {2008, "subrange-base", Severity::kError, Message("A subrange is one of whole numbers"),
     Message("Only whole numbers have limits in the language"), "VAR\n  a : REAL (0..1);\nEND_VAR",
     "VAR\n  a : INT (0..1);\nEND_VAR", CheckBounds},
    {2009, "string-length", Severity::kError,
     Message("The length of a string is a whole number from 1 on; above 65535 it is a warning"),
     Message("A string without room holds nothing"), "VAR\n  s : STRING[0];\nEND_VAR",
     "VAR\n  s : STRING[20];\nEND_VAR", CheckBounds},
    {2010, "empty-type", Severity::kError,
     Message("A structure has members, an enumeration has values"),
     Message("A type without content is no type of the language"),
     "TYPE Recipe : STRUCT\nEND_STRUCT; END_TYPE",
     "TYPE Recipe : STRUCT\n  Water : REAL;\nEND_STRUCT; END_TYPE", CheckEmptyTypes},
    {2012, "bound-unknown", Severity::kError,
     Message(
         "A name that stands for a bound is a constant that can be seen there; a warning, until "
         "--closed, where no file has the name"),
     Message("Without the number nobody knows how long the array is"),
     "VAR\n  n : INT := 8;\n  a : ARRAY [1..n] OF INT;\nEND_VAR",
     "VAR CONSTANT\n  n : INT := 8;\nEND_VAR\nVAR\n  a : ARRAY [1..n] OF INT;\nEND_VAR",
     CheckBounds},
    {2013, "block-in-function", Severity::kError,
     Message("A function has no instances of function blocks among its local variables"),
     Message("A function keeps nothing from one call to the next, as the instance has to"),
     "FUNCTION Late : BOOL\nVAR\n  t : TON;\nEND_VAR\nEND_FUNCTION",
     "FUNCTION_BLOCK Late\nVAR\n  t : TON;\nEND_VAR\nEND_FUNCTION_BLOCK", CheckBlocks},
    {2015, "generic-type", Severity::kError,
     Message("The generic types are for the standard's own functions"),
     Message("No memory can be set aside for a variable of such a type"),
     "VAR\n  a : ANY_INT;\nEND_VAR", "VAR\n  a : DINT;\nEND_VAR", CheckTypeNames},
    {2017, "constant-block", Severity::kError,
     Message("An instance of a function block is not constant"),
     Message("It changes with each call"), "VAR CONSTANT\n  t : TON;\nEND_VAR",
     "VAR\n  t : TON;\nEND_VAR", CheckBlocks},
    {2018, "unit-as-type", Severity::kError, Message("A type is no function and no program"),
     Message("Only function blocks have instances that variables can be"),
     "FUNCTION Half : INT\nEND_FUNCTION\nPROGRAM Main\nVAR\n  h : Half;\nEND_VAR\nEND_PROGRAM",
     "FUNCTION_BLOCK Half\nEND_FUNCTION_BLOCK\nPROGRAM Main\nVAR\n  h : "
     "Half;\nEND_VAR\nEND_PROGRAM",
     CheckTypeNames},
};

}  // namespace

Rows TypeRows() {
    return kRows;
}

}  // namespace lq::host::check
