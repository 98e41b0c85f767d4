// The components of a unit: a section of lines of table 2 for each of its instances.
#include "cgtab/declaration.h"
#include "cgtab/pou_list.h"
#include "cgtab/table.h"
#include "lq_data/cgtab.h"
#include "lq_data/containers.h"
#include "lq_data/detail/chars.h"
#include "lq_data/records.h"

namespace {

// Bits of the attribute word.
constexpr uint16_t kInterfaceOnly = 0x1;
constexpr uint16_t kWithInitialValues = 0x4;
constexpr uint16_t kRecordInstances = 0x80;
constexpr uint16_t kRetain = 0x100;

struct ScopePair {
    uint32_t scope;
    uint32_t retained;
};
constexpr ScopePair kRetained[] = {
    {DS_VAR, DS_VAR_RETAIN},
    {DS_VAR_INPUT, DS_VAR_INPUT_RETAIN},
    {DS_VAR_OUTPUT, DS_VAR_OUTPUT_RETAIN},
    {DS_VAR_EXTERNAL, DS_VAR_EXTERNAL_RETAIN},
    {DS_VAR_GLOBAL, DS_VAR_GLOBAL_RETAIN},
    {DS_VAR_CONSTANT, DS_VAR_CONSTANT_RETAIN},
    {DS_VAR_GLOBAL_CONSTANT, DS_VAR_GLOBAL_CONSTANT_RETAIN},
    {DS_VAR_EXTERNAL_CONSTANT, DS_VAR_EXTERNAL_CONSTANT_RETAIN},
};

uint32_t RetainedScope(uint32_t scope) {
    for (const ScopePair& pair : kRetained) {
        if (pair.scope == scope) {
            return pair.retained;
        }
    }
    return scope;
}

bool IsInstance(IEC_TYPE type) {
    return type == IEC_STRUCTURE || type == IEC_FUNCTION_BLOCK;
}

}  // namespace

// What stays the same over the declarations of one call, and what it counts.
struct LQ_DATA_LOCAL CgTab::ComponentWalk {
    // The extra bytes of a line.
    using Extra = lq::cgtab::ByteWriter<5 * 4>;

    CgTab& set;
    Table& table;
    uint16_t attr;
    lq::cgtab::InstanceRecorder instances;
    const POU_INST* section;     // whose member initialisations the section takes, or null
    int32_t skipped = 0;         // declarations of the section without a line
    bool missingGlobal = false;  // an external had no global

    // These are false when the sections are to be taken back.
    bool AppendSection(FLIST* decls);
    bool AppendComponent(DECL_ASCII& d);
    bool PutType(const DECL_ASCII& d, Extra& extra);
    bool PutArray(const DECL_ASCII& d, Extra& extra);
    bool PutInstance(const DECL_ASCII& d, Extra& extra);
    bool PutConstant(DECL_ASCII& d, Extra& extra);
};

int CgTab::AppendCmp(POU_HEADER_TYP* header, uint16_t attr, POU_LIST* list, POS_DSC& range,
                     int count) {
    Table* const table = TableOf(TAB_CMP);
    range = {table ? table->Length() : -1, -1, 0};
    FLIST* decls = lq::pouh::ListOf(header);
    if (!table || !list || !decls) {
        return 0;
    }
    // Want of memory must neither pass for a declaration that cannot be decoded, which is skipped,
    // nor for an external without its global or a member without a value of its own.
    const lq::MemoryWatch watch;
    ComponentWalk walk = {*this, *table, attr, lq::cgtab::InstanceRecorder(*list), list->first};
    const auto declCount = static_cast<int32_t>(CardinalityOfList(decls));
    bool whole = true;
    for (int section = 0; section < count && whole; ++section) {
        walk.skipped = 0;
        whole = walk.AppendSection(decls) && !watch.WasShort();
        if (range.end == -1) {
            range.end = table->Length();
            range.lines = declCount - walk.skipped;
        }
        walk.section = walk.section ? walk.section->next : nullptr;
    }
    if (!whole) {
        table->TruncateTo(range.start);
    }
    return whole && !walk.missingGlobal ? 1 : 0;
}

