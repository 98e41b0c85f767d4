// The set itself: its files, their positions, clearing.
#include "cgtab/line.h"
#include "cgtab/shared_scanner.h"
#include "cgtab/table_traits.h"
#include "lq_data/cgtab.h"
#include "lq_data/hash_table.h"

namespace {

// An open record file, or null.
R_FILE* NewFile() {
    auto* file = new R_FILE(lq::cgtab::kBlockSize);
    if (file && !file->IsOpen()) {
        delete file;
        file = nullptr;
    }
    return file;
}

}  // namespace

CgTab::CgTab(int& ok, uint32_t (*usrLen)[kUserTables]) {
    ok = 1;
    for (int id = 0; id < kUserTables && ok; ++id) {
        tab[id].file = NewFile();
        tab[id].usrLen = usrLen ? (*usrLen)[id] : 0;
        ok = tab[id].file ? 1 : 0;
    }
    if (ok) {
        arrFile = NewFile();
        ok = arrFile && lq::cgtab::CreateSharedScanner() ? 1 : 0;
    }
    if (!ok) {
        CgTabClose();
    }
}

CgTab::~CgTab() {
    CgTabClose();
}

void CgTab::CgTabClose() {
    for (int id = 0; id < kUserTables; ++id) {
        ClearHashTable(static_cast<TAB_ID>(id));
        delete tab[id].file;
        tab[id].file = nullptr;
    }
    delete arrFile;
    arrFile = nullptr;
    lq::Release(longBuf);
    longBuf = nullptr;
}

R_FILE* CgTab::handle_(TAB_ID id) const {
    if (id == TAB_ARR) {
        return arrFile;
    }
    return lq::cgtab::IsTableId(id) ? tab[id].file : nullptr;
}

uint32_t CgTab::UsrLen_(TAB_ID id) const {
    return lq::cgtab::IsTableId(id) && id != TAB_ARR ? tab[id].usrLen : 0;
}

// Table 9 has no flag: it is never set there.

void CgTab::SetUsr_(TAB_ID id) {
    if (id != TAB_ARR) {
        usrFlags = static_cast<uint16_t>(usrFlags | 1u << id);
    }
}

void CgTab::ResUsr_(TAB_ID id) {
    if (id != TAB_ARR) {
        usrFlags = static_cast<uint16_t>(usrFlags & ~(1u << id));
    }
}

bool CgTab::UsrSet_(TAB_ID id) const {
    return id != TAB_ARR && (usrFlags >> id & 1u) != 0;
}

// `id` must be a table.
bool CgTab::SeekTo(TAB_ID id, int32_t pos) {
    ResUsr_(id);
    R_FILE* file = handle_(id);
    return file && pos >= 0 && file->Lseek(pos, 0) == pos;
}

int CgTab::SetPos(TAB_ID id, int32_t pos) {
    return lq::cgtab::IsTableId(id) && SeekTo(id, pos) ? 1 : 0;
}

int CgTab::End(TAB_ID id) {
    const R_FILE* file = handle_(id);
    return file ? file->Eof() : 0;
}

int CgTab::Clear(TAB_ID id) {
    if (!handle_(id)) {
        return 0;
    }
    ClearHashTable(id);
    return SeekTo(id, 0) && handle_(id)->Chsize(0) == 0 ? 1 : 0;
}

int CgTab::IsTableEmpty() {
    for (int id = 0; id < TAB_COUNT; ++id) {
        const R_FILE* file = handle_(static_cast<TAB_ID>(id));
        if (!file || file->Filelength() != 0) {
            return 0;
        }
    }
    return 1;
}
