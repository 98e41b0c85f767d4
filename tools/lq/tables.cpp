#include "tools/lq/tables.h"

#include <algorithm>
#include <new>

#include "lq_data/cgtab_compiler.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/line_bytes.h"
#include "lq_data/pouh.h"

namespace lq::tool {

namespace {

constexpr size_t kPositionHead = 5;
constexpr size_t kMaxDebugData = 255;

// A stream that keeps nothing of what is written to it: it follows the length fields of a table and
// counts the lines.
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
    return {counter.lines, CgTabCompiler::LengthOf(tables, id)};
}

std::vector<UnitSection> SectionsOf(CgTab& tables) {
    std::vector<UnitSection> sections;
    const int32_t length = CgTabCompiler::LengthOf(tables, CgTab::TAB_POU);
    for (int32_t pos = 0; pos < length;) {
        const int32_t at = pos;
        CgTab::POU_LINE line;
        char16_t name[256];
        if (!tables.Read(pos, line, 0, nullptr) ||
            !CgTabCompiler::WholeName(tables, CgTab::TAB_POU, at, name, std::size(name))) {
            break;
        }
        sections.push_back({at, host::EncodeUtf8(name), UnitInfo::From(line.info)});
    }
    return sections;
}

SectionIndex::SectionIndex(std::vector<UnitSection> sections) : sorted_(std::move(sections)) {
    std::erase_if(sorted_, [](const UnitSection& s) { return s.info.start >= s.info.end; });
    std::stable_sort(
        sorted_.begin(), sorted_.end(),
        [](const UnitSection& a, const UnitSection& b) { return a.info.start < b.info.start; });
}

const UnitSection* SectionIndex::At(uint32_t pos) const {
    const auto behind =
        std::upper_bound(sorted_.begin(), sorted_.end(), pos,
                         [](uint32_t p, const UnitSection& s) { return p < s.info.start; });
    const UnitSection* section = behind == sorted_.begin() ? nullptr : &behind[-1];
    return section && pos < section->info.end ? section : nullptr;
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
