// The re2c rival: the rules as code, each state a place in the program.
#include <algorithm>

#include "bench/rivals/rivals.h"
#include "lq_data/scanner.h"
#include "scanner/buffer_pair.h"
#include "scanner/digits.h"

namespace lq::bench {

namespace {

uint64_t ValueOf(const char16_t* from, const char16_t* to, uint64_t base) {
    uint64_t value = 0;
    for (; from != to; ++from) {
        if (*from != u'_') {
            value = value * base + lq::scanner::DigitValue(*from);
        }
    }
    return value;
}

bool Fits(const char16_t* from, const char16_t* to, uint64_t value, int digits) {
    return value <= UINT32_MAX && to - from <= digits + std::count(from, to, u'_');
}

// As ours copies, in steps of one size.
inline void Copy(std::u16string& to, const char16_t* from, const char16_t* end) {
    const auto length = static_cast<int32_t>(end - from);
    if (__builtin_expect(length + kPadding > to.size(), 0)) {
        to.resize(2 * (length + kPadding));
    }
    char16_t* const dest = to.data();
    BufferPair::CopyAll(dest, from, length);
    dest[length] = 0;
}

}  // namespace

// The end of a token; the number is its value.
#define IS(KIND, VALUE) \
    kind = KIND;        \
    value = VALUE;      \
    goto done

RivalToken Re2cScanner::GetToken() {
    int32_t line = line_;
    const int32_t firstLine = line;
    const char16_t* marker;
    const char16_t* context;
    const char16_t* p = at_;
    const char16_t* from;
    int32_t kind;
    uint64_t value;
    uint64_t base;
    int digits;
    space_[0] = 0;

    for (;;) {
        from = p;
        /*!re2c
        re2c:define:YYCTYPE = "char16_t";
        re2c:define:YYCURSOR = p;
        re2c:define:YYMARKER = marker;
        re2c:define:YYCTXMARKER = context;
        re2c:yyfill:enable = 0;
        */
        /*!include:re2c "unicode_categories.re" */
        /*!re2c

        any     = [^\x00];
        letter  = [A-Za-z] | L \ [\x00-\x7F];
        begin   = letter | "_" | "@" (letter | [0-9]);
        word    = begin (letter | [0-9_])*;
        digits  = [0-9] ("_"? [0-9])*;
        hex     = [0-9A-Fa-f];
        power   = [eE] [-+]? digits;
        pair    = "0" [1-9A-Fa-f] | [1-9A-Fa-f] hex;
        escape  = "$" (pair | [$'"lLnNpPrRtT]);
        unit    = [dDhHmMsS] | "ms" | "MS";
        part    = digits ("." digits)? unit;
        clock   = digits ":" digits ":" digits ("." digits)?;
        day     = digits "-" digits "-" digits;
        address = "%" [IQM] [XBWDL]? digits ("." digits)*;

        "\x00"                              { --p; IS(TK_EOF, 0); }
        [ \t]+                              {
            Copy(space_, from, p);
            continue;
        }
        "\r"? "\n" / (any \ [ \t\r])        {
            line_ = line + 1;
            line = firstLine;
            kind = TK_NEWLINE;
            value = 0;
            goto copy;
        }
        "\r"? "\n"                          { ++line; space_[0] = 0; continue; }
        "\r"                                { IS(TK_ERROR, SE_LINE_END); }

        word                                { IS(TK_IDENTIFIER, 0); }
        "@"                                 { IS(TK_ERROR, SE_IDENTIFIER); }
        word "#"                            { IS(TK_ERROR, SE_TIME); }
        time    = ("TIME" | "time" | "T" | "t") "#" "-"?;
        date    = ("DATE" | "date" | "D" | "d") "#";
        tod     = ("TIME_OF_DAY" | "time_of_day" | "TOD" | "tod") "#";
        both    = ("DATE_AND_TIME" | "date_and_time" | "DT" | "dt") "#";
        time part ("_"? part)*              { IS(TK_TIME, 0); }
        time (part "_"?)* (digits ("." digits?)?)?      { IS(TK_ERROR, SE_TIME); }
        date day                            { IS(TK_DATE, 0); }
        date (digits ("-" (digits "-"?)?)?)?            { IS(TK_ERROR, SE_DATE); }
        tod clock                           { IS(TK_TIME_OF_DAY, 0); }
        tod (digits (":" (digits ":"?)?)?)? { IS(TK_ERROR, SE_TIME_OF_DAY); }
        both day "-" clock                  { IS(TK_DATE_AND_TIME, 0); }
        both (digits ("-" (digits "-"?)?)?)?            { IS(TK_ERROR, SE_DATE_AND_TIME); }

        digits                              {
            value = ValueOf(from, p, 10);
            kind = Fits(from, p, value, 10) ? TK_INTEGER : TK_ERROR;
            goto done;
        }
        digits ".."                         { IS(TK_RANGE_START, ValueOf(from, p - 2, 10)); }
        digits "." digits power?            { IS(TK_REAL, 0); }
        digits "." power                    { IS(TK_REAL, 0); }
        "2#" [01] ("_"? [01])*              { base = 2; digits = 32; goto based; }
        "8#" [0-7] ("_"? [0-7])*            { base = 8; digits = 11; goto based; }
        "16#" hex ("_"? hex)*               { base = 16; digits = 8; goto based; }
        digits ("_" | "#")                  { IS(TK_ERROR, SE_DECIMAL); }
        digits ("." | "." digits "_" | "." digits? [eE] [-+]?)
                                            { IS(TK_ERROR, SE_REAL); }

        address                             { IS(TK_ADDRESS, 0); }
        "%" ([IQM] [XBWDL]?)?                { IS(TK_ERROR, SE_ADDRESS); }
        address [._]                        { IS(TK_ERROR, SE_ADDRESS); }

        [']                                 { goto single; }
        ["]                                 { goto pair; }
        "(*"                                { goto comment; }

        "+"  { IS(TK_OPERATOR, OP_PLUS); }
        "-"  { IS(TK_OPERATOR, OP_MINUS); }
        "/"  { IS(TK_OPERATOR, OP_DIV); }
        "&"  { IS(TK_OPERATOR, OP_AMPERSAND); }
        "("  { IS(TK_OPERATOR, OP_LPAREN); }
        ")"  { IS(TK_OPERATOR, OP_RPAREN); }
        ";"  { IS(TK_OPERATOR, OP_SEMICOLON); }
        ","  { IS(TK_OPERATOR, OP_COMMA); }
        "["  { IS(TK_OPERATOR, OP_LBRACKET); }
        "]"  { IS(TK_OPERATOR, OP_RBRACKET); }
        "*"  { IS(TK_OPERATOR, OP_MUL); }
        "**" { IS(TK_OPERATOR, OP_POWER); }
        "<"  { IS(TK_OPERATOR, OP_LT); }
        "<>" { IS(TK_OPERATOR, OP_NE); }
        "<=" { IS(TK_OPERATOR, OP_LE); }
        ">"  { IS(TK_OPERATOR, OP_GT); }
        ">=" { IS(TK_OPERATOR, OP_GE); }
        ":"  { IS(TK_OPERATOR, OP_COLON); }
        ":=" { IS(TK_OPERATOR, OP_ASSIGN); }
        "="  { IS(TK_OPERATOR, OP_EQ); }
        "=>" { IS(TK_OPERATOR, OP_ARROW); }
        "."  { IS(TK_OPERATOR, OP_DOT); }
        ".." { IS(TK_OPERATOR, OP_RANGE); }

        *                                   { IS(TK_ERROR, SE_NO_TOKEN); }
        */

    // What may have line breaks in it.
    single:
        /*!re2c
        [']                                 { IS(TK_STRING, 0); }
        "\n"                                { ++line; goto single; }
        (any \ ['$\n])+ | escape            { goto single; }
        "$" hex?                            { IS(TK_ERROR, SE_STRING); }
        *                                   { --p; IS(TK_ERROR, SE_STRING); }
        */
    pair:
        /*!re2c
        ["]                                 { IS(TK_STRING, 0); }
        "\n"                                { ++line; goto pair; }
        (any \ ["$\n])+ | escape            { goto pair; }
        "$" hex?                            { IS(TK_ERROR, SE_STRING); }
        *                                   { --p; IS(TK_ERROR, SE_STRING); }
        */
    comment:
        /*!re2c
        "*" ")"                             { IS(TK_COMMENT, 0); }
        "\n"                                { ++line; goto comment; }
        (any \ [*\n])+ | "*"                { goto comment; }
        *                                   { --p; IS(TK_ERROR, SE_COMMENT); }
        */
    }

based: {
    const char16_t* const first = from + (base == 16 ? 3 : 2);
    value = ValueOf(first, p, base);
    kind = Fits(first, p, value, digits) ? TK_BASED_INTEGER : TK_ERROR;
}
done:
    line_ = line;
copy:
    at_ = p;
    Copy(text_, from, p);
    return {kind, line, text_.data(), space_.data(), value};
}

}  // namespace lq::bench
