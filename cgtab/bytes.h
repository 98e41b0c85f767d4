// Little-endian fields: a writer, and a cursor that never passes the end of what it reads.
#pragma once

#include <cstdint>
#include <cstring>

#include "lq_data/line_bytes.h"

namespace lq::cgtab {

using lq::LoadU32;
using lq::StoreU32;

// Appends fields to a buffer of fixed size, which the caller has made large enough.
template <uint32_t Capacity>
class ByteWriter {
  public:
    const unsigned char* Data() const { return bytes_; }
    uint32_t Size() const { return size_; }

    void PutU8(uint32_t v) { bytes_[size_++] = static_cast<unsigned char>(v); }
    void PutU32(uint32_t v) {
        StoreU32(bytes_ + size_, v);
        size_ += 4;
    }
    void PutI32(int32_t v) { PutU32(static_cast<uint32_t>(v)); }
    void PutBytes(const void* from, uint32_t count) {
        if (count != 0) {
            std::memcpy(bytes_ + size_, from, count);
            size_ += count;
        }
    }

  private:
    unsigned char bytes_[Capacity];
    uint32_t size_ = 0;
};

// Takes fields from the front of a range. A field that is not there reads as 0 and marks the
// cursor as failed, for good.
class ByteCursor {
  public:
    ByteCursor() = default;
    ByteCursor(const unsigned char* from, uint32_t size) : at_(from), left_(size) {}

    bool HasFailed() const { return failed_; }
    // How many bytes there are.
    uint32_t Left() const { return left_; }

    // The next `count` bytes in place, or null.
    const unsigned char* Take(uint32_t count) {
        if (count > left_) {
            failed_ = true;
            left_ = 0;
            return nullptr;
        }
        const unsigned char* taken = at_;
        at_ += count;
        left_ -= count;
        return taken;
    }
    uint8_t TakeU8() {
        const unsigned char* p = Take(1);
        return p ? *p : uint8_t{0};
    }
    uint32_t TakeU16() {
        const unsigned char* p = Take(2);
        return p ? static_cast<uint32_t>(p[0] | p[1] << 8) : 0;
    }
    uint32_t TakeU32() {
        const unsigned char* p = Take(4);
        return p ? LoadU32(p) : 0;
    }
    int32_t TakeI32() { return static_cast<int32_t>(TakeU32()); }

  private:
    const unsigned char* at_ = nullptr;
    uint32_t left_ = 0;
    bool failed_ = false;
};

}  // namespace lq::cgtab
