// Which global a unit means by a name, where several have it: that of the resource that runs the
// unit, or of its configuration.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lq_data/detail/chars.h"
#include "lq_data/export.h"
#include "lq_data/host/model/project.h"

namespace lq::host::uses {

using std::u16string_view;

inline bool Equal(u16string_view a, u16string_view b) {
    return a.size() == b.size() && chars::CompareNoCase(a.data(), b.data(), a.size()) == 0;
}

// The word with which a type's text ends: the type itself, or that of elements.
LQ_DATA_API u16string_view LastWord(u16string_view type);

// Globals of one name, in the order of their entry.
struct SharedName {
    IdList globals;
    bool isOneType = true;    // all are spelled with the same type
    bool isInPlaces = false;  // one of a resource or configuration is among them
    ID free;                  // of those that are in neither, the one that is meant
    bool isFreeOne = true;    // no other of them is
};

// One global, or, where it is not certain which is meant, all that have the name.
struct GlobalFound {
    ID id;
    const SharedName* shared = nullptr;
};

class LQ_DATA_API Globals {
  public:
    explicit Globals(const Project& project);

    // As it is meant in `place`: a unit, a resource or a configuration; null for none of these.
    GlobalFound Find(ID place, u16string_view name);

    // Which resources run a unit, directly or through others: a bit each; above the 63rd all share
    // the last one. What is called is told by its name alone.
    uint64_t RunBy(ID pou);
    // Which resources see the globals of a list below `parent`; all for those of a POU.
    uint64_t SeenBy(ID parent) const;

  private:
    using Edges = std::vector<std::vector<uint32_t>>;

    const SharedName* SharedOf(u16string_view name) const;
    void AddShared(ID global, ID first);
    void Enter(SharedName& shared, ID global);
    ID ParentOf(ID global) const;
    ID FindIn(ID parent, u16string_view name) const;
    GlobalFound FindFor(ID resource, u16string_view name, const SharedName& shared) const;
    GlobalFound FindForAny(ID unit, u16string_view name, const SharedName& shared);

    uint32_t NodeOf(ID object) const;
    ID TypeIn(Text text);
    void AddTypes(const IdList& declarations, std::vector<uint32_t>& edges);
    void AddCalls(uint32_t node, const Pou& pou, std::vector<uint32_t>& edges);
    void Spread();

    const Project& project_;
    std::deque<SharedName> shared_;
    FlatIndex<uint32_t> byName_;    // places in these from 1
    FlatIndex<uint32_t> byParent_;  // numbers of globals that share their name, by list's parent
    // By the names of configurations, in capitals: of one name they are one, in several files.
    std::unordered_map<std::u16string, uint64_t> seenBy_;
    std::vector<uint64_t> runBy_;         // by POU, then by data type; empty until it is asked for
    std::vector<uint32_t> hiddenIn_;      // by POU, the last one, from 1, where a name hides it
    std::unordered_map<Text, ID> types_;  // by text, the unit or data type that it ends with
};

}  // namespace lq::host::uses
