// Finding a table's lines through its index.
#include <algorithm>
#include <cstring>

#include "cgtab/line_index.h"
#include "cgtab/search_text.h"
#include "cgtab/table.h"
#include "lq_data/detail/chars.h"

using lq::cgtab::LineIndex;
using lq::cgtab::SearchText;

namespace {

[[gnu::noinline]] bool IsSameNoCase(const unsigned char* bytes, const char16_t* text,
                                    uint32_t count) {
    bool isSame = true;
    for (uint32_t i = 0; isSame && i < count; ++i) {
        char16_t c = 0;
        std::memcpy(&c, bytes + i * sizeof(c), sizeof(c));
        isSame = lq::chars::ToUpper(c) == lq::chars::ToUpper(text[i]);
    }
    return isSame;
}

// Whether `count` characters, as they lie in a line, are these.
bool IsSame(const unsigned char* bytes, const char16_t* text, uint32_t count, bool caseCounts) {
    if (std::memcmp(bytes, text, count * sizeof(char16_t)) == 0) {
        return true;
    }
    return !caseCounts && IsSameNoCase(bytes, text, count);
}

}  // namespace

// False when the file ends before the name.
bool CgTab::Table::ReadHead(int32_t pos, LineHead& head) const {
    const lq::cgtab::TableTraits& traits = Traits();
    const void* piece = nullptr;
    head.read = file_.Peek(pos, piece);
    head.bytes = static_cast<const unsigned char*>(piece);
    if (head.read < sizeof(head.copy) && pos + static_cast<int32_t>(head.read) < Length()) {
        head.read = file_.ReadAt(pos, head.copy, sizeof(head.copy));
        head.bytes = head.copy;
    }
    const uint32_t lengthAt = 4u + traits.fixedKey;
    head.nameAt = lengthAt + traits.nameLenBytes;
    if (head.read < head.nameAt) {
        return false;
    }
    if (head.read > 64) {
        __builtin_prefetch(head.bytes + 64);  // most lines end in the next line of the cache
    }
    head.length = lq::cgtab::LoadU32(head.bytes);
    const unsigned char* const field = head.bytes + lengthAt;
    head.nameLength = field[0];
    if (traits.nameLenBytes == 2) {
        head.nameLength |= uint32_t{field[1]} << 8;
    }
    return true;
}

// Whether the characters of a line's name from the `done`-th on are these.
[[gnu::noinline]] bool CgTab::Table::HasRestOfName(int32_t pos, const LineHead& head,
                                                   const char16_t* name, uint32_t length,
                                                   uint32_t done) const {
    constexpr uint32_t kPiece = 64;
    unsigned char piece[kPiece * sizeof(char16_t)];
    while (done != length) {
        const uint32_t count = std::min(length - done, kPiece);
        const auto size = static_cast<uint32_t>(count * sizeof(char16_t));
        const auto at = pos + static_cast<int32_t>(head.nameAt + done * sizeof(char16_t));
        if (file_.ReadAt(at, piece, size) != size ||
            !IsSame(piece, name + done, count, Traits().caseSensitiveIndex)) {
            return false;
        }
        done += count;
    }
    return true;
}

// Whether the search text begins with what stands in front of the line's name.
[[gnu::noinline]] bool CgTab::Table::HasPrefix(const LineHead& head, const SearchText& text,
                                               uint32_t& length) const {
    char16_t prefix[lq::cgtab::kMaxPrefix];
    const int32_t prefixLength = lq::cgtab::PutPrefix(id_, head.Key(), prefix);
    length = static_cast<uint32_t>(prefixLength);
    return prefixLength >= 0 && text.Length() >= length &&
           std::equal(prefix, prefix + prefixLength, text.Get());
}

// A name in a line of a hashed table ends at a terminator, as its text does.
[[gnu::noinline]] bool CgTab::Table::EndsAt(int32_t pos, const LineHead& head,
                                            uint32_t length) const {
    char16_t behind = 1;
    const auto at = pos + static_cast<int32_t>(head.nameAt + 2 * length);
    return IsTableHashed() && head.nameLength > length &&
           file_.ReadAt(at, &behind, sizeof(behind)) == sizeof(behind) && behind == 0;
}

