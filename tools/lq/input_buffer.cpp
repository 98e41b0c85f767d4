#include "tools/lq/input_buffer.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lq_data/host/text/message.h"
#include "tools/lq/command.h"
#include "tools/lq/input.h"

namespace lq::tool {

using host::Say;

namespace {

constexpr size_t kPiece = size_t{1} << 16;

// Throws CommandError; `info` is that of the opened file.
int Open(const std::string& path, struct stat& info) {
    const int descriptor =
        path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0 || fstat(descriptor, &info) != 0) {
        const int error = errno;  // making the exception may change it
        throw CommandError(
            Say("{}: cannot be opened: {}", DisplayName(path), std::strerror(error)));
    }
    return descriptor;
}

}  // namespace

InputBuffer::InputBuffer(const std::string& path, uint64_t limit)
    : name_(DisplayName(path)), limit_(limit) {
    struct stat info = {};
    descriptor_ = Open(path, info);
    if (S_ISDIR(info.st_mode)) {
        failure_ = Say("{}: is a folder, not a file", name_);
    } else if (S_ISREG(info.st_mode)) {
        size_ = static_cast<uint64_t>(info.st_size);
        CheckSize(size_);
    }
}

InputBuffer::~InputBuffer() {
    if (descriptor_ != STDIN_FILENO) {
        close(descriptor_);
    }
}

void InputBuffer::ThrowFailure() const {
    if (!failure_.empty()) {
        throw CommandError(failure_);
    }
}

void InputBuffer::CheckSize(uint64_t size) {
    if (size > limit_) {
        failure_ = Say("{}: has more than {} bytes", name_, limit_);
    }
}

// At most `size` bytes; 0 at the end.
std::size_t InputBuffer::Read(char* to, std::size_t size) {
    ThrowFailure();
    ssize_t got = 0;
    do {
        got = read(descriptor_, to, size);
    } while (got < 0 && errno == EINTR);
    if (got < 0) {
        failure_ = Say("{}: cannot be read: {}", name_, std::strerror(errno));
    } else {
        read_ += static_cast<uint64_t>(got);
        CheckSize(read_);
    }
    ThrowFailure();
    return static_cast<std::size_t>(got);
}

InputBuffer::int_type InputBuffer::underflow() {
    piece_.resize(kPiece);
    const std::size_t got = Read(piece_.data(), piece_.size());
    setg(piece_.data(), piece_.data(), piece_.data() + got);
    return got == 0 ? traits_type::eof() : traits_type::to_int_type(piece_[0]);
}

// Straight to where the bytes are wanted, behind what underflow has left.
std::streamsize InputBuffer::xsgetn(char* to, std::streamsize count) {
    std::streamsize done = std::min<std::streamsize>(count, egptr() - gptr());
    std::copy_n(gptr(), done, to);
    gbump(static_cast<int>(done));
    while (done < count) {
        const std::size_t got = Read(to + done, static_cast<std::size_t>(count - done));
        if (got == 0) {
            break;
        }
        done += static_cast<std::streamsize>(got);
    }
    return done;
}

}  // namespace lq::tool
