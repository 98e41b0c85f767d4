// Who holds whom, and who calls whom: units and data types, and what leads from one to another.
#pragma once

#include <cstdint>
#include <unordered_set>
#include <vector>

#include "host/check/type_info.h"
#include "host/uses/globals.h"

namespace lq::host::check {

class Graph {
  public:
    enum Way : unsigned {
        kHolds = 1,   // a part of it, with memory of its own
        kRefers = 2,  // an instance that is declared elsewhere
        kCalls = 4,   // of a unit, by its name or that of an instance
    };

    struct Edge {
        uint32_t to;
        Way way;
        ID declaration;  // null for a call
    };

    struct Step {
        uint32_t from;
        const Edge* edge;
    };
    using Cycle = std::vector<Step>;

    Graph(const Project& project, Types& types, uses::Globals& globals);

    // A node of a POU or data type.
    uint32_t NodeOf(ID object) const;
    ID ObjectOf(uint32_t node) const;
    const std::vector<Edge>& From(ID object) const { return edges_[NodeOf(object)]; }

    // As Globals have it.
    uint64_t RunBy(ID pou) const { return globals_.RunBy(pou); }
    uint64_t SeenBy(ID parent) const { return globals_.SeenBy(parent); }
    // Whether it is a program, or the type of a global.
    bool IsRoot(ID object) const { return isRoot_[NodeOf(object)]; }
    // Whether one program, or one list of globals, declares the only instance of a function block.
    bool HasOneInstance(ID block) const;
    // Whether something is called that is not known.
    bool HasUnknownCalls() const { return hasUnknownCalls_; }

    // A call as the walk over bodies finds it; what units call by the names that stand in front of
    // brackets is no longer told then.
    struct Call {
        ID from;
        ID to;
    };
    void ReplaceCalls(const IdList& units, const std::vector<Call>& calls);

    // A cycle of each group of nodes that reach each other by these ways.
    std::vector<Cycle> Cycles(unsigned ways) const;

  private:
    void AddDeclarations(uint32_t node, const IdList& declarations);
    void AddCalls(uint32_t node, ID unit);
    void AddType(uint32_t node, Way way, Text type, ID declaration);
    void AddRoots();

    const Project& project_;
    Types& types_;
    uses::Globals& globals_;
    std::vector<std::vector<Edge>> edges_;
    std::vector<bool> isRoot_;
    std::vector<unsigned> instances_;  // declared ones; of an array, or in what has more, two
    bool hasUnknownCalls_ = false;
};

}  // namespace lq::host::check
