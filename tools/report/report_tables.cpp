#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lq_data/cgtab_compiler.h"
#include "lq_data/detail/in_order.h"
#include "lq_data/host/model/flat_index.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/line_bytes.h"
#include "tools/lq/command.h"
#include "tools/lq/line_bytes.h"
#include "tools/lq/project_input.h"
#include "tools/lq/table_rows.h"
#include "tools/lq/tables.h"
#include "tools/lq/type_names.h"
#include "tools/report/report_data.h"
#include "tools/report/shared_texts.h"

namespace lq::tool {

using host::EncodeUtf8;

namespace {

constexpr int32_t kNone = -1;

// What rows may share, if it is longer than that.
constexpr std::string_view kSharedColumns[] = {"type", "address", "initial"};
constexpr size_t kLongText = 40;

// What a link is. The page tells the links of a table by title.
enum class LinkKind : uint8_t {
    kUnit,
    kFirstComponent,
    kGlobal,
    kAddress,
    kInitial,
    kArray,
    kTypeName,
};
constexpr RowOf<LinkKind, const char*> kLinkTitles[] = {
    {LinkKind::kUnit, "unit"},
    {LinkKind::kFirstComponent, "first component"},
    {LinkKind::kGlobal, "global"},
    {LinkKind::kAddress, "address"},
    {LinkKind::kInitial, "initial value"},
    {LinkKind::kArray, "array"},
    {LinkKind::kTypeName, "type name"},
};
static_assert(AreInOrder(kLinkTitles, LinkKind::kTypeName));

// Where in a row a link shows, and what it leads to.
struct LinkTraits {
    CgTab::TAB_ID from;
    LinkKind kind;
    const char* column;
    CgTab::TAB_ID to;
};
constexpr LinkTraits kLinks[] = {
    {CgTab::TAB_DBG, LinkKind::kUnit, "unit", CgTab::TAB_POU},
    {CgTab::TAB_POU, LinkKind::kFirstComponent, "start", CgTab::TAB_CMP},
    {CgTab::TAB_CMP, LinkKind::kUnit, "unit", CgTab::TAB_POU},
    {CgTab::TAB_CMP, LinkKind::kGlobal, "scope", CgTab::TAB_GLB},
    {CgTab::TAB_CMP, LinkKind::kArray, "type", CgTab::TAB_ARR},
    {CgTab::TAB_CMP, LinkKind::kTypeName, "type", CgTab::TAB_DMM},
    {CgTab::TAB_CMP, LinkKind::kAddress, "address", CgTab::TAB_ADR},
    {CgTab::TAB_CMP, LinkKind::kInitial, "initial", CgTab::TAB_CST},
    {CgTab::TAB_GLB, LinkKind::kArray, "type", CgTab::TAB_ARR},
    {CgTab::TAB_GLB, LinkKind::kTypeName, "type", CgTab::TAB_DMM},
    {CgTab::TAB_GLB, LinkKind::kAddress, "address", CgTab::TAB_ADR},
    {CgTab::TAB_GLB, LinkKind::kInitial, "initial", CgTab::TAB_CST},
    {CgTab::TAB_LBL, LinkKind::kUnit, "name", CgTab::TAB_POU},
    {CgTab::TAB_TMP, LinkKind::kUnit, "name", CgTab::TAB_POU},
    {CgTab::TAB_TMP, LinkKind::kArray, "type", CgTab::TAB_ARR},
    {CgTab::TAB_TMP, LinkKind::kTypeName, "type", CgTab::TAB_DMM},
    {CgTab::TAB_DMM, LinkKind::kUnit, "name", CgTab::TAB_POU},
};

// A link of a table with its positions, row by row.
struct Link {
    const LinkTraits& traits;
    std::vector<int32_t> at;
};

using Positions = std::unordered_map<std::string, int32_t, host::BytesHash>;

int32_t Find(const Positions& positions, const std::string& name) {
    const auto at = positions.find(name);
    return at != positions.end() ? at->second : kNone;
}

// Entries of an index that lie in neighbouring slots.
class IndexRuns {
  public:
    // Entries come by their slots.
    void Take(uint32_t slot) {
        if (starts_.empty() || slot > end_) {
            starts_.push_back(slot);
            slots_.push_back(0);
            entries_.push_back(0);
            end_ = slot;
        }
        slots_.back() += slot == end_ ? 1 : 0;
        end_ = slot + 1;
        ++entries_.back();
    }
    Json ToJson(uint32_t size) const {
        return {{"size", size}, {"starts", starts_}, {"slots", slots_}, {"entries", entries_}};
    }

  private:
    uint32_t end_ = 0;  // the slot behind the last run
    std::vector<uint32_t> starts_;
    std::vector<uint32_t> slots_;
    std::vector<uint32_t> entries_;
};

// How a declaration writes a type with a name. The variables' lines do not keep that.
struct DeclaredType {
    std::string text;
    int32_t name;  // its line of table 8
};

class TablesWriter {
  public:
    TablesWriter(const std::string& path, TableInput& input, const host::Project& project,
                 ReportPage& page)
        : path_(path),
          input_(input),
          project_(project),
          page_(page),
          tables_(*input.tables),
          declarations_(project) {}

