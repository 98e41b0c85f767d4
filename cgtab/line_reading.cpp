// Lines to records.
#include <algorithm>
#include <cstring>

#include "cgtab/table.h"
#include "lq_data/cgtab.h"

using lq::cgtab::HasStoredDescriptor;
using lq::cgtab::LoadU32;

namespace {

constexpr uint32_t kShortName = 64;  // characters that the inline buffer takes

void CopyName(const unsigned char* name, uint32_t length, char16_t* to) {
    if (name) {
        std::memcpy(to, name, length * sizeof(char16_t));
    }
    to[length] = 0;
}

}  // namespace

// For the records with an array: longer names are cut. Where the bytes behind the name allow it, it
// is copied in steps of one size, of which a processor foresees how many there are.
void CgTab::CopyShort(const LineBody& body, char16_t (&to)[kNameSize]) {
    constexpr uint32_t kStep = 8;
    static_assert(kNameSize % kStep == 1);
    const uint32_t length = std::min<uint32_t>(body.nameLength, kNameSize - 1);
    if (body.extra.Left() < kStep * sizeof(char16_t)) {
        CopyName(body.name, length, to);
        return;
    }
    for (uint32_t done = 0; done < length; done += kStep) {
        std::memcpy(to + done, body.name + done * sizeof(char16_t), kStep * sizeof(char16_t));
    }
    to[length] = 0;
}

template <CgTab::TAB_ID kId, typename Record>
int CgTab::ReadRecord(int32_t& pos, Record& line, int keepAtUser, void* usr) {
    Table* const table = TableOf(kId);
    if (!table) {
        pos = 0;
        return 0;
    }
    LineBuffer buf;
    const unsigned mode = (usr ? Table::kWithUser : 0) | (keepAtUser ? Table::kStayAtUser : 0);
    if (!table->ReadLine(pos, buf, mode)) {
        return 0;
    }
    LineBody body;
    if (!table->SplitLine(lq::cgtab::kTraits[kId].value, buf, body) || !Decode(body, line) ||
        body.extra.HasFailed()) {
        return table->FailRead(pos);
    }
    if (usr && body.usr) {
        std::memcpy(usr, body.usr, table->UsrLen_());
    }
    return 1;
}

// A look-up with the reading of what it finds, in one piece: half of its work is that.
template <CgTab::TAB_ID kId, typename Record>
[[gnu::flatten]] int32_t CgTab::LookName(const POS_DSC& range, const char16_t* name, Record* line,
                                         int inc) {
    Table* const table = TableOf(kId);
    if (!table || !name) {
        return -1;
    }
    LookTyp look(kId, name);
    const int32_t pos = table->LookLine(range, look, inc ? 1 : 0);
    int32_t next = pos;
    if (pos < 0 || (line && !ReadRecord<kId>(next, *line, 0, nullptr))) {
        return -1;
    }
    return pos;
}

int32_t CgTab::Look(const char16_t* name, POU_LINE* line, int inc) {
    return LookName<TAB_POU>(kWholeTable, name, line, inc);
}
int32_t CgTab::Look(POS_DSC range, const char16_t* name, CMP_LINE* line, int inc) {
    return LookName<TAB_CMP>(range, name, line, inc);
}
int32_t CgTab::Look(const char16_t* name, GLB_LINE* line, int inc) {
    return LookName<TAB_GLB>(kWholeTable, name, line, inc);
}

int CgTab::Read(int32_t& pos, DBG_INFO& line, int keepAtUser, void* usr) {
    return ReadRecord<TAB_DBG>(pos, line, keepAtUser, usr);
}
int CgTab::Read(int32_t& pos, POU_LINE& line, int keepAtUser, void* usr) {
    return ReadRecord<TAB_POU>(pos, line, keepAtUser, usr);
}
int CgTab::Read(int32_t& pos, CMP_LINE& line, int keepAtUser, void* usr) {
    return ReadRecord<TAB_CMP>(pos, line, keepAtUser, usr);
}
int CgTab::Read(int32_t& pos, GLB_LINE& line, int keepAtUser, void* usr) {
    return ReadRecord<TAB_GLB>(pos, line, keepAtUser, usr);
}
int CgTab::Read(int32_t& pos, ADR_LINE& line, int keepAtUser, void* usr) {
    return ReadRecord<TAB_ADR>(pos, line, keepAtUser, usr);
}
int CgTab::Read(int32_t& pos, CstLine& line, int keepAtUser, void* usr) {
    return ReadRecord<TAB_CST>(pos, line, keepAtUser, usr);
}
int CgTab::Read(int32_t& pos, LBL_LINE& line, int keepAtUser, void* usr) {
    return ReadRecord<TAB_LBL>(pos, line, keepAtUser, usr);
}
int CgTab::Read(int32_t& pos, TMP_LINE& line, int keepAtUser, void* usr) {
    return ReadRecord<TAB_TMP>(pos, line, keepAtUser, usr);
}
int CgTab::Read(int32_t& pos, DMM_LINE& line, int keepAtUser, void* usr) {
    return ReadRecord<TAB_DMM>(pos, line, keepAtUser, usr);
}

