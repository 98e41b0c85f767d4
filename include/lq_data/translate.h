// Translation: what a project declares becomes lines of a table set.
//
// The project is reached through the interfaces of lq_model.h, which answer for the current project
// of the embedding environment: LQNAVIOBJECTMAN and LQDECLMAN for objects, FindDUTByName and
// FindPOUByName for the types that declarations name. So every model gets the same tables.
//
// Link the library's target lq_data::translate (pkg-config: lq_data_translate).
#pragma once

#include <cstdint>

#include "lq_data/cgtab.h"
#include "lq_data/cgtab_compiler.h"
#include "lq_data/env/lq_model.h"
#include "lq_data/export.h"
#include "lq_data/pouh.h"

namespace lq {

// ---------------------------------------------------------------------------------------------
// What is translated
// ---------------------------------------------------------------------------------------------

// Where something stands in its source, both counted from 1; 0 says that it is not known.
struct SourcePlace {
    uint32_t line = 0;
    uint32_t column = 0;
};

// A label of a unit, or a jump to one.
struct SourceMark {
    const char16_t* body = u"";  // the action or transition it stands in; empty for the unit's own
    const char16_t* name = u"";
    bool isDefinition = false;
    SourcePlace place;
};

// Takes the marks of a unit, while TranslationSource::GiveMarks runs.
class MarkTaker {
  public:
    // The texts are copied.
    virtual void Take(const SourceMark&) {}

  protected:
    ~MarkTaker() = default;
};

// The project that is translated: the identifiers of its objects, and what the model's interfaces
// have no words for. A source overrides what it has. Nothing of it may throw; no list may change
// while the translation runs. A list that is null is empty, and an identifier that the model has no
// object for is passed over (that of a unit is refused).
class TranslationSource {
  public:
    virtual ~TranslationSource() = default;

    // Objects that select global declarations, such as variable lists.
    virtual const LQSELECTION* GetGlobals() { return nullptr; }
    // Types whose members' types are entered among the other names.
    virtual const LQSELECTION* GetTypes() { return nullptr; }
    // Units, each what LoadPOUHeader loads with the object manager.
    virtual const LQSELECTION* GetUnits() { return nullptr; }

    // Where a declaration, list or unit stands.
    virtual SourcePlace GetPlace(ID) { return {}; }
    // Whether a declaration of a unit, whose scope is VAR, is a temporary: it is entered among the
    // temporaries, too.
    virtual bool IsTemporary(ID) { return false; }
    // Hands over the labels of a unit's bodies and the jumps to them.
    virtual void GiveMarks(ID, MarkTaker&) {}
};

// A selection of the caller's identifiers, which must outlive it.
class IdSelection final : public LQSELECTION {
  public:
    IdSelection() = default;
    IdSelection(const ID* ids, int32_t count) : ids_(ids), count_(count) {}

    int32_t GetCount() const override { return count_; }
    ID GetID(int32_t index) const override {
        return index >= 0 && index < count_ ? ids_[index] : ID();
    }

  private:
    const ID* ids_ = nullptr;
    int32_t count_ = 0;
};

// ---------------------------------------------------------------------------------------------
// What the caller adds
// ---------------------------------------------------------------------------------------------

// Whose line it is that was entered: the declaration, or the unit for what belongs to it as a
// whole, with its place; a mark's line has its unit and the place of the mark.
struct LineOrigin {
    ID object;
    SourcePlace place;
};

// Room for the data of a debug record.
inline constexpr uint32_t kMaxDebugData = 255;

// What a translation asks its caller. The default fills nothing and goes on. Nothing of it may
// throw or change the set.
class TranslationClient {
  public:
    virtual ~TranslationClient() = default;

    // So many declarations have been looked at, this one included, which is entered next. False
    // ends the translation.
    virtual bool GoesOn(uint32_t declarations) {
        (void)declarations;
        return true;
    }
    // Fills the user area of a line that was just entered: `size` bytes, all 0, as the set was made
    // for that table. It is asked once a line, by what entered the line first.
    virtual void FillUserArea(CgTab::TAB_ID table, const LineOrigin& origin, unsigned char* area,
                              uint32_t size) {
        (void)table, (void)origin, (void)area, (void)size;
    }
    // Writes the data of a unit's debug record (table 0); `kind` is its POUH_POU_TYPE. The number
    // of bytes, at most kMaxDebugData; 0 for no record.
    virtual uint32_t FillDebugRecord(const LineOrigin& unit, const char16_t* name, uint32_t kind,
                                     unsigned char* data) {
        (void)unit, (void)name, (void)kind, (void)data;
        return 0;
    }
};

// What the line of a unit says (CgTab::POU_INFO): five numbers of 32 bits, little-endian.
struct UnitInfo {
    uint32_t start = 0;  // its section of table 2
    uint32_t end = 0;
    uint32_t lines = 0;
    uint32_t kind = 0;       // POUH_POU_TYPE
    uint32_t instances = 0;  // structures and function blocks declared in it

    // The section, as lq::Lines and a search take it.
    CgTab::POS_DSC Section() const {
        return {static_cast<int32_t>(start), static_cast<int32_t>(end),
                static_cast<int32_t>(lines)};
    }

