#include "host/uses/paths.h"

#include "lq_data/detail/chars.h"

namespace lq::host::uses {

namespace {

uint32_t HashIn(ID parent, u16string_view name) {
    return HashOfName(name) ^ (parent.GetNumber() * 0x9E3779B1u);
}

ID HolderOf(const Project& project, ID object) {
    if (const Resource* resource = project.GetResource(object)) {
        return resource->configuration;
    }
    const ProgramInstance* instance = project.GetProgramInstance(object);
    const Task* task = instance ? project.GetTask(instance->parent) : nullptr;
    return task ? task->resource : instance ? instance->parent : ID();
}

}  // namespace

// The name in front of the first point, without the indexes behind it; it goes from `path`.
u16string_view Paths::TakeStep(u16string_view& path) {
    std::size_t end = 0;
    std::size_t depth = 0;
    for (; end < path.size() && (depth > 0 || path[end] != u'.'); ++end) {
        depth += path[end] == u'[' ? 1u : 0u;
        depth -= path[end] == u']' && depth > 0 ? 1u : 0u;
    }
    u16string_view step = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    step = step.substr(0, step.find(u'['));
    while (!step.empty() && chars::IsBlank(step.front())) {
        step.remove_prefix(1);
    }
    while (!step.empty() && chars::IsBlank(step.back())) {
        step.remove_suffix(1);
    }
    return step;
}

ID Paths::Below(ID parent, u16string_view name) {
    const Project& project = names_.GetProject();
    if (!isRead_) {
        isRead_ = true;
        const auto add = [&](Sort sort, std::size_t count) {
            for (uint32_t i = 0; i < count; ++i) {
                const ID id = MakeId(sort, i);
                below_.Add(id.GetNumber(), HashIn(HolderOf(project, id), project.NameOf(id)));
            }
        };
        add(Sort::kResource, project.Resources().size());
        add(Sort::kProgramInstance, project.ProgramInstances().size());
    }
    return ID(below_.Find(HashIn(parent, name), [&](uint32_t number) {
        return HolderOf(project, ID(number)) == parent && Equal(project.NameOf(ID(number)), name);
    }));
}

// One step. A configuration may be named in front, and its only resource be left out.
bool Paths::Go(u16string_view name) {
    const Project& project = names_.GetProject();
    if (at_) {
        at_ = names_.MemberOf(at_, name);
        return static_cast<bool>(at_);
    }
    const bool isFirst = isFirst_;
    isFirst_ = false;
    if (SortOf(owner_) == Sort::kPou) {
        at_ = names_.OfUnit(owner_, name);
        return static_cast<bool>(at_);
    }
    const Configuration* configuration = project.GetConfiguration(owner_);
    ID below = Below(owner_, name);
    if (project.GetResource(below)) {
        owner_ = below;
        return true;
    }
    if (below == ID() && configuration && configuration->resources.size() == 1) {
        below = Below(configuration->resources.front(), name);
    }
    if (const ProgramInstance* instance = project.GetProgramInstance(below)) {
        at_ = {UseObject::kUnit, project.FindPou(instance->typeName), {}};
        return at_.id != ID();
    }
    at_ = names_.OfProject(owner_, name);
    if (at_.object == UseObject::kGlobal) {
        return true;
    }
    at_ = {};
    return isFirst && configuration && Equal(configuration->name, name);
}

}  // namespace lq::host::uses