    void Write() {
        std::vector<UnitSection> sections = SectionsOf(tables_);
        for (const UnitSection& section : sections) {
            units_.emplace(section.unit, section.pos);
        }
        sections_ = SectionIndex(std::move(sections));
        if (input_.isProject) {
            CollectTypeNames();
        }
        globals_ = BytesOf(tables_, CgTab::TAB_GLB);
        for (int id = 0; id < CgTab::TAB_COUNT; ++id) {
            page_.Add(id == 0 ? R"({"tables":[)" : ",");
            WriteTable(static_cast<CgTab::TAB_ID>(id));
        }
        page_.Add(R"(],"texts":)");
        texts_.Write(page_);
        page_.Add("}");
    }

  private:
    // --- Types -------------------------------------------------------------------------------

    void CollectTypeNames() {
        RowReader names(tables_, CgTab::TAB_DMM);
        names.ForEach([&] { typeNames_.emplace(*names.Name(), PositionOf(names.Get())); });
    }

    // Of a row of variables, if its type has a name of the project's.
    std::optional<DeclaredType> NamedTypeOf(const RowReader& reader) {
        const bool isNamed = input_.isProject && reader.LacksTypeName();
        const host::Declaration* declaration =
            isNamed ? declarations_.Find(reader.GetVariable()) : nullptr;
        const ID named = declaration ? NamedType(project_, *declaration) : ID();
        if (named.GetNumber() == 0) {
            return std::nullopt;
        }
        return DeclaredType{EncodeUtf8(declaration->type),
                            Find(typeNames_, EncodeUtf8(project_.NameOf(named)))};
    }

    // --- Tables ------------------------------------------------------------------------------

    static int32_t PositionOf(const Row& row) {
        return static_cast<int32_t>(std::get<int64_t>(row.front()));
    }

    // Where a link of a row leads.
    int32_t TargetOf(LinkKind kind, CgTab::TAB_ID id, const RowReader& reader,
                     const LineLinks& line, const std::optional<DeclaredType>& type) const {
        switch (kind) {
            case LinkKind::kUnit:
                return UnitOf(id, reader);
            case LinkKind::kFirstComponent:
                return FirstComponentOf(reader);
            case LinkKind::kGlobal:
                return line.global;
            case LinkKind::kAddress:
                return line.address;
            case LinkKind::kInitial:
                return line.constant;
            case LinkKind::kArray:
                return line.array;
            default:
                return type ? type->name : kNone;
        }
    }

    static int32_t FirstComponentOf(const RowReader& units) {
        const Row& row = units.Get();
        const int64_t start = std::get<int64_t>(row[units.ColumnOf("start")]);
        const int64_t end = std::get<int64_t>(row[units.ColumnOf("end")]);
        return start < end ? static_cast<int32_t>(start) : kNone;
    }

    int32_t UnitOf(CgTab::TAB_ID id, const RowReader& reader) const {
        if (id == CgTab::TAB_CMP) {
            const UnitSection* section =
                sections_.At(static_cast<uint32_t>(PositionOf(reader.Get())));
            return section ? section->pos : kNone;
        }
        const std::string* const name = reader.Name();
        const bool isQualified = id == CgTab::TAB_LBL || id == CgTab::TAB_TMP;
        return !name         ? kNone
               : isQualified ? Find(units_, name->substr(0, name->find('.')))
                             : Find(units_, *name);
    }

    // The links of a line; an external has those of its global.
    LineLinks LinksWithGlobal(CgTab::TAB_ID id, const std::string& bytes,
                              const LineHead& head) const {
        LineLinks line = LinksOf(id, bytes, head);
        if (line.global >= 0 && line.global < static_cast<int32_t>(globals_.size())) {
            const LineLinks global =
                LinksOf(CgTab::TAB_GLB, globals_, HeadOf(CgTab::TAB_GLB, globals_, line.global));
            line.address = global.address;
            line.constant = global.constant;
            line.array = global.array;
        }
        return line;
    }

    void WriteTable(CgTab::TAB_ID id) {
        RowReader reader(tables_, id, id == CgTab::TAB_CMP ? &sections_ : nullptr);
        const std::string bytes = BytesOf(tables_, id);
        page_.AddOpen({{"name", TableName(id)},
                       {"bytes", bytes.size()},
                       {"key", BytesBeforeName(id)},
                       {"user", CgTabCompiler::UserAreaOf(tables_, id)},
                       {"columns", ColumnsJson(reader)}});
        std::vector<Link> links;
        for (const LinkTraits& link : kLinks) {
            if (link.from == id) {
                links.push_back({link, {}});
            }
        }
        const auto damagedAt = WriteRows(id, reader, bytes, links);
        if (ReportDamage(path_, id, damagedAt)) {
            input_.status = kInputHasFaults;
        }
        page_.Add(R"(,"end":)");
        page_.AddValue(damagedAt ? *damagedAt : static_cast<int32_t>(bytes.size()));
        page_.Add(R"(,"index":)");
        page_.AddValue(IndexJson(id));
        page_.Add("}");
    }

