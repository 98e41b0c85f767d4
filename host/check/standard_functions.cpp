// The names of the standard's functions.

#include "host/check/run.h"
#include "lq_data/types.h"

namespace lq::host::check {

namespace {

// clang-format off
constexpr u16string_view kFunctions[] = {
    u"ABS", u"ACOS", u"ADD", u"ADD_DT_TIME", u"ADD_TIME", u"ADD_TOD_TIME", u"AND", u"ASIN",
    u"ASSERT", u"ATAN", u"ATAN2", u"CEIL", u"CONCAT", u"CONCAT_DATE", u"CONCAT_DATE_TOD",
    u"CONCAT_DT", u"CONCAT_TOD", u"COS", u"DAY_OF_WEEK", u"DELETE", u"DIV", u"DIVTIME",
    u"DIV_TIME", u"EQ", u"EXP", u"EXPT", u"FIND", u"FLOOR", u"GE", u"GT", u"INSERT", u"IS_VALID",
    u"IS_VALID_BCD", u"LE", u"LEFT", u"LEN", u"LIMIT", u"LN", u"LOG", u"LOWER_BOUND", u"LT",
    u"MAX", u"MID", u"MIN", u"MOD", u"MOVE", u"MUL", u"MULTIME", u"MUL_TIME", u"MUX", u"NE",
    u"NOT", u"OR", u"REF", u"REPLACE", u"RIGHT", u"ROL", u"ROR", u"ROUND", u"SEL", u"SHL", u"SHR",
    u"SIN", u"SPLIT_DATE", u"SPLIT_DT", u"SPLIT_TOD", u"SQRT", u"SUB", u"SUB_DATE_DATE",
    u"SUB_DT_DT", u"SUB_DT_TIME", u"SUB_TIME", u"SUB_TOD_TIME", u"SUB_TOD_TOD", u"TAN", u"TIME",
    u"TO_BIG_ENDIAN", u"TO_LITTLE_ENDIAN", u"TRUNC", u"UPPER_BOUND", u"XOR",
};
// Words that stand before a bracket in IL, and call nothing.
constexpr u16string_view kInstructions[] = {
    u"LD", u"LDN", u"ST", u"STN", u"S", u"R", u"CAL", u"CALC", u"CALCN", u"RET", u"RETC", u"RETCN",
    u"JMP", u"JMPC", u"JMPCN", u"ANDN", u"ORN", u"XORN",
};
// clang-format on

bool IsType(u16string_view word) {
    const std::u16string name(word);
    return name == u"WSTRING" || name == u"BCD" || name == u"BCD_WORD" || name == u"LTIME" ||
           IecTypeConv().GetId(name.c_str()) != IEC_NO_TYPE;
}

}  // namespace

bool IsStandardFunction(u16string_view name) {
    const std::u16string upper = Upper(name);
    const u16string_view word = upper;
    if (std::ranges::find(kFunctions, word) != std::end(kFunctions) ||
        std::ranges::find(kInstructions, word) != std::end(kInstructions)) {
        return true;
    }
    // ADD_INT, INT_TO_REAL, TO_REAL, WORD_BCD_TO_UINT
    constexpr u16string_view kTo = u"TO_";
    const std::size_t to = word.rfind(kTo);
    if (to != word.npos && (to == 0 || word[to - 1] == u'_')) {
        return IsType(word.substr(to + kTo.size()));
    }
    const std::size_t line = word.rfind(u'_');
    return line != word.npos && IsType(word.substr(line + 1)) &&
           std::ranges::find(kFunctions, word.substr(0, line)) != std::end(kFunctions);
}

}  // namespace lq::host::check
