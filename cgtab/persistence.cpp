// Tables to byte streams and back.
#include <algorithm>

#include "cgtab/table.h"
#include "lq_data/cgtab.h"

namespace {

constexpr int32_t kPiece = 4096;

}  // namespace

int CgTab::Save(STREAM_A& s) {
    for (int i = 0; i < TAB_COUNT; ++i) {
        const auto id = static_cast<TAB_ID>(i);
        const R_FILE* file = handle_(id);
        if (!file) {
            return 0;
        }
        const int32_t length = file->Filelength();
        unsigned char field[4];
        lq::cgtab::StoreU32(field, static_cast<uint32_t>(length));
        if (s.PutBlock(field, sizeof(field), nullptr) != sizeof(field) || Put(id, s) != length) {
            return 0;
        }
    }
    return 1;
}

int CgTab::Restore(STREAM_A& s) {
    for (int i = 0; i < TAB_COUNT; ++i) {
        unsigned char field[4];
        if (s.GetBlock(field, sizeof(field), nullptr) != sizeof(field)) {
            return 0;
        }
        const auto length = static_cast<int32_t>(lq::cgtab::LoadU32(field));
        if (Get(static_cast<TAB_ID>(i), s, length) != length) {
            return 0;
        }
    }
    return 1;
}

int32_t CgTab::Put(TAB_ID id, STREAM_A& s) {
    Table* const table = TableOf(id);
    if (!table || !table->SeekTo(0)) {
        return 0;
    }
    int32_t written = 0;
    for (;;) {
        const void* piece = nullptr;
        const auto size = static_cast<int32_t>(table->File().BlRead(piece));
        if (size == 0) {
            return written;
        }
        const int32_t put = s.PutBlock(piece, size, nullptr);
        written += std::clamp(put, 0, size);
        if (put != size) {
            return written;
        }
    }
}

// The length is only believed as far as the stream bears it out: memory grows with what was read.
int32_t CgTab::Get(TAB_ID id, STREAM_A& s, int32_t n) {
    Table* const table = TableOf(id);
    if (!table) {
        return 0;
    }
    table->ResUsr_();
    table->ForgetFound();
    if (!table->IsTableHashed()) {
        table->ClearHashTable();  // who walks sees the new lines
    }
    unsigned char buffer[kPiece];
    int32_t done = 0;
    while (done < n) {
        const int32_t wanted = std::min(n - done, kPiece);
        const int32_t got = std::clamp(s.GetBlock(buffer, wanted, nullptr), 0, wanted);
        const auto size = static_cast<uint32_t>(got);
        if (got == 0 || table->File().Write(buffer, size) != size) {
            break;
        }
        done += got;
        if (got != wanted) {
            break;
        }
    }
    return done;
}

int32_t CgTab::PutUsr(TAB_ID id, STREAM_A& s) {
    Table* const table = TableOf(id);
    const auto put = [&s](R_FILE& file, unsigned char* buffer, uint32_t size) {
        const auto count = static_cast<int32_t>(size);
        return file.Read(buffer, size) == size && s.PutBlock(buffer, count, nullptr) == count;
    };
    return table ? table->WalkUserAreas(put) : 0;
}

int32_t CgTab::GetUsr(TAB_ID id, STREAM_A& s) {
    Table* const table = TableOf(id);
    const auto get = [&s](R_FILE& file, unsigned char* buffer, uint32_t size) {
        const auto count = static_cast<int32_t>(size);
        return s.GetBlock(buffer, count, nullptr) == count && file.Write(buffer, size) == size;
    };
    return table ? table->WalkUserAreas(get) : 0;
}
