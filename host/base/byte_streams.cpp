#include <algorithm>
#include <cerrno>

#include "host/base/stream_buffer.h"
#include "lq_data/host/base/streams.h"

using lq::host::Moved;

MEMSTREAM_A::~MEMSTREAM_A() {
    lq::Release(data_);
}

int32_t MEMSTREAM_A::GetBlock(void* buffer, int32_t count, STREAMERROR* error) {
    const int32_t moved = std::clamp(count, 0, length_ - read_);
    std::copy_n(data_ + read_, moved, static_cast<unsigned char*>(buffer));
    read_ += moved;
    return Moved(moved, count, STREAM_END, error);
}

int32_t MEMSTREAM_A::PutBlock(const void* buffer, int32_t count, STREAMERROR* error) {
    if (count <= 0) {
        return Moved(0, count, STREAM_FULL, error);
    }
    unsigned char* const grown = lq::host::Grow(data_, length_, size_, length_, count);
    if (!grown) {
        return Moved(0, count, STREAM_FULL, error);
    }
    data_ = grown;
    std::copy_n(static_cast<const unsigned char*>(buffer), count, data_ + length_);
    length_ += count;
    return Moved(count, count, STREAM_OK, error);
}

int MEMSTREAM_A::SeekRead(int32_t position, STREAMERROR* error) {
    return lq::host::Seek(read_, position, length_, error);
}

void MEMSTREAM_A::Truncate(int32_t size) {
    length_ = std::clamp(size, 0, length_);
    read_ = std::min(read_, length_);
}

FILESTREAM_A::~FILESTREAM_A() {
    Close();
}

int FILESTREAM_A::Open(const char* path, Mode mode) {
    Close();
    errno = 0;
    file_ = std::fopen(path, mode == READ ? "rbe" : "wbe");
    errno_ = file_ ? 0 : errno;
    return IsOpen();
}

int32_t FILESTREAM_A::GetBlock(void* buffer, int32_t count, STREAMERROR* error) {
    if (!file_ || count <= 0) {
        return Moved(0, count, STREAM_FAILED, error);
    }
    errno = 0;
    return Finish(std::fread(buffer, 1, static_cast<std::size_t>(count), file_), count, error);
}

int32_t FILESTREAM_A::PutBlock(const void* buffer, int32_t count, STREAMERROR* error) {
    if (!file_ || count <= 0) {
        return Moved(0, count, STREAM_FAILED, error);
    }
    errno = 0;
    return Finish(std::fwrite(buffer, 1, static_cast<std::size_t>(count), file_), count, error);
}

int FILESTREAM_A::Close() {
    if (!file_) {
        return 0;
    }
    errno = 0;
    if (std::fclose(file_) != 0) {
        Keep(errno);
    }
    file_ = nullptr;
    return errno_ == 0 ? 1 : 0;
}

// Judges a block that fread or fwrite has moved.
int32_t FILESTREAM_A::Finish(std::size_t moved, int32_t wanted, STREAMERROR* error) {
    const bool hasFailed = std::ferror(file_) != 0;
    if (hasFailed) {
        Keep(errno);
    }
    return Moved(static_cast<int32_t>(moved), wanted, hasFailed ? STREAM_FAILED : STREAM_END,
                 error);
}

void FILESTREAM_A::Keep(int number) {
    if (errno_ == 0) {
        errno_ = number != 0 ? number : EIO;
    }
}
