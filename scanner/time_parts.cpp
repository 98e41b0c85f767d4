#include "scanner/time_parts.h"

namespace lq::scanner {

TOKEN_KIND TimeKindOf(std::u16string_view word) {
    struct Prefix {
        std::u16string_view text;
        TOKEN_KIND kind;
    };
    static constexpr Prefix kPrefixes[] = {
        {u"T", TK_TIME},
        {u"t", TK_TIME},
        {u"TIME", TK_TIME},
        {u"time", TK_TIME},
        {u"TOD", TK_TIME_OF_DAY},
        {u"tod", TK_TIME_OF_DAY},
        {u"TIME_OF_DAY", TK_TIME_OF_DAY},
        {u"time_of_day", TK_TIME_OF_DAY},
        {u"D", TK_DATE},
        {u"d", TK_DATE},
        {u"DATE", TK_DATE},
        {u"date", TK_DATE},
        {u"DT", TK_DATE_AND_TIME},
        {u"dt", TK_DATE_AND_TIME},
        {u"DATE_AND_TIME", TK_DATE_AND_TIME},
        {u"date_and_time", TK_DATE_AND_TIME},
    };
    for (const Prefix& prefix : kPrefixes) {
        if (prefix.text == word) {
            return prefix.kind;
        }
    }
    return TK_ERROR;
}

}  // namespace lq::scanner
