#include "tools/lq/input.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

#include "host/text/utf.h"
#include "tools/lq/command.h"

namespace lq::tool {

namespace {

constexpr size_t kPiece = size_t{1} << 16;

std::string ReadAll(std::FILE* file, const std::string& name) {
    std::string bytes;
    for (;;) {
        const size_t before = bytes.size();
        bytes.resize(before + kPiece);
        const size_t got = std::fread(bytes.data() + before, 1, kPiece, file);
        bytes.resize(before + got);
        if (got < kPiece) {
            if (std::ferror(file) != 0) {
                throw CommandError(name + ": cannot be read: " + std::strerror(errno));
            }
            return bytes;
        }
    }
}

}  // namespace

std::string DisplayName(const std::string& path) {
    return path == "-" ? "(standard input)" : path;
}

void CheckReadable(const std::string& path) {
    struct stat info = {};
    if (stat(path.c_str(), &info) != 0) {
        throw CommandError(path + ": cannot be opened: " + std::strerror(errno));
    }
    if (S_ISDIR(info.st_mode)) {
        throw CommandError(path + ": is a folder, not a file");
    }
    if (access(path.c_str(), R_OK) != 0) {
        throw CommandError(path + ": cannot be opened: " + std::strerror(errno));
    }
}

std::string ReadInput(const std::string& path) {
    if (path == "-") {
        return ReadAll(stdin, DisplayName(path));
    }
    CheckReadable(path);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                               &std::fclose);
    if (!file) {
        throw CommandError(path + ": cannot be opened: " + std::strerror(errno));
    }
    return ReadAll(file.get(), path);
}

std::u16string DecodeInput(const std::string& path, std::string_view bytes) {
    std::u16string text;
    const host::TextStatus status = host::DecodeSource(bytes, text);
    if (!status.IsFine()) {
        throw CommandError(DisplayName(path) + ": is not text: " + host::Describe(status.fault) +
                           " at byte " + std::to_string(status.offset));
    }
    return text;
}

std::u16string DecodeArgument(const std::string& argument) {
    std::u16string text;
    if (!host::DecodeUtf8(argument, text).IsFine()) {
        throw CommandError("an argument is no UTF-8 text");
    }
    return text;
}

bool LooksLikeXml(std::string_view bytes) {
    const auto at = [bytes](size_t i) {
        return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0u;
    };
    const bool hasMark = (at(0) == 0xEF && at(1) == 0xBB && at(2) == 0xBF) ||
                         (at(0) == 0xFF && at(1) == 0xFE && at(2) == '<') ||
                         (at(0) == 0xFE && at(1) == 0xFF && at(3) == '<');
    const bool isUtf16 = (at(0) == '<' && at(1) == 0 && at(2) != 0 && at(3) == 0) ||
                         (at(0) == 0 && at(1) == '<' && at(2) == 0 && at(3) != 0);
    const size_t first = bytes.find_first_not_of(" \t\r\n");
    const bool isUtf8 = first != std::string_view::npos && bytes[first] == '<' &&
                        (first > 0 || (at(1) != 0 && at(2) != 0 && at(3) != 0));
    return hasMark || isUtf16 || isUtf8;
}

}  // namespace lq::tool
