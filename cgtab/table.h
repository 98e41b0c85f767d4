// One table of a set: lines in a record file, found by walking them or through a hash index.
#pragma once

#include <cstdint>

#include "cgtab/line.h"
#include "cgtab/table_traits.h"
#include "lq_data/cgtab.h"
#include "lq_data/record_file.h"

namespace lq::cgtab {
class LineIndex;
class SearchText;
}  // namespace lq::cgtab

// Invariants (Check verifies them for a table whose lines were all appended here; an image may
// bring anything):
//  1. The lines lie end to end from 0 to the length of the file. Each holds its key, its name and,
//     at its end, a user area.
//  2. While the user position flag is set, the file stands at the user area of a line.
//  3. The index of a hashed table, when there is one, has each line under its search text and
//     nothing else. Where texts are unique, no two lines have the same.
//  4. The index of a walked table, when there is one, has the first line of each name, of all lines
//     before `indexEnd_`, the last of which begins at `walkFrom_`.
//  5. `lastFound_`, when it is no -1, is a line that the index has and that nobody changed since.
//  6. A table without user areas has no flag, one that is neither hashed nor walked no index.
class LQ_DATA_LOCAL CgTab::Table {
  public:
    // Beside -1, which says that there is no such line: the search itself could not be done.
    static constexpr int32_t kSearchFailed = -2;

    Table(TAB_ID id, uint32_t usrLen)
        : id_(id), traits_(lq::cgtab::TraitsOf(id)), usrLen_(traits_.hasUserArea ? usrLen : 0) {}
    ~Table() { ClearHashTable(); }
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    // False when memory was short for the file; the table is then only to be destroyed.
    bool IsOpen() const { return file_.IsOpen() != 0; }
    R_FILE& File() { return file_; }
    int32_t Length() const { return file_.Filelength(); }
    uint32_t UsrLen_() const { return usrLen_; }
    const lq::cgtab::TableTraits& Traits() const { return traits_; }
    bool IsTableHashed() const { return Traits().isHashed; }

    // The user position flag.
    void SetUsr_(int32_t line) {
        atUser_ = Traits().hasUserArea;
        userOf_ = line;
    }
    void ResUsr_() { atUser_ = false; }
    bool UsrSet_() const { return atUser_; }
    bool UsrRes_() const { return !atUser_; }

    // Clears the flag and moves; false when the position is not within the file.
    bool SeekTo(int32_t pos);
    bool AtEnd() const { return file_.Eof() != 0; }
    // Drops the lines and the index.
    bool Clear();
    // Takes back the lines from `pos` on, and the index with them.
    void TruncateTo(int32_t pos);

    // --- Lines -------------------------------------------------------------------------------

    // The line at `pos`, or at the current position for -1, without its user area, unless `mode`
    // asks for it. On success `pos` is the next line's (-1 stays). A line without room for its user
    // area is no line, and the table stays where that showed; for any other failure FailRead has
    // been called.
    static constexpr unsigned kWithUser = 1;    // the user area is part of what is read
    static constexpr unsigned kStayAtUser = 2;  // leave the table at the user area
    bool ReadLine(int32_t& pos, LineBuffer& buf, unsigned mode);
    // Takes a line apart; false when it is too short for its key and its name. `traits` are the
    // table's, for who knows them when this is compiled.
    bool SplitLine(const LineBuffer& buf, LineBody& body) const {
        return SplitLine(Traits(), buf, body);
    }
    bool SplitLine(const lq::cgtab::TableTraits& traits, const LineBuffer& buf,
                   LineBody& body) const;
    // What every failed read leaves: the table and `pos` at 0. Always 0.
    int FailRead(int32_t& pos);

    // Appends a line whose key is complete: its position, or -1 and the table is as it was.
    int32_t AppendLine(Line& line);
    // The equal line, or a new one; -1 when there can be none.
    int32_t LookOrAppend(Line& line);
    // Exchanges `byte` with the one at `offset` behind the length field of a line, if the line is
    // so long; the table then stands at the line.
    bool ReplaceByte(int32_t linePos, uint32_t offset, unsigned char& byte);
    // Writes bytes over those at `offset` behind the length field of a line, which has them; the
    // table then stands at the line.
    bool Overwrite(int32_t linePos, uint32_t offset, const void* bytes, uint32_t count);

    // --- Searching ---------------------------------------------------------------------------

    // Completes a key. False when the name is too long for its length field.
    static bool TransLookDcr(LookTyp& look);
    // The first line in the range, in a table with an index the newest; -1 when there is none, or
    // kSearchFailed. A use is counted with `inc` non-zero, where uses are counted.
    int32_t LookLine(const POS_DSC& range, LookTyp& look, int inc);
    int32_t LookLine(LookTyp& look, int inc) { return LookLine(kWholeTable, look, inc); }

    // Before bytes of the file are written that may be another line's than the one meant.
    void ForgetFound() { lastFound_ = -1; }