// Whether the line at `pos` has the search text, as far as it can be read, whatever its length
// field says: an index stays when a line is damaged behind it. Most names lie in one piece.
[[gnu::flatten]] bool CgTab::Table::HasText(int32_t pos, const SearchText& text) const {
    LineHead head;
    uint32_t inFront = 0;
    if (!ReadHead(pos, head) || (Traits().fixedKey != 0 && !HasPrefix(head, text, inFront))) {
        return false;
    }
    const uint32_t length = text.Length() - inFront;
    if (head.nameLength != length && !EndsAt(pos, head, length)) {
        return false;
    }
    const char16_t* const name = text.Get() + inFront;
    const uint32_t count = std::min(length, (head.read - head.nameAt) / 2);
    return IsSame(head.Name(), name, count, Traits().caseSensitiveIndex) &&
           (count == length || HasRestOfName(pos, head, name, length, count));
}

bool CgTab::Table::IsLineOf(const LookTyp& look, int32_t pos) const {
    const uint32_t nameBytes = look.nameLength * Traits().nameUnit;
    LineHead head;
    return ReadHead(pos, head) && head.nameAt + nameBytes <= head.read &&
           std::memcmp(head.Key(), look.key, look.keylen) == 0 &&
           std::memcmp(head.Name(), look.name, nameBytes) == 0;
}

int32_t CgTab::Table::LookIndex(const POS_DSC& range, LookTyp& look, int inc) {
    SearchText text;
    if (!Index() || !FormText(look, text)) {
        return kSearchFailed;
    }
    const LineIndex::Slot* const slot =
        index_->Find(text.Hash(), [&](int32_t pos) { return HasText(pos, text); });
    if (!slot) {
        look.hash = text.Hash();
        look.isAbsent = true;
        return -1;
    }
    const bool hasSections = Traits().countsUses;  // components and labels
    const int32_t pos = hasSections ? index_->LastIn(*slot, range.start, range.end)
                                    : index_->LastIn(*slot, 0, INT32_MAX);
    if (pos < 0) {
        return -1;
    }
    if (inc != 0 && hasSections) {
        CountUse(pos, inc);
    }
    return std::max(file_.Lseek(pos, 0), -1);
}

// The answer of a walk over all lines, which needs no memory. What the index does not have is
// looked for behind its lines; the last of them is walked once more, so that the table ends up
// where a walk leaves it.
[[gnu::noinline]] int32_t CgTab::Table::LookName(const LookTyp& look, int inc) {
    SearchText text;
    int32_t from = 0;
    if (Index() && FormText(look, text)) {
        const LineIndex::Slot* const slot =
            index_->Find(text.Hash(), [&](int32_t pos) { return HasText(pos, text); });
        if (slot) {
            return inc != 0 && !CountUse(slot->at, inc) ? kSearchFailed : file_.Lseek(slot->at, 0);
        }
        from = walkFrom_;
    }
    return WalkLines({from, Length(), INT32_MAX}, look, inc);
}

// False when memory is short, or when a text that is to be unique is there already.
bool CgTab::Table::EnterText(const SearchText& text, int32_t pos) {
    LineIndex::Slot* const slot =
        index_->Find(text.Hash(), [&](int32_t other) { return HasText(other, text); });
    if (!slot) {
        return index_->Insert(text.Hash(), pos);
    }
    return !IsTableHashed() || (!Traits().isUnique && index_->Append(*slot, pos));
}

// The search text of a complete key: without fixed bytes it is the name itself.
bool CgTab::Table::FormText(const LookTyp& look, SearchText& text) const {
    const uint32_t length = look.nameLength;
    if (Traits().fixedKey != 0) {
        return text.Form(id_, look.key, look.name, length);
    }
    text.Take(static_cast<const char16_t*>(look.name), {length, look.hash});
    return true;
}

