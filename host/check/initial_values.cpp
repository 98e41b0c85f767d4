// Initial values: whether they are values of the type, and where they may stand.

#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "host/check/checks.h"
#include "host/check/left_out.h"
#include "host/check/run.h"
#include "lq_data/env/lq_model.h"

namespace lq::host::check {

namespace {

using Kind = TypeInfo::Kind;
using Class = Constant::Kind;

constexpr unsigned kMostDepth = 64;

// What classes of constants a type has values of.
Class ClassOf(IEC_TYPE type) {
    switch (type) {
        case IEC_BOOL:
            return Class::kBool;
        case IEC_REAL:
        case IEC_LREAL:
            return Class::kReal;
        case IEC_TIME:
            return Class::kTime;
        case IEC_DATE:
            return Class::kDate;
        case IEC_TOD:
            return Class::kTimeOfDay;
        case IEC_DT:
            return Class::kDateAndTime;
        case IEC_STRING:
            return Class::kString;
        default:
            return IsElementaryType(type) ? Class::kInteger : Class::kNone;
    }
}

bool IsBitString(IEC_TYPE type) {
    return type >= IEC_BYTE && type <= IEC_LWORD;
}

// The number without the type in front of it.
u16string_view WithoutPrefix(const Constant& number, u16string_view text) {
    return number.prefix.empty() ? text : text.substr(text.find(u'#') + 1);
}

bool IsNumber(Class kind) {
    return kind == Class::kInteger || kind == Class::kReal;
}

// The value of one declaration, or of a data type, against its type. Whatever it does not
// understand (expressions, names, calls) it passes over.
class Value {
  public:
    Value(Run& run, const LeftOut& leftOut, ID object)
        : run_(run), leftOut_(leftOut), object_(object) {}

    void Take(const TypeInfo& declared, u16string_view text, unsigned depth = 0) {
        const TypeInfo& type = run_.types.Resolve(declared);
        text = Trim(text);
        if (text.empty() || depth > kMostDepth) {
            return;
        }
        if (type.kind == Kind::kArray && type.base) {
            TakeArray(type, text, depth);
        } else if (type.kind == Kind::kStructure || type.kind == Kind::kBlock) {
            TakeMembers(type, text, depth);
        } else if (type.kind == Kind::kEnumeration) {
            TakeEnumerator(declared, type, text);
        } else if (type.kind == Kind::kElementary || type.kind == Kind::kString ||
                   type.kind == Kind::kSubrange) {
            TakeConstant(type, text);
        }
    }

  private:
    // One finding of a code a value: the values of an array are often all wrong.
    void Tell(uint16_t code, std::string message) {
        for (auto& [known, finding] : told_) {
            if (known == code) {
                ++finding->more;
                return;
            }
        }
        if (run_.Wants(code)) {
            told_.emplace_back(code, &run_.Report(code, object_, std::move(message)));
        }
    }

    // -- Constants --------------------------------------------------------------------------------

    void TakeConstant(const TypeInfo& type, u16string_view text) {
        const TypeInfo& base = run_.types.WithoutLimits(type);
        const Constant constant = ReadConstant(text);
        const std::string value = Utf8(text);
        const IEC_TYPE id = base.elementary;
        if (constant.kind == Class::kMalformed) {
            Tell(3015, Say("'{}' is no duration, date or time of day", value));
            return;
        }
        if (constant.kind == Class::kNone || constant.kind == Class::kName ||
            !IsElementaryType(id)) {
            return;
        }
        if (!constant.prefix.empty() && !TakePrefix(constant, base, value)) {
            return;
        }
        const Class wanted = ClassOf(id);
        if (wanted == Class::kString && constant.kind != Class::kString) {
            return;  // editors write the text of strings bare
        }
        const Class given = constant.kind;
        const bool isBit = IsBitString(id) && given == Class::kBool;
        const bool isZeroOrOne = wanted == Class::kBool && given == Class::kInteger;
        const bool isFraction = wanted == Class::kInteger && given == Class::kReal;
        if (wanted != given && (isFraction || !(IsNumber(wanted) && IsNumber(given))) && !isBit &&
            !isZeroOrOne) {
            Tell(3003, Say("'{}' is no value of the type {}", value, Utf8(base.name)));
        } else if (IsNumber(given)) {
            TakeNumber(type, base, constant, text);
        } else if (given == Class::kString) {
            TakeString(base, constant, value);
        }
    }

