// Array descriptors as lines of table 9. They have no user area and no index; every insertion
// appends one.
#include <cstring>

#include "cgtab/table.h"
#include "lq_data/cgtab.h"

using lq::cgtab::HasStoredDescriptor;

namespace {

constexpr uint32_t kMaxDims = 255;
// Type, descriptor, dimensions, total, the extents, count.
constexpr uint32_t kMaxArrayLine = 4 + 4 + 1 + (1 + 4) + kMaxDims * (1 + 4 + 4) + 4;

using ArrayWriter = lq::cgtab::ByteWriter<kMaxArrayLine>;

void PutPayload(ArrayWriter& bytes, Val& val) {
    uint32_t size = 0;
    const void* payload = val.GetValBuf(val, size);
    bytes.PutBytes(payload, size);
}

// The value of the class, from the cursor. Only integers are taken.
bool TakeInteger(lq::cgtab::ByteCursor& bytes, uint32_t valueClass, ANY_INT_32& out) {
    Val val;
    val.type = static_cast<VAL_TYPE>(valueClass);
    uint32_t size = 0;
    void* payload = val.GetValBuf(val, size);
    const unsigned char* from = bytes.Take(size);
    if (!payload || !from) {
        return false;
    }
    std::memcpy(payload, from, size);
    return val.Get(out) != 0;
}

}  // namespace

int32_t CgTab::Insert(const ArrDsc& a) {
    Table* const table = TableOf(TAB_ARR);
    if (!table || !a.info) {
        return -1;
    }
    ArrInfo& info = *a.info;
    ArrayWriter bytes;
    bytes.PutI32(info.elemType);
    if (HasStoredDescriptor(info.elemType)) {
        bytes.PutU32(a.elemDsc);
    }
    bytes.PutU8(static_cast<uint32_t>(info.GetDim()));
    Val total;
    if (!total.Set(info.total)) {
        return -1;
    }
    bytes.PutU8(total.type);
    PutPayload(bytes, total);
    info.Clear(ArrInfo::CLEAR_CURSOR);
    ANY_INT_32 ext[2];
    while (info.GetExt(&ext, 0)) {
        Val lower;
        Val count;
        if (!lower.Set(ext[0]) || !count.Set(ext[1])) {
            return -1;
        }
        bytes.PutU8(count.type << 4 | lower.type);
        PutPayload(bytes, lower);
        PutPayload(bytes, count);
    }
    bytes.PutU32(1);  // use count
    Line line(TAB_ARR, nullptr);
    line.SetExtra(bytes);
    return table->AppendLine(line);
}

[[gnu::noinline]] int CgTab::Read(int32_t& pos, ArrDsc& a) {
    Table* const table = TableOf(TAB_ARR);
    if (!table) {
        pos = 0;
        return 0;
    }
    ArrInfo& info = *a.info;
    LineBuffer buf;
    if (pos < 0 || !table->ReadLine(pos, buf, 0)) {
        return 0;
    }
    lq::cgtab::ByteCursor bytes(buf.Data(), buf.Size());
    info.elemType = static_cast<IEC_TYPE>(bytes.TakeI32());
    a.elemDsc = HasStoredDescriptor(info.elemType) ? bytes.TakeU32() : 0;
    const uint32_t dims = bytes.TakeU8();
    if (!TakeInteger(bytes, bytes.TakeU8(), info.total)) {
        return table->FailRead(pos);
    }
    for (uint32_t i = 0; i < dims; ++i) {
        const uint32_t classes = bytes.TakeU8();
        ANY_INT_32 ext[2];
        if (!TakeInteger(bytes, classes & 0xF, ext[0]) ||
            !TakeInteger(bytes, classes >> 4, ext[1]) || !info.AppendExt(&ext, 0)) {
            return table->FailRead(pos);
        }
    }
    return info.Clear(ArrInfo::CLEAR_CURSOR);
}
