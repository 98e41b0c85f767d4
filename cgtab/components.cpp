// The components of a unit: a section of lines of table 2 for each of its instances.
#include "cgtab/declaration.h"
#include "cgtab/pou_list.h"
#include "frame/chars.h"
#include "lq_data/cgtab.h"
#include "lq_data/containers.h"
#include "pouh/record_access.h"

using lq::cgtab::RecordInstance;

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
struct CgTab::ComponentWalk {
    uint16_t attr;
    POU_LIST& instances;
    const POU_INST* section;     // whose member initialisations the section takes, or null
    int32_t skipped = 0;         // declarations of the section without a line
    bool missingGlobal = false;  // an external had no global
};

int CgTab::AppendCmp(POU_HEADER_TYP* header, uint16_t attr, POU_LIST* list, POS_DSC& range,
                     int count) {
    R_FILE* file = handle_(TAB_CMP);
    range = {file ? file->Filelength() : -1, -1, 0};
    FLIST* decls = lq::pouh::ListOf(header);
    if (!file || !list || !decls) {
        return 0;
    }
    // Want of memory must neither pass for a declaration that cannot be decoded, which is skipped,
    // nor for an external without its global or a member without a value of its own.
    const lq::MemoryWatch watch;
    ComponentWalk walk = {attr, *list, list->first};
    const auto declCount = static_cast<int32_t>(CardinalityOfList(decls));
    bool whole = true;
    for (int section = 0; section < count && whole; ++section) {
        walk.skipped = 0;
        whole = AppendSection(decls, walk) && !watch.WasShort();
        if (range.end == -1) {
            range.end = file->Filelength();
            range.lines = declCount - walk.skipped;
        }
        walk.section = walk.section ? walk.section->next : nullptr;
    }
    if (!whole) {
        SeekTo(TAB_CMP, range.start);
        file->Chsize(range.start);
        ClearHashTable(TAB_CMP);
    }
    return whole && !walk.missingGlobal ? 1 : 0;
}

bool CgTab::AppendSection(FLIST* decls, ComponentWalk& walk) {
    void* slot = nullptr;
    for (uint32_t at = ListGet(decls, slot, nullptr, LC_FIRST, 0); at != 0;
         at = ListGet(decls, slot, nullptr, LC_NEXT, 0)) {
        DECL_ASCII d;
        if (!GetDecl(*static_cast<DECL_TYP**>(slot), d)) {
            ++walk.skipped;
            continue;
        }
        if (walk.attr & kRetain) {
            d.scope = RetainedScope(d.scope);
        }
        if ((walk.attr & kInterfaceOnly) && !lq::cgtab::IsInterfaceScope(d.scope)) {
            ++walk.skipped;
            continue;
        }
        if (!AppendComponent(d, walk)) {
            return false;
        }
    }
    return true;
}

bool CgTab::AppendComponent(DECL_ASCII& d, ComponentWalk& walk) {
    Line line(TAB_CMP, d.name);
    lq::cgtab::ByteWriter<5 * 4> extra;
    extra.PutU32(d.scope);
    if (lq::cgtab::IsExternalScope(d.scope)) {
        const int32_t globalPos = Look(d.name, static_cast<GLB_LINE*>(nullptr), 0);
        if (globalPos < 0) {
            walk.missingGlobal = true;
            ++walk.skipped;
            return true;
        }
        extra.PutI32(globalPos);
    } else {
        extra.PutI32(d.type);
        if (d.type == IEC_STRING) {
            extra.PutU32(d.dsc.strLen);
        } else if (d.type == IEC_ARRAY) {
            const int32_t arrPos = Insert(d.dsc.arr);
            if (arrPos < 0) {
                return false;
            }
            extra.PutI32(arrPos);
            const int32_t pos = arrPos + lq::cgtab::kElementDescriptor;
            if (d.dsc.arr.info->elemType == IEC_STRUCTURE &&
                !RecordInstance(walk.instances,
                                {lq::cgtab::kArrayOfStructures, d.typeText, d.name, u"", pos})) {
                return false;
            }
        } else if (IsInstance(d.type)) {
            const auto nameBytes = static_cast<uint32_t>(2 * lq::chars::Length(d.name));
            const uint32_t offset = 4 + 1 + nameBytes + extra.Size();
            const int32_t pos = handle_(TAB_CMP)->Filelength() + static_cast<int32_t>(offset);
            const char16_t* members = d.type == IEC_STRUCTURE ? d.initText : u"";
            if ((walk.attr & kRecordInstances) &&
                !RecordInstance(walk.instances,
                                {lq::cgtab::kInstanceOfUnit, d.typeText, d.name, members, pos})) {
                return false;
            }
            extra.PutI32(-1);
        } else if (!IsElementaryType(d.type) && !IsGenericType(d.type)) {
            return false;
        }
        int32_t cstPos = -1;
        if ((walk.attr & kWithInitialValues) && !IsInstance(d.type)) {
            cstPos = InsertInitialValue(d, walk);
            if (cstPos < 0) {
                return false;
            }
        }
        extra.PutI32(cstPos);
    }
    extra.PutU32(0);  // use count
    line.SetExtra(extra);
    uint32_t length = 0;
    int nocase = 0;
    return TransLookDcr(line.look, length, nocase) && AppendLine(TAB_CMP, line) >= 0;
}

// The component's own initial value, or the one that this section's instance gives it.
int32_t CgTab::InsertInitialValue(DECL_ASCII& d, const ComponentWalk& walk) {
    const DUVMemberInit_C* members = walk.section ? walk.section->init : nullptr;
    const char16_t* given = members ? members->FindNewInit(d.name) : nullptr;
    if (!given) {
        return InsertConstant(d.initText, d.init);
    }
    Val value(given, d.type == IEC_BOOL ? 1 : 0);
    return InsertConstant(given, value);
}
