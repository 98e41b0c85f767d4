#include "tools/lq/report_data.h"

#include <unordered_map>

#include "cgtab/cgtab_access.h"
#include "cgtab/table_traits.h"
#include "lq_data/host/model/flat_index.h"
#include "lq_data/host/text/utf.h"
#include "tools/lq/command.h"
#include "tools/lq/input.h"
#include "tools/lq/project_input.h"
#include "tools/lq/report_lines.h"
#include "tools/lq/table_rows.h"
#include "tools/lq/tables.h"
#include "tools/lq/unit_rows.h"

namespace lq::tool {

using host::EncodeUtf8;

namespace {

constexpr int32_t kNone = -1;

// Where in a row a link shows, and what it leads to. The page tells the links of a table by title.
struct LinkTraits {
    CgTab::TAB_ID from;
    const char* title;
    const char* column;
    CgTab::TAB_ID to;
};
constexpr LinkTraits kLinks[] = {
    {CgTab::TAB_DBG, "unit", "unit", CgTab::TAB_POU},
    {CgTab::TAB_POU, "first component", "start", CgTab::TAB_CMP},
    {CgTab::TAB_CMP, "unit", "unit", CgTab::TAB_POU},
    {CgTab::TAB_CMP, "global", "scope", CgTab::TAB_GLB},
    {CgTab::TAB_CMP, "array", "type", CgTab::TAB_ARR},
    {CgTab::TAB_CMP, "type name", "type", CgTab::TAB_DMM},
    {CgTab::TAB_CMP, "address", "address", CgTab::TAB_ADR},
    {CgTab::TAB_CMP, "initial value", "initial", CgTab::TAB_CST},
    {CgTab::TAB_GLB, "array", "type", CgTab::TAB_ARR},
    {CgTab::TAB_GLB, "type name", "type", CgTab::TAB_DMM},
    {CgTab::TAB_GLB, "address", "address", CgTab::TAB_ADR},
    {CgTab::TAB_GLB, "initial value", "initial", CgTab::TAB_CST},
    {CgTab::TAB_LBL, "unit", "name", CgTab::TAB_POU},
    {CgTab::TAB_TMP, "unit", "name", CgTab::TAB_POU},
    {CgTab::TAB_TMP, "array", "type", CgTab::TAB_ARR},
    {CgTab::TAB_TMP, "type name", "type", CgTab::TAB_DMM},
    {CgTab::TAB_DMM, "unit", "name", CgTab::TAB_POU},
};

using Positions = std::unordered_map<std::string, int32_t, host::BytesHash>;

int32_t Find(const Positions& positions, const std::string& name) {
    const auto at = positions.find(name);
    return at != positions.end() ? at->second : kNone;
}

// How a declaration writes a type with a name. The variables' lines do not keep that.
struct DeclaredType {
    std::string text;
    int32_t name;  // its line of table 8
};

class ReportWriter {
  public:
    ReportWriter(const std::string& path, TableInput& input, const host::Project& project)
        : path_(path), input_(input), project_(project), tables_(*input.tables) {}

    Json Write() {
        for (const UnitSection& section : sections_) {
            units_.emplace(section.unit, section.pos);
        }
        if (input_.isProject) {
            CollectDeclaredTypes();
        }
        globals_ = BytesOf(tables_, CgTab::TAB_GLB);
        Json all = Json::array();
        for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
            all.push_back(TableJson(static_cast<CgTab::TAB_ID>(id)));
        }
        return {{"input", DisplayName(path_)},
                {"version", LQ_VERSION},
                {"blockSize", cgtab::kBlockSize},
                {"nodeBlocks", R_FILE::BlCnt()},
                {"texts", std::move(texts_)},
                {"tables", std::move(all)},
                {"tasks", input_.isProject ? TasksJson() : Json(nullptr)},
                {"refused", RefusedJson()}};
    }

  private:
    // --- Types -------------------------------------------------------------------------------

    // A variable by its unit, name, and line of the source.
    static std::string KeyOf(const std::string& unit, const std::string& name, uint32_t line) {
        return (unit.empty() ? "" : unit + ".") + name + "\n" + std::to_string(line);
    }

