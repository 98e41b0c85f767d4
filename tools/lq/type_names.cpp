#include "tools/lq/type_names.h"

#include <unordered_set>

#include "lq_data/host/text/utf.h"
#include "tools/lq/tables.h"

namespace lq::tool {

using host::EncodeUtf8;

namespace {

std::u16string Utf16(std::string_view text) {
    std::u16string name;
    host::DecodeUtf8(text, name);
    return name;
}

}  // namespace

void LineDeclarations::Enter(std::string_view unit) {
    unit_ = unit;
    ofUnit_.clear();
    const host::Pou* pou = project_.GetPou(project_.FindAnyPou(Utf16(unit)));
    for (const ID id : pou ? pou->declarations : host::IdList()) {
        const host::Declaration* declaration = project_.GetDeclaration(id);
        ofUnit_.emplace(EncodeUtf8(declaration->name), declaration);
    }
}

const host::Declaration* LineDeclarations::Find(const Variable& variable) {
    const host::Declaration* found = nullptr;
    if (variable.unit.empty()) {
        found = project_.GetDeclaration(project_.FindGlobal(Utf16(variable.name)));
    } else {
        if (variable.unit != unit_) {
            Enter(variable.unit);
        }
        const auto at = ofUnit_.find(std::string(variable.name));
        found = at != ofUnit_.end() ? at->second : nullptr;
    }
    return found && found->line == variable.line ? found : nullptr;
}

TypeNames::TypeNames(CgTab& tables, const host::Project& project, bool isProject)
    : isProject_(isProject), declarations_(project) {
    if (!isProject) {
        CountNames(tables, project);
    }
}

// What is no unit of the image and no block of the standard may be the name of a data type, or of a
// function block of a library.
void TypeNames::CountNames(CgTab& tables, const host::Project& project) {
    std::unordered_set<std::string> units;
    for (const UnitSection& section : SectionsOf(tables)) {
        units.insert(section.unit);
    }
    RowReader names(tables, CgTab::TAB_DMM);
    names.ForEach([&] {
        any_ = *names.Name();
        if (units.contains(any_) || project.FindAnyPou(Utf16(any_)).GetNumber() != 0) {
            ++blocks_;
        } else {
            ++structures_;
            structure_ = any_;
        }
    });
}

void TypeNames::Name(const Variable& variable, std::string& type) {
    if (isProject_) {
        const host::Declaration* declaration = declarations_.Find(variable);
        type = declaration ? EncodeUtf8(declaration->type) : type;
        return;
    }
    const bool isStructure = type.ends_with(kStructureType);
    if (structures_ + (isStructure ? 0 : blocks_) == 1) {
        type.replace(type.size() - (isStructure ? kStructureType : kBlockType).size(), type.npos,
                     isStructure ? structure_ : any_);
    } else {
        hasLeft_ = true;
    }
}

}  // namespace lq::tool
