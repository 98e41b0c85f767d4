#include "tools/lq/tables.h"

#include <algorithm>
#include <new>

#include "cgtab/bytes.h"
#include "cgtab/cgtab_access.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/pouh.h"

namespace lq::tool {

using cgtab::LoadU32;
using cgtab::StoreU32;

namespace {

constexpr size_t kPositionHead = 5;
constexpr size_t kMaxDebugData = 255;

// A stream that is written to and only counted, and whose bytes are seen once: the line lengths of
// a table as it passes by.
class LineCounter : public STREAM_A {
  public:
    int32_t GetBlock(void*, int32_t, STREAMERROR*) override { return 0; }
    int32_t PutBlock(const void* buffer, int32_t count, STREAMERROR*) override {
        const auto* bytes = static_cast<const unsigned char*>(buffer);
        for (int32_t i = 0; i < count;) {
            if (skip_ > 0) {
                const uint32_t passed = std::min(skip_, static_cast<uint32_t>(count - i));
                skip_ -= passed;
                i += static_cast<int32_t>(passed);
                continue;
            }
            length_ |= uint32_t{bytes[i++]} << (8 * lengthBytes_++);
            if (lengthBytes_ == 4) {
                ++lines;
                skip_ = length_;
                length_ = lengthBytes_ = 0;
            }
        }
        return count;
    }

    uint32_t lines = 0;

  private:
    uint32_t skip_ = 0;
    uint32_t length_ = 0;
    uint32_t lengthBytes_ = 0;
};

}  // namespace

UnitInfo UnitInfo::From(const CgTab::POU_INFO& info) {
    const unsigned char* p = info.bytes;
    return {LoadU32(p), LoadU32(p + 4), LoadU32(p + 8), LoadU32(p + 12), LoadU32(p + 16)};
}

void UnitInfo::To(unsigned char* bytes) const {
    for (const uint32_t number : {start, end, lines, kind, instances}) {
        StoreU32(bytes, number);
        bytes += 4;
    }
}

bool UnitPosition::From(const CgTab::DBG_INFO& info) {
    if (info.len < kPositionHead) {
        return false;
    }
    line = LoadU32(info.data);
    kind = info.data[4];
    name.assign(reinterpret_cast<const char*>(info.data) + kPositionHead, info.len - kPositionHead);
    std::u16string text;
    return host::DecodeUtf8(name, text).IsFine();
}

std::vector<unsigned char> UnitPosition::Bytes() const {
    size_t length = std::min(name.size(), kMaxDebugData - kPositionHead);
    while (length < name.size() && length > 0 &&
           (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80) {
        --length;  // not within a character
    }
    std::vector<unsigned char> bytes(kPositionHead + length);
    StoreU32(bytes.data(), line);
    bytes[4] = static_cast<unsigned char>(kind);
    std::copy_n(name.begin(), length, bytes.begin() + kPositionHead);
    return bytes;
}

std::unique_ptr<CgTab> NewTables() {
    uint32_t sizes[CgTab::kUserTables];
    std::fill(std::begin(sizes), std::end(sizes), kUserArea);
    sizes[CgTab::TAB_DBG] = 0;
    int ok = 0;
    auto tables = std::make_unique<CgTab>(ok, &sizes);
    if (!ok) {
        throw std::bad_alloc();
    }
    return tables;
}

TableExtent ExtentOf(CgTab& tables, CgTab::TAB_ID id) {
    LineCounter counter;
    tables.Put(id, counter);
    return {counter.lines, CgTabAccess::LengthOf(tables, id)};
}

std::string UnitKindName(uint32_t kind) {
    switch (kind) {
        case PT_FUNCTION:
            return "function";
        case PT_FUNCTION_BLOCK:
            return "function block";
        case PT_PROGRAM:
            return "program";
        case PT_DUT:
            return "structure";
        case PT_KIND_13:
            return "data type";
        default:
            return std::to_string(kind);
    }
}

}  // namespace lq::tool
