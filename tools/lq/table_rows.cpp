#include "tools/lq/table_rows.h"

#include <algorithm>
#include <type_traits>

#include "lq_data/cgtab_compiler.h"
#include "lq_data/detail/chars.h"
#include "lq_data/detail/in_order.h"
#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/line_bytes.h"
#include "tools/lq/describe.h"
#include "tools/lq/input.h"
#include "tools/lq/messages.h"
#include "tools/lq/type_names.h"

namespace lq::tool {

using host::EncodeUtf8;
using host::Say;

namespace {

constexpr uint32_t kMaxName = 256;

// A name as the table's record has it, or from the line where the record cuts it.
template <size_t kSize>
std::string NameOf(CgTab& tables, CgTab::TAB_ID id, int32_t pos, const char16_t (&name)[kSize]) {
    if (chars::Length(name) + 1 < kSize) {
        return EncodeUtf8(name);
    }
    char16_t whole[kMaxName] = {};
    CgTabCompiler::WholeName(tables, id, pos, whole, kMaxName);
    return EncodeUtf8(whole);
}

Cell NoneIfEmpty(std::string text) {
    return text.empty() ? Cell() : Cell(std::move(text));
}

Cell AddressAt(CgTab& tables, int32_t pos) {
    CgTab::ADR_LINE line;
    if (pos < 0 || !tables.Read(pos, line, 0, nullptr)) {
        return {};
    }
    return NoneIfEmpty(AddressText(line));
}

Cell ConstantAt(CgTab& tables, int32_t pos) {
    CgTab::CstLine line;
    if (pos < 0 || !tables.Read(pos, line, 0, nullptr)) {
        return {};
    }
    return NoneIfEmpty(EncodeUtf8(line.text));
}

template <typename... Cells>
void Add(Row& row, Cells&&... cells) {
    (row.emplace_back(std::forward<Cells>(cells)), ...);
}

// Each adds what one line shows between its position and its line of the source. The texts of a
// record are the set's until its next read, so they are used up before links are followed.

void Describe(CgTab&, int32_t, const CgTab::DBG_INFO& line, Row& row) {
    UnitPosition position;
    if (position.From(line)) {
        Add(row, position.name, UnitKindName(position.kind), position.line);
    } else {
        Add(row, Cell(), Cell(), Cell());
    }
}

void Describe(CgTab& tables, int32_t pos, const CgTab::POU_LINE& line, Row& row) {
    const UnitInfo unit = UnitInfo::From(line.info);
    Add(row, NameOf(tables, CgTab::TAB_POU, pos, line.name), UnitKindName(unit.kind), unit.start,
        unit.end, unit.lines, unit.instances);
}

template <typename Line>
void DescribeVariable(CgTab& tables, CgTab::TAB_ID id, int32_t pos, const Line& line, Row& row) {
    std::string type = TypeText(line.type, line.dsc);
    Add(row, NameOf(tables, id, pos, line.name), ScopeText(line.scope), std::move(type),
        AddressAt(tables, line.adrLine), ConstantAt(tables, line.cstLine), line.count);
}

void Describe(CgTab& tables, int32_t pos, const CgTab::CMP_LINE& line, Row& row) {
    DescribeVariable(tables, CgTab::TAB_CMP, pos, line, row);
}

void Describe(CgTab& tables, int32_t pos, const CgTab::GLB_LINE& line, Row& row) {
    DescribeVariable(tables, CgTab::TAB_GLB, pos, line, row);
}

void Describe(CgTab&, int32_t, const CgTab::ADR_LINE& line, Row& row) {
    Add(row, NoneIfEmpty(AddressText(line)), line.count);
}

void Describe(CgTab&, int32_t, const CgTab::CstLine& line, Row& row) {
    Add(row, EncodeUtf8(line.text), ValueClassName(line.val.type), NoneIfEmpty(ValueText(line.val)),
        line.count);
}

void Describe(CgTab& tables, int32_t pos, const CgTab::LBL_LINE& line, Row& row) {
    Add(row, NameOf(tables, CgTab::TAB_LBL, pos, line.name), line.info == CgTab::kLabelDefinition,
        line.count);
}

void Describe(CgTab&, int32_t, const CgTab::TMP_LINE& line, Row& row) {
    Add(row, EncodeUtf8(line.name), TypeText(line.type, line.dsc), UnitKindName(line.tag),
        line.count);
}

void Describe(CgTab&, int32_t, const CgTab::DMM_LINE& line, Row& row) {
    Add(row, EncodeUtf8(line.name), line.count);
}

template <typename Line>
bool ReadLine(CgTab& tables, int32_t& pos, Row& row) {
    int32_t next = pos;
    Line line;
    unsigned char usr[kUserArea] = {};
    if (!tables.Read(next, line, 0, usr)) {
        return false;
    }
    Describe(tables, pos, line, row);
    if constexpr (!std::is_same_v<Line, CgTab::DBG_INFO>) {
        const uint32_t sourceLine = LoadU32(usr);
        row.push_back(sourceLine != 0 ? Cell(sourceLine) : Cell());
    }
    pos = next;
    return true;
}

bool ReadArray(CgTab& tables, int32_t& pos, Row& row) {
    ArrInfo info;
    CgTab::ArrDsc array = {&info, 0};
    int32_t next = pos;
    if (!CgTabCompiler::ReadArray(tables, next, array)) {
        return false;
    }
    Add(row, ArrayText(array), info.total.magnitude);
    pos = next;
    return true;
}

struct Reading {
    const char* nameColumn;
    const char* columns;  // behind the position, those of numbers marked
    bool (*read)(CgTab& tables, int32_t& pos, Row& row);
};

constexpr char kNumberMark = '#';
constexpr char kVariable[] = "name,scope,type,address,initial,#count,#line";

constexpr RowOf<CgTab::TAB_ID, Reading> kReadings[] = {
    {CgTab::TAB_DBG, {"unit", "unit,kind,#line", ReadLine<CgTab::DBG_INFO>}},
    {CgTab::TAB_POU,
     {"name", "name,kind,#start,#end,#lines,#instances,#line", ReadLine<CgTab::POU_LINE>}},
    {CgTab::TAB_CMP, {"name", kVariable, ReadLine<CgTab::CMP_LINE>}},
    {CgTab::TAB_GLB, {"name", kVariable, ReadLine<CgTab::GLB_LINE>}},
    {CgTab::TAB_ADR, {"address", "address,#count,#line", ReadLine<CgTab::ADR_LINE>}},
    {CgTab::TAB_CST, {"text", "text,class,value,#count,#line", ReadLine<CgTab::CstLine>}},
    {CgTab::TAB_LBL, {"name", "name,defined,#jumps,#line", ReadLine<CgTab::LBL_LINE>}},
    {CgTab::TAB_TMP, {"name", "name,type,unit kind,#count,#line", ReadLine<CgTab::TMP_LINE>}},
    {CgTab::TAB_DMM, {"name", "name,#count,#line", ReadLine<CgTab::DMM_LINE>}},
    {CgTab::TAB_ARR, {"type", "type,#elements", ReadArray}},
};
static_assert(AreInOrder(kReadings, CgTab::TAB_ARR));

}  // namespace

RowReader::RowReader(CgTab& tables, CgTab::TAB_ID id, const SectionIndex* sections)
    : tables_(tables), id_(id), sections_(sections) {
    columns_.push_back({"pos", true});
    if (sections_) {
        columns_.push_back({"unit"});
    }
    std::string_view left = kReadings[id].value.columns;
    while (!left.empty()) {
        std::string_view title = left.substr(0, left.find(','));
        left.remove_prefix(std::min(title.size() + 1, left.size()));
        const bool isNumber = title.front() == kNumberMark;
        title.remove_prefix(isNumber ? 1 : 0);
        columns_.push_back({std::string(title), isNumber});
    }
    nameColumn_ = ColumnOf(kReadings[id].value.nameColumn);
    typeColumn_ = ColumnOf("type");
}

size_t RowReader::ColumnOf(std::string_view title) const {
    const auto at = std::find_if(columns_.begin(), columns_.end(),
                                 [title](const Column& c) { return c.title == title; });
    return static_cast<size_t>(at - columns_.begin());
}

bool RowReader::Read(int32_t& pos) {
    row_.clear();
    row_.emplace_back(pos);
    if (sections_) {
        const UnitSection* section = sections_->At(static_cast<uint32_t>(pos));
        row_.push_back(section ? Cell(section->unit) : Cell());
    }
    const bool isRead = kReadings[id_].value.read(tables_, pos, row_);
    next_ = pos;
    if (isRead && types_ && LacksTypeName()) {
        types_->Name(GetVariable(), std::get<std::string>(row_[typeColumn_]));
    }
    return isRead;
}

bool RowReader::LacksTypeName() const {
    const bool isVariables = typeColumn_ < row_.size() && typeColumn_ != nameColumn_;
    const auto* type = isVariables ? std::get_if<std::string>(&row_[typeColumn_]) : nullptr;
    return type && Name() && (type->ends_with(kStructureType) || type->ends_with(kBlockType));
}

Variable RowReader::GetVariable() const {
    const auto* line = std::get_if<int64_t>(&row_.back());
    Variable variable{unit_, *Name(), line ? static_cast<uint32_t>(*line) : 0};
    if (const auto* unit = sections_ ? std::get_if<std::string>(&row_[UnitColumn()]) : nullptr) {
        variable.unit = *unit;
    } else if (const size_t dot = variable.name.find('.');
               id_ == CgTab::TAB_TMP && dot != std::string_view::npos) {
        variable.unit = variable.name.substr(0, dot);
        variable.name.remove_prefix(dot + 1);
    }
    return variable;
}

int32_t RowReader::End() const {
    return CgTabCompiler::LengthOf(tables_, id_);
}

bool ReportDamage(const std::string& input, CgTab::TAB_ID id, std::optional<int32_t> damagedAt) {
    if (damagedAt) {
        PrintMessage(Place{DisplayName(input)},
                     Say("table {}: the line at {} is damaged", TableName(id), *damagedAt));
    }
    return damagedAt.has_value();
}

}  // namespace lq::tool
