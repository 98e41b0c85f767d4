#include "tools/lq/escape.h"

#include <cstdint>
#include <cstdio>

namespace lq::tool {

namespace {

// What is at the front of a text: a character that a terminal acts upon, or none.
struct Unseen {
    std::size_t bytes = 0;
    uint32_t code = 0;
};

Unseen FindUnseen(std::string_view text) {
    const auto byte = [text](std::size_t i) -> uint32_t {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
    };
    if (byte(0) < 0x20 || byte(0) == 0x7F) {
        return {1, byte(0)};
    }
    if (byte(0) == 0xC2 && byte(1) >= 0x80 && byte(1) < 0xA0) {
        return {2, byte(1)};
    }
    if (byte(0) != 0xE2 || (byte(1) != 0x80 && byte(1) != 0x81)) {
        return {};
    }
    // Marks of direction, separators of lines, embeddings, overrides and isolates.
    constexpr struct {
        uint32_t first, last;
    } kRanges[] = {{0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}};
    const uint32_t code = 0x2000 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
    for (const auto& range : kRanges) {
        if (code >= range.first && code <= range.last) {
            return {3, code};
        }
    }
    return {};
}

std::string Escape(const Unseen& unseen) {
    switch (unseen.code) {
        case '\n':
            return "\\n";
        case '\r':
            return "\\r";
        case '\t':
            return "\\t";
        default: {
            char code[8];
            std::snprintf(code, sizeof(code), unseen.bytes == 1 ? "\\x%02X" : "\\u%04X",
                          unsigned{unseen.code});
            return code;
        }
    }
}

std::string JsonEscape(const Unseen& unseen) {
    char code[8];
    std::snprintf(code, sizeof(code), "\\u%04x", unsigned{unseen.code});
    return unseen.code == '\n' ? "\n" : code;
}

std::string Replace(std::string_view text, std::string (*escape)(const Unseen&)) {
    std::string out;
    std::size_t copied = 0;
    for (std::size_t at = 0; at < text.size();) {
        const Unseen unseen = FindUnseen(text.substr(at));
        if (unseen.bytes == 0) {
            ++at;
            continue;
        }
        out.append(text.substr(copied, at - copied)).append(escape(unseen));
        at += unseen.bytes;
        copied = at;
    }
    out.append(text.substr(copied));
    return out;
}

}  // namespace

std::string OneLine(std::string_view text) {
    return Replace(text, Escape);
}

std::string HarmlessJson(std::string_view document) {
    return Replace(document, JsonEscape);
}

}  // namespace lq::tool
