#include "tools/lq/table_rows.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>

#include "cgtab/bytes.h"
#include "cgtab/cgtab_access.h"
#include "lq_data/detail/chars.h"
#include "lq_data/host/model/flat_index.h"
#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "tools/lq/describe.h"
#include "tools/lq/input.h"
#include "tools/lq/messages.h"
#include "tools/lq/tables.h"

namespace lq::tool {

using host::EncodeUtf8;
using host::Say;

namespace {

constexpr uint32_t kMaxName = 256;

// The line of the source in a user area; null when it holds none.
Json SourceLine(const unsigned char (&usr)[kUserArea]) {
    const uint32_t line = cgtab::LoadU32(usr);
    return line != 0 ? Json(line) : Json(nullptr);
}

std::string WholeName(CgTab& tables, CgTab::TAB_ID id, int32_t pos) {
    char16_t name[kMaxName] = {};
    CgTabAccess::WholeName(tables, id, pos, name, kMaxName);
    return EncodeUtf8(name);
}

Json NullIfEmpty(const std::string& text) {
    return text.empty() ? Json(nullptr) : Json(text);
}

Json AddressAt(CgTab& tables, int32_t pos) {
    CgTab::ADR_LINE line;
    if (pos < 0 || !tables.Read(pos, line, 0, nullptr)) {
        return nullptr;
    }
    return NullIfEmpty(AddressText(line));
}

Json ConstantAt(CgTab& tables, int32_t pos) {
    CgTab::CstLine line;
    if (pos < 0 || !tables.Read(pos, line, 0, nullptr)) {
        return nullptr;
    }
    return NullIfEmpty(EncodeUtf8(line.text));
}

// Each describes one line. The texts of a record are the set's until its next read, so they are
// used up before links are followed.

Json RowOf(CgTab&, int32_t, const CgTab::DBG_INFO& line, const unsigned char (&)[kUserArea]) {
    UnitPosition position;
    if (!position.From(line)) {
        return {{"unit", nullptr}, {"kind", nullptr}, {"line", nullptr}};
    }
    return {
        {"unit", position.name}, {"kind", UnitKindName(position.kind)}, {"line", position.line}};
}

Json RowOf(CgTab& tables, int32_t pos, const CgTab::POU_LINE& line,
           const unsigned char (&usr)[kUserArea]) {
    const UnitInfo unit = UnitInfo::From(line.info);
    return {{"name", WholeName(tables, CgTab::TAB_POU, pos)},
            {"kind", UnitKindName(unit.kind)},
            {"start", unit.start},
            {"end", unit.end},
            {"lines", unit.lines},
            {"instances", unit.instances},
            {"line", SourceLine(usr)}};
}

template <typename Line>
Json VariableRow(CgTab& tables, CgTab::TAB_ID id, int32_t pos, const Line& line,
                 const unsigned char (&usr)[kUserArea]) {
    const std::string type = TypeText(line.type, line.dsc);
    return {{"name", WholeName(tables, id, pos)},
            {"scope", ScopeText(line.scope)},
            {"type", type},
            {"address", AddressAt(tables, line.adrLine)},
            {"initial", ConstantAt(tables, line.cstLine)},
            {"count", line.count},
            {"line", SourceLine(usr)}};
}

Json RowOf(CgTab& tables, int32_t pos, const CgTab::CMP_LINE& line,
           const unsigned char (&usr)[kUserArea]) {
    return VariableRow(tables, CgTab::TAB_CMP, pos, line, usr);
}

Json RowOf(CgTab& tables, int32_t pos, const CgTab::GLB_LINE& line,
           const unsigned char (&usr)[kUserArea]) {
    return VariableRow(tables, CgTab::TAB_GLB, pos, line, usr);
}

Json RowOf(CgTab&, int32_t, const CgTab::ADR_LINE& line, const unsigned char (&usr)[kUserArea]) {
    return {{"address", NullIfEmpty(AddressText(line))},
            {"count", line.count},
            {"line", SourceLine(usr)}};
}

Json RowOf(CgTab&, int32_t, const CgTab::CstLine& line, const unsigned char (&usr)[kUserArea]) {
    return {{"text", EncodeUtf8(line.text)},
            {"class", ValueClassName(line.val.type)},
            {"value", NullIfEmpty(ValueText(line.val))},
            {"count", line.count},
            {"line", SourceLine(usr)}};
}

Json RowOf(CgTab& tables, int32_t pos, const CgTab::LBL_LINE& line,
           const unsigned char (&usr)[kUserArea]) {
    return {{"name", WholeName(tables, CgTab::TAB_LBL, pos)},
            {"defined", line.info == CgTab::kLabelDefinition},
            {"jumps", line.count},
            {"line", SourceLine(usr)}};
}

Json RowOf(CgTab&, int32_t, const CgTab::TMP_LINE& line, const unsigned char (&usr)[kUserArea]) {
    return {{"name", EncodeUtf8(line.name)},
            {"type", TypeText(line.type, line.dsc)},
            {"unit_kind", UnitKindName(line.tag)},
            {"count", line.count},
            {"line", SourceLine(usr)}};
}

Json RowOf(CgTab&, int32_t, const CgTab::DMM_LINE& line, const unsigned char (&usr)[kUserArea]) {
    return {{"name", EncodeUtf8(line.name)}, {"count", line.count}, {"line", SourceLine(usr)}};
}

// A row of table 9, which has records of its own.
Json ArrayRow(const CgTab::ArrDsc& array) {
    return {{"type", ArrayText(array)}, {"elements", array.info->total.magnitude}};
}

// Members whose texts come from lines that other lines lead to.
constexpr std::array<std::string_view, 3> kSharedMembers = {"type", "address", "initial"};
constexpr size_t kLongText = 40;

// Puts the long texts of rows where they stand once.
class TextSharing {
  public:
    explicit TextSharing(TableRows& rows) : texts_(*rows.texts) {}