    // "INT#": the rest has to be a value of it, and its values are to be those of the variable.
    bool TakePrefix(const Constant& constant, const TypeInfo& base, const std::string& value) {
        const std::u16string prefix = Upper(constant.prefix);
        const IEC_TYPE type = IecTypeConv().GetId(prefix.c_str());
        if (!IsElementaryType(type)) {
            return false;
        }
        if (IsNumber(constant.kind) && IsNumber(ClassOf(type)) &&
            (TypesOf(constant) & static_cast<uint32_t>(MapTypeToBitset(type))) == 0) {
            const bool isReal = constant.kind == Class::kReal && ClassOf(type) == Class::kReal;
            Tell(isReal ? 3014 : 3002,
                 Say("'{}' is beyond the range of {}", value, Utf8(constant.prefix)));
            return false;
        }
        if (!IsWidening(type, base.elementary)) {
            Tell(3003, Say("'{}' is no value of the type {}", value, Utf8(base.name)));
            return false;
        }
        const Class typed = ClassOf(type);
        return typed == constant.kind || IsNumber(typed);
    }

    void TakeNumber(const TypeInfo& type, const TypeInfo& base, const Constant& number,
                    u16string_view text) {
        const std::string value = Utf8(text);
        const auto wanted = static_cast<uint32_t>(MapTypeToBitset(base.elementary));
        if ((TypesOf(number) & wanted) == 0 || std::isinf(number.real)) {
            const bool isReal =
                number.kind == Class::kReal && ClassOf(base.elementary) == Class::kReal;
            Tell(isReal ? 3014 : 3002,
                 Say("'{}' is beyond the range of {}", value, Utf8(base.name)));
            return;
        }
        int64_t lower = 0;
        int64_t upper = 0;
        int64_t given = 0;
        if (type.kind == Kind::kSubrange && type.limits.size() == 1 &&
            Types::ReadNumber(type.limits.front().lower, lower) &&
            Types::ReadNumber(type.limits.front().upper, upper) && lower <= upper &&
            Types::ReadNumber(WithoutPrefix(number, text), given) &&
            (given < lower || given > upper)) {
            Tell(3006, Say("'{}' is not within the limits {} to {}", value,
                           Utf8(type.limits.front().lower), Utf8(type.limits.front().upper)));
        }
    }

    void TakeString(const TypeInfo& type, const Constant& string, const std::string& value) {
        int64_t length = 0;
        if (Types::ReadNumber(type.length, length) && length > 0 &&
            string.length > static_cast<uint64_t>(length)) {
            Tell(3007, Say("the string {} has {} characters, and its type {}", value, string.length,
                           length));
        }
    }

    // -- Enumerations -----------------------------------------------------------------------------

    void TakeEnumerator(const TypeInfo& declared, const TypeInfo& type, u16string_view text) {
        const Constant constant = ReadConstant(text);
        const bool isNumber = constant.kind == Class::kInteger && !type.hasNumbers;
        if (!isNumber && constant.kind != Class::kName) {
            return;
        }
        const bool isKnown = IsOfType(constant.prefix, type) &&
                             std::ranges::any_of(type.values, [&](u16string_view value) {
                                 return EqualNames(value, constant.name);
                             });
        if (isKnown || type.values.empty() || (!isNumber && IsVariable(constant.name))) {
            return;
        }
        Tell(3010, declared.name.empty()
                       ? Say("'{}' is no value of the enumeration", Utf8(text))
                       : Say("'{}' is no value of the type {}", Utf8(text), Utf8(declared.name)));
    }

    // Whether the name in front of "#" is one of the enumeration, or of what is not known.
    bool IsOfType(u16string_view prefix, const TypeInfo& enumeration) {
        const DataType* named = run_.project.GetDataType(run_.project.FindDataType(prefix));
        if (prefix.empty() || !named || named->structure) {
            return true;
        }
        const TypeInfo& type = run_.types.Resolved(named->baseType);
        return type.kind != Kind::kEnumeration || type.values == enumeration.values;
    }

    bool IsVariable(u16string_view name) {
        const ID owner = run_.HolderOf(object_);
        return run_.project.FindGlobal(name) != ID() ||
               (SortOf(owner) == Sort::kPou && run_.types.Members(owner).Find(name) != ID());
    }

    // -- Arrays -----------------------------------------------------------------------------------

