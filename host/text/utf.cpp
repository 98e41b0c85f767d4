#include "lq_data/host/text/utf.h"

#include <algorithm>
#include <cstring>

#include "lq_data/host/text/message.h"

namespace lq::host {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// One character of the input, or a fault and the number of bytes that belong to it.
struct Decoded {
    char32_t value;
    std::size_t length;
    TextFault fault = TextFault::kNone;
};

// The well-formed sequences of UTF-8 by first byte. Only the second byte's range varies; what lies
// outside it, yet is a continuation byte, has its own fault.
struct Utf8Row {
    unsigned char first, last;  // first byte
    unsigned char length;       // of the sequence
    unsigned char low, high;    // second byte
    TextFault outside;
};
constexpr Utf8Row kUtf8Rows[] = {
    {0xC0, 0xC1, 2, 0xFF, 0x00, TextFault::kOverlong},
    {0xC2, 0xDF, 2, 0x80, 0xBF, TextFault::kNone},
    {0xE0, 0xE0, 3, 0xA0, 0xBF, TextFault::kOverlong},
    {0xE1, 0xEC, 3, 0x80, 0xBF, TextFault::kNone},
    {0xED, 0xED, 3, 0x80, 0x9F, TextFault::kSurrogate},
    {0xEE, 0xEF, 3, 0x80, 0xBF, TextFault::kNone},
    {0xF0, 0xF0, 4, 0x90, 0xBF, TextFault::kOverlong},
    {0xF1, 0xF3, 4, 0x80, 0xBF, TextFault::kNone},
    {0xF4, 0xF4, 4, 0x80, 0x8F, TextFault::kTooLarge},
    {0xF5, 0xF7, 4, 0xFF, 0x00, TextFault::kTooLarge},
};

const Utf8Row* FindRow(unsigned char first) noexcept {
    for (const Utf8Row& row : kUtf8Rows) {
        if (first >= row.first && first <= row.last) {
            return &row;
        }
    }
    return nullptr;
}

bool IsContinuation(unsigned char byte) noexcept {
    return (byte & 0xC0u) == 0x80u;
}

// `bytes` must not be empty.
Decoded NextOfUtf8(std::string_view bytes) noexcept {
    const auto byteAt = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char first = byteAt(0);
    if (first < 0x80) {
        return {first, 1};
    }
    const Utf8Row* row = FindRow(first);
    if (!row) {
        return {kReplacement, 1, TextFault::kStrayByte};
    }
    if (bytes.size() < 2 || !IsContinuation(byteAt(1))) {
        return {kReplacement, 1, TextFault::kBrokenOff};
    }
    if (byteAt(1) < row->low || byteAt(1) > row->high) {
        return {kReplacement, 1, row->outside};
    }
    char32_t value = first & (0x7Fu >> row->length);
    for (std::size_t i = 1; i < row->length; ++i) {
        if (i == bytes.size() || !IsContinuation(byteAt(i))) {
            return {kReplacement, i, TextFault::kBrokenOff};
        }
        value = value << 6 | (byteAt(i) & 0x3Fu);
    }
    return {value, row->length};
}

bool IsHighSurrogate(char32_t c) noexcept {
    return c >= 0xD800 && c <= 0xDBFF;
}
bool IsLowSurrogate(char32_t c) noexcept {
    return c >= 0xDC00 && c <= 0xDFFF;
}

// The character that begins with `unit`, behind which `next` stands (0 at the end of the text). Its
// length is in units.
Decoded NextOfUtf16(char16_t unit, char16_t next) noexcept {
    if (IsHighSurrogate(unit) && IsLowSurrogate(next)) {
        return {0x10000u + ((unit & 0x3FFu) << 10) + (next & 0x3FFu), 2};
    }
    if (IsHighSurrogate(unit) || IsLowSurrogate(unit)) {
        return {kReplacement, 1, TextFault::kLoneSurrogate};
    }
    return {unit, 1};
}

// Writes the units of a character; returns their number.
std::size_t ToUtf16(char32_t c, char16_t (&units)[2]) noexcept {
    if (c < 0x10000) {
        units[0] = static_cast<char16_t>(c);
        return 1;
    }
    units[0] = static_cast<char16_t>(0xD7C0u + (c >> 10));
    units[1] = static_cast<char16_t>(0xDC00u + (c & 0x3FFu));
    return 2;
}

// Writes the bytes of a character; returns their number.
std::size_t ToUtf8(char32_t c, char (&bytes)[4]) noexcept {
    constexpr char32_t kLimits[] = {0x80, 0x800, 0x10000};
    constexpr unsigned kLeads[] = {0x00, 0xC0, 0xE0, 0xF0};
    std::size_t more = 0;
    while (more < 3 && c >= kLimits[more]) {
        ++more;
    }
    bytes[0] = static_cast<char>(kLeads[more] | c >> (6 * more));
    for (std::size_t i = 1; i <= more; ++i) {
        bytes[i] = static_cast<char>(0x80u | (c >> (6 * (more - i)) & 0x3Fu));
    }
    return more + 1;
}

// Appends the ASCII characters that begin at `at`, most of a source, in one go; returns their
// number.
std::size_t AppendAscii(std::string_view bytes, std::size_t at, std::u16string& text) {
    std::size_t end = at;
    while (end < bytes.size() && static_cast<unsigned char>(bytes[end]) < 0x80) {
        ++end;
    }
    const std::size_t old = text.size();
    text.resize(old + (end - at));
    std::copy(bytes.data() + at, bytes.data() + end, text.data() + old);
    return end - at;
}

TextStatus AppendUtf8(std::string_view bytes, std::size_t start, std::u16string& text) {
    for (std::size_t at = start; at < bytes.size();) {
        at += AppendAscii(bytes, at, text);
        if (at == bytes.size()) {
            break;
        }
        const Decoded next = NextOfUtf8(bytes.substr(at));
        if (next.fault != TextFault::kNone) {
            return {next.fault, at};
        }
        char16_t units[2];
        text.append(units, ToUtf16(next.value, units));
        at += next.length;
    }
    return {TextFault::kNone, bytes.size()};
}

TextStatus AppendUtf16(std::string_view bytes, std::size_t start, bool bigEndian,
                       std::u16string& text) {
    const auto unitAt = [&](std::size_t at) {
        if (bytes.size() - at < 2) {
            return u'\0';
        }
        const auto a = static_cast<unsigned char>(bytes[at]);
        const auto b = static_cast<unsigned char>(bytes[at + 1]);
        return static_cast<char16_t>(bigEndian ? a << 8 | b : b << 8 | a);
    };
    std::size_t at = start;
    while (bytes.size() - at >= 2) {
        const char16_t unit = unitAt(at);
        const char16_t following = unitAt(at + 2);
        const Decoded next = NextOfUtf16(unit, following);
        if (next.fault != TextFault::kNone) {
            return {next.fault, at};
        }
        text += unit;
        if (next.length == 2) {
            text += following;
        }
        at += 2 * next.length;
    }
    return {at == bytes.size() ? TextFault::kNone : TextFault::kOddLength, at};
}

struct Mark {
    std::string_view bytes;
    TextEncoding encoding;
};
constexpr Mark kMarks[] = {
    {"\xEF\xBB\xBF", TextEncoding::kUtf8WithMark},
    {"\xFF\xFE", TextEncoding::kUtf16Le},
    {"\xFE\xFF", TextEncoding::kUtf16Be},
};

// For bytes without a mark: plain source text in UTF-16 shows a zero byte in each of its first
// characters, always on the same side; no UTF-8 source begins so.
TextEncoding GuessEncoding(std::string_view bytes) noexcept {
    constexpr std::size_t kLookedAt = 4;
    const std::size_t size = bytes.size() < kLookedAt ? bytes.size() & ~std::size_t{1} : kLookedAt;
    bool little = size != 0;
    bool big = size != 0;
    for (std::size_t at = 0; at < size; at += 2) {
        little = little && bytes[at] != 0 && bytes[at + 1] == 0;
        big = big && bytes[at] == 0 && bytes[at + 1] != 0;
    }
    return little ? TextEncoding::kUtf16Le : big ? TextEncoding::kUtf16Be : TextEncoding::kUtf8;
}

}  // namespace

