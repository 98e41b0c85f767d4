// The bytes of lines, as a table's file and an image hold them: what they say beyond the records of
// CgTab::Read, which is which lines they lead to, for who shows or searches whole tables.
//
// A table's bytes come from CgTab::Put, or lie in an image behind their length of 32 bits.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "lq_data/cgtab.h"
#include "lq_data/export.h"

namespace lq {

// The size of the blocks that a table's file is read and written in.
inline constexpr uint32_t kTableBlockSize = 4096;

static_assert(std::endian::native == std::endian::little,
              "numbers and names go into lines and images as they lie in memory");

// Numbers of 32 bits, low byte first, at any place: those of lines and images, and what user areas
// and debug records hold, where these are to be read on any machine.
inline void StoreU32(unsigned char* to, uint32_t v) {
    std::memcpy(to, &v, sizeof(v));
}
inline uint32_t LoadU32(const unsigned char* from) {
    uint32_t v = 0;
    std::memcpy(&v, from, sizeof(v));
    return v;
}

// What stands in front of a line's own data. Where that is not there, because the line is damaged,
// it stays as it is.
struct LineHead {
    int32_t next = -1;      // where the line ends; -1 when it is damaged
    std::string_view name;  // the name's bytes, in the table
};

// Positions of other lines; -1 for none. Of a damaged line they may be any numbers.
struct LineLinks {
    int32_t global = -1;  // that an external refers to
    int32_t address = -1;
    int32_t constant = -1;
    int32_t array = -1;
};

// The bytes that a line of the table has between its length and its name.
LQ_DATA_API uint32_t BytesBeforeName(CgTab::TAB_ID id);

// The head of the line at `pos` of a table with these bytes.
LQ_DATA_API LineHead HeadOf(CgTab::TAB_ID id, std::string_view table, int32_t pos);

// The links of the line that has this head.
LQ_DATA_API LineLinks LinksOf(CgTab::TAB_ID id, std::string_view table, const LineHead& head);

}  // namespace lq
