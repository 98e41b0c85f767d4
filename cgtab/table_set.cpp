// The set itself: its tables, their positions, clearing.
#include <new>

#include "cgtab/shared_scanner.h"
#include "cgtab/table.h"
#include "lq_data/cgtab.h"

CgTab::CgTab(int& ok, uint32_t (*usrLen)[kUserTables]) {
    ok = MakeTables(usrLen ? *usrLen : nullptr) && lq::cgtab::GetSharedScanner() ? 1 : 0;
    if (!ok) {
        CgTabClose();
    }
}

CgTab::~CgTab() {
    CgTabClose();
}

// False when memory is short for one of them.
bool CgTab::MakeTables(const uint32_t* usrLen) {
    tables = static_cast<Table*>(lq::Allocate(TAB_COUNT * sizeof(Table)));
    bool whole = tables != nullptr;
    for (int32_t id = 0; tables && id < TAB_COUNT; ++id) {
        const uint32_t size = usrLen && id < kUserTables ? usrLen[id] : 0;
        const Table* const table = ::new (tables + id) Table(static_cast<TAB_ID>(id), size);
        whole = table->IsOpen() && whole;
    }
    return whole;
}

void CgTab::CgTabClose() {
    for (int32_t id = 0; tables && id < TAB_COUNT; ++id) {
        tables[id].~Table();
    }
    lq::Release(tables);
    tables = nullptr;
    lq::Release(longBuf);
    longBuf = nullptr;
}

R_FILE* CgTab::handle_(TAB_ID id) const {
    Table* const table = TableOf(id);
    return table ? &table->File() : nullptr;
}

int CgTab::SetPos(TAB_ID id, int32_t pos) {
    Table* const table = TableOf(id);
    return table && table->SeekTo(pos) ? 1 : 0;
}

int CgTab::End(TAB_ID id) {
    const Table* const table = TableOf(id);
    return table && table->AtEnd() ? 1 : 0;
}

int CgTab::Clear(TAB_ID id) {
    Table* const table = TableOf(id);
    return table && table->Clear() ? 1 : 0;
}

int CgTab::IsTableEmpty() {
    for (int32_t id = 0; id < TAB_COUNT; ++id) {
        const Table* const table = TableOf(static_cast<TAB_ID>(id));
        if (!table || table->Length() != 0) {
            return 0;
        }
    }
    return 1;
}

int CgTab::Write(TAB_ID id, int32_t& pos, const void* usr) {
    Table* const table = TableOf(id);
    return table && table->WriteUsr(pos, usr) ? 1 : 0;
}

int CgTab::Write(TAB_ID id, const void* usr) {
    curPos = -1;
    return Write(id, curPos, usr);
}
