#include "lq_data/host/model/translation_source.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace lq::host {

namespace {

IdList Own(const Project& project, IdList ids) {
    std::erase_if(ids, [&project](ID id) { return project.IsOfLibrary(id); });
    return ids;
}

IdList All(Sort sort, std::size_t count) {
    IdList ids;
    ids.reserve(count);
    for (uint32_t index = 0; index < count; ++index) {
        ids.push_back(MakeId(sort, index));
    }
    return ids;
}

// Those of a library count where the project has an external of one of its globals.
IdList Globals(const Project& project) {
    const IdList all = All(Sort::kVariableList, project.VariableLists().size());
    IdList lists = Own(project, all);
    if (lists.size() == all.size()) {
        return lists;
    }
    std::vector<bool> isUsed(all.size());
    for (uint32_t index = 0; index < project.Declarations().size(); ++index) {
        const Declaration& declaration = project.Declarations()[index];
        if (declaration.section.scope == Scope::kExternal &&
            !project.IsOfLibrary(MakeId(Sort::kDeclaration, index))) {
            const ID global = project.FindGlobal(declaration.name);
            if (const Declaration* record = project.GetDeclaration(global)) {
                isUsed[IndexOf(record->owner)] = true;
            }
        }
    }
    std::ranges::copy_if(all, std::back_inserter(lists), [&](ID list) {
        return isUsed[IndexOf(list)] && project.IsOfLibrary(list);
    });
    return lists;
}

}  // namespace

ProjectSource::ProjectSource(const Project& project)
    : project_(project),
      globals_(Globals(project)),
      types_(Own(project, All(Sort::kDataType, project.DataTypes().size()))),
      units_(Own(project, project.Below(project.PouPool()))) {}

SourcePlace ProjectSource::GetPlace(ID id) {
    return {project_.LineOf(id), project_.ColumnOf(id)};
}

bool ProjectSource::IsTemporary(ID declaration) {
    const Declaration* const record = project_.GetDeclaration(declaration);
    return record && record->section.scope == Scope::kTemp;
}

void ProjectSource::GiveMarks(ID unit, MarkTaker& taker) {
    const Pou* const pou = project_.GetPou(unit);
    if (!pou) {
        return;
    }
    for (const Body& body : pou->bodies) {
        for (const auto* marks : {&body.labels, &body.jumps}) {
            for (const Mark& mark : *marks) {
                taker.Take({.body = body.name,
                            .name = mark.name,
                            .isDefinition = marks == &body.labels,
                            .place = {mark.line, mark.column}});
            }
        }
    }
}

}  // namespace lq::host
