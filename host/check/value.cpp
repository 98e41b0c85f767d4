#include "host/check/value.h"

#include <cstdlib>
#include <string>

#include "lq_data/host/text/utf.h"

namespace lq::host::check {

namespace {

using Kind = Constant::Kind;

constexpr uint32_t Bit(IEC_TYPE type) {
    return 1u << type;
}

struct Width {
    IEC_TYPE type;
    unsigned bits;
    bool isSigned;
};
constexpr Width kWidths[] = {
    {IEC_SINT, 8, true},   {IEC_INT, 16, true},   {IEC_DINT, 32, true},   {IEC_LINT, 64, true},
    {IEC_USINT, 8, false}, {IEC_UINT, 16, false}, {IEC_UDINT, 32, false}, {IEC_ULINT, 64, false},
    {IEC_BYTE, 8, false},  {IEC_WORD, 16, false}, {IEC_DWORD, 32, false}, {IEC_LWORD, 64, false},
    {IEC_BOOL, 1, false},
};

// The largest magnitude of `bits` bits.
constexpr uint64_t Largest(unsigned bits) {
    return bits == 64 ? ~uint64_t{0} : (uint64_t{1} << bits) - 1;
}

bool IsDigitOf(char16_t c, unsigned base) {
    return chars::IsHex(c) && chars::HexValue(c) < base;
}

// Digits of a base, with single underscores between them.
bool ReadDigits(u16string_view text, unsigned base, Constant& number) {
    bool isBehindDigit = false;
    for (const char16_t c : text) {
        if (c == u'_' ? !isBehindDigit : !IsDigitOf(c, base)) {
            return false;
        }
        isBehindDigit = c != u'_';
        if (!isBehindDigit) {
            continue;
        }
        const uint64_t digit = chars::HexValue(c);
        number.isTooLarge = number.isTooLarge || number.magnitude > (~uint64_t{0} - digit) / base;
        number.magnitude = number.magnitude * base + digit;
    }
    return isBehindDigit;
}

bool ReadInteger(u16string_view text, Constant& number) {
    number.kind = Kind::kInteger;
    for (const auto& [prefix, base] : {std::pair{u16string_view(u"16#"), 16u},
                                       {u16string_view(u"8#"), 8u},
                                       {u16string_view(u"2#"), 2u}}) {
        if (text.starts_with(prefix)) {
            number.isBased = true;
            return ReadDigits(text.substr(prefix.size()), base, number);
        }
    }
    return ReadDigits(text, 10, number);
}

// "1.5", "1.5e-3", "2E6".
bool ReadReal(u16string_view text, Constant& number) {
    std::string digits;
    bool hasDigit = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        const bool isExponent = hasDigit && (c == u'e' || c == u'E');
        if (isExponent || c == u'.' || chars::IsDigit(c)) {
            digits += static_cast<char>(c);
            hasDigit = hasDigit || chars::IsDigit(c);
            const bool isSigned =
                isExponent && i + 1 < text.size() && (text[i + 1] == u'+' || text[i + 1] == u'-');
            digits += isSigned ? std::string(1, static_cast<char>(text[++i])) : "";
        } else if (c != u'_' || i == 0 || i + 1 == text.size() || !chars::IsDigit(text[i - 1]) ||
                   !chars::IsDigit(text[i + 1])) {
            return false;
        }
    }
    char* end = nullptr;
    number.real = std::strtod(digits.c_str(), &end);
    number.kind = Kind::kReal;
    return hasDigit && *end == 0;
}

// The length of "'it$'s'" or of a string in double quotes; false for what is no whole string.
bool ReadString(u16string_view text, Constant& string) {
    const char16_t mark = text.front();
    const std::size_t hexDigits = mark == u'"' ? 4 : 2;
    std::size_t i = 1;
    for (; i < text.size() && text[i] != mark; ++i, ++string.length) {
        if (text[i] != u'$' || ++i == text.size()) {
            continue;
        }
        const u16string_view code = text.substr(i, hexDigits);
        const bool isCode = code.size() == hexDigits && std::ranges::all_of(code, chars::IsHex);
        i += isCode ? hexDigits - 1 : 0;
    }
    string.kind = Kind::kString;
    return i + 1 == text.size();
}

constexpr struct {
    u16string_view prefix;
    Kind kind;
} kTimes[] = {
    {u"T", Kind::kTime},         {u"TIME", Kind::kTime},
    {u"D", Kind::kDate},         {u"DATE", Kind::kDate},
    {u"TOD", Kind::kTimeOfDay},  {u"TIME_OF_DAY", Kind::kTimeOfDay},
    {u"DT", Kind::kDateAndTime}, {u"DATE_AND_TIME", Kind::kDateAndTime},
};

// Behind "T#" and the like; the scanner knows them all.
Constant ReadTime(u16string_view text, Kind kind) {
    Constant time;
    const std::u16string terminated(text);
    Val value;
    time.kind = value.Set(terminated.c_str(), 0) ? kind : Kind::kMalformed;
    const std::u16string capitals = Upper(text);
    if (time.kind == Kind::kMalformed && kind == Kind::kTime &&
        (capitals.ends_with(u"US") || capitals.ends_with(u"NS"))) {
        time.kind = kind;  // micro- and nanoseconds, which the scanner does not know
        time.isNegative = text.find(u'-') != text.npos;
        return time;
    }
    if (time.kind == Kind::kTime) {
        int32_t days = 0;
        double milliseconds = 0;
        __builtin_memcpy(&days, value.payload, sizeof days);
        __builtin_memcpy(&milliseconds, value.payload + sizeof days, sizeof milliseconds);
        time.isNegative = text.find(u'-') != text.npos;  // a long one may have wrapped
        time.isZero = days == 0 && milliseconds == 0;
    }
    return time;
}

Constant ReadUntyped(u16string_view text) {
    Constant constant;
    if (text.empty()) {
        return constant;
    }
    if (text.front() == u'\'' || text.front() == u'"') {
        return ReadString(text, constant) ? constant : Constant{};
    }
    constant.isNegative = text.front() == u'-';
    const bool isSigned = constant.isNegative || text.front() == u'+';
    const u16string_view number = isSigned ? Trim(text.substr(1)) : text;
    if (!number.empty() && chars::IsDigit(number.front())) {
        Constant integer = constant;
        if (ReadInteger(number, integer)) {
            return integer;
        }
        return ReadReal(number, constant) ? constant : Constant{};
    }
    if (!isSigned && IsName(text)) {
        constant.kind =
            EqualNames(text, u"TRUE") || EqualNames(text, u"FALSE") ? Kind::kBool : Kind::kName;
        constant.magnitude = EqualNames(text, u"TRUE") ? 1 : 0;
        constant.name = text;
        return constant;
    }
    return {};
}

}  // namespace

