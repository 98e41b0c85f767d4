#include "tools/lq/use_counts.h"

#include "lq_data/host/text/message.h"
#include "lq_data/host/uses/uses.h"
#include "lq_data/translate.h"
#include "tools/lq/progress.h"

namespace lq::tool {

namespace {

// The section of the unit that has the declaration; an empty one where there is none.
CgTab::POS_DSC SectionOf(const host::Project& project, CgTab& tables, ID pou) {
    CgTab::POU_LINE line;
    if (tables.Look(project.NameOf(pou), &line, 0) < 0) {
        return {0, 0, 0};
    }
    const UnitInfo info = UnitInfo::From(line.info);
    return {static_cast<int32_t>(info.start), static_cast<int32_t>(info.end),
            static_cast<int32_t>(info.lines)};
}

}  // namespace

std::vector<uint32_t> CountUses(const host::Project& project) {
    const Progress progress(host::Say("counting uses"));
    std::vector<uint32_t> counts(project.Declarations().size());
    const auto count = [&](ID id) {
        if (project.GetDeclaration(id)) {
            ++counts[host::IndexOf(id)];
        }
    };
    host::ForEachUse(project, {}, [&](const host::Use& use) {
        count(use.id);
        if (use.global != use.id) {
            count(use.global);
        }
        for (const ID global : use.globals) {
            count(global);
        }
    });
    return counts;
}

void CountUsesInTables(const host::Project& project, CgTab& tables) {
    const std::vector<uint32_t> counts = CountUses(project);
    ID owner;
    CgTab::POS_DSC section = {0, 0, 0};
    for (uint32_t i = 0; i < counts.size(); ++i) {
        const host::Declaration& declaration = project.Declarations()[i];
        const ID id = host::MakeId(host::Sort::kDeclaration, i);
        if (counts[i] == 0 || !project.GetPou(declaration.owner) || project.IsOfLibrary(id)) {
            continue;
        }
        if (declaration.owner != owner) {
            owner = declaration.owner;
            section = SectionOf(project, tables, owner);
        }
        for (uint32_t n = 0; n < counts[i]; ++n) {
            tables.Look(section, declaration.name, static_cast<CgTab::CMP_LINE*>(nullptr), 1);
        }
    }
}

}  // namespace lq::tool
