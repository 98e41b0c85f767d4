// What a compiler calls beside the set's own operations.
#include <algorithm>
#include <cstring>

#include "cgtab/cgtab_access.h"
#include "cgtab/declaration.h"
#include "cgtab/line_index.h"
#include "cgtab/table.h"
#include "lq_data/cgtab_compiler.h"
#include "lq_data/detail/chars.h"

int32_t CgTabCompiler::InsertGlobal(CgTab& tables, DECL_TYP* decl, DeclFault& fault) {
    CgTab::DECL_ASCII d;
    const int32_t pos = tables.Insert(decl, d);
    fault = d.fault;
    return pos;
}

bool CgTabCompiler::Decode(CgTab& tables, const DECL_TYP* decl, DeclFault& fault) {
    CgTab::DECL_ASCII d;
    const bool decoded = tables.GetDecl(decl, d);
    fault = d.fault;
    return decoded;
}

bool CgTabCompiler::DecodeType(CgTab& tables, const DECL_TYP* decl, IEC_TYPE& type,
                               CgTab::TYP_DSC& dsc, DeclFault& fault) {
    CgTab::DECL_ASCII d;
    const bool decoded = tables.GetDecl(decl, d);
    fault = d.fault;
    type = d.type;
    dsc = d.dsc;
    return decoded;
}

int CgTabCompiler::AppendCmp(CgTab& tables, POU_HEADER_TYP* header, uint16_t attr, POU_LIST* list,
                             CgTab::POS_DSC& range, int count) {
    return tables.AppendCmp(header, attr, list, range, count);
}

void CgTabCompiler::TakeBackComponents(CgTab& tables, int32_t start) {
    CgTab::Table* const table = tables.TableOf(CgTab::TAB_CMP);
    if (table && start >= 0 && start < table->Length()) {
        table->TruncateTo(start);
    }
}

int32_t CgTabCompiler::InsertUnit(CgTab& tables, const char16_t* name,
                                  const CgTab::POU_INFO& info) {
    CgTab::Table* const table = tables.TableOf(CgTab::TAB_POU);
    if (!table || !name) {
        return -1;
    }
    CgTab::Line line(CgTab::TAB_POU, name);
    lq::cgtab::ByteWriter<sizeof(info.bytes)> extra;
    extra.PutBytes(info.bytes, sizeof(info.bytes));
    line.SetExtra(extra);
    return CgTab::Table::TransLookDcr(line.look) ? table->AppendLine(line) : -1;
}

bool CgTabCompiler::ReplaceUnit(CgTab& tables, int32_t pos, const CgTab::POU_INFO& info) {
    CgTab::Table* const table = tables.TableOf(CgTab::TAB_POU);
    CgTab::LineBuffer buf;
    CgTab::LineBody body;
    int32_t next = pos;
    if (!table || pos < 0 || !table->ReadLine(next, buf, 0) || !table->SplitLine(buf, body) ||
        !body.extra.Take(sizeof(info.bytes))) {
        return false;
    }
    return table->Overwrite(pos, 1 + 2 * body.nameLength, info.bytes, sizeof(info.bytes));
}

bool CgTabCompiler::ResetLabels(CgTab& tables, const char16_t* prefix) {
    constexpr unsigned char kUnused[1 + 4] = {};  // no definition, no use
    CgTab::Table* const table = tables.TableOf(CgTab::TAB_LBL);
    const auto count = static_cast<uint32_t>(lq::chars::Length(prefix));
    const lq::MemoryWatch watch;
    CgTab::LineBuffer buf;
    char16_t name[0x100];  // a length of one byte
    for (int32_t pos = 0, next = 0; table && table->ReadLine(next, buf, 0); pos = next) {
        CgTab::LineBody body;
        if (!table->SplitLine(buf, body) || !body.name || body.nameLength < count ||
            body.extra.Take(sizeof(kUnused)) == nullptr) {
            continue;
        }
        std::memcpy(name, body.name, 2 * count);
        if (lq::chars::CompareNoCase(name, prefix, count) == 0 &&
            !table->Overwrite(pos, 1 + 2 * body.nameLength, kUnused, sizeof(kUnused))) {
            return false;
        }
    }
    return table && !watch.WasShort();
}

