// A table's lines: read and taken apart, appended, changed in place. What a line claims is checked
// against what is there before it is used: images may come from anywhere.
#include <algorithm>
#include <limits>

#include "cgtab/table.h"

[[gnu::noinline]] int CgTab::Table::FailRead(int32_t& pos) {
    SeekTo(0);
    pos = 0;
    return 0;
}

bool CgTab::Table::ReadLine(int32_t& pos, LineBuffer& buf, unsigned mode) {
    const bool isCurrent = pos == -1;
    if (isCurrent && UsrSet_()) {
        file_.Lseek(static_cast<int32_t>(usrLen_), 1);
    }
    if (!isCurrent && file_.Tell() != pos && file_.Lseek(pos, 0) != pos) {
        return FailRead(pos) != 0;
    }
    const int32_t line = file_.Tell();
    const void* piece = nullptr;
    const uint32_t there = file_.Peek(piece);
    const auto* const bytes = static_cast<const unsigned char*>(piece);
    unsigned char field[4];
    if (there < sizeof(field) && file_.ReadAt(line, field, sizeof(field)) != sizeof(field)) {
        return FailRead(pos) != 0;
    }
    ResUsr_();
    const uint32_t length = lq::cgtab::LoadU32(there < sizeof(field) ? field : bytes);
    const int32_t body = line + 4;
    if (Traits().hasUserArea && length <= usrLen_) {
        file_.Lseek(body, 0);
        return false;
    }
    buf.hasUser = (mode & kWithUser) != 0;
    const uint32_t read = buf.hasUser ? length : length - usrLen_;
    if (length > static_cast<uint32_t>(Length() - body)) {
        return FailRead(pos) != 0;
    }
    if (there >= 4 && there - 4 >= read) {
        buf.Refer(bytes + 4, read);
    } else if (unsigned char* const room = buf.Resize(read);
               !room || file_.ReadAt(body, room, read) != read) {
        return FailRead(pos) != 0;
    }
    const bool stay = (mode & kStayAtUser) != 0;
    file_.Lseek(body + static_cast<int32_t>(length - (stay ? usrLen_ : 0)), 0);
    if (stay) {
        SetUsr_(line);
    }
    if (pos != -1) {
        pos = static_cast<int32_t>(static_cast<uint32_t>(pos) + length + 4);
    }
    return true;
}

int32_t CgTab::Table::AppendLine(Line& line) {
    ResUsr_();
    const int32_t pos = file_.Lseek(0, 2);
    const LookTyp& look = line.look;
    const uint32_t nameBytes = look.nameLength * Traits().nameUnit;
    const uint64_t total = uint64_t{look.keylen} + nameBytes + line.extralen + usrLen_;
    const auto room = static_cast<uint64_t>(std::numeric_limits<int32_t>::max() - pos);
    if (total + 4 > room) {
        return -1;
    }
    line.total = static_cast<uint32_t>(total);
    LineBuffer buf;
    unsigned char* const bytes = buf.Resize(line.total + 4);
    if (!bytes) {
        return -1;
    }
    lq::cgtab::StoreU32(bytes, line.total);
    unsigned char* at = std::copy_n(look.key, look.keylen, bytes + 4);
    at = std::copy_n(static_cast<const unsigned char*>(look.name), nameBytes, at);
    at = std::copy_n(line.extra, line.extralen, at);
    std::fill_n(at, usrLen_, uint8_t{0});
    if (file_.Write(bytes, buf.Size()) != buf.Size() || !EnterIndex(line, pos)) {
        file_.Lseek(pos, 0);
        file_.Chsize(pos);
        return -1;
    }
    if (usrLen_ != 0) {
        file_.Lseek(-static_cast<int32_t>(usrLen_), 1);
        SetUsr_(pos);
    }
    return pos;
}

// Neighbours often have one address, the empty one, and one constant: what was found last is asked
// first where a text would have to be formed.
[[gnu::flatten]] int32_t CgTab::Table::LookOrAppend(Line& line) {
    if (lastFound_ >= 0 && TransLookDcr(line.look) && IsLineOf(line.look, lastFound_)) {
        if (file_.Tell() != lastFound_) {
            ResUsr_();
        }
        return file_.Lseek(lastFound_, 0);
    }
    const int32_t found = LookLine(line.look, 0);
    const int32_t pos = found == -1 ? AppendLine(line) : found < 0 ? -1 : found;
    lastFound_ = Traits().fixedKey != 0 ? pos : -1;
    return pos;
}

bool CgTab::Table::ReplaceByte(int32_t linePos, uint32_t offset, unsigned char& byte) {
    const int32_t at = linePos + 4 + static_cast<int32_t>(offset);
    const unsigned char replacement = byte;
    uint32_t length = 0;
    ForgetFound();
    // A damaged line may end before the byte, which is then another line's.
    return SeekTo(linePos) && ReadLength(length) && length > offset + usrLen_ &&
           file_.Lseek(at, 0) == at && file_.Read(&byte, 1) == 1 && file_.Lseek(at, 0) == at &&
           file_.Write(&replacement, 1) == 1 && file_.Lseek(linePos, 0) == linePos;
}

bool CgTab::Table::Overwrite(int32_t linePos, uint32_t offset, const void* bytes, uint32_t count) {
    const int32_t at = linePos + 4 + static_cast<int32_t>(offset);
    ResUsr_();
    ForgetFound();
    return file_.Lseek(at, 0) == at && file_.Write(bytes, count) == count &&
           file_.Lseek(linePos, 0) == linePos;
}
