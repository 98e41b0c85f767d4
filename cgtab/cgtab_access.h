// The one way to private operations of a table set, for the command-line tool and the tests: what
// a compiler linked into the library would call itself.
#pragma once

#include <cstdint>

#include "cgtab/declaration.h"
#include "lq_data/cgtab.h"
#include "lq_data/export.h"

class LQ_DATA_API CgTabAccess {
  public:
    using DeclFault = lq::cgtab::DeclFault;

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

    // The length of a table in bytes; 0 when it is not there.
    static int32_t LengthOf(const CgTab& tables, CgTab::TAB_ID id);

    // The whole name of the line at `pos` of tables 1, 2, 3 or 6, whose records cut it: at most
    // `size` - 1 characters and a terminator. False when there is no line.
    static bool WholeName(CgTab& tables, CgTab::TAB_ID id, int32_t pos, char16_t* name,
                          uint32_t size);

    // The index of a table, built if need be, as numbers: `take` is called for each entry, by
    // slots, with `context`, its slot and the position of its line. The number of slots; 0 when the
    // table has no index or it cannot be built.
    static uint32_t ViewIndex(CgTab& tables, CgTab::TAB_ID id,
                              void (*take)(void* context, uint32_t slot, int32_t pos),
                              void* context);

    // Whether the invariants of all tables hold, whose lines were all appended: no image was read.
    static bool Check(CgTab& tables);

    // The array lines: CgTab keeps reading and storing them to itself.
    static int ReadArray(CgTab& tables, int32_t& pos, CgTab::ArrDsc& array);
    static int32_t InsertArray(CgTab& tables, const CgTab::ArrDsc& array);
};
