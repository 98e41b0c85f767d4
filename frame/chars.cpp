#include "lq_data/detail/chars.h"

#include <locale.h>
#include <unistd.h>
#include <wctype.h>

#include "lq_data/memory.h"

namespace lq::chars {

namespace {

// The file that the C library looks for last. When it is there and the locale cannot be made all
// the same, memory was short. newlocale reports that just as it reports a locale that does not
// exist, and does not try that file again in this process.
constexpr char kUnicodeFile[] = "/usr/lib/locale/C.utf8/LC_CTYPE";

locale_t MakeUnicodeLocale() noexcept {
    const locale_t made = newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{});
    if (made == locale_t{} && access(kUnicodeFile, R_OK) == 0) {
        ReportShortage();
    }
    return made;
}

constinit locale_t unicodeLocale = {};

locale_t UnicodeLocale() noexcept {
    [[maybe_unused]] static const bool isMade = [] {
        unicodeLocale = MakeUnicodeLocale();
        return true;
    }();
    return unicodeLocale;
}

// Runs when the library is unloaded, after the destructors of its static objects, which may still
// ask for character classes.
[[gnu::destructor(101)]] void FreeLocale() noexcept {
    if (unicodeLocale != locale_t{}) {
        freelocale(unicodeLocale);
        unicodeLocale = {};
    }
}

bool IsSurrogate(char16_t c) noexcept {
    return c >= 0xD800 && c <= 0xDFFF;
}

// Without the Unicode locale (a system that lacks it) only ASCII has classes and case.
bool AnswersFor(char16_t c) noexcept {
    return !IsSurrogate(c) && UnicodeLocale() != locale_t{};
}

int Order(char16_t a, char16_t b) noexcept {
    return a < b ? -1 : a > b ? 1 : 0;
}

}  // namespace

namespace detail {

bool IsWideLetter(char16_t c) noexcept {
    return AnswersFor(c) && iswalpha_l(c, UnicodeLocale()) != 0;
}

bool IsWideSpace(char16_t c) noexcept {
    return AnswersFor(c) && iswspace_l(c, UnicodeLocale()) != 0;
}

char16_t WideUpper(char16_t c) noexcept {
    if (!AnswersFor(c)) {
        return c;
    }
    const wint_t upper = towupper_l(c, UnicodeLocale());
    return upper <= 0xFFFF ? static_cast<char16_t>(upper) : c;
}

char16_t WideLower(char16_t c) noexcept {
    if (!AnswersFor(c)) {
        return c;
    }
    const wint_t lower = towlower_l(c, UnicodeLocale());
    return lower <= 0xFFFF ? static_cast<char16_t>(lower) : c;
}

}  // namespace detail

int Compare(const char16_t* a, const char16_t* b) noexcept {
    while (*a != 0 && *a == *b) {
        ++a;
        ++b;
    }
    return Order(*a, *b);
}

int CompareNoCase(const char16_t* a, const char16_t* b) noexcept {
    return CompareNoCase(a, b, static_cast<std::size_t>(-1));
}

int CompareNoCase(const char16_t* a, const char16_t* b, std::size_t count) noexcept {
    for (; count != 0; --count, ++a, ++b) {
        const char16_t upperA = ToUpper(*a);
        const char16_t upperB = ToUpper(*b);
        if (upperA != upperB) {
            const int order = Order(ToLower(upperA), ToLower(upperB));
            return order != 0 ? order : Order(upperA, upperB);
        }
        if (*a == 0) {
            return 0;
        }
    }
    return 0;
}

}  // namespace lq::chars