    static Json ColumnsJson(const RowReader& reader) {
        Json columns = Json::array();
        for (const Column& column : reader.Columns()) {
            columns.push_back({{"title", column.title},
                               {"isNumber", column.isNumber},
                               {"isName", columns.size() == reader.NameColumn()}});
        }
        return columns;
    }

    // The rows, then what belongs to them: where their links lead, and how long their names are.
    std::optional<int32_t> WriteRows(CgTab::TAB_ID id, RowReader& reader, const std::string& bytes,
                                     std::vector<Link>& links) {
        const std::vector<bool> isShared = SharedColumns(reader);
        const size_t typeColumn = reader.ColumnOf("type");
        std::vector<int32_t> nameBytes;
        const char* separator = R"(,"rows":[[)";
        const auto damagedAt = reader.ForEach([&] {
            const Row& row = reader.Get();
            const LineHead head = HeadOf(id, bytes, PositionOf(row));
            const LineLinks line = LinksWithGlobal(id, bytes, head);
            const std::optional<DeclaredType> type = NamedTypeOf(reader);
            nameBytes.push_back(static_cast<int32_t>(head.name.size()));
            for (Link& link : links) {
                link.at.push_back(TargetOf(link.traits.kind, id, reader, line, type));
            }
            for (size_t i = 0; i < row.size(); ++i) {
                page_.Add(i == 0 ? separator : ",");
                if (type && i == typeColumn) {
                    page_.AddText(type->text);
                } else {
                    WriteCell(row[i], isShared[i]);
                }
            }
            separator = "],[";
        });
        page_.Add(nameBytes.empty() ? R"(,"rows":[])" : "]]");
        for (const Link& link : links) {
            page_.Add(&link == &links.front() ? R"(,"links":[)" : ",");
            page_.AddOpen({{"title", kLinkTitles[static_cast<size_t>(link.traits.kind)].value},
                           {"column", link.traits.column},
                           {"table", link.traits.to}});
            WriteNumbers("at", link.at);
            page_.Add("}");
        }
        page_.Add(links.empty() ? R"(,"links":[])" : "]");
        WriteNumbers("nameBytes", nameBytes);
        return damagedAt;
    }

    static std::vector<bool> SharedColumns(const RowReader& reader) {
        std::vector<bool> isShared;
        for (const Column& column : reader.Columns()) {
            isShared.push_back(std::ranges::find(kSharedColumns, column.title) !=
                               std::end(kSharedColumns));
        }
        return isShared;
    }

    void WriteCell(const Cell& cell, bool isShared) {
        if (const auto* number = std::get_if<int64_t>(&cell)) {
            page_.Add(std::to_string(*number));
        } else if (const auto* flag = std::get_if<bool>(&cell)) {
            page_.Add(*flag ? "true" : "false");
        } else if (const auto* text = std::get_if<std::string>(&cell); !text) {
            page_.Add("null");
        } else if (isShared && text->size() > kLongText) {
            page_.Add(std::to_string(texts_.PlaceOf(*text)));
        } else {
            page_.AddText(*text);
        }
    }

    // A member that is a list of numbers.
    void WriteNumbers(const std::string& name, const std::vector<int32_t>& numbers) {
        page_.Add(",\"" + name + "\":[");
        for (size_t i = 0; i < numbers.size(); ++i) {
            page_.Add((i == 0 ? "" : ",") + std::to_string(numbers[i]));
        }
        page_.Add("]");
    }

    Json IndexJson(CgTab::TAB_ID id) {
        IndexRuns runs;
        const auto take = [](void* context, uint32_t slot, int32_t) {
            static_cast<IndexRuns*>(context)->Take(slot);
        };
        const uint32_t size = CgTabCompiler::ViewIndex(tables_, id, take, &runs);
        return size == 0 ? Json(nullptr) : runs.ToJson(size);
    }

    const std::string& path_;
    TableInput& input_;
    const host::Project& project_;
    ReportPage& page_;
    CgTab& tables_;
    SectionIndex sections_;
    Positions units_;
    LineDeclarations declarations_;
    Positions typeNames_;  // the lines of table 8
    std::string globals_;  // the bytes of table 3
    SharedTexts texts_{SharedTexts::kNowhere};
};

}  // namespace

void WriteReportTables(const std::string& path, TableInput& input, const host::Project& project,
                       ReportPage& page) {
    TablesWriter(path, input, project, page).Write();
}

}  // namespace lq::tool