    // Builds the index from the lines, the table's position staying: 1, or 0 and there is none.
    int CreateHashTable();
    void ClearHashTable();
    // The index, built if need be; null when the table has none or it cannot be built.
    const lq::cgtab::LineIndex* Index();

    // --- User areas --------------------------------------------------------------------------

    // Moves to the user area of the line at `*pos`, which becomes the area's own position; with
    // null or -1 to that of the current line.
    bool SetUsrPos(int32_t* pos);
    // Writes the area of the line at `pos`, or of the current line for -1.
    bool WriteUsr(int32_t& pos, const void* usr);
    // The first line from the current position on whose user area equals `data`, behind which the
    // table then stands; or -1.
    int32_t LookUsr(const void* data);
    // Lets `transfer(file, buffer, size)` move each line's user area between the table, which
    // stands at it, and a buffer. The bytes transferred; -1, and the table is emptied, when a step
    // fails.
    template <typename Transfer>
    int32_t WalkUserAreas(Transfer transfer);

    // Whether the invariants hold; for tests.
    bool Check();

  private:
    // What the length field at the current position says, if the table has as many bytes.
    bool ReadLength(uint32_t& length);
    int32_t WalkLines(POS_DSC range, const LookTyp& look, int inc);
    void PassOtherLines(const LookTyp& look, uint32_t nameBytes, POS_DSC& range);
    bool CountUse(int32_t pos, int inc);

    // The search of a hashed table, and that of a walked one.
    int32_t LookIndex(const POS_DSC& range, LookTyp& look, int inc);
    int32_t LookName(const LookTyp& look, int inc);
    bool EnterIndex(const Line& line, int32_t pos);
    bool EnterText(const lq::cgtab::SearchText& text, int32_t pos);
    enum class Entry { kEntered, kEndOfLines, kFailed };
    Entry EnterLine(int32_t pos, int32_t& next);
    // Whether the index has that line, as the first of its name.
    bool IsIndexed(int32_t pos) const;
    bool ReadHead(int32_t pos, LineHead& head) const;
    bool FormText(const LookTyp& look, lq::cgtab::SearchText& text) const;
    bool FormText(int32_t pos, const LineHead& head, lq::cgtab::SearchText& text) const;
    // Whether the line at `pos` begins with these very bytes, as far as it lies in one piece.
    bool IsLineOf(const LookTyp& look, int32_t pos) const;
    bool HasText(int32_t pos, const lq::cgtab::SearchText& text) const;
    bool HasPrefix(const LineHead& head, const lq::cgtab::SearchText& text, uint32_t& length) const;
    bool EndsAt(int32_t pos, const LineHead& head, uint32_t length) const;
    bool HasRestOfName(int32_t pos, const LineHead& head, const char16_t* name, uint32_t length,
                       uint32_t done) const;

    TAB_ID id_;
    const lq::cgtab::TableTraits& traits_;
    uint32_t usrLen_;
    R_FILE file_{lq::cgtab::kBlockSize};
    bool atUser_ = false;
    int32_t userOf_ = 0;  // the line at whose user area the file stands, while the flag is set
    lq::cgtab::LineIndex* index_ = nullptr;
    int32_t indexEnd_ = 0;
    int32_t walkFrom_ = 0;
    int32_t lastFound_ = -1;  // of a table whose texts are formed
};

inline CgTab::Table* CgTab::TableOf(TAB_ID id) const {
    return tables && lq::cgtab::IsTableId(id) ? tables + id : nullptr;
}

inline bool CgTab::Table::SplitLine(const lq::cgtab::TableTraits& traits, const LineBuffer& buf,
                                    LineBody& body) const {
    const uint32_t usrLen = buf.hasUser ? usrLen_ : 0;
    body.extra = lq::cgtab::ByteCursor(buf.Data(), buf.Size() - usrLen);
    body.usr = buf.hasUser ? buf.Data() + (buf.Size() - usrLen) : nullptr;
    body.key = body.extra.Take(traits.fixedKey);
    if (traits.nameLenBytes != 0) {
        body.nameLength = traits.nameLenBytes == 1 ? body.extra.TakeU8() : body.extra.TakeU16();
        body.name = body.extra.Take(body.nameLength * traits.nameUnit);
    }
    return !body.extra.HasFailed();
}

template <typename Transfer>
int32_t CgTab::Table::WalkUserAreas(Transfer transfer) {
    auto* buffer = static_cast<unsigned char*>(lq::Allocate(usrLen_));
    bool whole = buffer && (!Traits().hasUserArea || SeekTo(0));
    ForgetFound();
    uint32_t moved = 0;
    while (whole && !AtEnd()) {
        whole = SetUsrPos(nullptr) && (usrLen_ == 0 || transfer(file_, buffer, usrLen_));
        ResUsr_();
        moved += usrLen_;
    }
    lq::Release(buffer);
    if (!whole) {
        Clear();
        return -1;
    }
    return static_cast<int32_t>(moved);
}
