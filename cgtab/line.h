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
    static constexpr uint8_t kWideLength = 1;   // the name length field is two bytes
    static constexpr uint8_t kIgnoreCase = 2;   // of ASCII letters
    static constexpr uint8_t kLengthInKey = 4;  // the name length field is part of `key` already

    // The key of a table's line by name, without its fixed bytes.
    LookTyp(TAB_ID id, const void* text) : name(text) {
        const lq::cgtab::TableTraits& traits = lq::cgtab::TraitsOf(id);
        if (traits.nameLenBytes == 2) {
            flags |= kWideLength;
        }
        if (traits.ignoresCase) {
            flags |= kIgnoreCase;
        }
    }

    void AddKey(uint32_t byte) { key[keylen++] = static_cast<unsigned char>(byte); }

    uint32_t NameLenBytes() const { return name ? 1u + (flags & kWideLength) : 0u; }
    // The name length of a completed key, in units of the table.
    uint32_t NameLength() const {
        uint32_t length = 0;
        for (uint32_t i = keylen; i > keylen - NameLenBytes(); --i) {
            length = length << 8 | key[i - 1];
        }
        return length;
    }

    unsigned char key[6] = {};
    uint32_t keylen = 0;
    uint8_t flags = 0;
    const void* name;  // terminated text, or bytes in the debug table; null for none
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

// The beginning of a line, as it lies in the file.
struct CgTab::LineHead {
    static constexpr uint32_t kShortName = 32;  // characters of a name that are in it

    const unsigned char* Key() const { return bytes + 4; }
    const unsigned char* Name() const { return bytes + nameAt; }

    unsigned char bytes[4 + 4 + 2 * kShortName];  // length, key and name length, name
    uint32_t read;                                // how many of them there are
    uint32_t length;                              // as the length field says
    uint32_t nameAt;                              // where in the line the name begins
    uint32_t nameLength;                          // in units of the table
};

// Holds one line; lines of up to 64 bytes need no memory.
class CgTab::LineBuffer {
  public:
    LineBuffer() = default;
    ~LineBuffer() {
        if (bytes_ != inline_) {
            lq::Release(bytes_);
        }
    }
    LineBuffer(const LineBuffer&) = delete;
    LineBuffer& operator=(const LineBuffer&) = delete;

    // Makes room for a line of `size` bytes, without keeping what was there. False when memory is
    // short.
    bool Resize(uint32_t size) {
        if (size > capacity_) {
            auto* block = static_cast<unsigned char*>(lq::Allocate(size));
            if (!block) {
                isShort_ = true;
                return false;
            }
            if (bytes_ != inline_) {
                lq::Release(bytes_);
            }
            bytes_ = block;
            capacity_ = size;
        }
        size_ = size;
        return true;
    }

    unsigned char* Data() { return bytes_; }
    const unsigned char* Data() const { return bytes_; }
    uint32_t Size() const { return size_; }
    // Whether a line did not fit for lack of memory.
    bool IsShort() const { return isShort_; }

    bool hasUser = false;  // the line's user area was read with it

  private:
    static constexpr uint32_t kInline = 64;

    unsigned char inline_[kInline];
    unsigned char* bytes_ = inline_;
    uint32_t capacity_ = kInline;
    uint32_t size_ = 0;
    bool isShort_ = false;
};
