// Finding lines: by walking a table, or through its hash index.
#include <algorithm>
#include <cstring>

#include "cgtab/line.h"
#include "cgtab/search_text.h"
#include "frame/chars.h"
#include "lq_data/cgtab.h"
#include "lq_data/hash_table.h"
#include "lq_model.h"

using lq::cgtab::LoadU32;
using lq::cgtab::TraitsOf;

namespace {

constexpr uint32_t kIndexBuckets = 10001;

// Beside -1, which says that there is no such line: the search itself could not be done.
constexpr int32_t kSearchFailed = -2;

int32_t PositionOrNone(int32_t found) {
    return std::max(found, -1);
}

}  // namespace

// Completes a key. False when the name is too long for its length field.
bool CgTab::TransLookDcr(LookTyp& look, uint32_t& len, int& nocase) {
    nocase = look.flags & LookTyp::kIgnoreCase;
    if (look.flags & LookTyp::kLengthInKey) {
        len = look.NameLength();
        return true;
    }
    len = 0;
    if (look.name) {
        const size_t length = lq::chars::Length(static_cast<const char16_t*>(look.name));
        const uint32_t width = look.NameLenBytes();
        if (length >= size_t{1} << (8 * width)) {
            return false;
        }
        len = static_cast<uint32_t>(length);
        for (uint32_t i = 0; i < width; ++i) {
            look.AddKey(len >> (8 * i) & 0xFF);
        }
    }
    look.flags |= LookTyp::kLengthInKey;
    return true;
}

int32_t CgTab::LookLine(TAB_ID id, POS_DSC range, LookTyp& look, int inc) {
    R_FILE* file = handle_(id);
    uint32_t len = 0;
    int nocase = 0;
    if (!file || !TransLookDcr(look, len, nocase)) {
        return kSearchFailed;
    }
    const int32_t before = file->Tell();
    range.end = std::min(range.end, file->Filelength());
    const int32_t found = IsTableHashed(id) ? LookIndex(id, range, look, inc)
                                            : WalkLines(id, range, look, len, nocase, inc);
    if (file->Tell() != before) {
        ResUsr_(id);
    }
    return found;
}

int32_t CgTab::LookLine(TAB_ID id, LookTyp& look, int inc) {
    return LookLine(id, kWholeTable, look, inc);
}

// Passes lines that differ, as far as they lie in one block: most of a walk, in a quarter of the
// time. Stops at a line that takes a closer look, and at the last of the range, so that the
// caller's steps decide and leave the table where it is to stand.
void CgTab::PassOtherLines(R_FILE& file, const LookTyp& look, uint32_t nameBytes, POS_DSC& range) {
    const void* piece = nullptr;
    uint32_t left = file.Lseek(range.start, 0) == range.start ? file.BlRead(piece) : 0;
    const auto* line = static_cast<const unsigned char*>(piece);
    while (range.lines > 1 && left >= 4 + look.keylen) {
        const uint32_t length = LoadU32(line);
        if (length < look.keylen || length > left - 4) {
            return;
        }
        const unsigned char* const name = line + 4 + look.keylen;
        if (std::memcmp(line + 4, look.key, look.keylen) == 0 &&
            (length - look.keylen < nameBytes || nameBytes == 0 ||
             std::memcmp(name, look.name, nameBytes) == 0)) {
            return;
        }
        const auto size = static_cast<int32_t>(4 + length);
        if (size >= range.end - range.start) {
            return;
        }
        range.start += size;
        --range.lines;
        line += size;
        left -= static_cast<uint32_t>(size);
    }
}

int32_t CgTab::WalkLines(TAB_ID id, POS_DSC range, const LookTyp& look, uint32_t len, int nocase,
                         int inc) {
    R_FILE& file = *handle_(id);
    const uint32_t headSize = 4 + look.keylen;
    const uint32_t nameBytes = look.name ? len * TraitsOf(id).nameUnit : 0;
    for (; range.start < range.end && range.lines >= 1; --range.lines) {
        if (!nocase) {
            PassOtherLines(file, look, nameBytes, range);
        }
        const int32_t pos = range.start;
        unsigned char head[4 + sizeof(look.key)];
        if (file.Lseek(pos, 0) != pos || file.Read(head, headSize) != headSize) {
            return kSearchFailed;
        }
        const uint32_t length = LoadU32(head);
        const auto left = static_cast<uint32_t>(file.Filelength() - pos - 4);
        if (length < look.keylen || length > left) {
            return kSearchFailed;
        }
        int differs = std::memcmp(head + 4, look.key, look.keylen);
        if (differs == 0 && look.name) {
            const auto rest = static_cast<int32_t>(length - look.keylen);
            if (file.Cmp({look.name, nameBytes, rest, nocase}, &differs) != 0) {
                return kSearchFailed;
            }
        }
        if (differs == 0) {
            if (inc != 0 && !CountUse(id, pos, inc)) {
                return kSearchFailed;
            }
            return file.Lseek(pos, 0);
        }
        range.start += static_cast<int32_t>(4 + length);
    }
    return -1;
}

