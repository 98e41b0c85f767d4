// The variables that a project declares, one after the other: for lists, for other programs, for
// visualisations. Nothing is held in memory but what an order needs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "lq_data/export.h"
#include "lq_data/host/model/project.h"

namespace lq::host {

// Why a variable or member that has members, or may have, stands in an expansion as a whole.
enum class Unexpanded : uint8_t {
    kNone,
    kUnknownType,  // no data type and no function block has the type's name
    kRecursive,    // the type contains itself
    kReference,    // in-out, external, configured or a way to one: another variable's members
    kBounds,  // the array's bounds are not whole numbers in their order, or it has no element type
    kElements,         // an array of more than kMostElements elements
    kDepth,            // in more than kMostDepth types and arrays
    kMembers,          // the variable has had kMostMembers members
    kNameless,         // a structure without a name
    kEmpty,            // the type has no members
    kUnsupportedType,  // of a later edition of the language, or a reference of its form
    // It has an address, which is not surely its first member's: the members follow.
    kOnlyBeginning,
};

inline constexpr std::size_t kMostElements = 1000;
inline constexpr std::size_t kMostDepth = 64;
inline constexpr std::size_t kMostMembers = 100'000;

// A variable, or with SymbolOptions::expand a member of one. The texts hold as long as the call
// that they are handed to.
struct Symbol {
    std::u16string_view path;  // the unit, the configuration, or "Configuration.Resource"
    std::u16string_view name;  // in VAR_CONFIG the instance's path; of a member with what it is in:
                               // "mixers[2].Speed"
    std::u16string_view
        section;  // as WrittenSection has it; members of structures have the variable's
    std::u16string_view type;  // as it was declared
    // As it was declared; in VAR_ACCESS the path that the name gives access to. In an expansion
    // certain addresses only: that of its own declaration, where this leaves it to VAR_CONFIG the
    // one that is given there, and where a located structure begins and the sizes agree, that of
    // the structure. What follows lies where each target puts it, and has no address here.
    std::u16string_view address;
    // As it was declared. Of a member empty where a variable or type that it is in has a value: it
    // may set the member's.
    std::u16string_view initial;
    std::u16string_view comment;
    // Where it was declared; members of the standard's blocks have the variable's place. No file
    // and 0 for what came from none.
    std::u16string_view file;
    uint32_t line = 0;
    uint32_t column = 0;
    ID declaration;  // of the variable, also where this is a member of it
    Unexpanded unexpanded = Unexpanded::kNone;
    std::u16string_view unexpandedType;  // the type that the reason is about; may be empty
};

struct SymbolOptions {
    enum class Order : uint8_t { kProject, kName, kAddress };

    ID unit;               // only this POU's; null for all
    bool located = false;  // only what has an address, and the members of such
    // In place of a variable its elementary members: of structures, of function block instances
    // all but what is temporary or external, of arrays of these each element. An array of
    // elementary types is one member. What has an address that none of its members has here stands
    // in front of them. Needs memory for each address that VAR_CONFIG gives.
    bool expand = false;
    // By name without regard to case, then by path; by address, first by location, then by size,
    // then by numbers, those without an address last. What is equal stays in the order of the
    // project, and members behind each other. Needs four bytes a variable.
    Order order = Order::kProject;
};

using TakeSymbol = std::function<void(const Symbol&)>;

// Hands each variable to `take`: those of POUs, their implicit parameters EN and ENO too, and of
// global variable lists, and what configurations say of variables (VAR_CONFIG) and of ways to them
// from outside (VAR_ACCESS). Members of data
// types are none, and a function's result is none. What libraries and the standard declare is left
// out. An expansion does not tell EN and ENO of instances.

// Throws std::bad_alloc, and what `take` throws.
LQ_DATA_API void ForEachSymbol(const Project& project, const SymbolOptions& options,
                               const TakeSymbol& take);

}  // namespace lq::host
