// A table's positions, its user areas, and its invariants.
#include "cgtab/table.h"

#include "cgtab/line_index.h"
#include "cgtab/search_text.h"

using lq::cgtab::LineIndex;
using lq::cgtab::LoadU32;

bool CgTab::Table::SeekTo(int32_t pos) {
    ResUsr_();
    return pos >= 0 && file_.Lseek(pos, 0) == pos;
}

bool CgTab::Table::Clear() {
    ClearHashTable();
    return SeekTo(0) && file_.Chsize(0) == 0;
}

void CgTab::Table::TruncateTo(int32_t pos) {
    SeekTo(pos);
    file_.Chsize(pos);
    ClearHashTable();
}

bool CgTab::Table::ReadLength(uint32_t& length) {
    unsigned char field[4];
    if (file_.Read(field, sizeof(field)) != sizeof(field)) {
        return false;
    }
    length = LoadU32(field);
    return length <= static_cast<uint32_t>(file_.Filelength() - file_.Tell());
}

bool CgTab::Table::SetUsrPos(int32_t* pos) {
    const bool positioned = pos && *pos != -1;
    if (positioned && !SeekTo(*pos)) {
        return false;
    }
    if (UsrSet_()) {
        return true;
    }
    const int32_t line = file_.Tell();
    uint32_t length = 0;
    if (!ReadLength(length) || length < usrLen_) {
        return false;
    }
    const int32_t area = file_.Lseek(static_cast<int32_t>(length - usrLen_), 1);
    if (positioned) {
        *pos = area;
    }
    SetUsr_(line);
    return true;
}

bool CgTab::Table::WriteUsr(int32_t& pos, const void* usr) {
    bool written = SetUsrPos(&pos);
    if (written && index_ && Traits().IsWalked() && !IsIndexed(userOf_)) {
        ClearHashTable();  // what is no line may lie across several
    }
    ForgetFound();
    written = written && (usrLen_ == 0 || file_.Write(usr, usrLen_) == usrLen_);
    if (written && pos != -1) {
        pos += static_cast<int32_t>(usrLen_);
    }
    ResUsr_();
    return written;
}

int32_t CgTab::Table::LookUsr(const void* data) {
    if (UsrSet_()) {
        file_.Lseek(static_cast<int32_t>(usrLen_), 1);  // the current line has been passed
        ResUsr_();
    }
    int32_t hit = -1;
    while (hit < 0 && !AtEnd()) {
        const int32_t pos = file_.Tell();
        int differs = 1;
        if (!SetUsrPos(nullptr) ||
            file_.Cmp({data, usrLen_, static_cast<int32_t>(usrLen_), 0}, &differs) != 0) {
            break;
        }
        ResUsr_();
        if (differs == 0) {
            hit = pos;
        }
    }
    ResUsr_();
    return hit;
}

bool CgTab::Table::Check() {
    const int32_t before = file_.Tell();
    const bool atUser = UsrSet_();
    bool sound =
        !(atUser && !Traits().hasUserArea) && !(index_ && !IsTableHashed() && !Traits().IsWalked());
    bool isUserArea = false;
    bool isFoundThere = lastFound_ < 0;
    uint32_t lines = 0;
    LineBuffer buf;
    LineBody body;
    int32_t last = 0;
    for (int32_t pos = 0; sound && pos != Length(); ++lines) {
        const int32_t linePos = last = pos;
        sound = ReadLine(pos, buf, 0) && SplitLine(buf, body);
        isFoundThere = isFoundThere || (index_ && linePos == lastFound_);
        isUserArea = isUserArea || before == pos - static_cast<int32_t>(usrLen_);
        lq::cgtab::SearchText text;
        if (!sound || !index_) {
            continue;
        }
        sound = text.Form(id_, body.key, static_cast<const void*>(body.name), body.nameLength);
        const LineIndex::Slot* const slot =
            sound ? index_->Find(text.Hash(), [&](int32_t at) { return HasText(at, text); })
                  : nullptr;
        sound = slot && (IsTableHashed() ? index_->LastIn(*slot, linePos, linePos + 1) == linePos
                                         : slot->at <= linePos);
    }
    if (index_ && sound) {
        sound = IsTableHashed() ? index_->LineCount() == lines
                                : indexEnd_ == Length() && walkFrom_ == last;
    }
    sound = sound && (!atUser || isUserArea) && isFoundThere;
    SeekTo(before);
    atUser_ = atUser;
    return sound;
}
