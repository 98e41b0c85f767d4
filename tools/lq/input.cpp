#include "tools/lq/input.h"

#include <vector>

#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "tools/lq/command.h"
#include "tools/lq/input_buffer.h"
#include "tools/lq/messages.h"
#include "tools/lq/progress.h"

namespace lq::tool {

using host::Say;

namespace {

constexpr std::streamsize kPiece = 1 << 16;

}  // namespace

std::string DisplayName(const std::string& path) {
    return path == "-" ? "(standard input)" : path;
}

std::string ReadInput(const std::string& path, uint64_t limit) {
    InputBuffer source(path, limit);
    Progress progress(Say("reading {}", DisplayName(path)), source.Size());
    std::string bytes;
    bytes.reserve(source.Size() <= limit ? source.Size() : 0);
    std::vector<char> piece(kPiece);
    for (std::streamsize got = kPiece; got == kPiece;) {
        got = source.sgetn(piece.data(), kPiece);
        bytes.append(piece.data(), static_cast<size_t>(got));
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
