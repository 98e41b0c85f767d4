// Units: their components and lines, temporaries and marks.
#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "lq_data/detail/chars.h"
#include "lq_data/records.h"
#include "pouh/declarations.h"
#include "translate/translator.h"

namespace lq {

using translate::Component;
using translate::Declared;
using translate::PartRecord;

namespace {

constexpr uint16_t kComponentAttributes = 0x4 | 0x80;  // initial values; recorded instances
constexpr uint32_t kMaxName = 256;                     // with its terminator
// How many declarations of a unit are loaded at a time: their records take several times the memory
// of their lines. Most units have fewer.
constexpr uint32_t kPart = 1024;

struct HeaderDeleter {
    void operator()(POU_HEADER_TYP* header) const { DestroyPOUHeader(header); }
};

const char16_t* NameOf(const DECL_TYP* decl) {
    return pouh::TextOf(decl, POUH_NAME);
}

}  // namespace

bool Translator::EnterUnit(ID id) {
    const std::unique_ptr<POU_HEADER_TYP, HeaderDeleter> header(CreatePOUHeader());
    Unit unit = {components_};
    unit.origin = {id, source_.GetPlace(id)};
    LQOBJECT* const object = ObjectOf(id);
    if (!header || !object || !unit.parts.Open(header.get(), id) || !unit.parts.LoadNext(kPart)) {
        Refuse(unit.origin, RefusalReason::kUnit);
        return HasMemory();
    }
    unit.name = object->GetName();
    unit.declarations = unit.parts.Declarations();
    unit.header = header.get();
    POUH_INFO_TYP* info = nullptr;
    GetAttrOfPOUHeader(unit.header, POUH_INFO, &info);
    GetAttrOfPOUHInfo(info, POUH_POUTYPE, &unit.kind);
    return EnterLoadedUnit(unit);
}

bool Translator::EnterLoadedUnit(Unit& unit) {
    if (!unit.components.Open(unit.declarations) || !unit.components.TakePart(unit.header)) {
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
        const ID id = unit.declarations->GetID(static_cast<int32_t>(i));
        const std::unique_ptr<LQOBJECT> object(NewDeclaration(id));
        if (!object || pouh::ScopeOf(*object) != DS_VAR || !source_.IsTemporary(id)) {
            continue;
        }
        IEC_TYPE type = IEC_NO_TYPE;
        CgTab::TYP_DSC dsc = {};
        const Record record = LoadTemporary(unit, i, type, dsc);
        isPossible = !record || CgTabCompiler::CanReplaceTemporary(
                                    tables_, Qualify(unit.name, u"", object->GetName()), type);
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
    const int32_t start = CgTabCompiler::LengthOf(tables_, CgTab::TAB_CMP);
    unit.range = {start, start, 0};
    if (!EnterParts(unit)) {
        CgTabCompiler::TakeBackComponents(tables_, start);
        return false;
    }
    if (!FillComponentAreas(unit) || !CheckComponents(unit)) {
        return false;
    }
    if (unit.isTakenBack) {
        Refuse(unit.origin, RefusalReason::kComponents);
    } else {
        // What the set skipped without a fault that shows, as it skips what it cannot hold.
        for (uint32_t i = 0; i < unit.components.AllDeclared().Count(); ++i) {
            if (unit.components.AllDeclared()[i].isMissing) {
                Refuse(VariableAt(unit, i), DeclFault::kMemory);
            }
        }
    }
    return EnterUnitLine(unit);
}

// The first one has been loaded.
bool Translator::EnterParts(Unit& unit) {
    for (;;) {
        if (!EnterPart(unit)) {
            return false;
        }
        NotePart(unit);
        if (!HasMemory() || unit.parts.AtEnd()) {
            return out_.outcome == TranslationOutcome::kDone;
        }
        if (!unit.parts.LoadNext(kPart) || !unit.components.TakePart(unit.header)) {
            return EndShort();
        }
    }
}

// When the table cannot hold one part, none is entered.
bool Translator::EnterPart(Unit& unit) {
    if (unit.isTakenBack) {
        return true;
    }
    POU_LIST instances;
    CgTab::POS_DSC range = {};
    const int isEntered =
        CgTabCompiler::AppendCmp(tables_, unit.header, kComponentAttributes, &instances, range, 1);
    for (const POU_LIST* entry = &instances; entry; entry = entry->next) {
        unit.instances += entry->count;
    }
    if (!HasMemory()) {
        return false;
    }
    const int32_t length = CgTabCompiler::LengthOf(tables_, CgTab::TAB_CMP);
    if (!isEntered && length == range.start && range.lines > 0) {
        CgTabCompiler::TakeBackComponents(tables_, unit.range.start);
        unit.components.ForgetEntered();
        unit.range = {unit.range.start, unit.range.start, 0};
        unit.isTakenBack = true;
        return true;
    }
    unit.range.end = range.end;
    unit.range.lines += range.lines;
    return NoteEntered(unit, range);
}

// The table has the lines of the kept components in their order, but for those that were skipped.
bool Translator::NoteEntered(Unit& unit, const CgTab::POS_DSC& range) {
    const bool areAll = static_cast<uint32_t>(range.lines) == unit.components.KeptCount();
    int32_t pos = range.start;
    char16_t name[kMaxName] = {};
    for (const PartRecord& record : unit.components.Part()) {
        if (!record.isKept) {
            continue;
        }
        if (!areAll && pos < range.end && name[0] == 0) {
            CgTabCompiler::WholeName(tables_, CgTab::TAB_CMP, pos, name, kMaxName);
        }
        if (!areAll && !chars::Equal(NameOf(record.decl), name)) {
            continue;
        }
        CgTab::CMP_LINE line;
        if (!unit.components.NoteEntered(record.component) ||
            (!areAll && !tables_.Read(pos, line, 0, nullptr))) {
            return EndShort();
        }
        name[0] = 0;
    }
    return true;
}

// Why those of the part without a line have none, and what the types name.
void Translator::NotePart(Unit& unit) {
    for (const PartRecord& record : unit.components.Part()) {
        Component* const component =
            record.component != 0 ? &unit.components.At(record.component) : nullptr;
        const bool isEntered = component && component->isEntered;
        if (record.isKept && !isEntered) {
            CgTabCompiler::Decode(tables_, record.decl, component->fault);
        }
        if (record.index < 0) {
            continue;
        }
        Declared& declared = unit.components.AllDeclared()[static_cast<uint32_t>(record.index)];
        declared.lacksGlobal =
            !isEntered && translate::IsExternalScope(record.scope) &&
            tables_.Look(NameOf(record.decl), static_cast<CgTab::GLB_LINE*>(nullptr), 0) < 0;
        const char16_t* const type = pouh::TypeTextOf(record.decl);
        if (!translate::IsMarked(type)) {
            declared.type = NamedType(type);
        } else if (const std::unique_ptr<LQOBJECT> object(
                       NewDeclaration(unit.declarations->GetID(record.index)));
                   object) {
            declared.type = NamedType(object->GetType());  // as the model has it
        }
    }
}

// Components have an area each, and so do the constants that they brought, each for the first that
// uses it; that of an implicit one is its unit's.
bool Translator::FillComponentAreas(Unit& unit) {
    const bool hasAreas = areaSizes_[CgTab::TAB_CMP] != 0 || areaSizes_[CgTab::TAB_CST] != 0;
    int32_t pos = unit.range.start;
    for (uint32_t i = 0; hasAreas && i < unit.components.Entered().Count(); ++i) {
        CgTab::CMP_LINE line;
        if (!tables_.Read(pos, line, 1, nullptr)) {
            return EndShort();
        }
        const Component& component = unit.components.At(unit.components.Entered()[i]);
        const LineOrigin origin =
            component.source < 0 ? unit.origin
                                 : VariableAt(unit, static_cast<uint32_t>(component.source)).origin;
        if (line.cstLine >= filled_[CgTab::TAB_CST] && areaSizes_[CgTab::TAB_CST] != 0) {
            filled_[CgTab::TAB_CST] = line.cstLine;
            if (!FillArea(CgTab::TAB_CST, filled_[CgTab::TAB_CST], origin)) {
                return EndShort();
            }
        }
        if (areaSizes_[CgTab::TAB_CMP] != 0 && !FillAreaHere(CgTab::TAB_CMP, origin)) {
            return EndShort();
        }
    }
    filled_[CgTab::TAB_CMP] = CgTabCompiler::LengthOf(tables_, CgTab::TAB_CMP);
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
    if (component.source != static_cast<int32_t>(index)) {
        Refuse(VariableAt(unit, index), RefusalReason::kComponentTwice, POUH_NAME);
    } else if (!component.isTaken) {
        Refuse(VariableAt(unit, index), RefusalReason::kNoIdentifier, POUH_NAME);
    } else if (component.fault != DeclFault::kNone) {
        Refuse(VariableAt(unit, index), component.fault);
    } else if (declared.lacksGlobal) {
        Refuse(VariableAt(unit, index), RefusalReason::kNoGlobal, POUH_NAME);
    } else {
        declared.isMissing = !component.isEntered;
        out_.entered += component.isEntered ? 1 : 0;
        if (declared.type != ID()) {
            EnterTypeName(VariableAt(unit, index), declared.type);
        }
    }
}

bool Translator::EnterUnitLine(const Unit& unit) {
    UnitInfo info;
    info.start = static_cast<uint32_t>(unit.range.start);
    info.end = static_cast<uint32_t>(unit.range.end);
    info.lines = static_cast<uint32_t>(unit.range.lines);
    info.kind = unit.kind;
    info.instances = unit.instances;
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
        const Declared& declared = unit.components.AllDeclared()[i];
        const auto index = static_cast<int32_t>(i);
        if (declared.isVar && unit.components.Of(declared).source == index &&
            source_.IsTemporary(unit.declarations->GetID(index))) {
            EnterTemporary(unit, i);
        }
    }
    return HasMemory();
}

// If there is none, it is refused as a component. Of a name with several declarations, it has the
// type that its component has.
Translator::Record Translator::LoadTemporary(Unit& unit, uint32_t index, IEC_TYPE& type,
                                             CgTab::TYP_DSC& dsc) {
    const Declared& declared = unit.components.AllDeclared()[index];
    const int32_t kept = declared.component != 0 ? unit.components.Of(declared).kept : -1;
    const std::unique_ptr<LQOBJECT> object(
        NewDeclaration(unit.declarations->GetID(kept >= 0 ? kept : static_cast<int32_t>(index))));
    Record record(object ? LoadDecl(object.get()) : nullptr);
    DeclFault fault = DeclFault::kNone;
    const bool canBeEntered = record && !translate::IsMarked(NameOf(record.get())) &&
                              CgTabCompiler::DecodeType(tables_, record.get(), type, dsc, fault);
    return canBeEntered ? std::move(record) : nullptr;
}

void Translator::EnterTemporary(Unit& unit, uint32_t index) {
    const Variable variable = VariableAt(unit, index);
    IEC_TYPE type = IEC_NO_TYPE;
    CgTab::TYP_DSC dsc = {};
    const Record record = LoadTemporary(unit, index, type, dsc);
    const std::unique_ptr<LQOBJECT> object(NewDeclaration(variable.origin.object));
    if (!record || !object) {
        return;
    }
    const char16_t* const name = Qualify(unit.name, u"", object->GetName());
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
