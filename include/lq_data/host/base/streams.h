// Streams of bytes: over memory and over files.
#pragma once

#include <cstdint>
#include <cstdio>

#include "lq_data/env/lq_base.h"

// Over a growing buffer of its own. Positions are in bytes, below 2^31.
class LQ_DATA_API MEMSTREAM_A : public STREAM_A {
  public:
    MEMSTREAM_A() = default;
    ~MEMSTREAM_A() override;
    MEMSTREAM_A(const MEMSTREAM_A&) = delete;
    MEMSTREAM_A& operator=(const MEMSTREAM_A&) = delete;

    // Reads from the reading position, initially 0.
    int32_t GetBlock(void* buffer, int32_t count, STREAMERROR* error) override;
    // Writes behind the last byte: all of the block or, when memory is short, nothing.
    int32_t PutBlock(const void* buffer, int32_t count, STREAMERROR* error) override;

    // Where the next byte is read.
    int32_t TellRead() const { return read_; }
    // 1 when the position (0 to the size) was taken, else 0.
    int SeekRead(int32_t position, STREAMERROR* error);
    // Cuts the content to `size` bytes; a longer size changes nothing.
    void Truncate(int32_t size);

    // The content, valid until the next PutBlock; null when nothing was ever written.
    unsigned char* GetData() { return data_; }
    // The same of a stream that is only read.
    const unsigned char* GetData() const { return data_; }
    // Its size.
    int32_t GetSize() const { return length_; }

  private:
    unsigned char* data_ = nullptr;
    int32_t size_ = 0;
    int32_t length_ = 0;
    int32_t read_ = 0;
};

// Over a file, read from its beginning or written anew. After a failure GetErrno says why, until
// the next Open; reading past the end is no failure.
class LQ_DATA_API FILESTREAM_A : public STREAM_A {
  public:
    enum Mode { READ, WRITE };

    FILESTREAM_A() = default;
    // Closes, without a word about failures: whoever writes calls Close.
    ~FILESTREAM_A() override;
    FILESTREAM_A(const FILESTREAM_A&) = delete;
    FILESTREAM_A& operator=(const FILESTREAM_A&) = delete;

    // Opens `path` (as the file system spells it), closing a file that is open; WRITE creates the
    // file or empties it. 1 for success.
    int Open(const char* path, Mode mode);
    // 1 when a file is open.
    int IsOpen() const { return file_ ? 1 : 0; }

    int32_t GetBlock(void* buffer, int32_t count, STREAMERROR* error) override;
    int32_t PutBlock(const void* buffer, int32_t count, STREAMERROR* error) override;

    // 1 when every byte has gone to the system and nothing has failed since Open.
    int Close();

    // The system's error number of the first failure since Open; 0 without one.
    int GetErrno() const { return errno_; }

  private:
    int32_t Finish(std::size_t moved, int32_t wanted, STREAMERROR* error);
    void Keep(int number);

    std::FILE* file_ = nullptr;
    int errno_ = 0;
};