// The name in a buffer of the set; null when memory is short.
[[gnu::noinline]] const char16_t* CgTab::KeepText(const LineBody& body) {
    auto* text = reinterpret_cast<char16_t*>(shortBuf);
    if (body.nameLength > kShortName) {
        lq::Release(longBuf);
        longBuf = lq::AllocateArray<char16_t>(body.nameLength + 2);
        text = longBuf;
    }
    if (text) {
        CopyName(body.name, body.nameLength, text);
    }
    return text;
}

bool CgTab::GetTypeDsc(IEC_TYPE type, LineBody& body, TYP_DSC& dsc) {
    dsc.arr = {nullptr, 0};
    if (HasStoredDescriptor(type)) {
        dsc.dsc = body.extra.TakeU32();
    } else if (type == IEC_ARRAY) {
        int32_t pos = body.extra.TakeI32();
        dsc.arr.info = &arrInfo;
        arrInfo.Clear(ArrInfo::CLEAR_BEGIN);
        return !body.extra.HasFailed() && Read(pos, dsc.arr) != 0;
    }
    return true;
}

bool CgTab::Decode(LineBody& body, DBG_INFO& line) {
    std::memcpy(shortBuf, body.name, body.nameLength);
    line.data = shortBuf;
    line.len = static_cast<uint8_t>(body.nameLength);
    return true;
}

bool CgTab::Decode(LineBody& body, POU_LINE& line) {
    CopyShort(body, line.name);
    const unsigned char* info = body.extra.Take(sizeof(line.info.bytes));
    if (info) {
        std::memcpy(line.info.bytes, info, sizeof(line.info.bytes));
    }
    return info != nullptr;
}

bool CgTab::Decode(LineBody& body, CMP_LINE& line) {
    CopyShort(body, line.name);
    line.scope = body.extra.TakeU32();
    if (lq::cgtab::IsExternalScope(line.scope)) {
        int32_t pos = body.extra.TakeI32();
        line.count = body.extra.TakeU32();
        GLB_LINE global{};
        if (body.extra.HasFailed() || pos < 0 || !Read(pos, global, 0, nullptr)) {
            return false;
        }
        line.adrLine = global.adrLine;
        line.type = global.type;
        line.dsc = global.dsc;
        line.cstLine = global.cstLine;
        return true;
    }
    line.adrLine = -1;
    line.type = static_cast<IEC_TYPE>(body.extra.TakeI32());
    if (!GetTypeDsc(line.type, body, line.dsc)) {
        return false;
    }
    line.cstLine = body.extra.TakeI32();
    line.count = body.extra.TakeU32();
    return true;
}

bool CgTab::Decode(LineBody& body, GLB_LINE& line) {
    CopyShort(body, line.name);
    const unsigned char* const links = body.extra.Take(2 * 4);
    if (!links) {
        return false;
    }
    line.adrLine = static_cast<int32_t>(LoadU32(links));
    line.type = static_cast<IEC_TYPE>(LoadU32(links + 4));
    if (!GetTypeDsc(line.type, body, line.dsc)) {
        return false;
    }
    const unsigned char* const rest = body.extra.Take(3 * 4);
    if (!rest) {
        return false;
    }
    line.cstLine = static_cast<int32_t>(LoadU32(rest));
    line.count = LoadU32(rest + 4);
    line.scope = LoadU32(rest + 8);
    return true;
}

bool CgTab::Decode(LineBody& body, ADR_LINE& line) {
    line.location = body.key[0];
    line.size = body.key[1];
    line.text = KeepText(body);
    line.count = body.extra.TakeU32();
    return line.text != nullptr;
}

bool CgTab::Decode(LineBody& body, CstLine& line) {
    line.val = Val();
    line.val.type = static_cast<VAL_TYPE>(body.key[0]);
    uint32_t size = 0;
    void* payload = line.val.GetValBuf(line.val, size);
    const unsigned char* bytes = body.extra.Take(size);
    if (payload && bytes) {
        std::memcpy(payload, bytes, size);
    }
    line.text = KeepText(body);
    line.count = body.extra.TakeU32();
    return line.text != nullptr;
}

bool CgTab::Decode(LineBody& body, LBL_LINE& line) {
    CopyShort(body, line.name);
    line.info = body.extra.TakeU8();
    line.count = body.extra.TakeU32();
    return true;
}

bool CgTab::Decode(LineBody& body, TMP_LINE& line) {
    line.tag = body.extra.TakeU8();
    line.type = static_cast<IEC_TYPE>(body.extra.TakeI32());
    if (!GetTypeDsc(line.type, body, line.dsc)) {
        return false;
    }
    line.name = KeepText(body);
    line.count = body.extra.TakeU32();
    return line.name != nullptr;
}

bool CgTab::Decode(LineBody& body, DMM_LINE& line) {
    line.name = KeepText(body);
    line.count = body.extra.TakeU32();
    return line.name != nullptr;
}
