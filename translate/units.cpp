// Units: their components and lines, temporaries and marks.
#include <algorithm>
#include <iterator>
#include <memory>

#include "lq_data/detail/chars.h"
#include "pouh/record_access.h"
#include "translate/translator.h"

namespace lq {

using translate::Component;
using translate::Declared;

namespace {

constexpr uint16_t kComponentAttributes = 0x4 | 0x80;  // initial values; recorded instances
constexpr uint32_t kMaxName = 256;                     // with its terminator

struct HeaderDeleter {
    void operator()(POU_HEADER_TYP* header) const { DestroyPOUHeader(header); }
};

// The declarations of which LoadPOUHeader makes records.
const LQSELECTION* DeclarationsOf(LQOBJECT& object) {
    if (object.GetKind() == LQ_KIND_DUT) {
        return object.GetSelection();
    }
    auto* const pou = dynamic_cast<LQPOU*>(&object);
    LQOBJECT* const header = pou ? pou->GetHeader() : nullptr;
    return header ? header->GetSelection() : nullptr;
}

}  // namespace

bool Translator::EnterUnit(ID id) {
    // The components refer to the records of the header and are gone before it.
    const std::unique_ptr<POU_HEADER_TYP, HeaderDeleter> header(CreatePOUHeader());
    Unit unit;
    unit.origin = {id, source_.GetPlace(id)};
    LQOBJECT* const object = ObjectOf(id);
    if (!header || !object || !LoadPOUHeader(header.get(), id, 0)) {
        Refuse(unit.origin, RefusalReason::kUnit);
        return HasMemory();
    }
    unit.name = object->GetName();
    unit.declarations = DeclarationsOf(*object);
    unit.header = header.get();
    POUH_INFO_TYP* info = nullptr;
    GetAttrOfPOUHeader(unit.header, POUH_INFO, &info);
    GetAttrOfPOUHInfo(info, POUH_POUTYPE, &unit.kind);
    return EnterLoadedUnit(unit);
}

bool Translator::EnterLoadedUnit(Unit& unit) {
    const int32_t count = unit.declarations ? unit.declarations->GetCount() : 0;
    if (!unit.components.Take(unit.header, static_cast<uint32_t>(std::max(count, 0)))) {
        return EndShort();
    }
    if ((isAnew_ && !MakeReady(unit)) || !EnterDebugRecord(unit) || !EnterComponents(unit) ||
        !EnterTemporaries(unit)) {
        return false;
    }
    unit_ = &unit;
    source_.GiveMarks(unit.origin.object, *this);
    unit_ = nullptr;
    return HasMemory();
}

// Looks for what the set has of the unit, and takes back its labels, when all that comes can be
// entered.
bool Translator::MakeReady(Unit& unit) {
    unit.line = tables_.Look(unit.name, static_cast<CgTab::POU_LINE*>(nullptr), 0);
    bool isPossible = HasRoom();
    for (uint32_t i = 0; i < unit.components.AllDeclared().Count() && isPossible; ++i) {
        IEC_TYPE type = IEC_NO_TYPE;
        CgTab::TYP_DSC dsc = {};
        isPossible = !IsTemporary(unit, i, type, dsc) ||
                     CgTabCompiler::CanReplaceTemporary(tables_, QualifyTemporary(unit, i), type);
    }
    if (!HasMemory()) {
        return false;
    }
    if (!isPossible) {
        out_.outcome = TranslationOutcome::kProject;
        return false;
    }
    text_ = unit.name;
    text_ += u".";
    return CgTabCompiler::ResetLabels(tables_, text_) ? HasMemory() : EndShort();
}

bool Translator::HasRoom() {
    constexpr int64_t kSurelyFine = 64 * 1024;
    int64_t used = 0;
    CgTab::POU_LINE line;
    for (int32_t pos = 0; tables_.Read(pos, line, 0, nullptr);) {
        const UnitInfo info = UnitInfo::From(line.info);
        used += int64_t{info.end} - info.start;
    }
    const int64_t abandoned = CgTabCompiler::LengthOf(tables_, CgTab::TAB_CMP) - used;
    return abandoned <= kSurelyFine || abandoned < used / 2;
}

bool Translator::EnterDebugRecord(const Unit& unit) {
    unsigned char data[kMaxDebugData];
    const uint32_t length =
        client_ ? client_->FillDebugRecord(unit.origin, unit.name, unit.kind, data) : 0;
    if (length == 0) {
        return true;
    }
    const CgTab::DBG_INFO record = {data, static_cast<uint8_t>(std::min(length, kMaxDebugData))};
    if (isAnew_ && tables_.Look(record, nullptr) >= 0) {
        return true;
    }
    if (tables_.Insert(record) < 0) {
        return EndShort();
    }
    FillAreas(CgTab::TAB_DBG, unit.origin);
    return true;
}

// --- Components ----------------------------------------------------------------------------------

bool Translator::EnterComponents(Unit& unit) {
    POU_LIST instances;
    CgTab::POS_DSC range = {};
    const int isEntered =
        CgTabCompiler::AppendCmp(tables_, unit.header, kComponentAttributes, &instances, range, 1);
    if (!HasMemory() || !NoteEntered(unit, range.start) || !CheckComponents(unit)) {
        return false;
    }
    const int32_t length = CgTabCompiler::LengthOf(tables_, CgTab::TAB_CMP);
    if (!isEntered && length == range.start && range.lines > 0) {
        Refuse(unit.origin, RefusalReason::kComponents);
        range = {range.start, range.start, 0};
    } else {
        // What the set skipped without a fault that shows, as it skips what it cannot hold.
        for (uint32_t i = 0; i < unit.components.AllDeclared().Count(); ++i) {
            if (unit.components.AllDeclared()[i].isMissing) {
                Refuse(VariableAt(unit, i), DeclFault::kMemory);
            }
        }
    }
    return EnterUnitLine(unit, range, instances);
}

// The section has the lines of the kept components in their order, but for those that were
// skipped. Components have an area each, and so do the constants that they brought, each for the
// first that uses it; that of an implicit one is its unit's.
bool Translator::NoteEntered(Unit& unit, int32_t start) {
    const int32_t length = CgTabCompiler::LengthOf(tables_, CgTab::TAB_CMP);
    uint32_t at = 0;
    for (int32_t pos = start; pos < length;) {
        CgTab::CMP_LINE line;
        int32_t next = pos;
        if (!tables_.Read(next, line, 0, nullptr)) {
            return EndShort();
        }
        char16_t whole[kMaxName];
        const char16_t* name = line.name;
        if (chars::Length(name) + 1 == std::size(line.name)) {
            CgTabCompiler::WholeName(tables_, CgTab::TAB_CMP, pos, whole, kMaxName);
            name = whole;
        }
        const auto isIts = [&](uint32_t number) {
            return chars::Equal(pouh::TextOf(unit.components.At(number).decl, POUH_NAME), name);
        };
        while (at < unit.components.Kept().Count() && !isIts(unit.components.Kept()[at])) {
            ++at;
        }
        LineOrigin origin = unit.origin;
        if (at < unit.components.Kept().Count()) {
            Component& component = unit.components.At(unit.components.Kept()[at++]);
            component.isEntered = true;
            if (component.source >= 0) {
                origin = VariableAt(unit, static_cast<uint32_t>(component.source)).origin;
            }
        }
        if (line.cstLine >= filled_[CgTab::TAB_CST] && areaSizes_[CgTab::TAB_CST] != 0) {
            filled_[CgTab::TAB_CST] = line.cstLine;
            if (!FillArea(CgTab::TAB_CST, filled_[CgTab::TAB_CST], origin)) {
                return EndShort();
            }
        }
        if (areaSizes_[CgTab::TAB_CMP] != 0 && !FillArea(CgTab::TAB_CMP, pos, origin)) {
            return EndShort();
        }
        pos = next;
    }
    filled_[CgTab::TAB_CMP] = length;
    filled_[CgTab::TAB_CST] = CgTabCompiler::LengthOf(tables_, CgTab::TAB_CST);
    return true;
}

bool Translator::CheckComponents(Unit& unit) {
    for (uint32_t i = 0; i < unit.components.AllDeclared().Count(); ++i) {
        if (unit.components.AllDeclared()[i].component == 0) {
            continue;  // a global of the unit, or nothing
        }
        if (!Count()) {
            return false;
        }
        CheckComponent(unit, i);
    }
    return HasMemory();
}

// Refuses what the tables had to skip, and enters the types of all else.
void Translator::CheckComponent(Unit& unit, uint32_t index) {
    Declared& declared = unit.components.AllDeclared()[index];
    const Component& component = unit.components.Of(declared);
    const Variable variable = VariableAt(unit, index);
    if (component.source != static_cast<int32_t>(index)) {
        Refuse(variable, RefusalReason::kComponentTwice, POUH_NAME);
        return;
    }
    if (!component.decl) {
        Refuse(variable, RefusalReason::kNoIdentifier, POUH_NAME);
        return;
    }
    if (!component.isEntered && IsRefused(variable, declared.decl, component.decl)) {
        return;
    }
    declared.isMissing = !component.isEntered;
    out_.entered += component.isEntered ? 1 : 0;
    const char16_t* const type = pouh::TypeTextOf(declared.decl);
    if (!translate::IsMarked(type)) {
        EnterTypeName(variable, type);
    } else if (const std::unique_ptr<LQOBJECT> object(NewDeclaration(variable.origin.object));
               object) {
        EnterTypeName(variable, object->GetType());  // as the model has it
    }
}

// False when the declaration is as the tables want it.
bool Translator::IsRefused(const Variable& variable, const DECL_TYP* source, const DECL_TYP* decl) {
    DeclFault fault = DeclFault::kNone;
    if (!CgTabCompiler::Decode(tables_, decl, fault)) {
        Refuse(variable, fault);
        return true;
    }
    uint32_t scope = 0;
    GetAttrOfDecl(source, POUH_SCOPE, &scope);
    const bool isMissing = translate::IsExternalScope(scope) &&
                           tables_.Look(pouh::TextOf(source, POUH_NAME),
                                        static_cast<CgTab::GLB_LINE*>(nullptr), 0) < 0;
    if (isMissing) {
        Refuse(variable, RefusalReason::kNoGlobal, POUH_NAME);
    }
    return isMissing;
}

bool Translator::EnterUnitLine(const Unit& unit, const CgTab::POS_DSC& range,
                               const POU_LIST& instances) {
    UnitInfo info;
    info.start = static_cast<uint32_t>(range.start);
    info.end = static_cast<uint32_t>(range.end);
    info.lines = static_cast<uint32_t>(range.lines);
    info.kind = unit.kind;
    for (const POU_LIST* entry = &instances; entry; entry = entry->next) {
        info.instances += entry->count;
    }
    const bool isEntered = unit.line >= 0
                               ? CgTabCompiler::ReplaceUnit(tables_, unit.line, info.ToInfo())
                               : CgTabCompiler::InsertUnit(tables_, unit.name, info.ToInfo()) >= 0;
    if (!isEntered) {
        Refuse(unit.origin, RefusalReason::kUnitName);
        return HasMemory();
    }
    ++out_.units;
    FillAreaAnew(CgTab::TAB_POU, unit.line, unit.origin);
    return HasMemory();
}

// --- Temporaries and marks -----------------------------------------------------------------------

bool Translator::EnterTemporaries(Unit& unit) {
    for (uint32_t i = 0; i < unit.components.AllDeclared().Count(); ++i) {
        IEC_TYPE type = IEC_NO_TYPE;
        CgTab::TYP_DSC dsc = {};
        if (IsTemporary(unit, i, type, dsc)) {
            EnterTemporary(unit, i, type, dsc);
        }
    }
    return HasMemory();
}

bool Translator::IsTemporary(Unit& unit, uint32_t index, IEC_TYPE& type, CgTab::TYP_DSC& dsc) {
    const Declared& declared = unit.components.AllDeclared()[index];
    uint32_t scope = 0;
    GetAttrOfDecl(declared.decl, POUH_SCOPE, &scope);
    if (declared.component == 0 || scope != DS_VAR ||
        unit.components.Of(declared).source != static_cast<int32_t>(index) ||
        !source_.IsTemporary(unit.declarations->GetID(static_cast<int32_t>(index)))) {
        return false;
    }
    const DECL_TYP* const decl = unit.components.Of(declared).decl;
    DeclFault fault = DeclFault::kNone;
    // If not, it is refused as a component.
    return decl && CgTabCompiler::DecodeType(tables_, decl, type, dsc, fault);
}

const char16_t* Translator::QualifyTemporary(Unit& unit, uint32_t index) {
    const Declared& declared = unit.components.AllDeclared()[index];
    return Qualify(unit.name, u"", pouh::TextOf(declared.decl, POUH_NAME));
}

void Translator::EnterTemporary(Unit& unit, uint32_t index, IEC_TYPE type,
                                const CgTab::TYP_DSC& dsc) {
    const Variable variable = VariableAt(unit, index);
    const char16_t* const name = QualifyTemporary(unit, index);
    const auto tag = static_cast<unsigned char>(unit.kind);
    const int32_t pos = isAnew_ ? CgTabCompiler::ReplaceTemporary(tables_, name, type, dsc, tag)
                                : tables_.Insert(name, type, dsc, tag);
    if (pos < 0) {
        Refuse(variable, RefusalReason::kTemporary, POUH_NAME);
    }
    FillAreaAnew(CgTab::TAB_TMP, isAnew_ ? pos : -1, variable.origin);
}

void Translator::Take(const SourceMark& mark) {
    if (!HasMemory()) {
        return;
    }
    const char16_t* const name = Qualify(unit_->name, mark.body, mark.name);
    const int32_t pos = tables_.Insert(name, mark.isDefinition ? CgTab::kLabelDefinition : 0);
    if (pos < 0) {
        const bool isLong = text_.GetLength() >= static_cast<int32_t>(kMaxName);
        Refuse({.owner = unit_->origin.object,
                .object = {},
                .reason = isLong ? RefusalReason::kLabelName : RefusalReason::kLabelTwice,
                .attribute = POUH_NAME,
                .place = mark.place,
                .mark = mark.name});
    }
    FillAreaAnew(CgTab::TAB_LBL, isAnew_ && mark.isDefinition ? pos : -1,
                 {unit_->origin.object, mark.place});
}

const char16_t* Translator::Qualify(const char16_t* unit, const char16_t* body,
                                    const char16_t* name) {
    text_ = unit;
    for (const char16_t* const part : {body, name}) {
        if (*part) {
            text_ += u'.';
            text_ += part;
        }
    }
    return text_;
}

}  // namespace lq
