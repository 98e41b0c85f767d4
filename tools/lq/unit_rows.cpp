#include "tools/lq/unit_rows.h"

#include <algorithm>

#include "cgtab/cgtab_access.h"
#include "lq_data/host/text/utf.h"
#include "tools/lq/tables.h"

namespace lq::tool {

namespace {

// The components of the unit of a row; components are in the order of their positions.
TableRows ComponentsOf(const Json& unit, const TableRows& components) {
    TableRows own;
    own.id = components.id;
    own.columns = components.columns;
    own.texts = components.texts;
    const auto start = unit.at("start").get<int64_t>();
    const auto end = unit.at("end").get<int64_t>();
    const auto posOf = [](const Json& row) { return row.at("pos").get<int64_t>(); };
    auto at = std::partition_point(components.rows.begin(), components.rows.end(),
                                   [&](const Json& row) { return posOf(row) < start; });
    for (; at != components.rows.end() && posOf(*at) < end; ++at) {
        own.rows.push_back(*at);
    }
    return own;
}

}  // namespace

std::vector<UnitSection> SectionsOf(CgTab& tables) {
    std::vector<UnitSection> sections;
    const int32_t length = CgTabAccess::LengthOf(tables, CgTab::TAB_POU);
    for (int32_t pos = 0; pos < length;) {
        const int32_t at = pos;
        CgTab::POU_LINE line;
        char16_t name[256];
        if (!tables.Read(pos, line, 0, nullptr) ||
            !CgTabAccess::WholeName(tables, CgTab::TAB_POU, at, name, std::size(name))) {
            break;
        }
        sections.push_back({at, host::EncodeUtf8(name), UnitInfo::From(line.info)});
    }
    return sections;
}

SectionIndex::SectionIndex(const std::vector<UnitSection>& sections) {
    for (const UnitSection& section : sections) {
        if (section.info.start < section.info.end) {
            sorted_.push_back(&section);
        }
    }
    std::stable_sort(
        sorted_.begin(), sorted_.end(),
        [](const UnitSection* a, const UnitSection* b) { return a->info.start < b->info.start; });
}

const UnitSection* SectionIndex::At(uint32_t pos) const {
    const auto behind =
        std::upper_bound(sorted_.begin(), sorted_.end(), pos,
                         [](uint32_t p, const UnitSection* s) { return p < s->info.start; });
    const UnitSection* section = behind == sorted_.begin() ? nullptr : behind[-1];
    return section && pos < section->info.end ? section : nullptr;
}

void NameUnits(TableRows& components, const std::vector<UnitSection>& sections) {
    components.columns.insert(components.columns.begin() + 1, {"unit"});
    const SectionIndex index(sections);
    for (Json& row : components.rows) {
        const UnitSection* section = index.At(row.at("pos").get<uint32_t>());
        Json named = {{"pos", row.at("pos")},
                      {"unit", section ? Json(section->unit) : Json(nullptr)}};
        named.update(row);
        row = std::move(named);
    }
}

void PrintUnitsAsJson(CgTab& tables, const TableRows& units, int depth) {
    const TableRows components = RowsOf(tables, CgTab::TAB_CMP);
    PrintJsonList(depth, units.rows.size(), [&](size_t i) {
        const Json& row = units.rows[i];
        PrintText(OpenJsonPiece(depth + 1, row) + ",\n" + JsonIndent(depth + 2) +
                  "\"components\": ");
        PrintRowsAsJson(ComponentsOf(row, components), depth + 2);
        PrintText("\n" + JsonIndent(depth + 1) + "}");
    });
}

void PrintUnits(CgTab& tables, const TableRows& units) {
    PrintRows(units, std::string(kTableNames[units.id]));
    const TableRows components = RowsOf(tables, CgTab::TAB_CMP);
    for (const Json& row : units.rows) {
        PrintLine("");
        PrintRows(ComponentsOf(row, components), row.at("name").get<std::string>());
    }
}

}  // namespace lq::tool
