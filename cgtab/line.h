// The private shapes of lines: as they are searched for, appended and taken apart.
#pragma once

#include <cstdint>

#include "cgtab/bytes.h"
#include "cgtab/table_traits.h"
#include "lq_data/cgtab.h"
#include "lq_data/memory.h"

// A search key. `name` has `keylen` fixed bytes in front of it in the line; the name length field
// is appended to them when the key is completed.
struct CgTab::LookTyp {
    // The key of a table's line by name, without its fixed bytes.
    LookTyp(TAB_ID id, const void* text) : traits(lq::cgtab::TraitsOf(id)), name(text) {}

    void AddKey(uint32_t byte) { key[keylen++] = static_cast<unsigned char>(byte); }

    // The name length field, in units of the table, which completes the key.
    void Complete(uint32_t length) {
        AddKey(length & 0xFF);
        if (traits.nameLenBytes == 2) {
            AddKey(length >> 8);
        }
        nameLength = name ? length : 0;
        isComplete = true;
    }

    const lq::cgtab::TableTraits& traits;
    unsigned char key[6] = {};
    bool isComplete = false;  // the name length field is part of `key`
    bool isAbsent = false;    // the name was looked for in an index and is not there
    uint32_t keylen = 0;
    uint32_t nameLength = 0;  // of a complete key, in units of the table
    const void* name;         // terminated text, or bytes in the debug table; null for none
    uint32_t hash = 0;  // of the search text: of a name known when the key is complete, of other
                        // texts when they are absent
};

// A line to append.
struct CgTab::Line {
    Line(TAB_ID id, const void* name) : look(id, name) {}

    template <uint32_t Capacity>
    void SetExtra(const lq::cgtab::ByteWriter<Capacity>& bytes) {
        extra = bytes.Data();
        extralen = bytes.Size();
    }

    uint32_t total = 0;  // the length field, computed by the append
    LookTyp look;
    const unsigned char* extra = nullptr;
    uint32_t extralen = 0;
};

// A line taken apart. Points into the buffer that holds the line.
struct CgTab::LineBody {
    const unsigned char* key = nullptr;
    const unsigned char* name = nullptr;
    uint32_t nameLength = 0;  // in units of the table
    lq::cgtab::ByteCursor extra;
    const unsigned char* usr = nullptr;  // null when the user area was not read
};

// A line where it lies: in one block of the file, or a copy of its beginning.
struct CgTab::LineHead {
    LineHead() = default;
    LineHead(const LineHead&) = delete;
    LineHead& operator=(const LineHead&) = delete;

    const unsigned char* Key() const { return bytes + 4; }
    const unsigned char* Name() const { return bytes + nameAt; }

    unsigned char copy[72];
    const unsigned char* bytes;  // the length field, key, name length and name
    uint32_t read;               // how many bytes there are, perhaps more than the line's
    uint32_t length;             // as the length field says
    uint32_t nameAt;             // where in the line the name begins
    uint32_t nameLength;         // in units of the table
};

// Holds one line, or knows where it lies; short ones need no memory.
class CgTab::LineBuffer {
  public:
    LineBuffer() = default;
    ~LineBuffer() {
        if (long_) {
            lq::Release(long_);
        }
    }
    LineBuffer(const LineBuffer&) = delete;
    LineBuffer& operator=(const LineBuffer&) = delete;

    // Makes room for a copy of `size` bytes, without keeping what was there: where to, or null when
    // memory is short.
    unsigned char* Resize(uint32_t size) {
        unsigned char* room = size <= kInline ? inline_ : long_;
        if (size > kInline && size > capacity_) {
            lq::Release(long_);
            room = long_ = static_cast<unsigned char*>(lq::Allocate(size));
            capacity_ = long_ ? size : 0;
            isShort_ = isShort_ || !long_;
        }
        bytes_ = room;
        size_ = room ? size : 0;
        return room;
    }
    // Takes the line where it is, which stays there as long as this is used.
    void Refer(const unsigned char* bytes, uint32_t size) {
        bytes_ = bytes;
        size_ = size;
    }

    const unsigned char* Data() const { return bytes_; }
    uint32_t Size() const { return size_; }
    // Whether a line did not fit for lack of memory.
    bool IsShort() const { return isShort_; }

    bool hasUser = false;  // the line's user area was read with it

  private:
    static constexpr uint32_t kInline = 256;

    unsigned char inline_[kInline];
    unsigned char* long_ = nullptr;
    uint32_t capacity_ = 0;  // of `long_`
    const unsigned char* bytes_ = inline_;
    uint32_t size_ = 0;
    bool isShort_ = false;
};
