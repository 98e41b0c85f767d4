#include "host/check/graph.h"

#include <algorithm>

#include "lq_data/host/words/words.h"

namespace lq::host::check {

namespace {

constexpr uint32_t kNone = 0xFFFFFFFF;

bool IsReference(Scope scope) {
    return scope == Scope::kInOut || scope == Scope::kExternal;
}

// The groups of nodes that reach each other, each by the number of its group: a search in depth
// that knows for each node the earliest one that it leads back to, without the stack of calls that
// a long chain would take.
class Groups {
  public:
    Groups(const std::vector<std::vector<Graph::Edge>>& edges, unsigned ways)
        : edges_(edges),
          ways_(ways),
          order_(edges.size(), kNone),
          low_(edges.size()),
          groups_(edges.size(), kNone) {
        for (uint32_t node = 0; node < edges.size(); ++node) {
            if (order_[node] == kNone) {
                Search(node);
            }
        }
    }

    uint32_t GroupOf(uint32_t node) const { return groups_[node]; }

  private:
    struct Frame {
        uint32_t node;
        std::size_t next;  // the edge to follow
    };

    void Open(uint32_t node) {
        order_[node] = low_[node] = count_++;
        open_.push_back(node);
        frames_.push_back({node, 0});
    }

    void Search(uint32_t start) {
        Open(start);
        while (!frames_.empty()) {
            const uint32_t node = frames_.back().node;
            if (frames_.back().next < edges_[node].size()) {
                Follow(node, edges_[node][frames_.back().next++]);
                continue;
            }
            frames_.pop_back();
            if (!frames_.empty()) {
                const uint32_t caller = frames_.back().node;
                low_[caller] = std::min(low_[caller], low_[node]);
            }
            if (low_[node] == order_[node]) {
                Close(node);
            }
        }
    }

    void Follow(uint32_t node, const Graph::Edge& edge) {
        if ((edge.way & ways_) == 0) {
            return;
        }
        if (order_[edge.to] == kNone) {
            Open(edge.to);
        } else if (groups_[edge.to] == kNone) {
            low_[node] = std::min(low_[node], order_[edge.to]);
        }
    }

    void Close(uint32_t first) {
        for (uint32_t node = kNone; node != first;) {
            node = open_.back();
            open_.pop_back();
            groups_[node] = first;
        }
    }

