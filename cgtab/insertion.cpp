// Entering what the compiler meets: each address, constant and name has one line, found again or
// appended.
#include "cgtab/search_text.h"
#include "cgtab/table.h"
#include "lq_data/cgtab.h"
#include "lq_data/env/lq_mdi.h"

using lq::cgtab::ByteWriter;

int32_t CgTab::LookOrAppend(TAB_ID id, Line& line) {
    Table* const table = TableOf(id);
    return table ? table->LookOrAppend(line) : -1;
}

int32_t CgTab::Insert(const DBG_INFO& info) {
    Table* const table = TableOf(TAB_DBG);
    if (!table || (!info.data && info.len != 0)) {
        return -1;
    }
    Line line(TAB_DBG, info.len != 0 ? info.data : nullptr);
    line.look.Complete(info.len);
    return table->AppendLine(line);
}

int32_t CgTab::Insert(const Address& adr) {
    Line line(TAB_ADR, adr.text ? adr.text : u"");
    line.look.AddKey(adr.location);
    line.look.AddKey(adr.size);
    ByteWriter<4> extra;
    extra.PutU32(1);
    line.SetExtra(extra);
    return LookOrAppend(TAB_ADR, line);
}

int32_t CgTab::Insert(Lit& lit) {
    return InsertConstant(lit.text, lit.val);
}

int32_t CgTab::InsertConstant(const char16_t* text, Val& val) {
    Line line(TAB_CST, text ? text : u"");
    line.look.AddKey(val.type & 0xFF);
    ByteWriter<sizeof(val.payload) + 4> extra;
    uint32_t size = 0;
    const void* payload = val.GetValBuf(val, size);
    extra.PutBytes(payload, size);
    extra.PutU32(1);
    line.SetExtra(extra);
    return LookOrAppend(TAB_CST, line);
}

int32_t CgTab::Insert(const char16_t* name, LBL_INFO info) {
    Table* const table = TableOf(TAB_LBL);
    if (!table || !name) {
        return -1;
    }
    const bool isDefinition = info == kLabelDefinition;
    Line line(TAB_LBL, name);
    const int32_t found = table->LookLine(line.look, isDefinition ? 0 : 1);
    if (found == -1) {
        ByteWriter<5> extra;
        extra.PutU8(info);
        extra.PutU32(isDefinition ? 0 : 1);
        line.SetExtra(extra);
        return table->AppendLine(line);
    }
    if (found < 0 || !isDefinition) {
        return found < 0 ? -1 : found;
    }
    const uint32_t infoOffset = 1 + 2 * line.look.nameLength;
    unsigned char byte = kLabelDefinition;
    const bool replaced = table->ReplaceByte(found, infoOffset, byte);
    return replaced && byte == 0 ? found : -1;
}

int CgTab::ResetJumps(int32_t pos) {
    Table* const table = TableOf(TAB_LBL);
    LineBuffer buf;
    LineBody body;
    int32_t next = pos;
    if (!table || pos < 0 || !table->ReadLine(next, buf, 0)) {
        return 0;
    }
    const bool isSplit = table->SplitLine(buf, body);
    body.extra.TakeU8();
    const uint32_t count = body.extra.TakeU32();
    lq::cgtab::SearchText name;
    if (!isSplit || body.extra.HasFailed() ||
        !name.Form(TAB_LBL, body.key, body.name, body.nameLength)) {
        return table->FailRead(next);
    }
    LookTyp look(TAB_LBL, name.Get());
    return table->LookLine({pos, next, 1}, look, static_cast<int>(0u - count)) >= 0 ? 1 : 0;
}

int32_t CgTab::Insert(const char16_t* name, IEC_TYPE type, const TYP_DSC& dsc, unsigned char tag) {
    Table* const table = TableOf(TAB_TMP);
    if (!table || !name) {
        return -1;
    }
    Line line(TAB_TMP, name);
    const int32_t found = table->LookLine(line.look, 1);
    if (found >= 0) {
        const uint32_t tagOffset = 2 + 2 * line.look.nameLength;
        return table->ReplaceByte(found, tagOffset, tag) ? found : -1;
    }
    if (found != -1) {
        return -1;
    }
    ByteWriter<1 + 4 + 4 + 4> extra;
    extra.PutU8(tag);
    extra.PutI32(type);
    if (type == IEC_ARRAY) {
        const int32_t arrayPos = Insert(dsc.arr);
        if (arrayPos < 0) {
            return -1;
        }
        extra.PutI32(arrayPos);
    } else if (lq::cgtab::HasStoredDescriptor(type)) {
        extra.PutU32(dsc.dsc);
    }
    extra.PutU32(1);
    line.SetExtra(extra);
    return table->AppendLine(line);
}

int32_t CgTab::Insert(const char16_t* name) {
    Table* const table = TableOf(TAB_DMM);
    if (!table || !name) {
        return -1;
    }
    Line line(TAB_DMM, name);
    const int32_t found = table->LookLine(line.look, 1);
    if (found != -1) {
        return found < 0 ? -1 : found;
    }
    ByteWriter<4> extra;
    extra.PutU32(1);
    line.SetExtra(extra);
    return table->AppendLine(line);
}

// ---------------------------------------------------------------------------------------------
// Units and deletion marks: in the interface, and provided by no set.
// ---------------------------------------------------------------------------------------------

int32_t CgTab::Insert(const char16_t*, POU_INFO&, uint16_t, int*) {
    return -1;
}

int32_t CgTab::Insert(const char16_t* name, POU_INFO& info, int* out) {
    return Insert(name, info, uint16_t{128}, out);
}

int32_t CgTab::Insert(CPouRef* pou, POU_INFO& info, uint16_t attr, int* out) {
    if (!pou) {
        return -1;
    }
    CLQString name;
    pou->GetName(&name);
    return Insert(name.GetText(), info, attr, out);
}

int32_t CgTab::Insert(CPouRef* pou, POU_INFO& info, int* out) {
    return Insert(pou, info, uint16_t{128}, out);
}

int32_t CgTab::MarkPouDeleted(const char16_t*, uint16_t) {
    return -1;
}
int32_t CgTab::MarkPouDeleted(int32_t, uint16_t, int) {
    return -1;
}
int32_t CgTab::MarkGlobalsDeleted(uint16_t) {
    return -1;
}
int32_t CgTab::InsertGlobalFBorDUT(DECL_ASCII*, POU_INFO&, uint16_t) {
    return -1;
}
