// Finding lines by what they say.
#include "cgtab/table.h"
#include "lq_data/cgtab.h"
#include "lq_data/env/lq_model.h"

int32_t CgTab::Look(TAB_ID id, const void* data, int rewind) {
    Table* const table = TableOf(id);
    if (!table || table->UsrLen_() == 0) {
        return -1;
    }
    if (rewind) {
        table->SeekTo(0);
    }
    return table->LookUsr(data);
}

int32_t CgTab::Look(const DBG_INFO& info, void* usr) {
    LookTyp look(TAB_DBG, info.data);
    look.Complete(info.len);
    Table* const table = TableOf(TAB_DBG);
    const int32_t pos = table ? table->LookLine(look, 0) : -1;
    DBG_INFO line;
    int32_t next = pos;
    if (pos < 0 || (usr && !Read(next, line, 0, usr))) {
        return -1;
    }
    return pos;
}

template <typename Record>
int32_t CgTab::LookName(TAB_ID id, const POS_DSC& range, const char16_t* name, Record* line,
                        int inc) {
    Table* const table = TableOf(id);
    if (!table || !name) {
        return -1;
    }
    LookTyp look(id, name);
    const int32_t pos = table->LookLine(range, look, inc ? 1 : 0);
    int32_t next = pos;
    if (pos < 0 || (line && !Read(next, *line, 0, nullptr))) {
        return -1;
    }
    return pos;
}

int32_t CgTab::Look(const char16_t* name, POU_LINE* line, int inc) {
    return LookName(TAB_POU, kWholeTable, name, line, inc);
}

int32_t CgTab::Look(POS_DSC range, const char16_t* name, CMP_LINE* line, int inc) {
    return LookName(TAB_CMP, range, name, line, inc);
}

int32_t CgTab::Look(const char16_t* name, GLB_LINE* line, int inc) {
    return LookName(TAB_GLB, kWholeTable, name, line, inc);
}

int CgTab_IsRecursivPOU(CgTab* tab, const char16_t* name) {
    CgTab::POU_LINE line;
    if (!tab || !name || tab->Look(name, &line, 0) >= 0) {
        return 0;
    }
    return CheckIsRecursiveCallEx(name, name, 0) != 0 ? 1 : 0;
}
