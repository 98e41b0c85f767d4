// One translation while it runs.
#pragma once

#include <cstdint>

#include "lq_data/env/lq_base.h"
#include "lq_data/translate.h"
#include "translate/components.h"

namespace lq {

class Translator final : private MarkTaker {
  public:
    Translator(TranslationSource& source, CgTab& tables, TranslationClient* client,
               TranslationResult& out);
    ~Translator() { Release(area_); }
    Translator(const Translator&) = delete;
    Translator& operator=(const Translator&) = delete;

    void Run();
    void RunAnew(ID unit);

  private:
    // What is entered at the moment.
    struct Unit {
        LineOrigin origin;
        const char16_t* name = u"";
        const LQSELECTION* declarations = nullptr;
        POU_HEADER_TYP* header = nullptr;
        uint32_t kind = PT_OTHER;
        translate::Components components;  // of the header
        int32_t line = -1;                 // in table 1, of one that is entered anew
    };
    // A declaration, and whose it is.
    struct Variable {
        ID owner;
        LineOrigin origin;
    };

    // Each of these is false when the translation has ended.
    template <typename Function>
    bool ForEach(const LQSELECTION* selection, Function function) {
        const int32_t count = selection ? selection->GetCount() : 0;
        for (int32_t i = 0; i < count; ++i) {
            if (!function(selection->GetID(i))) {
                return false;
            }
        }
        return true;
    }
    bool EnterGlobals(ID list);
    bool EnterGlobal(ID list, ID id);
    bool EnterTypesOfMembers(ID type);
    bool EnterUnit(ID id);
    bool EnterLoadedUnit(Unit& unit);
    bool MakeReady(Unit& unit);
    bool HasRoom();
    bool EnterDebugRecord(const Unit& unit);
    bool EnterComponents(Unit& unit);
    bool NoteEntered(Unit& unit, int32_t start);
    bool CheckComponents(Unit& unit);
    bool EnterUnitLine(const Unit& unit, const CgTab::POS_DSC& range, const POU_LIST& instances);
    bool EnterTemporaries(Unit& unit);

    void CheckComponent(Unit& unit, uint32_t index);
    bool IsRefused(const Variable& variable, const DECL_TYP* source, const DECL_TYP* decl);
    // Whether the declaration at that index is one, and its type.
    bool IsTemporary(Unit& unit, uint32_t index, IEC_TYPE& type, CgTab::TYP_DSC& dsc);
    void EnterTemporary(Unit& unit, uint32_t index, IEC_TYPE type, const CgTab::TYP_DSC& dsc);
    void EnterTypeName(const Variable& variable, const char16_t* typeText);
    void Take(const SourceMark& mark) override;

    // Counts a declaration; false when the translation ends with it.
    bool Count();
    // False when the translation ends for want of it.
    bool HasMemory();
    bool EndShort();

    LQNAVIOBJECT* ObjectOf(ID id) const { return objects_ ? objects_->Get(id) : nullptr; }
    // The caller's.
    LQOBJECT* NewDeclaration(ID id) const {
        return declarations_ ? declarations_->Get(id) : nullptr;
    }
    Variable VariableOf(ID owner, ID id) { return {owner, {id, source_.GetPlace(id)}}; }
    Variable VariableAt(const Unit& unit, uint32_t index) {
        return VariableOf(unit.origin.object,
                          unit.declarations->GetID(static_cast<int32_t>(index)));
    }

    void Refuse(const Variable& variable, RefusalReason reason, POUH_ATTRIBUTE_FLAG attribute);
    void Refuse(const Variable& variable, DeclFault fault);
    void Refuse(const LineOrigin& unit, RefusalReason reason);
    void Refuse(const TranslationRefusal& refusal);

    // Fills the user areas of the lines that a table has got since the last time.
    void FillAreas(CgTab::TAB_ID id, const LineOrigin& origin);
    // That of a line that may have been there before.
    void FillAreaAnew(CgTab::TAB_ID id, int32_t pos, const LineOrigin& origin);
    // The area of the line at `pos`, which moves to the next one. False when memory is short.
    bool FillArea(CgTab::TAB_ID id, int32_t& pos, const LineOrigin& origin);

    const char16_t* QualifyTemporary(Unit& unit, uint32_t index);
    // "Unit.Body.Name", in `text_`.
    const char16_t* Qualify(const char16_t* unit, const char16_t* body, const char16_t* name);

    TranslationSource& source_;
    CgTab& tables_;
    TranslationClient* client_;
    TranslationResult& out_;
    LQNAVIOBJECTMAN* objects_;
    LQDECLMAN* declarations_;
    const MemoryWatch watch_;

    int32_t filled_[CgTab::kUserTables];  // the lines before that have their user areas
    uint32_t areaSizes_[CgTab::kUserTables];
    unsigned char* area_ = nullptr;

    const Unit* unit_ = nullptr;  // whose marks are taken
    bool isAnew_ = false;         // the unit may be in the set
    CLQString text_;
    CLQString lastType_;  // the last of EnterTypeName, and the object that it names
    ID lastNamed_;
};

}  // namespace lq