    void Take(Json& row) {
        for (const std::string_view member : kSharedMembers) {
            const auto at = row.find(member);
            if (at != row.end() && at->is_string() &&
                at->get_ref<const std::string&>().size() > kLongText) {
                *at = PlaceOf(std::move(at->get_ref<std::string&>()));
            }
        }
    }

  private:
    size_t PlaceOf(std::string&& text) {
        const auto known = places_.find(text);
        if (known != places_.end()) {
            return known->second;
        }
        texts_.push_back(std::move(text));
        places_.emplace(texts_.back(), texts_.size() - 1);
        return texts_.size() - 1;
    }

    std::deque<std::string>& texts_;
    std::unordered_map<std::string_view, size_t, host::BytesHash> places_;  // in texts_
};

template <typename Line>
void ReadLines(CgTab& tables, TableRows& out) {
    const bool hasVariables = out.id == CgTab::TAB_CMP || out.id == CgTab::TAB_GLB;
    TextSharing sharing(out);
    const int32_t length = CgTabAccess::LengthOf(tables, out.id);
    int32_t pos = 0;
    while (pos < length) {
        int32_t next = pos;
        Line line;
        unsigned char usr[kUserArea] = {};
        if (!tables.Read(next, line, 0, usr)) {
            out.damagedAt = pos;
            return;
        }
        Json row = {{"pos", pos}};
        row.update(RowOf(tables, pos, line, usr));
        if (hasVariables || out.id == CgTab::TAB_TMP) {
            sharing.Take(row);
        }
        out.rows.push_back(std::move(row));
        pos = next;
    }
}

void ReadArrays(CgTab& tables, TableRows& out) {
    const int32_t length = CgTabAccess::LengthOf(tables, out.id);
    int32_t pos = 0;
    while (pos < length) {
        int32_t next = pos;
        ArrInfo info;
        CgTab::ArrDsc array = {&info, 0};
        if (!CgTabAccess::ReadArray(tables, next, array)) {
            out.damagedAt = pos;
            return;
        }
        Json row = {{"pos", pos}};
        row.update(ArrayRow(array));
        out.rows.push_back(std::move(row));
        pos = next;
    }
}

struct TableReading {
    std::vector<Table::Column> columns;
    void (*read)(CgTab& tables, TableRows& out);
};

const std::vector<Table::Column> kVariableColumns = {{"pos", true},   {"name"},      {"scope"},
                                                     {"type"},        {"address"},   {"initial"},
                                                     {"count", true}, {"line", true}};

// In the order of TAB_ID. Columns are named as the members of the rows.
const TableReading kReadings[CgTab::TAB_COUNT] = {
    {{{"pos", true}, {"unit"}, {"kind"}, {"line", true}}, ReadLines<CgTab::DBG_INFO>},
    {{{"pos", true},
      {"name"},
      {"kind"},
      {"start", true},
      {"end", true},
      {"lines", true},
      {"instances", true},
      {"line", true}},
     ReadLines<CgTab::POU_LINE>},
    {kVariableColumns, ReadLines<CgTab::CMP_LINE>},
    {kVariableColumns, ReadLines<CgTab::GLB_LINE>},
    {{{"pos", true}, {"address"}, {"count", true}, {"line", true}}, ReadLines<CgTab::ADR_LINE>},
    {{{"pos", true}, {"text"}, {"class"}, {"value"}, {"count", true}, {"line", true}},
     ReadLines<CgTab::CstLine>},
    {{{"pos", true}, {"name"}, {"defined"}, {"jumps", true}, {"line", true}},
     ReadLines<CgTab::LBL_LINE>},
    {{{"pos", true}, {"name"}, {"type"}, {"unit kind"}, {"count", true}, {"line", true}},
     ReadLines<CgTab::TMP_LINE>},
    {{{"pos", true}, {"name"}, {"count", true}, {"line", true}}, ReadLines<CgTab::DMM_LINE>},
    {{{"pos", true}, {"type"}, {"elements", true}}, ReadArrays},
};

bool SameName(const Json& value, const std::u16string& name) {
    if (!value.is_string()) {
        return false;
    }
    std::u16string text;
    host::DecodeUtf8(value.get<std::string>(), text);
    return chars::EqualNoCase(text.c_str(), name.c_str());
}

}  // namespace

TableRows RowsOf(CgTab& tables, CgTab::TAB_ID id) {
    TableRows out;
    out.id = id;
    out.columns = kReadings[id].columns;
    kReadings[id].read(tables, out);
    return out;
}

const char* NameColumn(CgTab::TAB_ID id) {
    switch (id) {
        case CgTab::TAB_DBG:
            return "unit";
        case CgTab::TAB_ADR:
            return "address";
        case CgTab::TAB_CST:
            return "text";
        case CgTab::TAB_ARR:
            return "type";
        default:
            return "name";
    }
}

bool ReportDamage(const std::string& input, const TableRows& rows) {
    if (rows.damagedAt) {
        PrintMessage(Place{DisplayName(input)}, Say("table {}: the line at {} is damaged",
                                                    kTableNames[rows.id], *rows.damagedAt));
    }
    return rows.damagedAt.has_value();
}

void KeepNamed(TableRows& rows, const std::string& name) {
    const std::u16string wanted = DecodeArgument(name);
    const size_t point = wanted.find(u'.');
    const std::u16string unit = wanted.substr(0, point);
    const std::u16string component = point == wanted.npos ? u"" : wanted.substr(point + 1);
    const char* member = NameColumn(rows.id);
    Json kept = Json::array();
    for (const Json& row : rows.rows) {
        const bool inUnit = rows.id == CgTab::TAB_CMP && point != wanted.npos;
        if (inUnit ? SameName(row.at("unit"), unit) && SameName(row.at("name"), component)
                   : SameName(row.at(member), wanted)) {
            kept.push_back(row);
        }
    }
    rows.rows = std::move(kept);
}

void AddNames(const TableRows& rows, std::vector<std::string>& names) {
    for (const Json& row : rows.rows) {
        const Json& name = row.at(NameColumn(rows.id));
        if (name.is_string()) {
            names.push_back(name.get<std::string>());
        }
        if (rows.id == CgTab::TAB_CMP && row.at("unit").is_string()) {
            names.push_back(row.at("unit").get<std::string>() + "." + name.get<std::string>());
        }
    }
}

bool IsShared(const std::string& member, const Json& value) {
    return value.is_number() && std::ranges::find(kSharedMembers, member) != kSharedMembers.end();
}

Json WholeRow(const TableRows& rows, const Json& row) {
    Json whole = row;
    for (auto& [member, value] : whole.items()) {
        if (IsShared(member, value)) {
            value = (*rows.texts)[value.get<size_t>()];
        }
    }
    return whole;
}

void PrintRows(const TableRows& rows, const std::string& title) {
    Print(title, rows.columns, rows.rows.size(),
          [&rows](size_t i) { return CellsOf(rows.columns, WholeRow(rows, rows.rows[i])); });
}

void PrintRowsAsJson(const TableRows& rows, int depth) {
    PrintJsonList(depth, rows.rows.size(), [&rows, depth](size_t i) {
        PrintText(JsonPiece(depth + 1, WholeRow(rows, rows.rows[i])));
    });
}

}  // namespace lq::tool