int32_t CgTabCompiler::FindTemporary(CgTab& tables, const char16_t* name, IEC_TYPE type, bool& fits,
                                     uint32_t& tagOffset) {
    const auto hasDescriptor = [](IEC_TYPE of) {
        return of == IEC_ARRAY || lq::cgtab::HasStoredDescriptor(of);
    };
    CgTab::Table* const table = tables.TableOf(CgTab::TAB_TMP);
    CgTab::LookTyp look(CgTab::TAB_TMP, name);
    const int32_t pos = table && name ? table->LookLine(look, 0) : -1;
    CgTab::LineBuffer buf;
    CgTab::LineBody body;
    int32_t next = pos;
    fits = pos == -1;
    if (pos >= 0 && table->ReadLine(next, buf, 0) && table->SplitLine(buf, body)) {
        tagOffset = 2 + 2 * body.nameLength;
        body.extra.TakeU8();
        const bool has = hasDescriptor(static_cast<IEC_TYPE>(body.extra.TakeI32()));
        if (has) {
            body.extra.TakeU32();
        }
        fits = !body.extra.HasFailed() && has == hasDescriptor(type);
    }
    return pos;
}

bool CgTabCompiler::CanReplaceTemporary(CgTab& tables, const char16_t* name, IEC_TYPE type) {
    bool fits = false;
    uint32_t tagOffset = 0;
    FindTemporary(tables, name, type, fits, tagOffset);
    return fits;
}

int32_t CgTabCompiler::ReplaceTemporary(CgTab& tables, const char16_t* name, IEC_TYPE type,
                                        const CgTab::TYP_DSC& dsc, unsigned char tag) {
    bool fits = false;
    uint32_t tagOffset = 0;
    const int32_t pos = FindTemporary(tables, name, type, fits, tagOffset);
    if (pos < 0 || !fits) {
        return fits ? tables.Insert(name, type, dsc, tag) : -1;
    }
    lq::cgtab::ByteWriter<1 + 4 + 4> bytes;
    bytes.PutU8(tag);
    bytes.PutI32(type);
    if (type == IEC_ARRAY) {
        const int32_t arrayPos = tables.Insert(dsc.arr);
        if (arrayPos < 0) {
            return -1;
        }
        bytes.PutI32(arrayPos);
    } else if (lq::cgtab::HasStoredDescriptor(type)) {
        bytes.PutU32(dsc.dsc);
    }
    CgTab::Table& table = *tables.TableOf(CgTab::TAB_TMP);
    return table.Overwrite(pos, tagOffset, bytes.Data(), bytes.Size()) ? pos : -1;
}

int32_t CgTabCompiler::LengthOf(const CgTab& tables, CgTab::TAB_ID id) {
    const R_FILE* file = tables.handle_(id);
    return file ? file->Filelength() : 0;
}

uint32_t CgTabCompiler::UserAreaOf(const CgTab& tables, CgTab::TAB_ID id) {
    const CgTab::Table* const table = tables.TableOf(id);
    return table ? table->UsrLen_() : 0;
}

bool CgTabCompiler::WholeName(CgTab& tables, CgTab::TAB_ID id, int32_t pos, char16_t* name,
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

uint32_t CgTabCompiler::ViewIndex(CgTab& tables, CgTab::TAB_ID id,
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

int CgTabCompiler::ReadArray(CgTab& tables, int32_t& pos, CgTab::ArrDsc& array) {
    return tables.Read(pos, array);
}

int32_t CgTabCompiler::InsertArray(CgTab& tables, const CgTab::ArrDsc& array) {
    return tables.Insert(array);
}
