#include "lq_data/host/model/translation_source.h"

namespace lq::host {

namespace {

const IdList& UnitsOf(const Project& project) {
    return project.Below(project.PouPool());
}

}  // namespace

ProjectSource::ProjectSource(const Project& project)
    : project_(project),
      globals_(Sort::kVariableList, project.VariableLists().size()),
      types_(Sort::kDataType, project.DataTypes().size()),
      units_(UnitsOf(project).data(), static_cast<int32_t>(UnitsOf(project).size())) {}

SourcePlace ProjectSource::GetPlace(ID id) {
    if (const Declaration* const declaration = project_.GetDeclaration(id)) {
        return {declaration->line, declaration->column};
    }
    const Pou* const pou = project_.GetPou(id);
    return pou ? SourcePlace{pou->line, pou->column} : SourcePlace{project_.LineOf(id), 0};
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