    void CollectDeclaredTypes() {
        const TableRows names = RowsOf(tables_, CgTab::TAB_DMM);
        Positions positions;
        for (const Json& row : names.rows) {
            positions.emplace(row.at("name").get<std::string>(), row.at("pos").get<int32_t>());
        }
        for (const host::Declaration& declaration : project_.Declarations()) {
            const host::Pou* unit = project_.GetPou(declaration.owner);
            const ID named = NamedType(project_, declaration);
            if (named.GetNumber()) {
                const std::string name = EncodeUtf8(project_.NameOf(named));
                declared_.emplace(
                    KeyOf(unit ? EncodeUtf8(unit->name) : "", EncodeUtf8(declaration.name),
                          declaration.line),
                    DeclaredType{EncodeUtf8(declaration.type), Find(positions, name)});
            }
        }
    }

    // Of a row of variables, if its type has a name of the project's.
    const DeclaredType* NamedTypeOf(CgTab::TAB_ID id, const Json& row) const {
        if (!row.at("line").is_number()) {
            return nullptr;
        }
        const Json& unit = id == CgTab::TAB_CMP ? row.at("unit") : Json();
        const auto at = declared_.find(KeyOf(unit.is_string() ? unit.get<std::string>() : "",
                                             row.at("name").get<std::string>(),
                                             row.at("line").get<uint32_t>()));
        return at != declared_.end() ? &at->second : nullptr;
    }

    // --- Tables ------------------------------------------------------------------------------

    // Where the links of a row lead, by their titles.
    Positions LinksOf(CgTab::TAB_ID id, const Json& row, const LineParts& line,
                      const DeclaredType* type) const {
        const bool isExternal =
            line.global >= 0 && line.global < static_cast<int32_t>(globals_.size());
        const LineParts& own = isExternal ? PartsOf(CgTab::TAB_GLB, globals_, line.global) : line;
        return {{"unit", UnitOf(id, row)},
                {"first component", FirstComponentOf(id, row)},
                {"global", line.global},
                {"address", own.address},
                {"initial value", own.constant},
                {"array", own.array},
                {"type name", type ? type->name : kNone}};
    }

    static int32_t FirstComponentOf(CgTab::TAB_ID id, const Json& row) {
        const bool hasSome = id == CgTab::TAB_POU && row.at("start") < row.at("end");
        return hasSome ? row.at("start").get<int32_t>() : kNone;
    }

    int32_t UnitOf(CgTab::TAB_ID id, const Json& row) const {
        if (id == CgTab::TAB_CMP) {
            const UnitSection* section = sectionIndex_.At(row.at("pos").get<uint32_t>());
            return section ? section->pos : kNone;
        }
        const Json& name = row.at(NameColumn(id));
        const std::string text = name.is_string() ? name.get<std::string>() : "";
        const bool isQualified = id == CgTab::TAB_LBL || id == CgTab::TAB_TMP;
        return Find(units_, isQualified ? text.substr(0, text.find('.')) : text);
    }

    Json TableJson(CgTab::TAB_ID id) {
        TableRows rows = RowsOf(tables_, id);
        if (ReportDamage(path_, rows)) {
            input_.status = kInputHasFaults;
        }
        if (id == CgTab::TAB_CMP) {
            NameUnits(rows, sections_);
        }
        const std::string bytes = BytesOf(tables_, id);
        const cgtab::TableTraits& traits = cgtab::TraitsOf(id);
        Json table = {
            {"name", kTableNames[id]},
            {"bytes", bytes.size()},
            {"end", rows.damagedAt ? *rows.damagedAt : static_cast<int32_t>(bytes.size())},
            {"key", traits.fixedKey + traits.nameLenBytes},
            {"user", traits.hasUserArea && id != CgTab::TAB_DBG ? kUserArea : 0},
            {"columns", ColumnsJson(rows)},
            {"links", Json::array()}};
        AddRows(rows, bytes, table);
        table["index"] = IndexJson(id);
        return table;
    }

    static Json ColumnsJson(const TableRows& rows) {
        Json columns = Json::array();
        for (const Table::Column& column : rows.columns) {
            columns.push_back({{"title", column.title},
                               {"isNumber", column.isNumber},
                               {"isName", MemberOf(column.title) == NameColumn(rows.id)}});
        }
        return columns;
    }

