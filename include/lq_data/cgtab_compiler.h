// What a compiler does with a table set beside the operations of CgTab: it enters units with their
// components, asks why a declaration is refused, and sees whole names, lengths and array lines.
#pragma once

#include <cstdint>

#include "lq_data/cgtab.h"
#include "lq_data/export.h"
#include "lq_data/pouh.h"
#include "lq_data/types.h"

namespace lq {

// Why a declaration could not be decoded or entered.
enum class DeclFault : uint8_t {
    kNone,
    kNameTooLong,   // 66 characters and more
    kTypeKind,      // not a kind that the tables hold
    kTypeName,      // names no type
    kInitialValue,  // does not read as one constant
    kStringLength,
    kArrayType,    // does not read as an array type
    kAddress,      // does not read as one direct address
    kScope,        // not a section of globals
    kTableType,    // a type that no line can hold
    kTextTooLong,  // for the length field of its line
    kMemory,       // or a table that cannot take the line
};

}  // namespace lq

// The layers above the set, such as lq::Translate, are built with these alone. They obey the rules
// of CgTab: they move the current positions of the tables they use, and a record's texts and array
// descriptions are valid until the set's next operation.
class LQ_DATA_API CgTabCompiler {
  public:
    using DeclFault = lq::DeclFault;

    // Enters a global as CgTab::Insert(DECL_TYP*) does; `fault` says why it failed.
    static int32_t InsertGlobal(CgTab& tables, DECL_TYP* decl, DeclFault& fault);

    // Whether a declaration can be decoded, and why not. The set's array description is used up.
    static bool Decode(CgTab& tables, const DECL_TYP* decl, DeclFault& fault);

    // The type of a declaration that can be decoded, with its descriptor; the array description
    // that it points at is valid until the set's next operation.
    static bool DecodeType(CgTab& tables, const DECL_TYP* decl, IEC_TYPE& type, CgTab::TYP_DSC& dsc,
                           DeclFault& fault);

    // Enters the components of a unit as `count` sections of table 2. `range` receives the first
    // section: its start, its end and its number of lines. Bits of `attr`: 0x1 the interface only,
    // 0x4 initial values as constants, 0x80 record instances of structures and function blocks in
    // `list`, 0x100 sections become their retained forms. `list` must not be null; its first entry
    // gives each section the member initialisations of one instance record. 1 when every
    // declaration that could be decoded was entered; 0 when an external has no global (the
    // sections stay), or when a step failed (they are gone).
    static int AppendCmp(CgTab& tables, POU_HEADER_TYP* header, uint16_t attr, POU_LIST* list,
                         CgTab::POS_DSC& range, int count);

    // Takes back the lines of table 2 from `start` on, where a section begins: for one that was
    // entered by several calls of AppendCmp, when one of them failed. The index of the table is
    // built anew when it is next asked for.
    static void TakeBackComponents(CgTab& tables, int32_t start);

    // Appends the line of a unit, also when there is one of that name: from then on a search finds
    // the new one. The position; -1 when the name has more than 255 characters or is null, or
    // memory is short.
    static int32_t InsertUnit(CgTab& tables, const char16_t* name, const CgTab::POU_INFO& info);

    // For a unit that is entered once more:

    // Makes the line of a unit at `pos` say `info`. False when there is no such line, or memory is
    // short.
    static bool ReplaceUnit(CgTab& tables, int32_t pos, const CgTab::POU_INFO& info);
    // Makes the lines of all labels whose names begin with `prefix`, whatever its case, those of
    // references that nobody uses. False when memory is short.
    static bool ResetLabels(CgTab& tables, const char16_t* prefix);
    // Enters a temporary as CgTab::Insert does, but one that is there gets the type, too, and is
    // not counted. -1 also when it is there with a type whose line has another size.
    static int32_t ReplaceTemporary(CgTab& tables, const char16_t* name, IEC_TYPE type,
                                    const CgTab::TYP_DSC& dsc, unsigned char tag);
    // Whether ReplaceTemporary can, but for memory.
    static bool CanReplaceTemporary(CgTab& tables, const char16_t* name, IEC_TYPE type);

    // The length of a table in bytes; 0 when it is not there.
    static int32_t LengthOf(const CgTab& tables, CgTab::TAB_ID id);

    // The size of the user areas of a table, as the set was made; 0 when it has none.
    static uint32_t UserAreaOf(const CgTab& tables, CgTab::TAB_ID id);

    // The whole name of the line at `pos` of tables 1, 2, 3 or 6, whose records cut it: at most
    // `size` - 1 characters and a terminator. False when there is no line.
    static bool WholeName(CgTab& tables, CgTab::TAB_ID id, int32_t pos, char16_t* name,
                          uint32_t size);

    // The index of a table, built if need be, as numbers, for who shows how it is filled: `take` is
    // called for each entry, by slots, with `context`, its slot and the position of its line. The
    // number of slots; 0 when the table has no index or it cannot be built.
    static uint32_t ViewIndex(CgTab& tables, CgTab::TAB_ID id,
                              void (*take)(void* context, uint32_t slot, int32_t pos),
                              void* context);

    // An array line at `pos`, which moves to the next one: 1, or 0 as CgTab::Read; table 9 is read
    // at positions only. The description in `array` belongs to the set.
    static int ReadArray(CgTab& tables, int32_t& pos, CgTab::ArrDsc& array);
    // Appends the line of an array, also when there is an equal one: its position; -1 when a line
    // cannot hold it, or memory is short.
    static int32_t InsertArray(CgTab& tables, const CgTab::ArrDsc& array);

  private:
    // The line of a temporary, and whether a type fits in it: `tag` receives where its tag is.
    LQ_DATA_LOCAL static int32_t FindTemporary(CgTab& tables, const char16_t* name, IEC_TYPE type,
                                               bool& fits, uint32_t& tagOffset);
};
