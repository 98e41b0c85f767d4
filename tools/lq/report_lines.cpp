#include "tools/lq/report_lines.h"

#include "cgtab/bytes.h"
#include "cgtab/table_traits.h"
#include "lq_data/env/lq_base.h"

namespace lq::tool {

namespace {

using cgtab::ByteCursor;

class StringStream : public STREAM_A {
  public:
    int32_t GetBlock(void*, int32_t, STREAMERROR*) override { return 0; }
    int32_t PutBlock(const void* from, int32_t count, STREAMERROR*) override {
        bytes.append(static_cast<const char*>(from), static_cast<size_t>(count));
        return count;
    }

    std::string bytes;
};

int32_t TakePosition(ByteCursor& line) {
    const int32_t pos = line.TakeI32();
    return line.HasFailed() ? -1 : pos;
}

// A type and its descriptor.
void TakeType(ByteCursor& line, LineParts& parts) {
    const uint32_t type = line.TakeU32();
    if (type == IEC_ARRAY) {
        parts.array = TakePosition(line);
    } else if (cgtab::HasStoredDescriptor(static_cast<IEC_TYPE>(type))) {
        line.TakeU32();
    }
}

void TakeComponent(ByteCursor& line, LineParts& parts) {
    if (cgtab::IsExternalScope(line.TakeU32())) {
        parts.global = TakePosition(line);
        return;
    }
    TakeType(line, parts);
    parts.constant = TakePosition(line);
}

void TakeGlobal(ByteCursor& line, LineParts& parts) {
    parts.address = TakePosition(line);
    TakeType(line, parts);
    parts.constant = TakePosition(line);
}

void TakeTemporary(ByteCursor& line, LineParts& parts) {
    line.TakeU8();  // the tag
    TakeType(line, parts);
}

}  // namespace

std::string BytesOf(CgTab& tables, CgTab::TAB_ID id) {
    StringStream stream;
    tables.Put(id, stream);
    return std::move(stream.bytes);
}

LineParts PartsOf(CgTab::TAB_ID id, std::string_view table, int32_t pos) {
    LineParts parts;
    table.remove_prefix(static_cast<size_t>(pos));
    ByteCursor line(reinterpret_cast<const unsigned char*>(table.data()),
                    static_cast<uint32_t>(table.size()));
    line.TakeU32();  // its length
    const cgtab::TableTraits& traits = cgtab::TraitsOf(id);
    line.Take(traits.fixedKey);
    parts.nameBytes = traits.nameLenBytes == 2   ? line.TakeU16()
                      : traits.nameLenBytes == 1 ? line.TakeU8()
                                                 : 0;
    parts.nameBytes *= traits.nameUnit;
    line.Take(parts.nameBytes);
    if (id == CgTab::TAB_CMP) {
        TakeComponent(line, parts);
    } else if (id == CgTab::TAB_GLB) {
        TakeGlobal(line, parts);
    } else if (id == CgTab::TAB_TMP) {
        TakeTemporary(line, parts);
    }
    return parts;
}

}  // namespace lq::tool
