// The functions of the standard, editions 2 and 3 and ASSERT of edition 4, with the operators of
// addresses and sizes that all but a few environments have; and the instructions of IL, with those
// that set an input of a standard block. Conversions and functions that are named with the type of
// their parameters are made of their words, the rest is a list.

#include <algorithm>
#include <iterator>
#include <string>

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_model.h"
#include "lq_data/host/words/words.h"
#include "lq_data/types.h"

namespace lq::host {

namespace {

using std::u16string_view;

// Sorted, as the binary search needs them.
// clang-format off
constexpr u16string_view kFunctions[] = {
    u"ABS", u"ACOS", u"ADD", u"ADD_DT_TIME", u"ADD_LDT_LTIME", u"ADD_LTOD_LTIME", u"ADD_TIME",
    u"ADD_TOD_TIME", u"ADR", u"AND", u"ASIN", u"ASSERT", u"ATAN", u"ATAN2", u"BITADR", u"CONCAT",
    u"CONCAT_DATE", u"CONCAT_DATE_LTOD", u"CONCAT_DATE_TOD", u"CONCAT_DT", u"CONCAT_LDT",
    u"CONCAT_LTOD", u"CONCAT_TOD", u"COS", u"DATE_AND_TIME_TO_DATE",
    u"DATE_AND_TIME_TO_TIME_OF_DAY", u"DAY_OF_WEEK", u"DELETE", u"DIV", u"DIVTIME", u"DIV_LTIME",
    u"DIV_TIME", u"EQ", u"EXP", u"EXPT", u"FIND", u"FROM_BIG_ENDIAN", u"FROM_LITTLE_ENDIAN", u"GE",
    u"GT", u"INDEXOF", u"INSERT", u"IS_VALID", u"IS_VALID_BCD", u"LE", u"LEFT", u"LEN", u"LIMIT",
    u"LN", u"LOG", u"LOWER_BOUND", u"LT", u"MAX", u"MID", u"MIN", u"MOD", u"MOVE", u"MUL",
    u"MULTIME", u"MUL_LTIME", u"MUL_TIME", u"MUX", u"NE", u"NOT", u"OR", u"REF", u"REPLACE",
    u"RIGHT", u"ROL", u"ROR", u"ROUND", u"SEL", u"SHL", u"SHR", u"SIN", u"SIZEOF", u"SPLIT_DATE",
    u"SPLIT_DT", u"SPLIT_LDT", u"SPLIT_LTOD", u"SPLIT_TOD", u"SQRT", u"SUB", u"SUB_DATE_DATE",
    u"SUB_DT_DT", u"SUB_DT_TIME", u"SUB_LDATE_LDATE", u"SUB_LDT_LDT", u"SUB_LDT_LTIME",
    u"SUB_LTOD_LTIME", u"SUB_LTOD_LTOD", u"SUB_TIME", u"SUB_TOD_TIME", u"SUB_TOD_TOD", u"TAN",
    u"TO_BIG_ENDIAN", u"TO_LITTLE_ENDIAN", u"TRUNC", u"UPPER_BOUND", u"XOR",
};
constexpr u16string_view kInstructions[] = {
    u"ADD", u"AND", u"ANDN", u"CAL", u"CALC", u"CALCN", u"CD", u"CLK", u"CU", u"DIV", u"EQ", u"GE",
    u"GT", u"IN", u"JMP", u"JMPC", u"JMPCN", u"LD", u"LDN", u"LE", u"LT", u"MUL", u"NE", u"OR",
    u"ORN", u"PT", u"PV", u"R", u"R1", u"RET", u"RETC", u"RETCN", u"S", u"S1", u"ST", u"STN",
    u"SUB", u"XOR", u"XORN",
};
// clang-format on
static_assert(std::is_sorted(std::begin(kFunctions), std::end(kFunctions)));
static_assert(std::is_sorted(std::begin(kInstructions), std::end(kInstructions)));

constexpr u16string_view kTypesOfEdition3[] = {u"BCD",   u"CHAR", u"LDATE", u"LDT",
                                               u"LTIME", u"LTOD", u"WCHAR", u"WSTRING"};
constexpr u16string_view kUnsupportedTypes[] = {
    u"CHAR",         u"LDATE", u"LDATE_AND_TIME", u"LDT",   u"LTIME",
    u"LTIME_OF_DAY", u"LTOD",  u"REFERENCE",      u"WCHAR", u"WSTRING"};
static_assert(std::is_sorted(std::begin(kUnsupportedTypes), std::end(kUnsupportedTypes)));

bool IsType(u16string_view word) {
    const std::u16string text(word);  // terminated
    return std::ranges::binary_search(kTypesOfEdition3, word) ||
           IsElementaryType(IecTypeConv().GetId(text.c_str()));
}

std::u16string Upper(u16string_view name) {
    std::u16string upper(name);
    std::ranges::transform(upper, upper.begin(), chars::ToUpper);
    return upper;
}

}  // namespace

bool IsUnsupportedType(u16string_view type) {
    const std::u16string word = Upper(type.substr(0, type.find_first_of(u" ([")));
    return std::ranges::binary_search(kUnsupportedTypes, u16string_view(word));
}

bool IsInstruction(u16string_view name) {
    return std::ranges::binary_search(kInstructions, u16string_view(Upper(name)));
}

bool IsStandardFunction(u16string_view name) {
    const std::u16string upper = Upper(name);
    const u16string_view word(upper);
    if (std::ranges::binary_search(kFunctions, word)) {
        return true;
    }
    const std::size_t last = word.rfind(u'_');
    if (last == word.npos || !IsType(word.substr(last + 1))) {
        return false;
    }
    // "INT_TO", "TO", "REAL_TRUNC", "UINT_TO_BCD", "ADD".
    const u16string_view before = word.substr(0, last);
    return before == u"TO" || before.ends_with(u"_TO") || before.ends_with(u"_TRUNC") ||
           before.ends_with(u"_TO_BCD") || std::ranges::binary_search(kFunctions, before);
}

}  // namespace lq::host
