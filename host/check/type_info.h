// What the type texts of a project mean. Each text is read once.
#pragma once

#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/check/name_table.h"
#include "host/check/value.h"
#include "lq_data/host/model/project.h"

namespace lq::host::check {

struct Limits {
    u16string_view lower;  // as written
    u16string_view upper;
};

struct TypeInfo {
    enum class Kind : uint8_t {
        kUnchecked,  // a reference, a nameless structure, a type of a later edition
        kUnknown,    // no type and no unit has the name
        kElementary,
        kGeneric,
        kString,
        kArray,
        kEnumeration,
        kSubrange,
        kStructure,
        kBlock,
        kUnit,   // a function or a program
        kAlias,  // the name of a data type that is no structure
    };

    Kind kind = Kind::kUnchecked;
    IEC_TYPE elementary = IEC_NO_TYPE;   // IEC_STRING for WSTRING, too
    bool isWide = false;                 // WSTRING
    bool hasNumbers = false;             // an enumeration's values have some
    u16string_view name;                 // of all that have one
    u16string_view length;               // of a string, as written; empty for none
    ID object;                           // the data type or unit
    const TypeInfo* base = nullptr;      // the elements of an array, what a subrange is of
    std::vector<Limits> limits;          // of an array or a subrange
    std::vector<u16string_view> values;  // of an enumeration
};

class Types {
  public:
    explicit Types(const Project& project) : project_(project) {}

    // Of a text of the project.
    const TypeInfo& Of(Text text);
    // What stands behind aliases.
    const TypeInfo& Resolved(Text text) { return Resolve(Of(text)); }
    const TypeInfo& Resolve(const TypeInfo& type);
    // The same, through arrays.
    const TypeInfo& Innermost(const TypeInfo& type);
    // What stands behind aliases and subranges.
    const TypeInfo& WithoutLimits(const TypeInfo& type);
    // Whether a type, or what it stands for, gives its variables a value.
    bool GivesValue(const TypeInfo& type);
    // The type that is named last, through arrays but not through aliases.
    const TypeInfo& Named(Text text);

    // Whether a name was met that no type has.
    bool HasUnknown() const { return hasUnknown_; }

    // The members of a structure, the declarations of a block.
    const NameTable& Members(ID holder);

    // The data types that have the value.
    const IdList& EnumerationsWith(u16string_view value);

    // A whole number; false for a name and for what is none.
    static bool ReadNumber(u16string_view text, int64_t& number);

  private:
    const TypeInfo& Read(u16string_view text, unsigned depth);
    void ReadWord(u16string_view word, u16string_view rest, unsigned depth, TypeInfo& type);
    void ReadArray(u16string_view rest, unsigned depth, TypeInfo& type);
    void ReadNamed(u16string_view name, TypeInfo& type);

    const Project& project_;
    std::deque<TypeInfo> types_;
    std::unordered_map<Text, const TypeInfo*> byText_;
    std::unordered_map<uint32_t, NameTable> members_;
    Text last_ = nullptr;
    const TypeInfo* lastType_ = nullptr;
    bool hasUnknown_ = false;
    bool knowsEnumerators_ = false;
    std::unordered_map<std::u16string, IdList> enumerators_;  // in capitals
    const IdList none_;
    const TypeInfo unchecked_;
};

}  // namespace lq::host::check
