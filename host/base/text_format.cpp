// printf-style formatting of 16-bit text.
#include <algorithm>
#include <cstdarg>
#include <iterator>

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_base.h"

namespace {

// Widths and precisions beyond this are cut: no text of the system needs them.
constexpr int kMaxField = 4096;

// One conversion: %[-0][width][.precision][l]conversion.
struct Conversion {
    bool leftAligned = false;
    bool zeroPadded = false;
    int width = 0;
    int precision = -1;  // -1: none given
    char16_t kind = 0;
};

int ParseField(const char16_t*& at) {
    int number = 0;
    for (; lq::chars::IsDigit(*at); ++at) {
        number = std::min(kMaxField, number * 10 + (*at - u'0'));
    }
    return number;
}

// `at` stands behind the %, afterwards behind the conversion.
Conversion Parse(const char16_t*& at) {
    Conversion c;
    for (; *at == u'-' || *at == u'0'; ++at) {
        (*at == u'-' ? c.leftAligned : c.zeroPadded) = true;
    }
    c.width = ParseField(at);
    if (*at == u'.') {
        ++at;
        c.precision = ParseField(at);
    }
    if (*at == u'l') {
        ++at;
    }
    c.kind = *at;
    if (*at != 0) {
        ++at;
    }
    return c;
}

// A converted argument, without padding: sign, leading zeros, text.
struct Piece {
    const char16_t* text;
    int length;
    int zeros = 0;
    bool isNegative = false;
};

void AppendTimes(CLQString& out, char16_t c, int count) {
    for (; count > 0; --count) {
        out += c;
    }
}

void AppendPadded(CLQString& out, const Conversion& c, const Piece& piece) {
    const int padding = c.width - piece.length - piece.zeros - (piece.isNegative ? 1 : 0);
    if (!c.leftAligned) {
        AppendTimes(out, u' ', padding);
    }
    if (piece.isNegative) {
        out += u'-';
    }
    AppendTimes(out, u'0', piece.zeros);
    for (int i = 0; i < piece.length; ++i) {
        out += piece.text[i];
    }
    if (c.leftAligned) {
        AppendTimes(out, u' ', padding);
    }
}

void AppendNumber(CLQString& out, const Conversion& c, uint32_t magnitude, bool isNegative) {
    const uint32_t base = c.kind == u'x' ? 16 : 10;
    char16_t digits[10];
    char16_t* first = std::end(digits);
    for (; magnitude != 0; magnitude /= base) {
        *--first = u"0123456789abcdef"[magnitude % base];
    }
    Piece piece{first, static_cast<int>(std::end(digits) - first), 0, isNegative};
    int fewestDigits = c.precision;
    if (c.precision < 0) {
        fewestDigits = c.zeroPadded && !c.leftAligned ? c.width - (isNegative ? 1 : 0) : 1;
        fewestDigits = std::max(fewestDigits, 1);
    }
    piece.zeros = std::max(0, fewestDigits - piece.length);
    AppendPadded(out, c, piece);
}

void AppendText(CLQString& out, const Conversion& c, const char16_t* text) {
    const char16_t* shown = text ? text : u"(null)";
    int length = 0;
    while (shown[length] != 0 && length != c.precision) {
        ++length;
    }
    AppendPadded(out, c, {shown, length});
}

}  // namespace

void CLQString::Format(const char16_t* format, ...) {
    CLQString out;
    va_list arguments;
    va_start(arguments, format);
    for (const char16_t* at = format; *at != 0 && !out.HasFailed();) {
        const char16_t* const start = at++;
        if (*start != u'%') {
            out.Append(start, 1);
            continue;
        }
        const Conversion c = Parse(at);
        switch (c.kind) {
            case u'd': {
                const int32_t number = va_arg(arguments, int32_t);
                const auto bits = static_cast<uint32_t>(number);
                AppendNumber(out, c, number < 0 ? 0u - bits : bits, number < 0);
                break;
            }
            case u'u':
            case u'x':
                AppendNumber(out, c, va_arg(arguments, uint32_t), false);
                break;
            case u'c': {
                const auto character = static_cast<char16_t>(va_arg(arguments, int));
                AppendPadded(out, c, {&character, 1});
                break;
            }
            case u's':
                AppendText(out, c, va_arg(arguments, const char16_t*));
                break;
            case u'%':
                out.Append(u"%", 1);
                break;
            default:
                out.Append(start, static_cast<std::size_t>(at - start));
        }
    }
    va_end(arguments);
    Swap(out);
}
