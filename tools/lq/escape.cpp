#include "tools/lq/escape.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>

namespace lq::tool {

namespace {

// What a reader does not see, but a terminal acts upon, or takes out of a name that looks like
// another one: the general categories Cc, Cf, Cs, Zl and Zp (DerivedGeneralCategory.txt), and the
// properties Default_Ignorable_Code_Point (DerivedCoreProperties.txt) and Noncharacter_Code_Point
// (PropList.txt) of Unicode 16.0. The last two code points of each plane are not in the table.
constexpr struct Range {
    uint32_t first, last;
} kUnseen[] = {
    {0x0000, 0x001F},   {0x007F, 0x009F},   {0x00AD, 0x00AD},   {0x034F, 0x034F},
    {0x0600, 0x0605},   {0x061C, 0x061C},   {0x06DD, 0x06DD},   {0x070F, 0x070F},
    {0x0890, 0x0891},   {0x08E2, 0x08E2},   {0x115F, 0x1160},   {0x17B4, 0x17B5},
    {0x180B, 0x180F},   {0x200B, 0x200F},   {0x2028, 0x202E},   {0x2060, 0x206F},
    {0x3164, 0x3164},   {0xD800, 0xDFFF},   {0xFDD0, 0xFDEF},   {0xFE00, 0xFE0F},
    {0xFEFF, 0xFEFF},   {0xFFA0, 0xFFA0},   {0xFFF0, 0xFFFB},   {0x110BD, 0x110BD},
    {0x110CD, 0x110CD}, {0x13430, 0x1343F}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A},
    {0xE0000, 0xE0FFF},
};

bool IsUnseen(uint32_t code) {
    const auto* const range = std::partition_point(
        std::begin(kUnseen), std::end(kUnseen), [code](const Range& r) { return r.last < code; });
    return (code & 0xFFFE) == 0xFFFE || (range != std::end(kUnseen) && range->first <= code);
}

// The first character of a text, or its first byte where that begins no character.
struct Front {
    std::size_t bytes = 1;
    uint32_t code = 0;
    bool isCharacter = true;  // else the code is that of a byte that is no UTF-8
};

Front FrontOf(std::string_view text) {
    const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const uint32_t lead = byte(0);
    if (lead < 0x80) {
        return {1, lead};
    }
    // The halves of surrogate pairs, which UTF-8 does not permit, are taken as the characters of
    // three bytes that they look like, so that they become escapes as such.
    const std::size_t bytes = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    constexpr uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    uint32_t code = lead & (0x7Fu >> bytes);
    bool isCharacter = lead >= 0xC0 && lead < 0xF8 && text.size() >= bytes;
    for (std::size_t i = 1; isCharacter && i < bytes; ++i) {
        isCharacter = (byte(i) & 0xC0) == 0x80;
        code = code << 6 | (byte(i) & 0x3F);
    }
    isCharacter = isCharacter && code >= kLeast[bytes] && code <= 0x10FFFF;
    return isCharacter ? Front{bytes, code} : Front{1, lead, false};
}

std::string Escape(const Front& front) {
    switch (front.code) {
        case '\n':
            return "\\n";
        case '\r':
            return "\\r";
        case '\t':
            return "\\t";
        default: {
            char code[12];
            const char* const form = front.bytes == 1       ? "\\x%02X"
                                     : front.code <= 0xFFFF ? "\\u%04X"
                                                            : "\\U%08X";
            std::snprintf(code, sizeof(code), form, unsigned{front.code});
            return code;
        }
    }
}

std::string JsonEscape(const Front& front) {
    if (front.code == '\n') {
        return "\n";
    }
    char code[16];
    const unsigned beyond = front.code - 0x10000;
    if (front.code > 0xFFFF) {
        std::snprintf(code, sizeof(code), "\\u%04x\\u%04x", 0xD800 | beyond >> 10,
                      0xDC00 | (beyond & 0x3FF));
    } else {
        std::snprintf(code, sizeof(code), "\\u%04x", unsigned{front.code});
    }
    return code;
}

// Looks at many characters at once, as it does not end in between.
bool IsPlain(std::string_view text) {
    unsigned others = 0;
    for (const char c : text) {
        others |= static_cast<unsigned char>(c - ' ') < 0x7F - ' ' ? 0 : 1;
    }
    return others == 0;
}

void AppendReplaced(std::string& out, std::string_view text, std::string (*escape)(const Front&),
                    bool replacesBytes) {
    if (IsPlain(text)) {
        out.append(text);
        return;
    }
    std::size_t copied = 0;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] >= ' ' && text[at] < 0x7F) {
            ++at;
            continue;
        }
        const Front front = FrontOf(text.substr(at));
        if (front.isCharacter ? IsUnseen(front.code) : replacesBytes) {
            out.append(text.substr(copied, at - copied)).append(escape(front));
            copied = at + front.bytes;
        }
        at += front.bytes;
    }
    out.append(text.substr(copied));
}

}  // namespace

void AppendOneLine(std::string& out, std::string_view text) {
    AppendReplaced(out, text, Escape, true);
}

std::string OneLine(std::string_view text) {
    std::string line;
    AppendOneLine(line, text);
    return line;
}

std::string HarmlessJson(std::string_view document) {
    std::string harmless;
    AppendReplaced(harmless, document, JsonEscape, false);
    return harmless;
}

}  // namespace lq::tool
