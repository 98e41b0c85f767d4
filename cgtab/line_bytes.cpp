#include "lq_data/line_bytes.h"

#include "cgtab/bytes.h"
#include "cgtab/table_traits.h"

namespace lq {

namespace {

using cgtab::ByteCursor;

int32_t TakePosition(ByteCursor& line) {
    const int32_t pos = line.TakeI32();
    return line.HasFailed() ? -1 : pos;
}

// Takes a type and the descriptor that follows it.
void TakeType(ByteCursor& line, LineLinks& links) {
    const uint32_t type = line.TakeU32();
    if (type == IEC_ARRAY) {
        links.array = TakePosition(line);
    } else if (cgtab::HasStoredDescriptor(static_cast<IEC_TYPE>(type))) {
        line.TakeU32();
    }
}

void TakeComponent(ByteCursor& line, LineLinks& links) {
    if (cgtab::IsExternalScope(line.TakeU32())) {
        links.global = TakePosition(line);
        return;
    }
    TakeType(line, links);
    links.constant = TakePosition(line);
}

void TakeGlobal(ByteCursor& line, LineLinks& links) {
    links.address = TakePosition(line);
    TakeType(line, links);
    links.constant = TakePosition(line);
}

void TakeTemporary(ByteCursor& line, LineLinks& links) {
    line.TakeU8();  // the tag
    TakeType(line, links);
}

}  // namespace

uint32_t BytesBeforeName(CgTab::TAB_ID id) {
    const cgtab::TableTraits& traits = cgtab::TraitsOf(id);
    return uint32_t{traits.fixedKey} + traits.nameLenBytes;
}

LineHead HeadOf(CgTab::TAB_ID id, std::string_view table, int32_t pos) {
    LineHead head;
    if (pos < 0 || static_cast<size_t>(pos) > table.size()) {
        return head;
    }
    table.remove_prefix(static_cast<size_t>(pos));
    ByteCursor line(reinterpret_cast<const unsigned char*>(table.data()),
                    static_cast<uint32_t>(table.size()));
    const uint32_t length = line.TakeU32();
    const cgtab::TableTraits& traits = cgtab::TraitsOf(id);
    line.Take(traits.fixedKey);
    const uint32_t units = traits.nameLenBytes == 2   ? line.TakeU16()
                           : traits.nameLenBytes == 1 ? line.TakeU8()
                                                      : 0;
    const uint32_t bytes = units * traits.nameUnit;
    if (const unsigned char* name = line.Take(bytes)) {
        head.name = {reinterpret_cast<const char*>(name), bytes};
    }
    if (!line.HasFailed() && length <= table.size() - 4) {
        head.next = pos + 4 + static_cast<int32_t>(length);
    }
    return head;
}

LineLinks LinksOf(CgTab::TAB_ID id, std::string_view table, const LineHead& head) {
    LineLinks links;
    const char* const behindName = head.name.data() + head.name.size();
    if (!head.name.data()) {
        return links;
    }
    ByteCursor line(reinterpret_cast<const unsigned char*>(behindName),
                    static_cast<uint32_t>(table.data() + table.size() - behindName));
    if (id == CgTab::TAB_CMP) {
        TakeComponent(line, links);
    } else if (id == CgTab::TAB_GLB) {
        TakeGlobal(line, links);
    } else if (id == CgTab::TAB_TMP) {
        TakeTemporary(line, links);
    }
    return links;
}

}  // namespace lq
