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

int CgTab_IsRecursivPOU(CgTab* tab, const char16_t* name) {
    CgTab::POU_LINE line;
    if (!tab || !name || tab->Look(name, &line, 0) >= 0) {
        return 0;
    }
    return CheckIsRecursiveCallEx(name, name, 0) != 0 ? 1 : 0;
}
