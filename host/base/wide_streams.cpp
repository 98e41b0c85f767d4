#include <algorithm>
#include <cstring>

#include "host/base/stream_buffer.h"
#include "lq_data/env/lq_base.h"

using lq::host::Moved;
using lq::host::Report;

MEMSTREAM_W::MEMSTREAM_W(const char16_t* buffer, int32_t size, int32_t length, STREAMERROR* error)
    : source_(buffer),
      size_(buffer ? std::max(size, 0) : 0),
      length_(std::clamp(length, 0, size_)),
      write_(length_) {
    Report(error, STREAM_OK);
}

MEMSTREAM_W::MEMSTREAM_W(char16_t* buffer, int32_t size, int32_t length, STREAMERROR* error)
    : MEMSTREAM_W(static_cast<const char16_t*>(buffer), size, length, error) {
    target_ = buffer;
}

int32_t MEMSTREAM_W::GetBlock(char16_t* buffer, int32_t count, STREAMERROR* error) {
    const int32_t moved = std::clamp(count, 0, length_ - read_);
    std::copy_n(source_ + read_, moved, buffer);
    read_ += moved;
    return Moved(moved, count, STREAM_END, error);
}

int32_t MEMSTREAM_W::PutBlock(const char16_t* buffer, int32_t count, STREAMERROR* error) {
    if (!target_) {
        return Moved(0, count, STREAM_FAILED, error);
    }
    const int32_t moved = std::clamp(count, 0, size_ - write_);
    std::copy_n(buffer, moved, target_ + write_);
    write_ += moved;
    length_ = std::max(length_, write_);
    return Moved(moved, count, STREAM_FULL, error);
}

int MEMSTREAM_W::SeekRead(int32_t position, STREAMERROR* error) {
    return lq::host::Seek(read_, position, length_, error);
}

int MEMSTREAM_W::SeekWrite(int32_t position, STREAMERROR* error) {
    return lq::host::Seek(write_, position, length_, error);
}

HEAPSTREAM_W::HEAPSTREAM_W() : MEMSTREAM_W(static_cast<char16_t*>(nullptr), 0, 0, nullptr) {}

HEAPSTREAM_W::~HEAPSTREAM_W() {
    lq::Release(target_);
}

int32_t HEAPSTREAM_W::PutBlock(const char16_t* buffer, int32_t count, STREAMERROR* error) {
    if (count <= 0) {
        return Moved(0, count, STREAM_FULL, error);
    }
    char16_t* const grown = lq::host::Grow(target_, length_, size_, write_, count);
    if (!grown) {
        return Moved(0, count, STREAM_FULL, error);
    }
    target_ = grown;
    source_ = grown;
    return MEMSTREAM_W::PutBlock(buffer, count, error);
}
