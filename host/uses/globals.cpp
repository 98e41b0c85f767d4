#include "host/uses/globals.h"

#include <algorithm>

namespace lq::host::uses {

namespace {

constexpr uint32_t kLastBit = 63;

uint64_t BitOf(ID resource) {
    return uint64_t{1} << std::min(IndexOf(resource), kLastBit);
}

uint32_t HashIn(ID parent, u16string_view name) {
    return HashOfName(name) ^ (parent.GetNumber() * 0x9E3779B1u);
}

std::u16string Capitals(u16string_view name) {
    std::u16string capitals(name);
    std::ranges::transform(capitals, capitals.begin(), chars::ToUpper);
    return capitals;
}

bool IsPlace(ID parent) {
    return SortOf(parent) == Sort::kResource || SortOf(parent) == Sort::kConfiguration;
}

}  // namespace

u16string_view LastWord(u16string_view type) {
    while (!type.empty() && chars::IsBlank(type.back())) {
        type.remove_suffix(1);
    }
    const std::size_t blank = type.rfind(u' ');
    return blank == type.npos ? type : type.substr(blank + 1);
}

Globals::Globals(const Project& project) : project_(project) {
    for (const Configuration& configuration : project.Configurations()) {
        uint64_t& resources = seenBy_[Capitals(configuration.name)];
        for (const ID id : configuration.resources) {
            resources |= BitOf(id);
        }
    }
    for (const VariableList& list : project.VariableLists()) {
        for (const ID id : list.declarations) {
            if (const ID first = project.FindGlobal(project.NameOf(id)); first != id) {
                AddShared(id, first);
            }
        }
    }
}

// -- Names that several have ----------------------------------------------------------------------

const SharedName* Globals::SharedOf(u16string_view name) const {
    const uint32_t place = byName_.Find(HashOfName(name), [&](uint32_t other) {
        return Equal(project_.NameOf(shared_[other - 1].globals.front()), name);
    });
    return place != 0 ? &shared_[place - 1] : nullptr;
}

void Globals::AddShared(ID global, ID first) {
    const Text name = project_.NameOf(first);
    uint32_t place = static_cast<uint32_t>(shared_.size()) + 1;
    const bool isNew = byName_.AddFirst(place, HashOfName(name), [&](uint32_t other) {
        const bool isSame = Equal(project_.NameOf(shared_[other - 1].globals.front()), name);
        place = isSame ? other : place;
        return isSame;
    });
    if (isNew) {
        Enter(shared_.emplace_back(), first);
    }
    Enter(shared_[place - 1], global);
}

void Globals::Enter(SharedName& shared, ID global) {
    shared.globals.push_back(global);
    shared.isOneType =
        shared.isOneType && project_.GetDeclaration(global)->type ==
                                project_.GetDeclaration(shared.globals.front())->type;
    const ID parent = ParentOf(global);
    const u16string_view name = project_.NameOf(global);
    byParent_.AddFirst(global.GetNumber(), HashIn(parent, name), [&](uint32_t other) {
        return ParentOf(ID(other)) == parent && Equal(project_.NameOf(ID(other)), name);
    });
    if (IsPlace(parent)) {
        shared.isInPlaces = true;
        return;
    }
    const auto isQualified = [this](ID id) {
        return project_.GetVariableList(project_.GetDeclaration(id)->owner)->qualified;
    };
    if (shared.free == ID() || (isQualified(shared.free) && !isQualified(global))) {
        shared.free = global;
    } else if (!isQualified(global)) {
        shared.isFreeOne = false;
    }
}

ID Globals::ParentOf(ID global) const {
    return project_.GetVariableList(project_.GetDeclaration(global)->owner)->parent;
}

ID Globals::FindIn(ID parent, u16string_view name) const {
    return ID(byParent_.Find(HashIn(parent, name), [&](uint32_t other) {
        return ParentOf(ID(other)) == parent && Equal(project_.NameOf(ID(other)), name);
    }));
}

GlobalFound Globals::Find(ID place, u16string_view name) {
    const ID first = project_.FindGlobal(name);
    const SharedName* shared = first == ID() || shared_.empty() ? nullptr : SharedOf(name);
    if (!shared) {
        return {first};
    }
    if (SortOf(place) == Sort::kPou) {
        const ID own = FindIn(place, name);
        return own != ID() ? GlobalFound{own} : FindForAny(place, name, *shared);
    }
    return FindFor(place, name, *shared);
}

// The null identifier where neither the resource nor what is around it has one.
GlobalFound Globals::FindFor(ID resource, u16string_view name, const SharedName& shared) const {
    if (!IsPlace(resource) && shared.isInPlaces) {
        return {{}, &shared};
    }
    ID found = IsPlace(resource) ? FindIn(resource, name) : ID();
    if (const Resource* record = project_.GetResource(resource); record && found == ID()) {
        found = FindIn(record->configuration, name);
    }
    return found != ID()      ? GlobalFound{found}
           : shared.isFreeOne ? GlobalFound{shared.free}
                              : GlobalFound{{}, &shared};
}

GlobalFound Globals::FindForAny(ID unit, u16string_view name, const SharedName& shared) {
    const std::size_t resources = project_.Resources().size();
    uint64_t bits = shared.isInPlaces ? RunBy(unit) : 0;
    if (bits == 0 && resources == 1) {
        bits = 1;  // nothing else can run it
    }
    ID only;
    for (uint32_t i = 0; bits >> i != 0; ++i) {
        if ((bits >> i & 1) == 0) {
            continue;
        }
        const bool isMany = i == kLastBit && resources > kLastBit + 1;
        const GlobalFound found =
            isMany ? GlobalFound{{}, &shared} : FindFor(MakeId(Sort::kResource, i), name, shared);
        if (found.shared || (only != ID() && found.id != ID() && found.id != only)) {
            return {{}, &shared};
        }
        only = found.id != ID() ? found.id : only;
        if (i == kLastBit) {
            break;
        }
    }
    return only != ID() ? GlobalFound{only} : FindFor({}, name, shared);
}

// -- What runs a unit -----------------------------------------------------------------------------

uint64_t Globals::RunBy(ID pou) {
    if (runBy_.empty()) {
        Spread();
    }
    return runBy_[NodeOf(pou)];
}

uint64_t Globals::SeenBy(ID parent) const {
    if (SortOf(parent) == Sort::kResource) {
        return BitOf(parent);
    }
    const Configuration* configuration = project_.GetConfiguration(parent);
    if (!configuration || project_.IsOfLibrary(parent)) {
        return ~uint64_t{0};
    }
    return seenBy_.at(Capitals(configuration->name));
}

uint32_t Globals::NodeOf(ID object) const {
    const auto pous = static_cast<uint32_t>(project_.Pous().size());
    return IndexOf(object) + (SortOf(object) == Sort::kDataType ? pous : 0);
}

ID Globals::TypeIn(Text text) {
    const auto [entry, isNew] = types_.try_emplace(text);
    if (isNew) {
        const u16string_view name = LastWord(text);
        const ID type = project_.FindDataType(name);
        entry->second = type != ID() ? type : project_.FindAnyPou(name);
    }
    return entry->second;
}

void Globals::AddTypes(const IdList& declarations, std::vector<uint32_t>& edges) {
    for (const ID id : declarations) {
        if (const ID type = TypeIn(project_.GetDeclaration(id)->type); type != ID()) {
            edges.push_back(NodeOf(type));
        }
    }
}

// Variables and parts of the unit hide the units of their names; a function's name is its own.
void Globals::AddCalls(uint32_t node, const Pou& pou, std::vector<uint32_t>& edges) {
    const auto hide = [&](u16string_view name) {
        const ID hidden = project_.FindAnyPou(name);
        if (hidden != ID() && NodeOf(hidden) != node) {
            hiddenIn_[NodeOf(hidden)] = node + 1;
        }
    };
    for (const ID id : pou.calls.empty() ? IdList() : pou.declarations) {
        hide(project_.NameOf(id));
    }
    for (const Body& body : pou.bodies) {
        hide(body.name);
        if (const BodyCode* code = project_.CodeOf(body)) {
            for (const BodyPiece& piece : code->pieces) {
                hide(piece.role == PieceRole::kPart ? piece.name : u"");
            }
        }
    }
    for (const Text name : pou.calls) {
        const ID callee = project_.FindAnyPou(name);
        if (callee != ID() && hiddenIn_[NodeOf(callee)] != node + 1) {
            edges.push_back(NodeOf(callee));
        }
    }
}

// From the programs that run, and the instances among the globals, to all that they lead to.
void Globals::Spread() {
    const std::size_t pous = project_.Pous().size();
    runBy_.resize(pous + project_.DataTypes().size() + 1);
    hiddenIn_.resize(pous);
    Edges edges(runBy_.size());
    for (uint32_t i = 0; i < pous; ++i) {
        AddTypes(project_.Pous()[i].declarations, edges[i]);
        AddCalls(i, project_.Pous()[i], edges[i]);
    }
    for (uint32_t i = 0; i < project_.DataTypes().size(); ++i) {
        const DataType& type = project_.DataTypes()[i];
        AddTypes(type.members, edges[pous + i]);
        if (const ID base = TypeIn(type.baseType); base != ID()) {
            edges[pous + i].push_back(NodeOf(base));
        }
    }
    std::vector<uint32_t> pending;
    const auto enter = [&](uint32_t node, uint64_t resources) {
        if ((runBy_[node] | resources) != runBy_[node]) {
            runBy_[node] |= resources;
            pending.push_back(node);
        }
    };
    for (const ProgramInstance& instance : project_.ProgramInstances()) {
        const Task* task = project_.GetTask(instance.parent);
        const ID program = project_.FindPou(instance.typeName);
        if (program != ID()) {
            enter(NodeOf(program), BitOf(task ? task->resource : instance.parent));
        }
    }
    for (const VariableList& list : project_.VariableLists()) {
        const uint64_t resources = SortOf(list.parent) == Sort::kPou ? 0 : SeenBy(list.parent);
        for (const ID id : list.declarations) {
            if (const ID type = TypeIn(project_.GetDeclaration(id)->type); type != ID()) {
                enter(NodeOf(type), resources);
            }
        }
    }
    while (!pending.empty()) {
        const uint32_t node = pending.back();
        pending.pop_back();
        for (const uint32_t next : edges[node]) {
            enter(next, runBy_[node]);
        }
    }
}

}  // namespace lq::host::uses
