#include "tools/lq/input_buffer.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/text/message.h"
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
        throw CommandError(
            Say("{}: cannot be opened: {}", DisplayName(path), std::strerror(errno)));
    }
    return descriptor;
}

}  // namespace

InputBuffer::InputBuffer(const std::string& path, uint64_t limit)
    : name_(DisplayName(path)), limit_(limit), piece_(kPiece) {
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

InputBuffer::int_type InputBuffer::underflow() {
    ThrowFailure();
    ssize_t got = 0;
    do {
        got = read(descriptor_, piece_.data(), piece_.size());
    } while (got < 0 && errno == EINTR);
    if (got < 0) {
        failure_ = Say("{}: cannot be read: {}", name_, std::strerror(errno));
    } else {
        read_ += static_cast<uint64_t>(got);
        CheckSize(read_);
    }
    ThrowFailure();
    setg(piece_.data(), piece_.data(), piece_.data() + got);
    return got == 0 ? traits_type::eof() : traits_type::to_int_type(piece_[0]);
}

}  // namespace lq::tool