bool CgTab::ComponentWalk::AppendSection(FLIST* decls) {
    void* slot = nullptr;
    for (uint32_t at = ListGet(decls, slot, nullptr, LC_FIRST, 0); at != 0;
         at = ListGet(decls, slot, nullptr, LC_NEXT, 0)) {
        DECL_ASCII d;
        if (!set.GetDecl(*static_cast<DECL_TYP**>(slot), d)) {
            ++skipped;
            continue;
        }
        if (attr & kRetain) {
            d.scope = RetainedScope(d.scope);
        }
        if ((attr & kInterfaceOnly) && !lq::cgtab::IsInterfaceScope(d.scope)) {
            ++skipped;
            continue;
        }
        if (!AppendComponent(d)) {
            return false;
        }
    }
    return true;
}

bool CgTab::ComponentWalk::AppendComponent(DECL_ASCII& d) {
    Extra extra;
    extra.PutU32(d.scope);
    if (lq::cgtab::IsExternalScope(d.scope)) {
        const int32_t globalPos = set.Look(d.name, static_cast<GLB_LINE*>(nullptr), 0);
        if (globalPos < 0) {
            missingGlobal = true;
            ++skipped;
            return true;
        }
        extra.PutI32(globalPos);
    } else if (!PutType(d, extra) || !PutConstant(d, extra)) {
        return false;
    }
    extra.PutU32(0);  // use count
    Line line(TAB_CMP, d.name);
    line.SetExtra(extra);
    return Table::TransLookDcr(line.look) && table.AppendLine(line) >= 0;
}

// The type and its descriptor.
bool CgTab::ComponentWalk::PutType(const DECL_ASCII& d, Extra& extra) {
    extra.PutI32(d.type);
    if (d.type == IEC_STRING) {
        extra.PutU32(d.dsc.strLen);
        return true;
    }
    if (d.type == IEC_ARRAY) {
        return PutArray(d, extra);
    }
    return IsInstance(d.type) ? PutInstance(d, extra)
                              : IsElementaryType(d.type) || IsGenericType(d.type);
}

// The line of an array; that of an array of structures is recorded, to be laid out later.
bool CgTab::ComponentWalk::PutArray(const DECL_ASCII& d, Extra& extra) {
    const int32_t arrPos = set.Insert(d.dsc.arr);
    if (arrPos < 0) {
        return false;
    }
    extra.PutI32(arrPos);
    const int32_t pos = arrPos + lq::cgtab::kElementDescriptor;
    return d.dsc.arr.info->elemType != IEC_STRUCTURE ||
           instances.Record({lq::cgtab::kArrayOfStructures, d.typeText, d.name, u"", pos});
}

// An instance is recorded with the place that its descriptor will have, in the line that is to be
// appended.
bool CgTab::ComponentWalk::PutInstance(const DECL_ASCII& d, Extra& extra) {
    const auto nameBytes = static_cast<uint32_t>(2 * lq::chars::Length(d.name));
    const int32_t pos = table.Length() + static_cast<int32_t>(4 + 1 + nameBytes + extra.Size());
    const char16_t* members = d.type == IEC_STRUCTURE ? d.initText : u"";
    extra.PutI32(-1);
    return !(attr & kRecordInstances) ||
           instances.Record({lq::cgtab::kInstanceOfUnit, d.typeText, d.name, members, pos});
}

// The component's own initial value, or the one that this section's instance gives it.
bool CgTab::ComponentWalk::PutConstant(DECL_ASCII& d, Extra& extra) {
    int32_t pos = -1;
    if ((attr & kWithInitialValues) && !IsInstance(d.type)) {
        const DUVMemberInit_C* members = section ? section->init : nullptr;
        if (const char16_t* given = members ? members->FindNewInit(d.name) : nullptr) {
            Val value(given, d.type == IEC_BOOL ? 1 : 0);
            pos = set.InsertConstant(given, value);
        } else {
            pos = set.InsertConstant(d.initText, d.init);
        }
        if (pos < 0) {
            return false;
        }
    }
    extra.PutI32(pos);
    return true;
}
