// Character classes, case and comparison of 16-bit text: the one place that decides them.
//
// Digits are ASCII 0 to 9. Letters, spaces and case follow one fixed Unicode locale ("C.UTF-8",
// held by the library), never the process's own. A table answers for ASCII, so plain source text
// never makes a call. A surrogate is no letter and no space and has no case.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "lq_data/export.h"

namespace lq::chars {

enum AsciiClass : std::uint8_t {
    kDigit = 1,
    kLetter = 2,
    kSpace = 4,
    kHex = 8,
};

namespace detail {

consteval std::array<std::uint8_t, 128> MakeAsciiTable() {
    std::array<std::uint8_t, 128> table{};
    for (unsigned c = 0; c < table.size(); ++c) {
        unsigned bits = 0;
        if (c >= '0' && c <= '9') {
            bits |= kDigit | kHex;
        }
        if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')) {
            bits |= kLetter;
        }
        if ((c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f')) {
            bits |= kHex;
        }
        if (c == ' ' || (c >= '\t' && c <= '\r')) {
            bits |= kSpace;
        }
        table[c] = static_cast<std::uint8_t>(bits);
    }
    return table;
}

inline constexpr std::array<std::uint8_t, 128> kAscii = MakeAsciiTable();

// The slow path, for characters beyond ASCII.
LQ_DATA_API bool IsWideLetter(char16_t c) noexcept;
LQ_DATA_API bool IsWideSpace(char16_t c) noexcept;
LQ_DATA_API char16_t WideUpper(char16_t c) noexcept;
LQ_DATA_API char16_t WideLower(char16_t c) noexcept;

}  // namespace detail

constexpr bool IsAscii(char16_t c) noexcept {
    return c < 128;
}

constexpr bool HasAsciiClass(char16_t c, unsigned classes) noexcept {
    return IsAscii(c) && (detail::kAscii[c] & classes) != 0;
}

constexpr bool IsDigit(char16_t c) noexcept {
    return HasAsciiClass(c, kDigit);
}
constexpr bool IsHex(char16_t c) noexcept {
    return HasAsciiClass(c, kHex);
}

inline bool IsLetter(char16_t c) noexcept {
    return IsAscii(c) ? (detail::kAscii[c] & kLetter) != 0 : detail::IsWideLetter(c);
}

inline bool IsSpace(char16_t c) noexcept {
    return IsAscii(c) ? (detail::kAscii[c] & kSpace) != 0 : detail::IsWideSpace(c);
}

// Space, tab, line feed and carriage return, which the tables and the type catalogue skip.
constexpr bool IsBlank(char16_t c) noexcept {
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

inline char16_t ToUpper(char16_t c) noexcept {
    if (IsAscii(c)) {
        return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - (u'a' - u'A')) : c;
    }
    return detail::WideUpper(c);
}

inline char16_t ToLower(char16_t c) noexcept {
    if (IsAscii(c)) {
        return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + (u'a' - u'A')) : c;
    }
    return detail::WideLower(c);
}

// Value of a hex digit; `c` must be one.
constexpr unsigned HexValue(char16_t c) noexcept {
    return IsDigit(c) ? c - u'0' : (c | 0x20u) - u'a' + 10u;
}

constexpr std::size_t Length(const char16_t* text) noexcept {
    const char16_t* end = text;
    while (*end != 0) {
        ++end;
    }
    return static_cast<std::size_t>(end - text);
}

// Both results are below, equal to or above zero. Compare goes by 16-bit units.
LQ_DATA_API int Compare(const char16_t* a, const char16_t* b) noexcept;
// Characters with the same upper-case form are equal. Two that differ rank by the lower-case forms
// of their upper-case forms, so that the underscore, which lies between the two cases, sorts before
// the letters.
LQ_DATA_API int CompareNoCase(const char16_t* a, const char16_t* b) noexcept;
// The same over at most `count` characters.
LQ_DATA_API int CompareNoCase(const char16_t* a, const char16_t* b, std::size_t count) noexcept;

inline bool Equal(const char16_t* a, const char16_t* b) noexcept {
    return Compare(a, b) == 0;
}
inline bool EqualNoCase(const char16_t* a, const char16_t* b) noexcept {
    return CompareNoCase(a, b) == 0;
}

}  // namespace lq::chars