    const std::vector<std::vector<Graph::Edge>>& edges_;
    const unsigned ways_;
    uint32_t count_ = 0;
    std::vector<uint32_t> order_;
    std::vector<uint32_t> low_;
    std::vector<uint32_t> groups_;
    std::vector<uint32_t> open_;
    std::vector<Frame> frames_;
};

}  // namespace

Graph::Graph(const Project& project, Types& types, uses::Globals& globals)
    : project_(project), types_(types), globals_(globals) {
    edges_.resize(project.Pous().size() + project.DataTypes().size());
    instances_.resize(edges_.size());
    for (uint32_t i = 0; i < project.Pous().size(); ++i) {
        AddDeclarations(i, project.Pous()[i].declarations);
        AddCalls(i, MakeId(Sort::kPou, i));
    }
    for (uint32_t i = 0; i < project.DataTypes().size(); ++i) {
        const ID id = MakeId(Sort::kDataType, i);
        AddDeclarations(NodeOf(id), project.DataTypes()[i].members);
        AddType(NodeOf(id), kHolds, project.DataTypes()[i].baseType, {});
    }
    AddRoots();
}

uint32_t Graph::NodeOf(ID object) const {
    const auto pous = static_cast<uint32_t>(project_.Pous().size());
    return IndexOf(object) + (SortOf(object) == Sort::kDataType ? pous : 0);
}

ID Graph::ObjectOf(uint32_t node) const {
    const auto pous = static_cast<uint32_t>(project_.Pous().size());
    return node < pous ? MakeId(Sort::kPou, node) : MakeId(Sort::kDataType, node - pous);
}

void Graph::AddDeclarations(uint32_t node, const IdList& declarations) {
    for (const ID id : declarations) {
        const Declaration& declaration = *project_.GetDeclaration(id);
        AddType(node, IsReference(declaration.section.scope) ? kRefers : kHolds, declaration.type,
                id);
    }
}

void Graph::AddType(uint32_t node, Way way, Text text, ID declaration) {
    const TypeInfo& type = types_.Named(text);
    if (type.kind == TypeInfo::Kind::kBlock || SortOf(type.object) == Sort::kDataType) {
        edges_[node].push_back({NodeOf(type.object), way, declaration});
        const Pou* holder = project_.GetPou(ObjectOf(node));
        const bool isOne = holder && holder->kind == LQ_KIND_PROGRAM &&
                           types_.Of(text).kind == TypeInfo::Kind::kBlock;
        instances_[NodeOf(type.object)] += way == kHolds ? (isOne ? 1 : 2) : 0;
    }
}

bool Graph::HasOneInstance(ID block) const {
    return instances_[NodeOf(block)] == 1;
}

namespace {

// The actions and transitions of a POU, in capitals, those of charts among them.
std::unordered_set<std::u16string> PartsOf(const Project& project, const Pou& pou) {
    std::unordered_set<std::u16string> parts;
    for (const Body& body : pou.bodies) {
        parts.insert(Upper(body.name));
        if (const BodyCode* code = project.CodeOf(body)) {
            for (const BodyPiece& piece : code->pieces) {
                if (piece.role == PieceRole::kPart) {
                    parts.insert(Upper(piece.name));
                }
            }
        }
    }
    return parts;
}

}  // namespace

void Graph::AddCalls(uint32_t node, ID unit) {
    const Pou& pou = *project_.GetPou(unit);
    const std::unordered_set<std::u16string> parts =
        pou.calls.empty() ? std::unordered_set<std::u16string>() : PartsOf(project_, pou);
    for (const Text name : pou.calls) {
        const ID local = types_.Members(unit).Find(name);
        if (local == ID() && parts.contains(Upper(name))) {
            continue;
        }
        const uses::GlobalFound global =
            local == ID() ? globals_.Find(unit, name) : uses::GlobalFound();
        const ID variable = local != ID() ? local : global.id;
        ID callee;
        if ((variable != ID() || global.shared) && !chars::EqualNoCase(name, pou.name)) {
            const Declaration* declaration = project_.GetDeclaration(variable);
            const TypeInfo& type = declaration ? types_.Resolved(declaration->type) : TypeInfo();
            callee = type.kind == TypeInfo::Kind::kBlock ? type.object : ID();
        } else {
            callee = project_.FindAnyPou(name);
            hasUnknownCalls_ = hasUnknownCalls_ || (callee == ID() && !IsStandardFunction(name) &&
                                                    !IsInstruction(name));
        }
        if (callee != ID()) {
            edges_[node].push_back({NodeOf(callee), kCalls, {}});
        }
    }
}

void Graph::ReplaceCalls(const IdList& units, const std::vector<Call>& calls) {
    for (const ID unit : units) {
        std::erase_if(edges_[NodeOf(unit)], [](const Edge& edge) { return edge.way == kCalls; });
    }
    for (const Call& call : calls) {
        edges_[NodeOf(call.from)].push_back({NodeOf(call.to), kCalls, {}});
    }
}

// Globals of a POU are no roots: something runs that, or nothing.
void Graph::AddRoots() {
    isRoot_.resize(edges_.size());
    for (uint32_t i = 0; i < project_.Pous().size(); ++i) {
        isRoot_[i] = project_.Pous()[i].kind == LQ_KIND_PROGRAM;
    }
    for (const ProgramInstance& instance : project_.ProgramInstances()) {
        if (const ID program = project_.FindPou(instance.typeName); program != ID()) {
            isRoot_[NodeOf(program)] = true;
        }
    }
    for (const VariableList& list : project_.VariableLists()) {
        if (SortOf(list.parent) == Sort::kPou) {
            continue;
        }
        for (const ID id : list.declarations) {
            const TypeInfo& type = types_.Named(project_.GetDeclaration(id)->type);
            if (type.kind == TypeInfo::Kind::kBlock || SortOf(type.object) == Sort::kDataType) {
                isRoot_[NodeOf(type.object)] = true;
                instances_[NodeOf(type.object)] += type.kind == TypeInfo::Kind::kBlock ? 1 : 2;
            }
        }
    }
}

std::vector<Graph::Cycle> Graph::Cycles(unsigned ways) const {
    const Groups groups(edges_, ways);
    std::vector<Cycle> cycles;
    std::vector<bool> isTold(edges_.size());
    std::vector<Step> cameBy(edges_.size(), Step{kNone, nullptr});
    for (uint32_t start = 0; start < edges_.size(); ++start) {
        const uint32_t group = groups.GroupOf(start);
        if (isTold[group]) {
            continue;
        }
        isTold[group] = true;
        // The shortest way back to the start, within its group.
        std::vector<uint32_t> pending = {start};
        const Edge* last = nullptr;
        uint32_t lastFrom = start;
        for (std::size_t i = 0; i < pending.size() && !last; ++i) {
            for (const Edge& edge : edges_[pending[i]]) {
                if ((edge.way & ways) == 0 || groups.GroupOf(edge.to) != group) {
                    continue;
                }
                if (edge.to == start) {
                    last = &edge;
                    lastFrom = pending[i];
                    break;
                }
                if (!cameBy[edge.to].edge) {
                    cameBy[edge.to] = {pending[i], &edge};
                    pending.push_back(edge.to);
                }
            }
        }
        if (!last) {
            continue;
        }
        Cycle cycle = {{lastFrom, last}};
        for (uint32_t at = lastFrom; at != start; at = cycle.back().from) {
            cycle.push_back(cameBy[at]);
        }
        std::ranges::reverse(cycle);
        cycles.push_back(std::move(cycle));
    }
    return cycles;
}

}  // namespace lq::host::check
