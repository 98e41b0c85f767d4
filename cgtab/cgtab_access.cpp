#include "cgtab/cgtab_access.h"

#include <algorithm>
#include <cstring>

#include "cgtab/line_index.h"
#include "cgtab/table.h"

int32_t CgTabAccess::InsertGlobal(CgTab& tables, DECL_TYP* decl, DeclFault& fault) {
    CgTab::DECL_ASCII d;
    const int32_t pos = tables.Insert(decl, d);
    fault = d.fault;
    return pos;
}

bool CgTabAccess::Decode(CgTab& tables, const DECL_TYP* decl, DeclFault& fault) {
    CgTab::DECL_ASCII d;
    const bool decoded = tables.GetDecl(decl, d);
    fault = d.fault;
    return decoded;
}

bool CgTabAccess::DecodeType(CgTab& tables, const DECL_TYP* decl, IEC_TYPE& type,
                             CgTab::TYP_DSC& dsc, DeclFault& fault) {
    CgTab::DECL_ASCII d;
    const bool decoded = tables.GetDecl(decl, d);
    fault = d.fault;
    type = d.type;
    dsc = d.dsc;
    return decoded;
}

int CgTabAccess::AppendCmp(CgTab& tables, POU_HEADER_TYP* header, uint16_t attr, POU_LIST* list,
                           CgTab::POS_DSC& range, int count) {
    return tables.AppendCmp(header, attr, list, range, count);
}

int32_t CgTabAccess::LengthOf(const CgTab& tables, CgTab::TAB_ID id) {
    const R_FILE* file = tables.handle_(id);
    return file ? file->Filelength() : 0;
}

bool CgTabAccess::WholeName(CgTab& tables, CgTab::TAB_ID id, int32_t pos, char16_t* name,
                            uint32_t size) {
    CgTab::LineBuffer buf;
    CgTab::LineBody body;
    CgTab::Table* const table = tables.TableOf(id);
    const bool isNamed = id == CgTab::TAB_POU || id == CgTab::TAB_CMP || id == CgTab::TAB_GLB ||
                         id == CgTab::TAB_LBL;
    if (!table || !isNamed || size == 0 || pos < 0 || !table->ReadLine(pos, buf, 0) ||
        !table->SplitLine(buf, body)) {
        return false;
    }
    const uint32_t length = std::min(body.nameLength, size - 1);
    std::memcpy(name, body.name, length * sizeof(char16_t));
    name[length] = 0;
    return true;
}

uint32_t CgTabAccess::ViewIndex(CgTab& tables, CgTab::TAB_ID id,
                                void (*take)(void* context, uint32_t slot, int32_t pos),
                                void* context) {
    CgTab::Table* const table = tables.TableOf(id);
    const lq::cgtab::LineIndex* const index = table ? table->Index() : nullptr;
    const uint32_t size = index ? index->SlotCount() : 0;
    for (uint32_t slot = 0; slot < size; ++slot) {
        int32_t pos = 0;
        for (uint32_t n = 0; (pos = index->LineAt(slot, n)) >= 0; ++n) {
            take(context, slot, pos);
        }
    }
    return size;
}

bool CgTabAccess::Check(CgTab& tables) {
    for (int32_t id = 0; id < CgTab::TAB_COUNT; ++id) {
        CgTab::Table* const table = tables.TableOf(static_cast<CgTab::TAB_ID>(id));
        if (!table || !table->Check()) {
            return false;
        }
    }
    return true;
}

int CgTabAccess::ReadArray(CgTab& tables, int32_t& pos, CgTab::ArrDsc& array) {
    return tables.Read(pos, array);
}

int32_t CgTabAccess::InsertArray(CgTab& tables, const CgTab::ArrDsc& array) {
    return tables.Insert(array);
}
