// Finding a table's lines by walking them.
#include <algorithm>
#include <cstring>

#include "cgtab/search_text.h"
#include "cgtab/table.h"
#include "lq_data/detail/chars.h"

using lq::cgtab::LoadU32;

bool CgTab::Table::TransLookDcr(LookTyp& look) {
    if (look.isComplete) {
        return true;
    }
    if (!look.name) {
        look.isComplete = true;
        return true;
    }
    const auto* const text = static_cast<const char16_t*>(look.name);
    const lq::text_hash::Measured name = look.traits.fixedKey != 0
                                             ? lq::text_hash::Measured{lq::chars::Length(text), 0}
                                             : lq::cgtab::Measure(look.traits, text);
    if (name.length > (look.traits.nameLenBytes == 2 ? 0xFFFF : 0xFF)) {
        return false;
    }
    look.hash = name.hash;
    look.Complete(static_cast<uint32_t>(name.length));
    return true;
}

int32_t CgTab::Table::LookLine(const POS_DSC& range, LookTyp& look, int inc) {
    if (!TransLookDcr(look)) {
        return kSearchFailed;
    }
    const int32_t before = file_.Tell();
    const int32_t found = IsTableHashed()       ? LookIndex(range, look, inc)
                          : Traits().IsWalked() ? LookName(look, inc)
                                                : WalkLines(range, look, inc);
    if (file_.Tell() != before) {
        ResUsr_();
    }
    return found;
}

// Passes lines that differ, as far as they lie in one block. Stops at a line that takes a closer
// look, and at the last of the range, so that the caller's steps decide and leave the table where
// it is to stand.
void CgTab::Table::PassOtherLines(const LookTyp& look, uint32_t nameBytes, POS_DSC& range) {
    const void* piece = nullptr;
    uint32_t left = file_.Lseek(range.start, 0) == range.start ? file_.BlRead(piece) : 0;
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

[[gnu::noinline]] int32_t CgTab::Table::WalkLines(POS_DSC range, const LookTyp& look, int inc) {
    range.end = std::min(range.end, Length());
    const uint32_t headSize = 4 + look.keylen;
    const uint32_t nameBytes = look.nameLength * Traits().nameUnit;
    for (; range.start < range.end && range.lines >= 1; --range.lines) {
        PassOtherLines(look, nameBytes, range);
        const int32_t pos = range.start;
        unsigned char head[4 + sizeof(look.key)];
        if (file_.Lseek(pos, 0) != pos || file_.Read(head, headSize) != headSize) {
            return kSearchFailed;
        }
        const uint32_t length = LoadU32(head);
        const auto left = static_cast<uint32_t>(Length() - pos - 4);
        if (length < look.keylen || length > left) {
            return kSearchFailed;
        }
        int differs = std::memcmp(head + 4, look.key, look.keylen);
        if (differs == 0 && look.name) {
            const auto rest = static_cast<int32_t>(length - look.keylen);
            if (file_.Cmp({look.name, nameBytes, rest, 0}, &differs) != 0) {
                return kSearchFailed;
            }
        }
        if (differs == 0) {
            if (inc != 0 && !CountUse(pos, inc)) {
                return kSearchFailed;
            }
            return file_.Lseek(pos, 0);
        }
        range.start += static_cast<int32_t>(4 + length);
    }
    return -1;
}

// Adds to the count that ends a line's extra bytes. A count that would become negative stays.
[[gnu::noinline]] bool CgTab::Table::CountUse(int32_t pos, int inc) {
    uint32_t length = 0;
    unsigned char field[4];
    const uint64_t behindCount = uint64_t{usrLen_} + sizeof(field);
    if (file_.Lseek(pos, 0) != pos || !ReadLength(length) || length < behindCount) {
        return false;
    }
    const int32_t countPos = pos + 4 + static_cast<int32_t>(length - behindCount);
    if (file_.Lseek(countPos, 0) != countPos || file_.Read(field, sizeof(field)) != sizeof(field)) {
        return false;
    }
    const uint32_t sum = LoadU32(field) + static_cast<uint32_t>(inc);
    if (static_cast<int32_t>(sum) < 0) {
        return false;
    }
    lq::cgtab::StoreU32(field, sum);
    return file_.Lseek(countPos, 0) == countPos &&
           file_.Write(field, sizeof(field)) == sizeof(field);
}
