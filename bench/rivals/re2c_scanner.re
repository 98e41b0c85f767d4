// The re2c rival: the rules as code, each state a place in the program.
#include "bench/rivals/rivals.h"
#include "lq_data/scanner.h"

namespace lq::bench {

namespace {

// The kind of the token at `p`, which moves behind it; TK_EOF at the end.
inline TOKEN_KIND Next(const unsigned char*& p) {
    const unsigned char* marker;
    const unsigned char* context;
    for (;;) {
        /*!re2c
        re2c:define:YYCTYPE = "unsigned char";
        re2c:define:YYCURSOR = p;
        re2c:define:YYMARKER = marker;
        re2c:define:YYCTXMARKER = context;
        re2c:yyfill:enable = 0;

        any     = [^\x00];
        letter  = [A-Za-z\xC0];
        begin   = letter | "_" | "@" [A-Za-z0-9\xC0];
        word    = begin [A-Za-z0-9_\xC0]*;
        digits  = [0-9] ("_"? [0-9])*;
        hex     = [0-9A-Fa-f];
        power   = [eE] [-+]? digits;
        pair    = "0" [1-9A-Fa-f] | [1-9A-Fa-f] hex;
        escape  = "$" (pair | [$'"lLnNpPrRtT]);
        inner   = any \ ['$] | escape;
        inner2  = any \ ["$] | escape;
        body    = (any \ [*] | "*"+ (any \ [*)]))*;
        unit    = [dDhHmMsS] | "ms" | "MS";
        part    = digits ("." digits)? unit;
        clock   = digits ":" digits ":" digits ("." digits)?;
        day     = digits "-" digits "-" digits;
        address = "%" [IQM] [XBWDL]? digits ("." digits)*;

        "\x00"                              { --p; return TK_EOF; }
        [ \t]+                              { continue; }
        "\r"? "\n" / (any \ [ \t\r])        { return TK_NEWLINE; }
        "\r"? "\n"                          { continue; }
        "\r"                                { return TK_ERROR; }

        word                                { return TK_IDENTIFIER; }
        "@"                                 { return TK_ERROR; }
        word "#"                            { return TK_ERROR; }
        ("TIME" | "time" | "T" | "t") "#" "-"? part ("_"? part)*    { return TK_TIME; }
        ("DATE" | "date" | "D" | "d") "#" day                       { return TK_DATE; }
        ("TIME_OF_DAY" | "time_of_day" | "TOD" | "tod") "#" clock   { return TK_TIME_OF_DAY; }
        ("DATE_AND_TIME" | "date_and_time" | "DT" | "dt") "#" day "-" clock
                                            { return TK_DATE_AND_TIME; }

        digits                              { return TK_INTEGER; }
        digits ".."                         { return TK_RANGE_START; }
        digits "." digits power?            { return TK_REAL; }
        digits "." power                    { return TK_REAL; }
        "2#" [01] ("_"? [01])*              { return TK_BASED_INTEGER; }
        "8#" [0-7] ("_"? [0-7])*            { return TK_BASED_INTEGER; }
        "16#" hex ("_"? hex)*               { return TK_BASED_INTEGER; }
        digits ("_" | "." | "."? digits "_" | "." digits? [eE] [-+]? | "#")
                                            { return TK_ERROR; }

        address                             { return TK_ADDRESS; }
        "%" [IQM]? [XBWDL]?                 { return TK_ERROR; }
        address [._]                        { return TK_ERROR; }

        ['] inner* [']                      { return TK_STRING; }
        ["] inner2* ["]                     { return TK_STRING; }
        ['] inner* ("$" hex?)?              { return TK_ERROR; }
        ["] inner2* ("$" hex?)?             { return TK_ERROR; }

        "(*" body "*"+ ")"                  { return TK_COMMENT; }
        "(*" body "*"*                      { return TK_ERROR; }

        [-+/&();,*<>:=.\[\]]                { return TK_OPERATOR; }
        "**" | "<>" | "<=" | ">=" | ":=" | "=>" | ".."  { return TK_OPERATOR; }

        *                                   { return TK_ERROR; }
        */
    }
}

}  // namespace

KindCounts CountWithRe2c(const std::string& text) {
    KindCounts counts;
    const auto* p = reinterpret_cast<const unsigned char*>(text.c_str());
    for (TOKEN_KIND kind = Next(p); kind != TK_EOF; kind = Next(p)) {
        ++counts.of[kind];
    }
    return counts;
}

}  // namespace lq::bench