const char* Describe(TextFault fault) noexcept {
    switch (fault) {
        case TextFault::kNone:
            return Message("the text is well formed");
        case TextFault::kStrayByte:
            return Message("this byte cannot begin a UTF-8 character");
        case TextFault::kBrokenOff:
            return Message("the UTF-8 character is broken off");
        case TextFault::kOverlong:
            return Message("the UTF-8 character is longer than it needs to be");
        case TextFault::kSurrogate:
            return Message("a surrogate is no UTF-8 character");
        case TextFault::kTooLarge:
            return Message("the UTF-8 character is beyond U+10FFFF");
        case TextFault::kLoneSurrogate:
            return Message("half of a UTF-16 surrogate pair");
        case TextFault::kOddLength:
            return Message("half a UTF-16 character at the end");
        case TextFault::kNoCharacter:
            return Message("these bytes are no character of the code page");
    }
    return "";
}

TextStatus DecodeUtf8(std::string_view bytes, std::u16string& text) {
    text.clear();
    return AppendUtf8(bytes, 0, text);
}

TextStatus DecodeSource(std::string_view bytes, std::u16string& text, TextEncoding* encoding) {
    text.clear();
    TextEncoding found = GuessEncoding(bytes);
    std::size_t start = 0;
    for (const Mark& mark : kMarks) {
        if (bytes.starts_with(mark.bytes)) {
            found = mark.encoding;
            start = mark.bytes.size();
        }
    }
    if (encoding) {
        *encoding = found;
    }
    if (found == TextEncoding::kUtf16Le || found == TextEncoding::kUtf16Be) {
        return AppendUtf16(bytes, start, found == TextEncoding::kUtf16Be, text);
    }
    return AppendUtf8(bytes, start, text);
}

