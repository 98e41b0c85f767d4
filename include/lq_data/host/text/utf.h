// Between bytes and 16-bit text, at the system's edges: source files, the command line, paths.
//
// Decoding is strict: the first malformed sequence ends it and is reported with its place. Encoding
// always succeeds: a lone surrogate becomes the replacement character U+FFFD.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "lq_data/export.h"

namespace lq::host {

enum class TextFault : std::uint8_t {
    kNone,
    kStrayByte,      // UTF-8: a continuation byte without a beginning, or a byte that never occurs
    kBrokenOff,      // UTF-8: continuation bytes are missing
    kOverlong,       // UTF-8: a longer sequence than the character needs
    kSurrogate,      // UTF-8: a surrogate written as a character
    kTooLarge,       // UTF-8: beyond U+10FFFF
    kLoneSurrogate,  // UTF-16: half of a pair
    kOddLength,      // UTF-16: half a character at the end
    kNoCharacter,    // windows-1252, Shift_JIS: these bytes are none
};

// One sentence without a full stop, in English: Translated has it in the user's language.
LQ_DATA_API const char* Describe(TextFault fault) noexcept;

struct TextStatus {
    TextFault fault = TextFault::kNone;
    std::size_t offset = 0;  // of the faulty sequence's first byte in the input; its size when fine

    bool IsFine() const noexcept { return fault == TextFault::kNone; }
};

enum class TextEncoding : std::uint8_t {
    kUtf8,
    kUtf8WithMark,
    kUtf16Le,
    kUtf16Be,
    kWindows1252,
    kShiftJis,
};

// Replaces `text` by the decoded bytes; on a fault by what precedes it.
LQ_DATA_API TextStatus DecodeUtf8(std::string_view bytes, std::u16string& text);

// The same for a source file of any encoding. A byte order mark decides and is dropped; without one
// the bytes are UTF-8, unless each of the first characters has exactly one zero byte (UTF-16).
// `encoding` may be null.
LQ_DATA_API TextStatus DecodeSource(std::string_view bytes, std::u16string& text,
                                    TextEncoding* encoding = nullptr);

// The same for a text in one of the two code pages, whatever its bytes look like.
LQ_DATA_API TextStatus DecodeCodePage(std::string_view bytes, TextEncoding codePage,
                                      std::u16string& text);

// The same as DecodeSource, and where that finds no UTF-8 in what has no control characters, in the
// code pages: first in that of the language (code page 932: Shift_JIS), then in the other one. The
// fault that remains is that of UTF-8.
LQ_DATA_API TextStatus DecodeAnySource(std::string_view bytes, std::u16string& text);

// The text in UTF-8.
LQ_DATA_API std::string EncodeUtf8(std::u16string_view text);

// The two directions for terminated texts and buffers of the caller's (`size` includes the
// terminator and must not be 0), without allocation. Malformed bytes become replacement characters.
// A text that does not fit is cut between characters, and the result is false.
LQ_DATA_API bool CopyUtf8ToUtf16(const char* source, char16_t* buffer, std::size_t size) noexcept;
// Copies the text in UTF-8, terminated; false when it does not fit.
LQ_DATA_API bool CopyUtf16ToUtf8(const char16_t* source, char* buffer, std::size_t size) noexcept;

}  // namespace lq::host
