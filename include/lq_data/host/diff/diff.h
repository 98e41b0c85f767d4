// What is different between two projects: for reviews, for version control of exports, for a
// program that takes over what has changed.
//
// What has the same name, without regard to case, is the same thing, wherever its lines stand: a
// variable within its unit, type or holder of global lists, a task within its resource. Of several
// of one name, the first belongs to the first, the second to the second. A global that is in
// another list is the same, too, and of configurations, and of the resources of one, the only one
// on either side that is left counts as renamed.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "lq_data/export.h"
#include "lq_data/host/model/project.h"

namespace lq::host {

enum class Change : uint8_t {
    kAdded,
    kRemoved,
    kChanged,
    kMoved,  // it has another place in the order, where the order means something
};

// What a difference is about. What is in a unit or type that was added or removed is not told by
// itself.
enum class Subject : uint8_t {
    kProject,
    kType,
    kMember,  // of a structure
    kUnit,
    kVariable,
    kBody,   // of a unit or, with its name, of an action or transition
    kLabel,  // in a body
    kJump,   // in a body, by the label
    kCall,   // of a unit that either project or the standard has, by a unit
    kList,   // of global variables
    kConfiguration,
    kResource,
    kTask,
    kProgram,  // an instance
    kCount
};

// Of what has changed, what; one difference each.
enum class Aspect : uint8_t {
    kNone,
    kName,              // of the project, a configuration or a resource
    kKind,              // of a unit
    kType,              // of a variable, member or data type; a function's result; an instance's
    kSection,           // as WrittenSection has it
    kAddress,           // as the next, as it was declared
    kValue,             //
    kComment,           //
    kSecondComment,     //
    kInterfaceComment,  // of a unit
    kEnable,            // whether a unit has EN and ENO
    kLanguage,          // of a body
    kCode,              // of a body: the first place where it differs, with what stands there
    kCondition,         // whether a jump is conditional
    kPriority,          // of a task, as the next
    kInterval,          //
    kEvent,             //
    kTask,              // that runs an instance
    kList,              // that a global is in, with the path of its holder
    kPosition,          // what was moved, from 1
    kCount
};

// The texts hold as long as the call that they are handed to.
struct Difference {
    // One of the two projects. Where it has no such thing, nothing of this is set.
    struct Side {
        ID object;  // of a body, label, jump or call the unit
        // The aspect; of what was added or removed, as what it was declared.
        std::u16string_view text;
        std::u16string_view file;  // as of a Symbol
        uint32_t line = 0;
        uint32_t column = 0;
    };

    Change change = Change::kChanged;
    Subject subject = Subject::kProject;
    Aspect aspect = Aspect::kNone;
    std::u16string_view path;  // the unit, the type, the configuration, "Configuration.Resource"
    std::u16string_view name;  // empty for what the path names; "Action.Label" in an action
    Side before;
    Side after;
};

using TakeDifference = std::function<void(const Difference&)>;

// Hands each difference to `take`, in the order of the second project: the project's name, then
// data types, units and configurations; what was removed stands where it was. What concerns one
// unit, type, configuration or resource stands together.
//
// The language's own texts (types, values, addresses, tasks) are the same whatever the case of
// their letters outside of strings and the blanks between their words; comments, whatever the
// blanks and line breaks between theirs. What not all sources can name is the same without a name:
// the project, and lists of global variables where one project names none. So is a list that
// nothing holds, whoever holds it on the other side.
//
// The order of inputs, outputs and in-outs of a unit and of the members of a structure means
// something: of those that both sides have, the fewest that explain the new order were moved.
//
// What libraries and the standard declare is left out. The code of bodies is compared, token by
// token but for the characters of strings, where both projects keep it (Project::KeepCode); else of
// bodies only what names there are beyond them.
//
// The time and the memory that is needed are in proportion to the projects; neither has to be the
// current one. Throws std::bad_alloc, and what `take` throws.
LQ_DATA_API void ForEachDifference(const Project& before, const Project& after,
                                   const TakeDifference& take);

}  // namespace lq::host
