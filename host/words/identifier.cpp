// Which names a project accepts.

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_model.h"
#include "lq_data/host/words/words.h"

namespace lq::host {

namespace {

using std::u16string_view;

// In order, for the search.
// clang-format off
constexpr u16string_view kKeywords[] = {
    u"ACTION", u"AND", u"ANY", u"ANY16", u"ANY32", u"ANY_BIT", u"ANY_DATE", u"ANY_INT", u"ANY_NUM",
    u"ANY_REAL", u"ANY_SIMPLE", u"ARRAY", u"AT", u"BOOL", u"BY", u"BYTE", u"CASE", u"CONFIGURATION",
    u"CONSTANT", u"DATE", u"DATE_AND_TIME", u"DINT", u"DO", u"DT", u"DWORD", u"ELSE", u"ELSIF",
    u"EN", u"END_ACTION", u"END_CASE", u"END_CONFIGURATION", u"END_FOR", u"END_FUNCTION",
    u"END_FUNCTION_BLOCK", u"END_IF", u"END_PROGRAM", u"END_REPEAT", u"END_RESOURCE", u"END_STEP",
    u"END_STRUCT", u"END_TRANSITION", u"END_TYPE", u"END_VAR", u"END_WHILE", u"ENO", u"EXIT",
    u"FALSE", u"FOR", u"FROM", u"FUNCTION", u"FUNCTION_BLOCK", u"F_EDGE", u"IF", u"INITIAL_STEP",
    u"INT", u"LINT", u"LREAL", u"LWORD", u"MOD", u"NON_RETAIN", u"NOT", u"OF", u"ON", u"OR",
    u"PROGRAM", u"READ_ONLY", u"READ_WRITE", u"REAL", u"REPEAT", u"RESOURCE", u"RETAIN", u"RETURN",
    u"R_EDGE", u"SINT", u"STEP", u"STRING", u"STRUCT", u"TASK", u"THEN", u"TIME", u"TIME_OF_DAY",
    u"TO", u"TOD", u"TRANSITION", u"TRUE", u"TYPE", u"UDINT", u"UINT", u"ULINT", u"UNTIL", u"USINT",
    u"VAR", u"VAR_ACCESS", u"VAR_CONFIG", u"VAR_EXTERNAL", u"VAR_GLOBAL", u"VAR_INPUT",
    u"VAR_IN_OUT", u"VAR_OUTPUT", u"VAR_TEMP", u"WHILE", u"WITH", u"WORD", u"WSTRING", u"XOR",
};
// clang-format on
static_assert(std::is_sorted(std::begin(kKeywords), std::end(kKeywords)));

bool (*extendedIdentifiers)(const char16_t* beginning) = nullptr;

constexpr std::size_t kLongestKeyword = 18;
static_assert(std::ranges::max(kKeywords, {}, &u16string_view::size).size() == kLongestKeyword);

bool IsKeyword(u16string_view name) {
    char16_t upper[kLongestKeyword];
    if (name.size() > kLongestKeyword) {
        return false;
    }
    std::transform(name.begin(), name.end(), upper, chars::ToUpper);
    return std::binary_search(std::begin(kKeywords), std::end(kKeywords),
                              u16string_view(upper, name.size()));
}

}  // namespace

void SetExtendedIdentifiers(bool (*accepts)(const char16_t* beginning)) {
    extendedIdentifiers = accepts;
}

std::span<const u16string_view> Keywords() {
    return kKeywords;
}

bool IsIdentifier(const char16_t* name) {
    if (!chars::IsLetter(*name) && *name != u'_') {
        return false;
    }
    const char16_t* c = name;
    for (; *c != 0; ++c) {
        if (chars::HasAsciiClass(*c, chars::kLetter | chars::kDigit)) {
            continue;
        }
        const bool isSingle = *c == u'_' && c[1] != u'_' && c[1] != 0;
        if (!isSingle && !chars::IsLetter(*c)) {
            return false;
        }
    }
    return !IsKeyword({name, c});
}

}  // namespace lq::host

// No character but letters, digits and single underscores belongs to an IEC identifier, and those
// the scanner takes unasked: the question about a beginning (`flag` 1) is answered with no, unless
// the host was told otherwise.
int CheckIdentifier(ERRHANDLER*, const char16_t* name, int flag) {
    if (!name) {
        return 1;
    }
    const auto accepts = flag == 0 ? lq::host::IsIdentifier : lq::host::extendedIdentifiers;
    return accepts && accepts(name) ? 0 : 1;
}
