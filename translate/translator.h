// One translation while it runs.
#pragma once

#include <cstdint>
#include <memory>

#include "lq_data/env/lq_base.h"
#include "lq_data/translate.h"
#include "pouh/header_parts.h"
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
    struct DeclDeleter {
        void operator()(DECL_TYP* decl) const { DestroyDecl(decl); }
    };
    using Record = std::unique_ptr<DECL_TYP, DeclDeleter>;
    // What is entered at the moment.
    struct Unit {
        translate::Components& components;
        LineOrigin origin = {};
        const char16_t* name = u"";
        const LQSELECTION* declarations = nullptr;
        POU_HEADER_TYP* header = nullptr;
        pouh::HeaderParts parts{};  // of the header
        uint32_t kind = PT_OTHER;
        CgTab::POS_DSC range = {};  // their section of table 2
        uint32_t instances = 0;     // structures and function blocks among them
        bool isTakenBack = false;   // the table could not hold the section
        int32_t line = -1;          // in table 1, of one that is entered anew
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
    bool EnterParts(Unit& unit);
    bool EnterPart(Unit& unit);
    bool NoteEntered(Unit& unit, const CgTab::POS_DSC& range);
    void NotePart(Unit& unit);
    bool FillComponentAreas(Unit& unit);
    bool CheckComponents(Unit& unit);
    bool EnterUnitLine(const Unit& unit);
    bool EnterTemporaries(Unit& unit);

    void CheckComponent(Unit& unit, uint32_t index);
    // The record of the temporary at that index, if it can be entered, or null; `type` and `dsc`
    // receive its type.
    Record LoadTemporary(Unit& unit, uint32_t index, IEC_TYPE& type, CgTab::TYP_DSC& dsc);
    void EnterTemporary(Unit& unit, uint32_t index);
    // The user type or function block that a type text names, if only for the elements of an array.
    ID NamedType(const char16_t* typeText);
    void EnterTypeName(const Variable& variable, ID type);
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
    // The area at which the table stands.
    bool FillAreaHere(CgTab::TAB_ID id, const LineOrigin& origin);
    const void* MakeArea(CgTab::TAB_ID id, const LineOrigin& origin);

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

    translate::Components components_;  // of the unit; its room is used again
    const Unit* unit_ = nullptr;        // whose marks are taken
    bool isAnew_ = false;               // the unit may be in the set
    CLQString text_;
    CLQString lastType_;  // the last of NamedType, and the object that it names
    ID lastNamed_;
};

}  // namespace lq
