#include "tools/lq/input.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "tools/lq/command.h"
#include "tools/lq/image_file.h"
#include "tools/lq/messages.h"
#include "tools/lq/progress.h"

namespace lq::tool {

using host::Say;

namespace {

constexpr size_t kPiece = size_t{1} << 16;
constexpr size_t kLookedAt = 256;  // what tells the kind of a file

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

std::string DisplayName(const std::string& path) {
    return path == "-" ? "(standard input)" : path;
}

std::string ReadInput(const std::string& path, uint64_t limit) {
    InputBuffer source(path, limit);
    return ReadInput(source, path);
}

std::string ReadInput(InputBuffer& source, const std::string& path) {
    Progress progress(Say("reading {}", DisplayName(path)), source.Size());
    std::string bytes;
    bytes.reserve(source.Size() <= source.Limit() ? source.Size() : 0);
    std::vector<char> piece(kPiece);
    for (size_t got = kPiece; got == kPiece;) {
        got = static_cast<size_t>(source.sgetn(piece.data(), kPiece));
        bytes.append(piece.data(), got);
        progress.Set(bytes.size());
    }
    return bytes;
}

std::u16string DecodeInput(const std::string& path, std::string_view bytes) {
    const Progress progress(Say("decoding {}", DisplayName(path)));
    std::u16string text;
    const host::TextStatus status = host::DecodeSource(bytes, text);
    if (!status.IsFine()) {
        throw InputError(PlaceBehind(DisplayName(path), text),
                         Say("is not text: {} at byte {}",
                             host::Translated(host::Describe(status.fault)), status.offset));
    }
    return text;
}

std::u16string DecodeArgument(const std::string& argument) {
    std::u16string text;
    if (!host::DecodeUtf8(argument, text).IsFine()) {
        throw CommandError(Say("an argument is no UTF-8 text"));
    }
    return text;
}

InputKind KindOf(std::string_view beginning) {
    std::u16string text;
    // A character that is cut off at the end is none of the kind.
    host::TextEncoding encoding = host::TextEncoding::kUtf8;
    const std::string_view bytes = beginning.substr(0, kLookedAt);
    const host::TextStatus status = host::DecodeSource(bytes, text, &encoding);
    // No image is without small numbers.
    const auto isControl = [](auto c) {
        return c >= 0 && c < 0x20 && c != '\t' && c != '\n' && c != '\f' && c != '\r' && c != 0x1A;
    };
    const bool isUtf16 = status.IsFine() && (encoding == host::TextEncoding::kUtf16Le ||
                                             encoding == host::TextEncoding::kUtf16Be);
    const bool isText =
        isUtf16 ? std::ranges::none_of(text, isControl) : std::ranges::none_of(bytes, isControl);
    if (!isText && CanBeginImage(beginning)) {
        return InputKind::kImage;
    }
    const std::size_t first = text.find_first_not_of(u" \t\r\n");
    return first != text.npos && text[first] == u'<' ? InputKind::kXml : InputKind::kText;
}

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

// A pipe hands out pieces as they were written, be it a byte order mark alone.
std::string_view InputBuffer::Peek() {
    piece_.resize(kPiece);
    std::size_t count = 0;
    for (std::size_t got = 1; got != 0 && count < kLookedAt; count += got) {
        got = Read(piece_.data() + count, piece_.size() - count);
    }
    setg(piece_.data(), piece_.data(), piece_.data() + count);
    return {piece_.data(), count};
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

// First hands out what underflow has read ahead, then reads straight into the caller's memory.
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
