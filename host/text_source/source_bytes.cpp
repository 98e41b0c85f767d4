#include "host/text_source/source_bytes.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <istream>
#include <sys/mman.h>
#include <unistd.h>

namespace lq::host::text_source {

namespace {

using Pieces = std::deque<std::string>;

Pieces ReadAll(std::istream& source) {
    constexpr std::size_t kFirst = std::size_t{1} << 16;  // most files have less
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    Pieces pieces;
    do {
        std::string& piece = pieces.emplace_back(pieces.empty() ? kFirst : kPiece, '\0');
        source.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        piece.resize(static_cast<std::size_t>(source.gcount()));
    } while (source);
    return pieces;
}

// Moves what may be the beginning of a character to the next piece.
void EndWithCharacter(std::string& piece, std::string& next) {
    const auto byteAt = [&piece](std::size_t at) { return static_cast<unsigned char>(piece[at]); };
    constexpr std::size_t kMostBehind = 3;
    std::size_t end = piece.size();
    while (end != 0 && piece.size() - end < kMostBehind && (byteAt(end - 1) & 0xC0u) == 0x80u) {
        --end;
    }
    end -= end != 0 && byteAt(end - 1) >= 0xC0u ? 1 : 0;
    next.insert(0, piece, end);
    piece.resize(end);
}

// Whether nothing at its beginning says that a source is in another encoding than UTF-8.
bool BeginsAsUtf8(const std::string& piece) {
    constexpr std::size_t kLookedAt = 4;
    TextEncoding encoding = TextEncoding::kUtf8;
    std::u16string text;
    DecodeSource(std::string_view(piece).substr(0, kLookedAt), text, &encoding);
    return encoding == TextEncoding::kUtf8;
}

// Decodes and gives back the pieces up to one that is no UTF-8.
void TakeUtf8(Pieces& pieces, std::u16string& text) {
    for (std::u16string part; !pieces.empty(); pieces.pop_front()) {
        if (pieces.size() > 1) {
            EndWithCharacter(pieces[0], pieces[1]);
        }
        if (!DecodeUtf8(pieces[0], part).IsFine()) {
            return;
        }
        text += part;
    }
}

}  // namespace

TextStatus SourceText::Read(std::istream& source, std::optional<TextEncoding> codePage) {
    Pieces pieces = ReadAll(source);
    std::size_t size = 0;
    for (const std::string& piece : pieces) {
        size += piece.size();
    }
    text_.clear();
    text_.reserve(size);
    if (!codePage && pieces.size() > 1 && BeginsAsUtf8(pieces.front())) {
        TakeUtf8(pieces, text_);
        if (pieces.empty()) {
            return {TextFault::kNone, size};
        }
    }
    std::string bytes = EncodeUtf8(text_);  // as they were
    bytes.reserve(size);
    for (; !pieces.empty(); pieces.pop_front()) {
        bytes += pieces.front();
    }
    return codePage ? DecodeCodePage(bytes, *codePage, text_) : DecodeAnySource(bytes, text_);
}

void SourceText::Forget(std::size_t at) {
    constexpr std::size_t kLeast = std::size_t{1} << 20;
    if (at < forgotten_ + kLeast) {
        return;
    }
    // The pages that hold nothing else.
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto addressOf = [this](std::size_t index) {
        return reinterpret_cast<std::uintptr_t>(text_.data() + index);
    };
    const std::uintptr_t begin = (addressOf(forgotten_) + page - 1) / page * page;
    const std::uintptr_t end = addressOf(at) / page * page;
    madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);
    forgotten_ = at;
}

}  // namespace lq::host::text_source
