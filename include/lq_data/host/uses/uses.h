// Where a project uses what: every name in the bodies of its units, resolved as the language does,
// with its place and whether it is read, written or called.
//
// A body's name is one of its unit (a variable, an implicit parameter, a step, an action, the
// result of a function), else a global, an enumerator, a unit, a data type or a function of the
// standard. Behind a point, names are members of what stands before it; a name in front of ":=" or
// "=>" in the brackets of a call is a parameter of what is called; a name behind "#" is one of the
// type in front.
//
// Of several globals of a name the one is meant that the resource which runs the unit has, or its
// configuration. Where resources that run the unit have one each, or nothing runs it, any of them
// may be.
//
// Bodies have code only where the project was to keep it (Project::KeepCode) before it was read.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "lq_data/export.h"
#include "lq_data/host/model/project.h"

namespace lq::host {

// What a name stands for.
enum class UseObject : uint8_t {
    kUnknown,
    kVariable,    // `id` is the declaration, of a unit or, behind a point, of a structure
    kGlobal,      // `global` is the declaration, `id` the unit's external if it has one; where
                  // `global` is null, which one is meant is not certain: one of `globals`
    kResult,      // of the function that the body is part of; `id` is that
    kEnumerator,  // `id` is the data type, or the declaration of a nameless enumeration's variable
    kUnit,        // `id` is the POU
    kType,        // `id` is the data type
    kList,        // `id` is the global variable list
    kPart,        // a step, action or transition of the unit
    kFunction,    // of the standard
    kParameter,   // one that what is called has not, `id`, or null when that is not known
    kMember,      // likewise behind a point
    kAddress,     // a direct address
};

enum class UseKind : uint8_t {
    kRead,
    kWrite,
    kReadWrite,  // passed to an in-out parameter
    kCall,       // of a unit, a function, or an instance, which is written to then
    kUnknown,    // passed to something unknown, its address taken, or in a pragma
    kDeclare,    // named as a type
};

struct Use {
    UseObject object = UseObject::kUnknown;
    UseKind kind = UseKind::kRead;
    ID id;
    ID global;
    std::span<const ID> globals;  // of one name, where resources have one each; else empty
    Text name = u"";              // as it is spelled; holds as long as the call
    ID unit;                      // whose body it is; of a declaration the unit's, null for others
    const Body* body = nullptr;   // null in declarations
    PieceRole role = PieceRole::kSt;  // of the piece of the body
    bool isInPragma = false;
    bool isElement = false;  // an index follows: of the array that the name stands for
    uint32_t line = 0;
    uint32_t column = 0;
    ID where;  // what the place is in: the unit, declaration, data type, task or instance
};

struct UseOptions {
    bool declarations = true;  // initial values, bounds and types, too, and tasks
    bool libraries = false;    // those in libraries, too
};

using TakeUse = std::function<void(const Use&)>;

// Hands each use to `take`, those of a body in the order of its text. The time is in proportion to
// the project. Throws std::bad_alloc, and what `take` throws.
LQ_DATA_API void ForEachUse(const Project& project, const UseOptions& options, const TakeUse& take);

}  // namespace lq::host
