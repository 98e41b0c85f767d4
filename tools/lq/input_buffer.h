// The bytes of an input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

namespace lq::tool {

// How much the commands read: what they make of it, all in memory, is a multiple.
inline constexpr uint64_t kMaxText = uint64_t{64} << 20;      // sources, constants
inline constexpr uint64_t kMaxProject = uint64_t{256} << 20;  // projects, images

// A file, or standard input for "-". The constructor throws CommandError when it cannot be opened.
// Reading throws that when the input cannot be read, is a folder, or has more than `limit` bytes; a
// stream on the buffer turns it into its bad state, and ThrowFailure throws it again.
class InputBuffer : public std::streambuf {
  public:
    InputBuffer(const std::string& path, uint64_t limit);
    ~InputBuffer() override;
    InputBuffer(const InputBuffer&) = delete;
    InputBuffer& operator=(const InputBuffer&) = delete;

    // Of the whole file; 0 when it is not known, as of a pipe.
    uint64_t Size() const { return size_; }
    uint64_t Limit() const { return limit_; }

    void ThrowFailure() const;

    // What the input begins with, as much as is read at once; to be called before anything is read.
    std::string_view Peek();

  protected:
    int_type underflow() override;
    std::streamsize xsgetn(char* to, std::streamsize count) override;

  private:
    void CheckSize(uint64_t size);
    std::size_t Read(char* to, std::size_t size);

    std::string name_;
    uint64_t limit_;
    int descriptor_ = -1;
    uint64_t size_ = 0;
    uint64_t read_ = 0;
    std::string failure_;
    std::vector<char> piece_;
};

}  // namespace lq::tool
