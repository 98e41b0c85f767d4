// Recording instances in a caller's POU_LIST.
#pragma once

#include <cstdint>

#include "lq_data/cgtab.h"

namespace lq::cgtab {

// Where the element descriptor lies in an array line: behind the length field and the type.
inline constexpr int32_t kElementDescriptor = 8;

// Kinds of instance records: the tables that their positions lie in.
inline constexpr uint32_t kInstanceOfUnit = CgTab::TAB_CMP;
inline constexpr uint32_t kArrayOfStructures = CgTab::TAB_ARR;

struct NewInstance {
    uint32_t kind;
    const char16_t* typeName;
    const char16_t* name;
    const char16_t* memberInit;  // empty: no member initialisations are kept
    int32_t pos;
};

// Adds the instance to the entry of its type, which is made when there is none. False when memory
// is short: the list is then as before, but perhaps for an entry without instances.
bool RecordInstance(POU_LIST& list, const NewInstance& instance);

}  // namespace lq::cgtab