    // Reads them from the bytes of a line.
    LQ_DATA_API static UnitInfo From(const CgTab::POU_INFO& info);
    // The bytes that a line has of them.
    LQ_DATA_API CgTab::POU_INFO ToInfo() const;
};

// ---------------------------------------------------------------------------------------------
// What comes of it
// ---------------------------------------------------------------------------------------------

// Why something of the project was not entered.
enum class RefusalReason : uint8_t {
    kDeclaration,     // as `fault` says
    kNoIdentifier,    // the name is no identifier
    kGlobalTwice,     // a global of this name was declared before
    kComponentTwice,  // the unit has declared this name before
    kNoGlobal,        // an external, and no global of this name was entered
    kTypeName,        // entered, but the table of other names cannot take that of its type
    kTemporary,       // the table of temporaries cannot take it
    kUnit,            // the model has no such unit, or none with a header
    kComponents,      // of the unit none can be entered
    kUnitName,        // it has more than 255 characters: the unit has no line
    kLabelName,       // with the unit's and the body's, more than 255 characters
    kLabelTwice,      // a label that is defined already
};

struct TranslationRefusal {
    ID owner;   // the list, type or unit
    ID object;  // the declaration; null for the unit itself and for marks
    RefusalReason reason = RefusalReason::kDeclaration;
    DeclFault fault = DeclFault::kNone;
    // The attribute of the declaration at fault: POUH_NAME, POUH_TYPE, POUH_INITVALUE,
    // POUH_ADDRESS or POUH_SCOPE; POUH_DECLLIST where it is none.
    POUH_ATTRIBUTE_FLAG attribute = POUH_DECLLIST;
    SourcePlace place;               // of the object, unit or mark
    const char16_t* mark = nullptr;  // the name of a mark, else null; the result's
};

enum class TranslationOutcome : uint8_t {
    kDone,
    kCancelled,  // by the client
    kNoMemory,   // of the library's or the model's, even if it was got over
    kProject,    // of TranslateUnit: the project is to be translated, into a new set
};

// What a translation did. Unless it is done, the tables hold what was entered until it ended, of
// the last unit perhaps a part and no line in table 1, and are only good for being cleared or
// destroyed.
class LQ_DATA_API TranslationResult {
  public:
    TranslationResult() = default;
    TranslationResult(TranslationResult&& other) noexcept;
    ~TranslationResult();
    TranslationResult(const TranslationResult&) = delete;
    TranslationResult& operator=(const TranslationResult&) = delete;

    TranslationOutcome outcome = TranslationOutcome::kDone;
    uint32_t declarations = 0;  // that were to be entered as globals and components
    uint32_t entered = 0;       // of these
    uint32_t units = 0;         // with a line in table 1

    // What was refused, in the order of the project. Valid while the result lives.
    const TranslationRefusal* begin() const { return refusals_; }
    // Behind the last refusal.
    const TranslationRefusal* end() const { return refusals_ + count_; }
    // How many refusals there are.
    uint32_t GetRefusalCount() const { return count_; }

  private:
    friend class Translator;

    // False when memory is short.
    LQ_DATA_LOCAL bool Add(const TranslationRefusal& refusal);

    TranslationRefusal* refusals_ = nullptr;
    uint32_t count_ = 0;
    uint32_t capacity_ = 0;
};

// Enters what the source selects into a set, which may hold lines already:
//
//   - each global with its address, constant and array lines;
//   - for each unit its components, as one section of table 2, and its line in table 1, whose
//     POU_INFO is a UnitInfo; a debug record, if the client has one;
//   - the marks of its bodies, under the unit's and the body's name ("Unit.Body.Label"), and its
//     temporaries under the unit's ("Unit.x");
//   - the names of user types and of function block types that what was entered, or a member of the
//     selected types, is declared with, if only as elements of an array.
//
// A declaration whose name is none or was declared before is refused and left out, and so is what
// the tables cannot hold; the rest is entered. The project of the source must be the current one.
// `client` may be null. One thread at a time: the model's checks and the set's scanner are shared.
LQ_DATA_API TranslationResult Translate(TranslationSource& source, CgTab& tables,
                                        TranslationClient* client);

// Enters a unit once more, after an edit, into a set that Translate or TranslateUnit filled; a unit
// that the set does not have is entered for the first time. Nothing else of the project is looked
// at, no index is built anew. What becomes of what the set had of the unit:
//
//   - its section of table 2 is abandoned: the lines stay where they are. The unit's line stays as
//     well and names the new section, whose components begin with a use count of 0;
//   - its labels are reset and entered again: one that the unit no longer has stays, as a reference
//     that nobody uses. Its temporaries get their new types, and those that it no longer has stay;
//     they are not counted again;
//   - addresses, constants, globals and other names are found again, with the use counts and user
//     areas that they have; but a name of a type counts each time;
//   - the lines of its arrays are abandoned and appended anew; its debug record is appended when it
//     says something new.
//
// So the set grows. The outcome is kProject, and nothing has been changed, when as much as half of
// the sections in use has been abandoned, and more than 64 KB; and when a temporary gets a type
// with a descriptor (of a string, an array, a structure or function block) that had one without, or
// the other way round. After any other outcome than that and kDone the set is in doubt.
LQ_DATA_API TranslationResult TranslateUnit(TranslationSource& source, CgTab& tables,
                                            TranslationClient* client, ID unit);

}  // namespace lq