std::string EncodeUtf8(std::u16string_view text) {
    char16_t all = 0;
    for (const char16_t c : text) {
        all = static_cast<char16_t>(all | c);
    }
    if (all < 0x80) {  // as most names are
        return {text.begin(), text.end()};
    }
    std::string bytes;
    for (std::size_t at = 0; at < text.size();) {
        const char16_t following = at + 1 < text.size() ? text[at + 1] : u'\0';
        const Decoded next = NextOfUtf16(text[at], following);
        char encoded[4];
        bytes.append(encoded, ToUtf8(next.value, encoded));
        at += next.length;
    }
    return bytes;
}

bool CopyUtf8ToUtf16(const char* source, char16_t* buffer, std::size_t size) noexcept {
    std::string_view rest(source);
    std::size_t used = 0;
    while (!rest.empty()) {
        const Decoded next = NextOfUtf8(rest);
        char16_t units[2];
        const std::size_t count = ToUtf16(next.value, units);
        if (count >= size - used) {
            break;
        }
        std::memcpy(buffer + used, units, count * sizeof(char16_t));
        used += count;
        rest.remove_prefix(next.length);
    }
    buffer[used] = 0;
    return rest.empty();
}

bool CopyUtf16ToUtf8(const char16_t* source, char* buffer, std::size_t size) noexcept {
    std::size_t used = 0;
    while (*source != 0) {
        const Decoded next = NextOfUtf16(source[0], source[1]);
        char encoded[4];
        const std::size_t count = ToUtf8(next.value, encoded);
        if (count >= size - used) {
            break;
        }
        std::memcpy(buffer + used, encoded, count);
        used += count;
        source += next.length;
    }
    buffer[used] = 0;
    return *source == 0;
}

}  // namespace lq::host
