// Appending lines, and entering what the compiler meets: each address, constant and name has one
// line, found again or appended.
#include <limits>

#include "cgtab/line.h"
#include "cgtab/search_text.h"
#include "frame/chars.h"
#include "lq_data/cgtab.h"
#include "lq_data/hash_table.h"
#include "lq_mdi.h"

using lq::cgtab::ByteWriter;
using lq::cgtab::TraitsOf;

// Appends a line whose key is complete. A failed append leaves the table as it was.
int32_t CgTab::AppendLine(TAB_ID id, Line& line) {
    R_FILE* file = handle_(id);
    if (!file) {
        return -1;
    }
    ResUsr_(id);
    const int32_t pos = file->Lseek(0, 2);
    const LookTyp& look = line.look;
    const uint32_t nameBytes = look.NameLength() * TraitsOf(id).nameUnit;
    const uint64_t total = uint64_t{look.keylen} + nameBytes + line.extralen + UsrLen_(id);
    const auto room = static_cast<uint64_t>(std::numeric_limits<int32_t>::max() - pos);
    if (total + 4 > room) {
        return -1;
    }
    line.total = static_cast<uint32_t>(total);
    ByteWriter<4 + sizeof(look.key)> head;
    head.PutU32(line.total);
    head.PutBytes(look.key, look.keylen);
    const int32_t end = pos + 4 + static_cast<int32_t>(line.total);
    const auto write = [file](const void* bytes, uint32_t count) {
        return count == 0 || file->Write(bytes, count) == count;
    };
    const bool whole = write(head.Data(), head.Size()) && write(look.name, nameBytes) &&
                       write(line.extra, line.extralen) && file->Chsize(end) == 0;
    if (!whole || (IsTableHashed(id) && !EnterIndex(id, line, pos))) {
        file->Lseek(pos, 0);
        file->Chsize(pos);
        return -1;
    }
    if (UsrLen_(id) != 0) {
        SetUsr_(id);
    }
    return pos;
}

// An index that does not exist yet is built from all lines, the new one included.
bool CgTab::EnterIndex(TAB_ID id, const Line& line, int32_t pos) {
    if (!hash[id]) {
        return CreateHashTable(id) != 0;
    }
    lq::cgtab::SearchText text;
    const LookTyp& look = line.look;
    return text.Form(id, look.key, look.name, look.NameLength()) &&
           hash[id]->Insert(text.Get(), pos, TraitsOf(id).isUnique ? 0 : 1) != nullptr;
}

// The equal line, or a new one.
int32_t CgTab::LookOrAppend(TAB_ID id, Line& line) {
    const int32_t found = LookLine(id, line.look, 0);
    return found == -1 ? AppendLine(id, line) : found < 0 ? -1 : found;
}

// Exchanges `byte` with the one at `offset` behind the length field of a line; the table then
// stands at the line.
bool CgTab::ReplaceByte(TAB_ID id, int32_t linePos, uint32_t offset, unsigned char& byte) {
    R_FILE& file = *handle_(id);
    const int32_t at = linePos + 4 + static_cast<int32_t>(offset);
    const unsigned char replacement = byte;
    ResUsr_(id);
    return file.Lseek(at, 0) == at && file.Read(&byte, 1) == 1 && file.Lseek(at, 0) == at &&
           file.Write(&replacement, 1) == 1 && file.Lseek(linePos, 0) == linePos;
}

int32_t CgTab::Insert(const DBG_INFO& info) {
    if (!info.data && info.len != 0) {
        return -1;
    }
    Line line(TAB_DBG, info.len != 0 ? info.data : nullptr);
    line.look.AddKey(info.len);
    line.look.flags |= LookTyp::kLengthInKey;
    return AppendLine(TAB_DBG, line);
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
    if (!name) {
        return -1;
    }
    const bool isDefinition = info == kLabelDefinition;
    Line line(TAB_LBL, name);
    const int32_t found = LookLine(TAB_LBL, line.look, isDefinition ? 0 : 1);
    if (found == -1) {
        ByteWriter<5> extra;
        extra.PutU8(info);
        extra.PutU32(isDefinition ? 0 : 1);
        line.SetExtra(extra);
        return AppendLine(TAB_LBL, line);
    }
    if (found < 0 || !isDefinition) {
        return found < 0 ? -1 : found;
    }
    const uint32_t infoOffset = 1 + 2 * line.look.NameLength();
    unsigned char byte = kLabelDefinition;
    const bool replaced = ReplaceByte(TAB_LBL, found, infoOffset, byte);
    return replaced && byte == 0 ? found : -1;
}

int CgTab::ResetJumps(int32_t pos) {
    LineBuffer buf;
    LineBody body;
    int32_t next = pos;
    if (pos < 0 || !ReadLine(TAB_LBL, next, buf, 0)) {
        return 0;
    }
    const bool isSplit = SplitLine(TAB_LBL, buf, body);
    body.extra.TakeU8();
    const uint32_t count = body.extra.TakeU32();
    lq::cgtab::SearchText name;
    if (!isSplit || body.extra.HasFailed() ||
        !name.Form(TAB_LBL, body.key, body.name, body.nameLength)) {
        return FailRead(TAB_LBL, next);
    }
    LookTyp look(TAB_LBL, name.Get());
    return LookLine(TAB_LBL, {pos, next, 1}, look, static_cast<int>(0u - count)) >= 0 ? 1 : 0;
}

int32_t CgTab::Insert(const char16_t* name, IEC_TYPE type, const TYP_DSC& dsc, unsigned char tag) {
    if (!name) {
        return -1;
    }
    Line line(TAB_TMP, name);
    const int32_t found = LookLine(TAB_TMP, line.look, 1);
    if (found >= 0) {
        const uint32_t tagOffset = 2 + 2 * line.look.NameLength();
        return ReplaceByte(TAB_TMP, found, tagOffset, tag) ? found : -1;
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
    return AppendLine(TAB_TMP, line);
}

int32_t CgTab::Insert(const char16_t* name) {
    if (!name) {
        return -1;
    }
    Line line(TAB_DMM, name);
    const int32_t found = LookLine(TAB_DMM, line.look, 1);
    if (found != -1) {
        return found < 0 ? -1 : found;
    }
    ByteWriter<4> extra;
    extra.PutU32(1);
    line.SetExtra(extra);
    return AppendLine(TAB_DMM, line);
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
