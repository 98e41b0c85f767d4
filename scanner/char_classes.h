// What the scanner asks about every character, in one table: its inner loops are a load and a test.
#pragma once

#include <array>
#include <cstdint>

#include "lq_data/detail/chars.h"
#include "lq_data/scanner.h"

namespace lq::scanner {

enum CharClass : uint16_t {
    kWord = 1,         // letters, digits, underscore: an identifier goes on with them
    kBlank = 2,        // blank and tab
    kCommentMark = 4,  // in a comment: its text is not simply passed there
    kStringMark = 8,   // in a string: its text is not simply passed there
    kDecimal = 16,     // the digits of each base
    kBinary = 32,
    kOctal = 64,
    kHex = 128,
    kIndent = 256,     // behind a line break: the break is then no token
    kWordMark = 512,   // behind a word: may belong to it, which a rule of its own decides
    kWordEnd = 1024,   // behind a word: never belongs to it
    kLineEnd = 2048,   // line feed, carriage return
    kWordLead = 4096,  // a word begins with it
    kOperatorLead = 8192,
    kQuote = 16384,  // a string begins and ends with it
};

consteval std::array<uint16_t, 128> MakeCharClasses() {
    std::array<uint16_t, 128> classes{};
    const auto add = [&classes](const char16_t* characters, unsigned bits) {
        for (; *characters != 0; ++characters) {
            classes[*characters] = static_cast<uint16_t>(classes[*characters] | bits);
        }
    };
    for (unsigned i = 0; i < classes.size(); ++i) {
        const auto c = static_cast<char16_t>(i);
        if (chars::HasAsciiClass(c, chars::kLetter | chars::kDigit)) {
            classes[c] = kWord;
            if (!chars::IsDigit(c)) {
                classes[c] = kWord | kWordLead;
            }
        } else if (chars::HasAsciiClass(c, chars::kSpace)) {
            classes[c] = kWordEnd;
        }
    }
    add(u"_", kWord | kWordLead);
    add(u"\n\r", kLineEnd);
    add(u"+-*/&()[];:,.<>=", kOperatorLead);
    add(u" \t", kBlank);
    add(u"01", kBinary);
    add(u"01234567", kOctal);
    add(u"0123456789", kDecimal | kHex);
    add(u"ABCDEFabcdef", kHex);
    add(u"*\n", kCommentMark);
    add(u"'\"$,\n", kStringMark);
    add(u" \t\r", kIndent);
    add(u"#+-.\\", kWordMark);
    add(u"'\"", kQuote);
    classes[Scanner::kEndOfInput] = kCommentMark | kStringMark | kIndent | kWordEnd;
    return classes;
}

inline constexpr std::array<uint16_t, 128> kCharClasses = MakeCharClasses();

// Characters beyond ASCII have none of these classes.
constexpr unsigned ClassesOf(char16_t c) {
    return chars::IsAscii(c) ? kCharClasses[c] : 0u;
}
constexpr bool Is(char16_t c, unsigned classes) {
    return (ClassesOf(c) & classes) != 0;
}

}  // namespace lq::scanner
