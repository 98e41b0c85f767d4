// A plain model of a table set, for its fuzz target: lines as bytes, found by walking.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cgtab/bytes.h"
#include "lq_data/cgtab.h"

namespace lq::fuzz {

using Bytes = std::string;
using Name = std::u16string;
using TabId = CgTab::TAB_ID;

inline constexpr int32_t kMaxCount = INT32_MAX;

inline Bytes U16(uint32_t v) {
    return {static_cast<char>(v), static_cast<char>(v >> 8)};
}
inline Bytes U32(int64_t v) {
    return U16(static_cast<uint32_t>(v)) + U16(static_cast<uint32_t>(v >> 16));
}
inline Bytes Wide(const Name& text) {
    return {reinterpret_cast<const char*>(text.data()), 2 * text.size()};
}
inline Bytes ByteName(const Name& name) {
    return static_cast<char>(name.size()) + Wide(name);
}
inline Bytes WordName(const Name& name) {
    return U16(static_cast<uint32_t>(name.size())) + Wide(name);
}
inline int32_t Field(const Bytes& bytes, size_t at) {
    return static_cast<int32_t>(
        cgtab::LoadU32(reinterpret_cast<const unsigned char*>(bytes.data()) + at));
}
inline bool Count(Bytes& extra, int by = 1) {
    const size_t at = extra.size() - 4;
    const bool counts = by < 0 || Field(extra, at) < kMaxCount;
    extra.replace(at, 4, U32(counts ? Field(extra, at) + by : kMaxCount));
    return counts;
}

struct ModelLine {
    Bytes head;  // the key with the name
    Name name;
    Bytes extra;
    Bytes usr;

    Bytes All() const {
        return U32(static_cast<int64_t>(head.size() + extra.size() + usr.size())) + head + extra +
               usr;
    }
};

class TableModel {
  protected:
    Bytes ImageOf(int id) const {
        Bytes bytes;
        for (const ModelLine& line : lines_[id]) {
            bytes += line.All();
        }
        return bytes;
    }
    int32_t LengthOf(int id) const { return static_cast<int32_t>(ImageOf(id).size()); }
    int32_t PosOf(int id, size_t index) const {
        size_t pos = 0;
        for (size_t i = 0; i < index; ++i) {
            pos += lines_[id][i].All().size();
        }
        return static_cast<int32_t>(pos);
    }
    ModelLine& LineAt(int id, int32_t pos) {
        size_t index = 0;
        while (PosOf(id, index) != pos) {
            ++index;
        }
        return lines_[id].at(index);
    }

    static Bytes Folded(int id, Bytes head) {
        const bool folds = id == 1 || id == 2 || id == 3 || id == 4 || id == 6;
        for (char& c : head) {
            c = folds && c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
        }
        return head;
    }
    // With an index the newest line, without one the first; -1 for none.
    int32_t Find(int id, const Bytes& head, int32_t from, int32_t end) const {
        int32_t found = -1;
        for (size_t i = 0; i < lines_[id].size(); ++i) {
            const int32_t pos = PosOf(id, i);
            const bool isHashed = id >= 1 && id <= 6;
            if (pos >= from && pos < end && Folded(id, lines_[id][i].head) == Folded(id, head) &&
                (isHashed || found < 0)) {
                found = pos;
            }
        }
        return found;
    }
    int32_t Append(int id, ModelLine line) {
        line.usr = Bytes(id < CgTab::kUserTables ? sizes_[id] : 0, 0);
        lines_[id].push_back(line);
        return PosOf(id, lines_[id].size() - 1);
    }
    // `meet` changes a line that is there, and tells whether that is a success.
    template <typename Meet>
    int32_t Enter(int id, const Name& name, const Bytes& head, const Bytes& extra, Meet meet) {
        const int32_t pos = Find(id, head, 0, kMaxCount);
        if (pos < 0) {
            return Append(id, {head, name, extra, ""});
        }
        return meet(LineAt(id, pos).extra) ? pos : -1;
    }
    static bool Keep(Bytes&) { return true; }
    int32_t EnterAddress(const Address& adr, const Name& text) {
        const Bytes key = {static_cast<char>(adr.location), static_cast<char>(adr.size)};
        return Enter(CgTab::TAB_ADR, text, key + WordName(text), U32(1), Keep);
    }
    int32_t EnterConstant(const Name& text, Val val) {
        uint32_t size = 0;
        const auto* payload = static_cast<const char*>(val.GetValBuf(val, size));
        return Enter(CgTab::TAB_CST, text, static_cast<char>(val.type) + WordName(text),
                     Bytes(payload ? payload : "", size) + U32(1), Keep);
    }

    uint32_t sizes_[CgTab::kUserTables] = {};  // of the user areas
    std::vector<ModelLine> lines_[CgTab::TAB_COUNT];
};

}  // namespace lq::fuzz