std::size_t FindOutside(u16string_view text, u16string_view wanted) {
    unsigned depth = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (depth == 0 && text.substr(i).starts_with(wanted)) {
            return i;
        }
        if (c == u'\'' || c == u'"') {
            for (++i; i < text.size() && text[i] != c; ++i) {
                i += text[i] == u'$' ? 1 : 0;
            }
        } else if (c == u'(' || c == u'[') {
            ++depth;
        } else if ((c == u')' || c == u']') && depth > 0) {
            --depth;
        }
    }
    return text.size();
}

u16string_view TakeItem(u16string_view& text) {
    const std::size_t comma = FindOutside(text, u",");
    const u16string_view item = Trim(text.substr(0, comma));
    text.remove_prefix(std::min(comma + 1, text.size()));
    return item;
}

Constant ReadConstant(u16string_view text) {
    text = Trim(text);
    const bool isSigned = text.starts_with(u'-') || text.starts_with(u'+');
    const u16string_view unsignedText = isSigned ? Trim(text.substr(1)) : text;
    const std::size_t mark = unsignedText.find(u'#');
    const u16string_view prefix =
        mark == u16string_view::npos ? u16string_view() : unsignedText.substr(0, mark);
    if (prefix.empty() || chars::IsDigit(prefix.front()) || !IsName(prefix)) {
        return ReadUntyped(text);
    }
    for (const auto& row : kTimes) {
        if (EqualNames(row.prefix, prefix)) {
            return ReadTime(text, row.kind);
        }
    }
    if (isSigned) {
        return {};
    }
    Constant typed = ReadUntyped(Trim(unsignedText.substr(mark + 1)));
    typed.prefix = prefix;
    return typed;
}

uint32_t TypesOf(const Constant& number) {
    if (number.kind == Kind::kReal) {
        uint32_t reals = 0;
        DCE_GetRealConstRange(number.real, &reals);
        return reals;
    }
    uint32_t types = Bit(IEC_REAL) | Bit(IEC_LREAL);
    for (const auto& row : kWidths) {
        const bool isOneLess = row.isSigned && !number.isBased;
        uint64_t largest = Largest(row.bits - (isOneLess ? 1 : 0));
        largest = !number.isNegative ? largest : row.isSigned ? Largest(row.bits - 1) + 1 : 0;
        types |= !number.isTooLarge && number.magnitude <= largest ? Bit(row.type) : 0;
    }
    return types;
}

bool IsWidening(IEC_TYPE from, IEC_TYPE to) {
    const auto rowOf = [](IEC_TYPE type) {
        const auto row = std::ranges::find(kWidths, type, &Width::type);
        return row == std::end(kWidths) ? nullptr : &*row;
    };
    const auto isBits = [](IEC_TYPE type) { return type == IEC_BOOL || type >= IEC_BYTE; };
    const Width* const narrow = rowOf(from);
    const Width* const wide = rowOf(to);
    if (!narrow || !wide) {
        const bool isOfBits = narrow && isBits(from) && (to == IEC_REAL || to == IEC_LREAL);
        return !isOfBits && !(from == IEC_LREAL && to == IEC_REAL);
    }
    const int room = static_cast<int>(wide->bits) - static_cast<int>(narrow->bits);
    return isBits(from) == isBits(to) && (narrow->isSigned ? wide->isSigned && room >= 0
                                          : wide->isSigned ? room > 0
                                                           : room >= 0);
}

}  // namespace lq::host::check
