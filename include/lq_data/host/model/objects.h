// What a project holds: plain records whose texts lie in the project's text pool. Lines and columns
// are counted from 1 in the file that a record came from; 0 says that none is known.
#pragma once

#include <cstdint>
#include <vector>

#include "lq_data/env/lq_model.h"
#include "lq_data/host/model/section.h"
#include "lq_data/host/model/text_pool.h"

namespace lq::host {

// The sorts of objects; an identifier tells its object's sort. A POU's header answers its POU's.
enum class Sort : uint32_t {
    kNone,
    kDeclaration,
    kPou,
    kDataType,
    kVariableList,
    kConfiguration,
    kResource,
    kTask,
    kProgramInstance,
    kPool,
    kCount
};

inline constexpr uint32_t kSortShift = 28;
inline constexpr uint32_t kMaxObjects = (1u << kSortShift) - 1;  // of one sort

// `index` counts the objects of a sort from 0.
constexpr ID MakeId(Sort sort, uint32_t index) {
    return ID((static_cast<uint32_t>(sort) << kSortShift) | (index + 1));
}
constexpr Sort SortOf(ID id) {
    return static_cast<Sort>(id.GetNumber() >> kSortShift);
}
// The object's index among those of its sort; for the null identifier one that no object has.
constexpr uint32_t IndexOf(ID id) {
    return (id.GetNumber() & kMaxObjects) - 1;
}

// Kinds (GetKind) of the objects that have none in lq_model.h.
enum ModelKind : int32_t {
    kKindConfiguration = 100,
    kKindResource = 101,
    kKindTask = 102,
    kKindProgramInstance = 103,
    kKindVariableList = 104,
    kKindPool = 105,
    kKindHeader = 106,
    kKindHeaderDeclaration = 107,
};

using IdList = std::vector<ID>;

// A file that a project was read from.
struct SourceFile {
    Text name = u"";         // as messages call it
    bool isLibrary = false;  // what it has is known, and not the project's own
};

// A variable or a structure's member. A large project has a hundred thousand of them.
struct Declaration {
    Text name = u"";
    Text type = u"";
    Text initValue = u"";
    Text address = u"";
    Text comment = u"";
    Text comment2 = u"";  // of VAR_ACCESS the path that the name gives access to
    ID owner;             // the POU, data type or variable list
    uint32_t line = 0;
    uint32_t column = 0;
    Section section;

    // Temporaries and members answer as declarations of scope VAR.
    int32_t Kind() const;
};
static_assert(sizeof(Declaration) <= 64);

enum class Language : uint8_t { kNone, kSt, kIl, kFbd, kLd, kSfc };

// A label, or a jump to one.
struct Mark {
    Text name = u"";
    uint32_t line = 0;
    uint32_t column = 0;
    bool conditional = false;  // of a jump
};

struct Body {
    Text name = u"";  // of the action or transition; empty for the POU's own
    Language language = Language::kNone;
    uint32_t line = 0;
    uint32_t column = 0;
    uint32_t code = 0;  // the project's; 0 when none is kept (Project::CodeOf)
    std::vector<Mark> labels;
    std::vector<Mark> jumps;
};

struct Pou {
    Text name = u"";
    LQ_OBJECT_KIND kind = LQ_KIND_PROGRAM;
    Text resultType = u"";     // of a function
    Text comment = u"";        // on the POU
    Text headerComment = u"";  // on its interface
    bool eno = false;
    bool isStandard = false;  // a block that the standard defines
    uint32_t line = 0;
    uint32_t column = 0;
    IdList declarations;
    std::vector<Body> bodies;
    std::vector<Text> calls;    // names that the bodies call, each once
    FlatIndex<Text> callIndex;  // of these
    IdList implicit;            // declarations of AddAside: EN and ENO, VAR_ACCESS
    IdList spare;               // of declarations that were removed
};

struct DataType {
    Text name = u"";
    bool structure = false;
    Text baseType = u"";  // empty for a structure
    Text initValue = u"";
    Text comment = u"";
    uint32_t line = 0;
    uint32_t column = 0;
    IdList members;  // of a structure
};

// A global variable list.
struct VariableList {
    Text name = u"";
    Text comment = u"";
    ID parent;  // the configuration, resource or POU; null for one outside of all
    // Its globals are known by the name of the list alone, as "List.global": a pragma says so.
    // Where the project keeps no code, no pragma is looked at.
    bool qualified = false;
    uint32_t line = 0;
    uint32_t column = 0;
    IdList declarations;
};

struct Configuration {
    Text name = u"";
    Text comment = u"";
    uint32_t line = 0;
    uint32_t column = 0;
    IdList resources;
};

struct Resource {
    Text name = u"";
    Text comment = u"";
    ID configuration;
    uint32_t line = 0;
    uint32_t column = 0;
    IdList tasks;
    IdList programs;  // instances without a task
};

struct Task {
    Text name = u"";
    Text priority = u"";
    Text interval = u"";  // an IEC duration, or the name of a variable
    Text event = u"";
    Text comment = u"";
    ID resource;
    uint32_t line = 0;
    uint32_t column = 0;
    IdList programs;  // instances
};

struct ProgramInstance {
    Text name = u"";
    Text typeName = u"";
    Text comment = u"";
    ID parent;  // the task or resource
    uint32_t line = 0;
    uint32_t column = 0;
};

}  // namespace lq::host