    void TakeArray(const TypeInfo& type, u16string_view text, unsigned depth) {
        const bool isBracketed =
            text.starts_with(u'[') && 1 + FindOutside(text.substr(1), u"]") + 1 == text.size();
        u16string_view list = isBracketed ? text.substr(1, text.size() - 2) : text;
        const Kind element = run_.types.Resolve(*type.base).kind;
        isCertain_ = isBracketed;
        const double given = TakeElements(*type.base, list, element == Kind::kArray, depth);
        double total = type.limits.empty() ? 0 : 1;
        for (const Limits& limits : type.limits) {
            int64_t lower = 0;
            int64_t upper = 0;
            const bool isKnown = Types::ReadNumber(limits.lower, lower) &&
                                 Types::ReadNumber(limits.upper, upper) && lower <= upper;
            total *= isKnown ? static_cast<double>(upper - lower) + 1 : 0;
        }
        if (total == 0 || !isCertain_) {
            return;
        }
        if (given > total) {
            Tell(3004, Say("the array has {} elements and is given {} values",
                           static_cast<uint64_t>(total), static_cast<uint64_t>(given)));
        } else if (given < total) {
            Tell(3005, Say("the array has {} elements and is given {} values",
                           static_cast<uint64_t>(total), static_cast<uint64_t>(given)));
        }
    }

    // How many elements the list gives a value.
    double TakeElements(const TypeInfo& element, u16string_view list, bool isNested,
                        unsigned depth) {
        double count = 0;
        list = Trim(list);
        while (!list.empty() && depth < kMostDepth) {
            const u16string_view item = TakeItem(list);
            const std::size_t open = FindOutside(item, u"(");
            int64_t repetition = 0;
            if (open != 0 && open < item.size() && item.back() == u')') {
                if (!Types::ReadNumber(Trim(item.substr(0, open)), repetition) || repetition < 0) {
                    isCertain_ = false;
                    continue;
                }
                const u16string_view inner = Trim(item.substr(open + 1, item.size() - open - 2));
                count += static_cast<double>(repetition) *
                         (inner.empty() ? 1 : TakeElements(element, inner, isNested, depth + 1));
                continue;
            }
            const bool isList = item.starts_with(u'[');
            count += 1;
            if (isList && !isNested) {
                isCertain_ = false;  // dimensions that are written as arrays of arrays
            } else {
                const bool isCertain = isCertain_;
                Take(element, item, depth + 1);
                isCertain_ = isCertain;
            }
        }
        return count;
    }

    // -- Members ----------------------------------------------------------------------------------

    void TakeMembers(const TypeInfo& type, u16string_view text, unsigned depth) {
        if (text.starts_with(u'(') && 1 + FindOutside(text.substr(1), u")") + 1 == text.size()) {
            text = text.substr(1, text.size() - 2);
        }
        const NameTable& members = run_.types.Members(type.object);
        std::unordered_set<uint32_t> met;
        while (!(text = Trim(text)).empty()) {
            const u16string_view item = TakeItem(text);
            const std::size_t assign = FindOutside(item, u":=");
            const u16string_view name = Trim(item.substr(0, assign));
            if (assign == item.size() || !IsName(name)) {
                continue;
            }
            const ID member = members.Find(name);
            if (member == ID() && leftOut_.Of(type.object)) {
                continue;  // of what it extends
            }
            if (member == ID()) {
                Tell(3008, Say("'{}' has no member '{}'", Utf8(type.name), Utf8(name)));
            } else if (!met.insert(member.GetNumber()).second) {
                Tell(3009, Say("the member '{}' is given two values", Utf8(name)));
            } else {
                Take(run_.types.Of(run_.project.GetDeclaration(member)->type),
                     item.substr(assign + 2), depth + 1);
            }
        }
    }