// The search text of the line at `pos`, which is a whole one.
bool CgTab::Table::FormText(int32_t pos, const LineHead& head, SearchText& text) const {
    LineBuffer buf;
    const unsigned char* name = head.Name();
    const uint32_t bytes = head.nameLength * Traits().nameUnit;
    if (head.nameAt + bytes > head.read) {
        unsigned char* const room = buf.Resize(bytes);
        if (!room || file_.ReadAt(pos + static_cast<int32_t>(head.nameAt), room, bytes) != bytes) {
            return false;
        }
        name = room;
    }
    return text.Form(id_, head.Key(), static_cast<const void*>(name), head.nameLength);
}

// Enters the line at `pos`, and gives the position of the next. What is no line ends the lines; in
// a walked table so does a line whose name a count or a user area could lie in.
CgTab::Table::Entry CgTab::Table::EnterLine(int32_t pos, int32_t& next) {
    LineHead head;
    if (!ReadHead(pos, head) || head.length > static_cast<uint32_t>(Length() - pos - 4) ||
        (Traits().hasUserArea && head.length <= usrLen_)) {
        return Entry::kEndOfLines;
    }
    const uint32_t nameBytes = head.nameLength * Traits().nameUnit;
    const uint32_t count = IsTableHashed() ? 0 : 4;
    if (uint64_t{head.nameAt - 4} + nameBytes + count + usrLen_ > head.length) {
        return Entry::kEndOfLines;
    }
    SearchText text;
    if (!FormText(pos, head, text) || !EnterText(text, pos)) {
        return Entry::kFailed;
    }
    next = pos + 4 + static_cast<int32_t>(head.length);
    return Entry::kEntered;
}

bool CgTab::Table::IsIndexed(int32_t pos) const {
    LineHead head;
    SearchText text;
    if (pos >= indexEnd_ || !ReadHead(pos, head) ||
        head.length > static_cast<uint32_t>(Length() - pos - 4) || !FormText(pos, head, text)) {
        return false;
    }
    const LineIndex::Slot* const slot =
        index_->Find(text.Hash(), [&](int32_t other) { return HasText(other, text); });
    return slot && slot->at == pos;
}

// An index that could not take all lines is dropped, so that a search never misses one silently;
// the table ends, as it does for every reader, at its end or in front of what is no line.
[[gnu::noinline]] int CgTab::Table::CreateHashTable() {
    ClearHashTable();
    if (!IsTableHashed() && !Traits().IsWalked()) {
        return 0;
    }
    index_ = new LineIndex;
    if (!index_) {
        return 0;
    }
    Entry entry = Entry::kEntered;
    int32_t next = 0;
    for (int32_t pos = 0; (entry = EnterLine(pos, next)) == Entry::kEntered; pos = next) {
        walkFrom_ = pos;
    }
    indexEnd_ = next;
    if (entry == Entry::kFailed) {
        ClearHashTable();
    }
    return index_ ? 1 : 0;
}

void CgTab::Table::ClearHashTable() {
    delete index_;
    index_ = nullptr;
    walkFrom_ = 0;
    ForgetFound();
}

const LineIndex* CgTab::Table::Index() {
    if (!index_) {
        CreateHashTable();
    }
    return index_;
}

// Enters an appended line; false, in a hashed table alone, when it cannot be found then. An index
// that does not exist yet is built from all lines, the new one included.
bool CgTab::Table::EnterIndex(const Line& line, int32_t pos) {
    if (IsTableHashed() && !index_) {
        return CreateHashTable() != 0;
    }
    if (!index_ || (!IsTableHashed() && indexEnd_ != pos)) {
        return !IsTableHashed();
    }
    const LookTyp& look = line.look;
    if (look.isAbsent) {
        return index_->Insert(look.hash, pos);
    }
    SearchText text;
    const bool entered = FormText(look, text) && EnterText(text, pos);
    if (IsTableHashed()) {
        return entered;
    }
    walkFrom_ = pos;
    indexEnd_ = Length();
    if (!entered) {
        ClearHashTable();
    }
    return true;
}
