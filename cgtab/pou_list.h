// Recording instances in a caller's POU_LIST.
#pragma once

#include <cstdint>

#include "cgtab/line_index.h"
#include "frame/growing.h"
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

// Records the instances of one call in the caller's chain, which nobody else changes meanwhile.
class InstanceRecorder {
  public:
    explicit InstanceRecorder(POU_LIST& list) : list_(list) {}
    InstanceRecorder(const InstanceRecorder&) = delete;
    InstanceRecorder& operator=(const InstanceRecorder&) = delete;

    // Adds the instance to the entry of its type, which is made when there is none. False when
    // memory is short: the chain is then as before, but perhaps for an entry without instances.
    bool Record(const NewInstance& instance);

  private:
    // How many instances are worth no index: each costs a walk along the chain.
    static constexpr uint32_t kWalks = 8;

    POU_LIST* EntryOf(const char16_t* typeName);
    POU_LIST* WalkTo(const char16_t* typeName);
    const LineIndex::Slot* Find(uint32_t hash, const char16_t* name);
    bool IndexChain();
    bool IndexEntry(POU_LIST* entry);

    POU_LIST& list_;
    uint32_t walks_ = 0;
    // The chain's entries by their types' names, numbered as they are in `entries_`.
    LineIndex index_;
    Growing<POU_LIST*> entries_;
};

}  // namespace lq::cgtab
