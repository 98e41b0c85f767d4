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
    if (length + kPadding > to.size()) {
        to.resize(2 * (length + kPadding));
    }
    BufferPair::CopyAll(to.data(), from, length);
    to[length] = 0;
}

}  // namespace

inline RivalToken Re2cScanner::Deliver(int32_t kind, int32_t line, const char16_t* from,
                                       uint64_t value) {
    Copy(text_, from, at_);
    return {kind, line, text_.data(), space_.data(), value};
}

RivalToken Re2cScanner::GetToken() {
    const int32_t firstLine = line_;
    const char16_t* marker;
    const char16_t* context;
    const char16_t* p = at_;
    const char16_t* from;
    uint64_t value;
    space_[0] = 0;

    const auto end = [&](TOKEN_KIND kind, uint64_t v = 0) {
        at_ = p;
        return Deliver(kind, line_, from, v);
    };
    const auto based = [&](uint64_t base, int digits) {
        const char16_t* const first = from + (base == 16 ? 3 : 2);
        const uint64_t v = ValueOf(first, p, base);
        return Fits(first, p, v, digits) ? end(TK_BASED_INTEGER, v) : end(TK_ERROR, SE_BASED);
    };

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

        "\x00"                              { --p; return end(TK_EOF); }
        [ \t]+                              {
            Copy(space_, from, p);
            continue;
        }
        "\r"? "\n" / (any \ [ \t\r])        {
            ++line_;
            at_ = p;
            return Deliver(TK_NEWLINE, firstLine, from);
        }
        "\r"? "\n"                          { ++line_; space_[0] = 0; continue; }
        "\r"                                { return end(TK_ERROR, SE_LINE_END); }

        word                                { return end(TK_IDENTIFIER); }
        "@"                                 { return end(TK_ERROR, SE_IDENTIFIER); }
        word "#"                            { return end(TK_ERROR, SE_TIME); }
        time    = ("TIME" | "time" | "T" | "t") "#" "-"?;
        date    = ("DATE" | "date" | "D" | "d") "#";
        tod     = ("TIME_OF_DAY" | "time_of_day" | "TOD" | "tod") "#";
        both    = ("DATE_AND_TIME" | "date_and_time" | "DT" | "dt") "#";
        time part ("_"? part)*              { return end(TK_TIME); }
        time (part "_"?)* (digits ("." digits?)?)?      { return end(TK_ERROR, SE_TIME); }
        date day                            { return end(TK_DATE); }
        date (digits ("-" (digits "-"?)?)?)?            { return end(TK_ERROR, SE_DATE); }
        tod clock                           { return end(TK_TIME_OF_DAY); }
        tod (digits (":" (digits ":"?)?)?)? { return end(TK_ERROR, SE_TIME_OF_DAY); }
        both day "-" clock                  { return end(TK_DATE_AND_TIME); }
        both (digits ("-" (digits "-"?)?)?)?            { return end(TK_ERROR, SE_DATE_AND_TIME); }

        digits                              {
            value = ValueOf(from, p, 10);
            return Fits(from, p, value, 10) ? end(TK_INTEGER, value) : end(TK_ERROR, SE_DECIMAL);
        }
        digits ".."                         { return end(TK_RANGE_START, ValueOf(from, p - 2, 10)); }
        digits "." digits power?            { return end(TK_REAL); }
        digits "." power                    { return end(TK_REAL); }
        "2#" [01] ("_"? [01])*              { return based(2, 32); }
        "8#" [0-7] ("_"? [0-7])*            { return based(8, 11); }
        "16#" hex ("_"? hex)*               { return based(16, 8); }
        digits ("_" | "#")                  { return end(TK_ERROR, SE_DECIMAL); }
        digits ("." | "." digits "_" | "." digits? [eE] [-+]?)
                                            { return end(TK_ERROR, SE_REAL); }

        address                             { return end(TK_ADDRESS); }
        "%" ([IQM] [XBWDL]?)?                { return end(TK_ERROR, SE_ADDRESS); }
        address [._]                        { return end(TK_ERROR, SE_ADDRESS); }

        [']                                 { goto single; }
        ["]                                 { goto pair; }
        "(*"                                { goto comment; }

        "+"  { return end(TK_OPERATOR, OP_PLUS); }
        "-"  { return end(TK_OPERATOR, OP_MINUS); }
        "/"  { return end(TK_OPERATOR, OP_DIV); }
        "&"  { return end(TK_OPERATOR, OP_AMPERSAND); }
        "("  { return end(TK_OPERATOR, OP_LPAREN); }
        ")"  { return end(TK_OPERATOR, OP_RPAREN); }
        ";"  { return end(TK_OPERATOR, OP_SEMICOLON); }
        ","  { return end(TK_OPERATOR, OP_COMMA); }
        "["  { return end(TK_OPERATOR, OP_LBRACKET); }
        "]"  { return end(TK_OPERATOR, OP_RBRACKET); }
        "*"  { return end(TK_OPERATOR, OP_MUL); }
        "**" { return end(TK_OPERATOR, OP_POWER); }
        "<"  { return end(TK_OPERATOR, OP_LT); }
        "<>" { return end(TK_OPERATOR, OP_NE); }
        "<=" { return end(TK_OPERATOR, OP_LE); }
        ">"  { return end(TK_OPERATOR, OP_GT); }
        ">=" { return end(TK_OPERATOR, OP_GE); }
        ":"  { return end(TK_OPERATOR, OP_COLON); }
        ":=" { return end(TK_OPERATOR, OP_ASSIGN); }
        "="  { return end(TK_OPERATOR, OP_EQ); }
        "=>" { return end(TK_OPERATOR, OP_ARROW); }
        "."  { return end(TK_OPERATOR, OP_DOT); }
        ".." { return end(TK_OPERATOR, OP_RANGE); }

        *                                   { return end(TK_ERROR, SE_NO_TOKEN); }
        */

    // What may have line breaks in it.
    single:
        /*!re2c
        [']                                 { return end(TK_STRING); }
        "\n"                                { ++line_; goto single; }
        (any \ ['$\n])+ | escape            { goto single; }
        "$" hex?                            { return end(TK_ERROR, SE_STRING); }
        *                                   { --p; return end(TK_ERROR, SE_STRING); }
        */
    pair:
        /*!re2c
        ["]                                 { return end(TK_STRING); }
        "\n"                                { ++line_; goto pair; }
        (any \ ["$\n])+ | escape            { goto pair; }
        "$" hex?                            { return end(TK_ERROR, SE_STRING); }
        *                                   { --p; return end(TK_ERROR, SE_STRING); }
        */
    comment:
        /*!re2c
        "*" ")"                             { return end(TK_COMMENT); }
        "\n"                                { ++line_; goto comment; }
        (any \ [*\n])+ | "*"                { goto comment; }
        *                                   { --p; return end(TK_ERROR, SE_COMMENT); }
        */
    }
}

}  // namespace lq::bench