    void AddRows(const TableRows& rows, const std::string& bytes, Json& table) {
        Json links = Json::array();
        for (const LinkTraits& link : kLinks) {
            if (link.from == rows.id) {
                links.push_back({{"title", link.title},
                                 {"column", link.column},
                                 {"table", link.to},
                                 {"at", Json::array()}});
            }
        }
        Json lines = Json::array();
        Json nameBytes = Json::array();
        for (const Json& row : rows.rows) {
            const LineParts parts = PartsOf(rows.id, bytes, row.at("pos").get<int32_t>());
            nameBytes.push_back(parts.nameBytes);
            const bool isVariable = row.contains("type") && row.contains("name");
            const DeclaredType* type = isVariable ? NamedTypeOf(rows.id, row) : nullptr;
            if (!links.empty()) {
                const auto found = LinksOf(rows.id, row, parts, type);
                for (Json& link : links) {
                    link["at"].push_back(found.at(link["title"].get<std::string>()));
                }
            }
            Json cells = Json::array();
            for (const Table::Column& column : rows.columns) {
                const bool isWritten = type && column.title == "type";
                const std::string member = MemberOf(column.title);
                const Json& cell = row.at(member);
                cells.push_back(isWritten                ? Json(type->text)
                                : IsShared(member, cell) ? Json(cell.get<size_t>() + texts_.size())
                                                         : cell);
            }
            lines.push_back(std::move(cells));
        }
        for (const std::string& text : *rows.texts) {
            texts_.push_back(text);
        }
        table["links"] = std::move(links);
        table["nameBytes"] = std::move(nameBytes);
        table["rows"] = std::move(lines);
    }

    // The chains by their buckets; empty ones are left out.
    Json IndexJson(CgTab::TAB_ID id) {
        const uint32_t size = CgTabAccess::IndexSlots(tables_, id);
        if (size == 0) {
            return nullptr;
        }
        Json buckets = Json::array();
        Json lengths = Json::array();
        for (uint32_t i = 0; i < size; ++i) {
            uint32_t length = 0;
            while (CgTabAccess::IndexedLine(tables_, id, i, length) >= 0) {
                ++length;
            }
            if (length > 0) {
                buckets.push_back(i);
                lengths.push_back(length);
            }
        }
        return {{"size", size}, {"buckets", buckets}, {"lengths", lengths}};
    }

    // --- The project -------------------------------------------------------------------------

    Json ProgramsJson(const host::IdList& instances) const {
        Json programs = Json::array();
        for (const ID id : instances) {
            const host::ProgramInstance& instance = *project_.GetProgramInstance(id);
            const std::string type = ProgramName(project_, instance);
            programs.push_back({{"instance", EncodeUtf8(instance.name)},
                                {"program", type},
                                {"unit", Find(units_, type)}});
        }
        return programs;
    }

    // By resources; programs that no task runs come last, under none.
    Json TasksJson() const {
        Json tasks = Json::array();
        for (const host::Resource& resource : project_.Resources()) {
            const std::string name = EncodeUtf8(resource.name);
            for (const ID id : resource.tasks) {
                const host::Task& task = *project_.GetTask(id);
                tasks.push_back({{"resource", name},
                                 {"task", EncodeUtf8(task.name)},
                                 {"priority", EncodeUtf8(task.priority)},
                                 {"interval", EncodeUtf8(task.interval)},
                                 {"event", EncodeUtf8(task.event)},
                                 {"comment", EncodeUtf8(task.comment)},
                                 {"programs", ProgramsJson(task.programs)}});
            }
            if (!resource.programs.empty()) {
                tasks.push_back({{"resource", name},
                                 {"task", nullptr},
                                 {"priority", ""},
                                 {"interval", ""},
                                 {"event", ""},
                                 {"comment", ""},
                                 {"programs", ProgramsJson(resource.programs)}});
            }
        }
        return tasks;
    }

    Json RefusedJson() const {
        Json all = Json::array();
        for (const Refusal& refusal : input_.refusals) {
            all.push_back({{"line", refusal.line},
                           {"column", refusal.column},
                           {"list", refusal.list},
                           {"name", refusal.name},
                           {"type", refusal.type},
                           {"reason", refusal.reason}});
        }
        return all;
    }

    const std::string& path_;
    TableInput& input_;
    const host::Project& project_;
    CgTab& tables_;
    std::vector<UnitSection> sections_ = SectionsOf(tables_);
    const SectionIndex sectionIndex_{sections_};
    Positions units_;
    std::unordered_map<std::string, DeclaredType, host::BytesHash> declared_;
    std::string globals_;         // the bytes of table 3
    Json texts_ = Json::array();  // that rows share, of all tables
};

}  // namespace

Json ReportData(const std::string& path, TableInput& input, const host::Project& project) {
    return ReportWriter(path, input, project).Write();
}

}  // namespace lq::tool