int32_t CgTab::LookIndex(TAB_ID id, const POS_DSC& range, const LookTyp& look, int inc) {
    lq::cgtab::SearchText text;
    if ((!hash[id] && !CreateHashTable(id)) ||
        !text.Form(id, look.key, look.name, look.NameLength())) {
        return kSearchFailed;
    }
    const bool hasSections = TraitsOf(id).countsUses;  // components and labels
    void* entry = nullptr;
    int32_t pos = hash[id]->GetPos(text.Get(), entry);
    while (hasSections && entry && (pos < range.start || pos >= range.end)) {
        pos = hash[id]->GetNext(text.Get(), entry);
    }
    if (!entry) {
        return -1;
    }
    if (inc != 0 && hasSections) {
        CountUse(id, pos, inc);
    }
    return PositionOrNone(handle_(id)->Lseek(pos, 0));
}

// Adds to the count that ends a line's extra bytes. A count that would become negative stays. What
// lies within the table can be reached and read; the answers of its file are checked all the same.
bool CgTab::CountUse(TAB_ID id, int32_t pos, int inc) {
    R_FILE& file = *handle_(id);
    unsigned char field[4];
    if (file.Lseek(pos, 0) != pos || file.Read(field, sizeof(field)) != sizeof(field)) {
        return false;
    }
    const uint32_t length = LoadU32(field);
    const auto left = static_cast<uint32_t>(file.Filelength() - pos - 4);
    const uint64_t behindCount = uint64_t{UsrLen_(id)} + sizeof(field);
    if (length > left || length < behindCount) {
        return false;
    }
    const int32_t countPos = pos + 4 + static_cast<int32_t>(length - behindCount);
    if (file.Lseek(countPos, 0) != countPos || file.Read(field, sizeof(field)) != sizeof(field)) {
        return false;
    }
    const uint32_t sum = LoadU32(field) + static_cast<uint32_t>(inc);
    if (static_cast<int32_t>(sum) < 0) {
        return false;
    }
    lq::cgtab::StoreU32(field, sum);
    return file.Lseek(countPos, 0) == countPos && file.Write(field, sizeof(field)) == sizeof(field);
}

int CgTab::IsTableHashed(TAB_ID id) const {
    return lq::cgtab::IsTableId(id) && TraitsOf(id).isHashed ? 1 : 0;
}

// Enters every line of the table, under its whole name, and leaves the table where it stands. An
// index that could not take all lines is dropped, so that a search never misses one silently; the
// table ends, as it does for every reader, at its end or in front of what is no line.
int CgTab::CreateHashTable(TAB_ID id) {
    if (!IsTableHashed(id)) {
        return 0;
    }
    ClearHashTable(id);
    auto* index = new HashTable(kIndexBuckets, TraitsOf(id).caseSensitiveIndex ? 1 : 0);
    if (!index) {
        return 0;
    }
    const int allowDuplicates = TraitsOf(id).isUnique ? 0 : 1;
    R_FILE& file = *handle_(id);
    const int32_t before = file.Tell();
    const bool atUser = UsrSet_(id);
    bool entered = true;
    LineBuffer buf;
    LineBody body;
    lq::cgtab::SearchText text;
    int32_t next = 0;
    for (int32_t pos = 0; entered; pos = next) {
        if (!ReadLine(id, next, buf, 0) || !SplitLine(id, buf, body)) {
            entered = !buf.IsShort();
            break;
        }
        entered = text.Form(id, body.key, body.name, body.nameLength) &&
                  index->Insert(text.Get(), pos, allowDuplicates) != nullptr;
    }
    SeekTo(id, before);
    if (atUser) {
        SetUsr_(id);
    }
    if (!entered) {
        delete index;
        return 0;
    }
    hash[id] = index;
    return 1;
}

int CgTab::ClearHashTable(TAB_ID id) {
    if (lq::cgtab::IsTableId(id) && id != TAB_ARR) {
        delete hash[id];
        hash[id] = nullptr;
    }
    return 1;
}

int32_t CgTab::Look(const DBG_INFO& info, void* usr) {
    LookTyp look(TAB_DBG, info.data);
    look.AddKey(info.len);
    look.flags |= LookTyp::kLengthInKey;
    const int32_t pos = LookLine(TAB_DBG, look, 0);
    DBG_INFO line;
    int32_t next = pos;
    if (pos < 0 || (usr && !Read(next, line, 0, usr))) {
        return -1;
    }
    return pos;
}

template <typename Record>
int32_t CgTab::LookName(TAB_ID id, POS_DSC range, const char16_t* name, Record* line, int inc) {
    if (!name) {
        return -1;
    }
    LookTyp look(id, name);
    const int32_t pos = LookLine(id, range, look, inc ? 1 : 0);
    int32_t next = pos;
    if (pos < 0 || (line && !Read(next, *line, 0, nullptr))) {
        return -1;
    }
    return pos;
}

int32_t CgTab::Look(const char16_t* name, POU_LINE* line, int inc) {
    return LookName(TAB_POU, kWholeTable, name, line, inc);
}

int32_t CgTab::Look(POS_DSC range, const char16_t* name, CMP_LINE* line, int inc) {
    return LookName(TAB_CMP, range, name, line, inc);
}

int32_t CgTab::Look(const char16_t* name, GLB_LINE* line, int inc) {
    return LookName(TAB_GLB, kWholeTable, name, line, inc);
}

int CgTab_IsRecursivPOU(CgTab* tab, const char16_t* name) {
    CgTab::POU_LINE line;
    if (!tab || !name || tab->Look(name, &line, 0) >= 0) {
        return 0;
    }
    return CheckIsRecursiveCallEx(name, name, 0) != 0 ? 1 : 0;
}
