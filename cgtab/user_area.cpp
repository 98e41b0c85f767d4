// Writing user areas in place, and searching and walking by them.
#include "cgtab/line.h"
#include "lq_data/cgtab.h"

// Moves to the user area of the line at `*pos`, which becomes the area's own position; with null or
// -1 to that of the current line. The table must be there.
bool CgTab::SetUsrPos(TAB_ID id, int32_t* pos) {
    R_FILE* file = handle_(id);
    const bool positioned = pos && *pos != -1;
    if (positioned && !SeekTo(id, *pos)) {
        return false;
    }
    if (UsrSet_(id)) {
        return true;
    }
    const uint32_t usrLen = UsrLen_(id);
    unsigned char field[4];
    if (file->Read(field, sizeof(field)) != sizeof(field)) {
        return false;
    }
    const uint32_t length = lq::cgtab::LoadU32(field);
    const auto left = static_cast<uint32_t>(file->Filelength() - file->Tell());
    if (length < usrLen || length > left) {
        return false;
    }
    const int32_t area = file->Lseek(static_cast<int32_t>(length - usrLen), 1);
    if (positioned) {
        *pos = area;
    }
    SetUsr_(id);
    return true;
}

int CgTab::Write(TAB_ID id, int32_t& pos, const void* usr) {
    if (!handle_(id)) {
        return 0;
    }
    const uint32_t usrLen = UsrLen_(id);
    bool written = SetUsrPos(id, &pos);
    written = written && (usrLen == 0 || handle_(id)->Write(usr, usrLen) == usrLen);
    if (written && pos != -1) {
        pos += static_cast<int32_t>(usrLen);
    }
    ResUsr_(id);
    return written ? 1 : 0;
}

int CgTab::Write(TAB_ID id, const void* usr) {
    curPos = -1;
    return Write(id, curPos, usr);
}

int32_t CgTab::Look(TAB_ID id, const void* data, int rewind) {
    R_FILE* file = handle_(id);
    const uint32_t usrLen = UsrLen_(id);
    if (!file || usrLen == 0) {
        return -1;
    }
    if (rewind) {
        SeekTo(id, 0);
    } else if (UsrSet_(id)) {
        file->Lseek(static_cast<int32_t>(usrLen), 1);  // the current line has been passed
        ResUsr_(id);
    }
    int32_t hit = -1;
    while (hit < 0 && !file->Eof()) {
        const int32_t pos = file->Tell();
        int differs = 1;
        if (!SetUsrPos(id, nullptr) ||
            file->Cmp({data, usrLen, static_cast<int32_t>(usrLen), 0}, &differs) != 0) {
            break;
        }
        ResUsr_(id);
        if (differs == 0) {
            hit = pos;
        }
    }
    ResUsr_(id);
    return hit;
}

// Lets `transfer` move each line's user area between the table, which stands at it, and a buffer.
// The bytes transferred; -1, and the table is emptied, when a step fails.
template <typename Transfer>
int32_t CgTab::WalkUserAreas(TAB_ID id, Transfer transfer) {
    R_FILE* file = handle_(id);
    if (!file) {
        return 0;
    }
    const uint32_t usrLen = UsrLen_(id);
    auto* buffer = static_cast<unsigned char*>(lq::Allocate(usrLen));
    bool whole = buffer && (id == TAB_ARR || SeekTo(id, 0));
    uint32_t moved = 0;
    while (whole && !file->Eof()) {
        whole = SetUsrPos(id, nullptr) && (usrLen == 0 || transfer(*file, buffer, usrLen));
        ResUsr_(id);
        moved += usrLen;
    }
    lq::Release(buffer);
    if (!whole) {
        Clear(id);
        return -1;
    }
    return static_cast<int32_t>(moved);
}

int32_t CgTab::PutUsr(TAB_ID id, STREAM_A& s) {
    return WalkUserAreas(id, [&s](R_FILE& file, unsigned char* buffer, uint32_t size) {
        const auto count = static_cast<int32_t>(size);
        return file.Read(buffer, size) == size && s.PutBlock(buffer, count, nullptr) == count;
    });
}

int32_t CgTab::GetUsr(TAB_ID id, STREAM_A& s) {
    return WalkUserAreas(id, [&s](R_FILE& file, unsigned char* buffer, uint32_t size) {
        const auto count = static_cast<int32_t>(size);
        return s.GetBlock(buffer, count, nullptr) == count && file.Write(buffer, size) == size;
    });
}
