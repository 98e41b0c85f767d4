// Reading the files that commands are given; "-" is standard input.
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

    // What the input begins with, enough for KindOf; to be called before anything is read.
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

// The name of an input in messages: the path, or "(standard input)".
std::string DisplayName(const std::string& path);

// The whole file, or what is left of it. Throws CommandError as an InputBuffer does.
std::string ReadInput(const std::string& path, uint64_t limit);
std::string ReadInput(InputBuffer& source, const std::string& path);

// The text of a source file: UTF-8 with or without byte order mark, or UTF-16. Throws CommandError
// with the place of the first byte that is no text.
std::u16string DecodeInput(const std::string& path, std::string_view bytes);

// The text of an argument. Throws CommandError when it is no UTF-8.
std::u16string DecodeArgument(const std::string& argument);

// What a file holds, as its first bytes tell.
enum class InputKind { kXml, kText, kImage };
InputKind KindOf(std::string_view beginning);

}  // namespace lq::tool