    Run& run_;
    const LeftOut& leftOut_;
    const ID object_;
    bool isCertain_ = true;  // how many elements the array at hand is given
    std::vector<std::pair<uint16_t, Finding*>> told_;
};

// -- Each declaration -----------------------------------------------------------------------------

// Whether the syntax of the type's values is known; editors write the text of strings bare.
bool HasSyntax(const TypeInfo& type) {
    return type.kind == Kind::kElementary || type.kind == Kind::kArray ||
           type.kind == Kind::kEnumeration || type.kind == Kind::kSubrange ||
           type.kind == Kind::kStructure || type.kind == Kind::kBlock;
}

// The first literal in a value of several that is no duration, date or time of day.
u16string_view FindMalformedTime(u16string_view text) {
    const auto isPart = [](char16_t c) {
        return IsWordCharacter(c) || c == u'#' || c == u'-' || c == u':' || c == u'.';
    };
    while (!text.empty()) {
        const auto end = std::ranges::find_if_not(text, isPart);
        const auto length = static_cast<std::size_t>(end - text.begin());
        const u16string_view word = text.substr(0, length);
        if (word.find(u'#') != word.npos && ReadConstant(word).kind == Class::kMalformed) {
            return word;
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return {};
}

void CheckValueOf(Run& run, const LeftOut& leftOut, ID object, Text type, Text text) {
    if (!*text) {
        return;
    }
    const TypeInfo& declared = run.types.Of(type);
    const TypeInfo& resolved = run.types.Resolve(declared);
    // The scanner knows neither integers of 64 bits nor dates that there are not.
    const bool isConstant = ReadConstant(text).kind != Class::kNone;
    const bool isEmptyList = resolved.kind == Kind::kArray && u16string_view(text) == u"[]";
    if (HasSyntax(resolved) && HasSyntax(run.types.Innermost(resolved)) && !isConstant &&
        !isEmptyList && CheckInitSyntax(nullptr, text) != 0) {
        if (const u16string_view time = FindMalformedTime(text); !time.empty()) {
            run.Report(3015, object, Say("'{}' is no duration, date or time of day", Utf8(time)));
            return;
        }
        run.Report(3001, object,
                   Say("the initial value '{}' does not read as a value", Utf8(text)));
        return;
    }
    Value(run, leftOut, object).Take(declared, text);
}

bool IsInput(Text address) {
    return address[0] == u'%' && chars::ToUpper(address[1]) == u'I';
}

void CheckPlace(Run& run, ID id, const Declaration& variable, bool isMember) {
    const Scope scope = variable.section.scope;
    const std::string name = Utf8(variable.name);
    if (*variable.initValue && (scope == Scope::kExternal || scope == Scope::kInOut)) {
        run.Report(
            3012, id,
            scope == Scope::kExternal
                ? Say("'{}' stands for a global and cannot have a value of its own", name)
                : Say("'{}' stands for the caller's variable and cannot have a value", name));
    }
    if (*variable.initValue && IsInput(variable.address)) {
        run.Report(3013, id,
                   Say("the value of '{}' is overwritten when the input {} is read", name,
                       Utf8(variable.address)));
    }
    const bool isOwn = scope == Scope::kLocal || scope == Scope::kGlobal || scope == Scope::kTemp ||
                       scope == Scope::kOutput;
    if (variable.section.constant && isOwn && !isMember && !*variable.initValue &&
        !IsInput(variable.address) && !run.types.GivesValue(run.types.Of(variable.type))) {
        run.Report(3011, id, Say("the constant '{}' has no value", name));
    }
}

void CheckValues(Run& run) {
    const LeftOut leftOut(run);
    for (const ID owner : run.Owners()) {
        const DataType* type = run.project.GetDataType(owner);
        if (type && !type->structure) {
            CheckValueOf(run, leftOut, owner, type->baseType, type->initValue);
        }
        for (const ID id : run.project.Below(owner)) {
            const Declaration& variable = *run.project.GetDeclaration(id);
            CheckPlace(run, id, variable, type != nullptr);
            const Scope scope = variable.section.scope;
            if (scope != Scope::kExternal && scope != Scope::kInOut) {
                CheckValueOf(run, leftOut, id, variable.type, variable.initValue);
            }
        }
    }
}

constexpr Check kRows[] = {
    {3001, "init-syntax", Severity::kError,
     Message("An initial value is a constant, a list of values or an expression of constants"),
     Message("What does not read as a value sets nothing"),
     "<variable name='a'><type><INT/></type><initialValue><simpleValue value='(1'/></initialValue>"
     "</variable>",
     "<variable name='a'><type><INT/></type><initialValue><simpleValue value='1'/></initialValue>"
     "</variable>",
     CheckValues},
    {3002, "init-range", Severity::kError,
     Message("An initial value is one that its type can hold; a number with a base may be the bits "
             "of a negative one"),
     Message("The variable starts with another value than the one that is written"),
     "VAR\n  a : SINT := 300;\nEND_VAR", "VAR\n  a : INT := 300;\nEND_VAR", CheckValues},
    {3003, "init-class", Severity::kError,
     Message("An initial value is of the kind of its type: a number, a text, a duration, a date"),
     Message("The language converts none of them into another"), "VAR\n  a : INT := 'a';\nEND_VAR",
     "VAR\n  a : STRING[1] := 'a';\nEND_VAR", CheckValues},
    {3004, "init-too-many", Severity::kError,
     Message("An array is given no more values than it has elements"),
     Message("Values are lost, or the array is shorter than was meant"),
     "VAR\n  a : ARRAY [1..2] OF INT := [3(1)];\nEND_VAR",
     "VAR\n  a : ARRAY [1..2] OF INT := [2(1)];\nEND_VAR", CheckValues},
    {3005, "init-too-few", Severity::kOff,
     Message("An array that is given values is given one for each element"),
     Message("The others have the default of their type, which may not be what was meant"),
     "VAR\n  a : ARRAY [1..3] OF INT := [1, 2];\nEND_VAR",
     "VAR\n  a : ARRAY [1..3] OF INT := [1, 2, 3];\nEND_VAR", CheckValues},
    {3006, "init-outside-subrange", Severity::kError,
     Message("The initial value of a subrange lies within its limits"),
     Message("The variable starts with a value that it must not have"),
     "VAR\n  a : INT (1..5) := 9;\nEND_VAR", "VAR\n  a : INT (1..5) := 5;\nEND_VAR", CheckValues},
    {3007, "string-cut", Severity::kWarning,
     Message("The initial value of a string has no more characters than the type"),
     Message("What is behind them is cut off"), "VAR\n  s : STRING[2] := 'abc';\nEND_VAR",
     "VAR\n  s : STRING[3] := 'abc';\nEND_VAR", CheckValues},
    {3008, "unknown-member", Severity::kError,
     Message("The initial value of a structure or instance names members that there are"),
     Message("The value sets nothing, and the member that was meant has its default"),
     "VAR\n  t : TON := (PX := T#5s);\nEND_VAR", "VAR\n  t : TON := (PT := T#5s);\nEND_VAR",
     CheckValues},
    {3009, "member-twice", Severity::kError,
     Message("An initial value gives each member one value"),
     Message("Which of the two counts depends on who reads it"),
     "VAR\n  t : TON := (PT := T#5s, PT := T#9s);\nEND_VAR",
     "VAR\n  t : TON := (PT := T#5s, IN := TRUE);\nEND_VAR", CheckValues},
    {3010, "unknown-enumerator", Severity::kError,
     Message("The initial value of an enumeration is one of its values"),
     Message("No variable of the type can have another one"),
     "TYPE Color : (Red, Green); END_TYPE\nPROGRAM Main\nVAR\n  c : Color := Gren;\nEND_VAR\n"
     "END_PROGRAM",
     "TYPE Color : (Red, Green); END_TYPE\nPROGRAM Main\nVAR\n  c : Color := Green;\nEND_VAR\n"
     "END_PROGRAM",
     CheckValues},
    {3011, "constant-without-init", Severity::kWarning, Message("A constant has a value"),
     Message("It has the default of its type for ever"), "VAR CONSTANT\n  k : INT;\nEND_VAR",
     "VAR CONSTANT\n  k : INT := 3;\nEND_VAR", CheckValues},
    {3012, "init-not-allowed", Severity::kError,
     Message("What stands for a variable declared elsewhere has no initial value: VAR_EXTERNAL, "
             "VAR_IN_OUT"),
     Message("The variable has the value of its own declaration, or of the caller"),
     "VAR_IN_OUT\n  a : INT := 1;\nEND_VAR", "VAR_INPUT\n  a : INT := 1;\nEND_VAR", CheckValues},
    {3013, "init-on-input", Severity::kWarning,
     Message("A variable at an input address has no initial value"),
     Message("The first reading of the inputs overwrites it"),
     "VAR\n  a AT %IW0 : INT := 5;\nEND_VAR", "VAR\n  a AT %IW0 : INT;\nEND_VAR", CheckValues},
    {3014, "real-range", Severity::kError,
     Message("The initial value of a REAL is one that 32 bits can hold"),
     Message("It becomes infinite, or is refused"), "VAR\n  a : REAL := 1.0E39;\nEND_VAR",
     "VAR\n  a : LREAL := 1.0E39;\nEND_VAR", CheckValues},
    {3015, "bad-date-time", Severity::kError,
     Message("A duration, a date and a time of day are ones that there are"),
     Message("What is no date becomes another one, or is refused"),
     "VAR\n  d : DATE := D#2023-02-29;\nEND_VAR", "VAR\n  d : DATE := D#2023-02-28;\nEND_VAR",
     CheckValues},
};

}  // namespace

Rows ValueRows() {
    return kRows;
}

}  // namespace lq::host::check
