// Globals, the names of types, refusals and user areas.
#include "translate/translator.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

#include "lq_data/detail/chars.h"
#include "lq_data/records.h"

namespace lq {

namespace {

POUH_ATTRIBUTE_FLAG AttributeOf(DeclFault fault) {
    switch (fault) {
        case DeclFault::kNameTooLong:
            return POUH_NAME;
        case DeclFault::kTypeKind:
        case DeclFault::kTypeName:
        case DeclFault::kStringLength:
        case DeclFault::kArrayType:
        case DeclFault::kTableType:
            return POUH_TYPE;
        case DeclFault::kInitialValue:
        case DeclFault::kTextTooLong:
            return POUH_INITVALUE;
        case DeclFault::kAddress:
            return POUH_ADDRESS;
        case DeclFault::kScope:
            return POUH_SCOPE;
        case DeclFault::kNone:
        case DeclFault::kMemory:
            break;
    }
    return POUH_DECLLIST;
}

// The name of the type itself: behind the last " OF " of an array type.
const char16_t* TypeNameIn(const char16_t* text) {
    constexpr std::u16string_view kOf = u" OF ";
    const std::u16string_view type(text);
    const std::size_t of = type.rfind(kOf);
    return of == type.npos ? text : text + of + kOf.size();
}

}  // namespace

Translator::Translator(TranslationSource& source, CgTab& tables, TranslationClient* client,
                       TranslationResult& out)
    : source_(source),
      tables_(tables),
      client_(client),
      out_(out),
      objects_(LQNAVIOBJECTMAN::Get()),
      declarations_(LQDECLMAN::Get()) {
    for (int32_t i = 0; i < CgTab::kUserTables; ++i) {
        const auto id = static_cast<CgTab::TAB_ID>(i);
        filled_[i] = CgTabCompiler::LengthOf(tables, id);
        areaSizes_[i] = client ? CgTabCompiler::UserAreaOf(tables, id) : 0;
    }
    area_ = AllocateArray<unsigned char>(*std::ranges::max_element(areaSizes_));
}

void Translator::Run() {
    const bool isWhole =
        ForEach(source_.GetGlobals(), [this](ID list) { return EnterGlobals(list); }) &&
        ForEach(source_.GetTypes(), [this](ID type) { return EnterTypesOfMembers(type); }) &&
        ForEach(source_.GetUnits(), [this](ID unit) { return EnterUnit(unit); });
    if (isWhole) {
        (void)HasMemory();
    }
}

void Translator::RunAnew(ID unit) {
    isAnew_ = true;
    if (EnterUnit(unit)) {
        (void)HasMemory();
    }
}

bool Translator::HasMemory() {
    return !watch_.WasShort() || EndShort();
}

bool Translator::EndShort() {
    out_.outcome = TranslationOutcome::kNoMemory;
    return false;
}

bool Translator::Count() {
    ++out_.declarations;
    if (HasMemory() && client_ && !client_->GoesOn(out_.declarations)) {
        out_.outcome = TranslationOutcome::kCancelled;
    }
    return out_.outcome == TranslationOutcome::kDone;
}

// --- Globals -------------------------------------------------------------------------------------

// One by one: the records of a declaration take several times the memory of its lines.
bool Translator::EnterGlobals(ID list) {
    LQOBJECT* const object = ObjectOf(list);
    return ForEach(object ? object->GetSelection() : nullptr,
                   [this, list](ID id) { return EnterGlobal(list, id); });
}

bool Translator::EnterGlobal(ID list, ID id) {
    const std::unique_ptr<LQOBJECT> object(NewDeclaration(id));
    if (!object) {
        return HasMemory();
    }
    const Record decl(LoadDecl(object.get()));
    if (!decl) {
        return EndShort();
    }
    if (!Count()) {
        return false;
    }
    const Variable variable = VariableOf(list, id);
    if (translate::IsMarked(pouh::TextOf(decl.get(), POUH_NAME))) {
        Refuse(variable, RefusalReason::kNoIdentifier, POUH_NAME);
        return true;
    }
    const int32_t before = CgTabCompiler::LengthOf(tables_, CgTab::TAB_GLB);
    DeclFault fault = DeclFault::kNone;
    const int32_t pos = CgTabCompiler::InsertGlobal(tables_, decl.get(), fault);
    if (pos >= before && areaSizes_[CgTab::TAB_GLB] != 0) {
        (void)FillAreaHere(CgTab::TAB_GLB, variable.origin);
    }
    for (const CgTab::TAB_ID table : {CgTab::TAB_ADR, CgTab::TAB_CST}) {
        FillAreas(table, variable.origin);
    }
    if (pos < 0) {
        Refuse(variable, fault);
    } else if (pos < before) {
        Refuse(variable, RefusalReason::kGlobalTwice, POUH_NAME);
    } else {
        ++out_.entered;
        EnterTypeName(variable, NamedType(object->GetType()));
    }
    return HasMemory();
}

// --- Other names ---------------------------------------------------------------------------------

bool Translator::EnterTypesOfMembers(ID type) {
    LQOBJECT* const object = ObjectOf(type);
    return ForEach(object ? object->GetSelection() : nullptr, [this, type](ID id) {
        const std::unique_ptr<LQOBJECT> member(NewDeclaration(id));
        if (member) {
            EnterTypeName(VariableOf(type, id), NamedType(member->GetType()));
        }
        return HasMemory();
    });
}

// Neighbours often have one type.
ID Translator::NamedType(const char16_t* typeText) {
    if (!chars::Equal(typeText, lastType_)) {
        lastType_ = typeText;
        const char16_t* const name = TypeNameIn(lastType_);
        lastNamed_ = FindDUTByName(name);
        lastNamed_ = lastNamed_ != ID() ? lastNamed_ : FindPOUByName(name);
    }
    return lastNamed_;
}

void Translator::EnterTypeName(const Variable& variable, ID type) {
    const LQOBJECT* const named = type != ID() ? ObjectOf(type) : nullptr;
    if (!named) {
        return;
    }
    if (tables_.Insert(named->GetName()) < 0) {
        Refuse(variable, RefusalReason::kTypeName, POUH_TYPE);
    }
    FillAreas(CgTab::TAB_DMM, variable.origin);
}

// --- Refusals ------------------------------------------------------------------------------------

void Translator::Refuse(const Variable& variable, RefusalReason reason,
                        POUH_ATTRIBUTE_FLAG attribute) {
    Refuse({.owner = variable.owner,
            .object = variable.origin.object,
            .reason = reason,
            .attribute = attribute,
            .place = variable.origin.place});
}

void Translator::Refuse(const Variable& variable, DeclFault fault) {
    Refuse({.owner = variable.owner,
            .object = variable.origin.object,
            .reason = RefusalReason::kDeclaration,
            .fault = fault,
            .attribute = AttributeOf(fault),
            .place = variable.origin.place});
}

void Translator::Refuse(const LineOrigin& unit, RefusalReason reason) {
    Refuse({.owner = unit.object, .object = {}, .reason = reason, .place = unit.place});
}

// What looks like a refusal may be want of memory, which ends the translation.
void Translator::Refuse(const TranslationRefusal& refusal) {
    if (!watch_.WasShort()) {
        (void)out_.Add(refusal);
    }
}

// --- User areas ----------------------------------------------------------------------------------

void Translator::FillAreas(CgTab::TAB_ID id, const LineOrigin& origin) {
    const int32_t length = areaSizes_[id] != 0 ? CgTabCompiler::LengthOf(tables_, id) : 0;
    while (filled_[id] < length && FillArea(id, filled_[id], origin)) {
    }
}

void Translator::FillAreaAnew(CgTab::TAB_ID id, int32_t pos, const LineOrigin& origin) {
    if (areaSizes_[id] != 0 && pos >= 0 && pos < filled_[id]) {
        (void)FillArea(id, pos, origin);
    }
    FillAreas(id, origin);
}

bool Translator::FillArea(CgTab::TAB_ID id, int32_t& pos, const LineOrigin& origin) {
    return tables_.Write(id, pos, MakeArea(id, origin)) != 0;
}

bool Translator::FillAreaHere(CgTab::TAB_ID id, const LineOrigin& origin) {
    return tables_.Write(id, MakeArea(id, origin)) != 0;
}

const void* Translator::MakeArea(CgTab::TAB_ID id, const LineOrigin& origin) {
    std::memset(area_, 0, areaSizes_[id]);
    client_->FillUserArea(id, origin, area_, areaSizes_[id]);
    return area_;
}

}  // namespace lq

lq::TranslationResult lq::Translate(TranslationSource& source, CgTab& tables,
                                    TranslationClient* client) {
    TranslationResult result;
    Translator(source, tables, client, result).Run();
    return result;
}

lq::TranslationResult lq::TranslateUnit(TranslationSource& source, CgTab& tables,
                                        TranslationClient* client, ID unit) {
    TranslationResult result;
    Translator(source, tables, client, result).RunAnew(unit);
    return result;
}
