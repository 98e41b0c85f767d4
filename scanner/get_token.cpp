// GetToken, and the short way to the commonest tokens.
//
// Nine tokens out of ten are words, operators and line breaks with no more than a few blanks before
// them. Here they are recognised with the reader's position in a register, and nothing but texts in
// buffers is written before all is certain. Whatever is not as usual (the half ends, the host takes
// a character into a word) is left to the Recogniser, which begins anew. This took a fifth off the
// time of scanning.
#include "lq_model.h"
#include "scanner/escapes.h"
#include "scanner/recogniser.h"
#include "scanner/short_time.h"
#include "scanner/short_token.h"

using namespace lq::scanner;

namespace {

constexpr char16_t kEnd = Scanner::kEndOfInput;
constexpr int32_t kLongest = BufferPair::kShort;

// Where a token begins, behind blanks and the line breaks that are no tokens.
struct Beginning {
    const char16_t* blanks;
    const char16_t* at;
    unsigned classes;  // of the character there; kLineEnd when the token is a line break
    int32_t lineBreaks;
};

// 0 for a carriage return alone.
inline int32_t LineBreakLength(const char16_t* at) {
    return *at == u'\n' ? 1 : at[1] == u'\n' ? 2 : 0;
}

inline Beginning FindBeginning(const char16_t* at) {
    for (int32_t lineBreaks = 0;; ++lineBreaks) {
        const char16_t* const blanks = at;
        unsigned classes = ClassesOf(*at);
        if ((classes & kBlank) != 0) {
            at = BlankRun::Hurry(at + 1);
            while (BlankRun::Belongs(*at)) {
                ++at;
            }
            classes = ClassesOf(*at);
        }
        if ((classes & kLineEnd) == 0) {
            return {blanks, at, classes, lineBreaks};
        }
        const int32_t length = LineBreakLength(at);
        if (length == 0 || !Is(at[length], kIndent)) {
            return {blanks, at, classes, lineBreaks};
        }
        at += length;
    }
}

inline int32_t AddLines(int32_t line, int32_t count) {
    return static_cast<int32_t>(static_cast<uint32_t>(line) + static_cast<uint32_t>(count));
}

constexpr bool IsTime(TOKEN_KIND kind) {
    return kind >= TK_TIME && kind <= TK_TIME_OF_DAY;
}

// The next two return a token's length, 0 when it is not short.

inline int32_t ShortOperator(const char16_t* at, uint16_t& code) {
    const Lead& lead = kLeads[*at];
    const char16_t second = at[1];
    if (second == kEnd || (lead.kind == LeadKind::kParenthesis && second == u'*')) {
        return 0;
    }
    code = lead.code;
    for (const Lead::Longer& longer : lead.longer) {
        if (longer.second == second) {
            code = longer.code;
            return at[2] == kEnd ? 0 : 2;
        }
    }
    return 1;
}

// The text from `at` to `end`, which is left in `text`; 0 when one of `marks` follows, or a
// character that the host takes into it.
inline int32_t ShortText(const char16_t* at, const char16_t* end, unsigned marks, char16_t* text) {
    const auto length = static_cast<int32_t>(end - at);
    const unsigned behind = ClassesOf(*end);
    if (length >= kLongest || (behind & marks) != 0) {
        return 0;
    }
    BufferPair::CopyShort(text, at, length);
    if ((behind & kSpace) == 0 && !lq::chars::IsSpace(*end)) {
        text[length] = *end;
        text[length + 1] = 0;
        if (CheckIdentifier(nullptr, text, 1) == 0) {
            return 0;
        }
    }
    text[length] = 0;
    return length;
}

inline const char16_t* WordEnd(const char16_t* at) {
    const char16_t* end = WordRun::Hurry(at + 1);
    while (WordRun::Belongs(*end)) {
        ++end;
    }
    return end;
}

// The string at `at`, whose value is left in `value`; 0 when it goes on in another line or half,
// ends otherwise than with its quote, or has an escape of hex digits. Strings took half the time.
inline int32_t ShortString(const char16_t* at, char16_t* value) {
    const char16_t quote = *at;
    const char16_t* from = at + 1;
    for (;;) {
        const char16_t* end = StringRun::Hurry(from);
        while (StringRun::Belongs(*end)) {
            ++end;
        }
        if (end - at >= kLongest) {
            return 0;
        }
        BufferPair::CopyShort(value, from, static_cast<int32_t>(end - from));
        value += end - from;
        if (*end == quote) {
            *value = 0;
            return end[1] == kEnd ? 0 : static_cast<int32_t>(end + 1 - at);
        }
        if (*end == u'$') {
            const Escape* const escape = FindEscape(*++end);
            if (!escape) {
                return 0;
            }
            value[0] = escape->stored[0];
            value[1] = escape->stored[1];
            value += value[1] != 0 ? 2 : 1;
        } else if (*end == kEnd || *end == u'\n' || (*end == u',' && commaEndsString.IsSet())) {
            return 0;
        } else {
            *value++ = *end;
        }
        from = end + 1;
    }
}

// What the token at `b` is when it is short, else a length of 0; its text is then in `text`, the
// value of a string or time in `value` or `time`.
inline Short RecogniseShort(const Beginning& b, const Scanner& scanner, char16_t* text,
                            char16_t* value, Time& time) {
    Short s;
    if ((b.classes & kWordLead) != 0) {
        const char16_t* const end = WordEnd(b.at);
        if (*end != u'#') {
            s.length = ShortText(b.at, end, kWordMark, text);
            s.kind = TK_IDENTIFIER;
            if (s.length != 0 && Recogniser::FindKeyword(scanner, s.length, s.code)) {
                s.kind = TK_KEYWORD;
            }
            return s;
        }
        if (const char16_t* const behind = ShortTime(b.at, end, s.kind, time)) {
            s.length = static_cast<int32_t>(behind - b.at);
        }
    } else if ((b.classes & kDecimal) != 0) {
        const DigitsAtHand digits = DigitsAt(b.at);
        if (digits.count <= kMaxDecimalDigits && digits.value <= UINT32_MAX) {
            s.length = ShortText(b.at, b.at + digits.count, kNumberMark, text);
        }
        if (s.length != 0) {
            s.kind = TK_INTEGER;
            s.integer = static_cast<uint32_t>(digits.value);
            return s;
        }
        if (!ShortBased(b.at, s) && !ShortReal(b.at, digits, s)) {
            return s;
        }
    } else if ((b.classes & kOperatorLead) != 0) {
        s.length = ShortOperator(b.at, s.code);
        s.kind = TK_OPERATOR;
    } else if ((b.classes & kLineEnd) != 0) {
        s.length = LineBreakLength(b.at);
        s.kind = TK_NEWLINE;
    } else if ((b.classes & kQuote) != 0) {
        s.length = ShortString(b.at, value);
        s.kind = TK_STRING;
    }
    BufferPair::CopyShort(text, b.at, s.length);
    text[s.length] = 0;
    return s;
}

}  // namespace

Token Scanner::GetToken() {
    if (!reader || SrcEx || HugeBufLen != 0) {
        return GetAnyToken();
    }
    const Beginning b = FindBeginning(reader->At());
    const auto blankCount = static_cast<int32_t>(b.at - b.blanks);
    if (*b.at == kEnd || blankCount > kLongest) {
        return GetAnyToken();
    }
    const Short s = RecogniseShort(b, *this, textBuf, valueBuf, time);
    if (s.length == 0 && s.kind == TK_NEWLINE) {
        return GetAnyToken();
    }
    if (blankCount != 0) {
        BufferPair::CopyShort(spaceBuf, b.blanks, blankCount);
    }
    spaceBuf[blankCount] = 0;
    const int32_t firstLine = nActLine;
    nActLine = AddLines(firstLine, b.lineBreaks);
    reader->MoveTo(b.at + s.length);
    if (s.length == 0) {
        token.space = spaceBuf;
        Recogniser(*this).RecogniseHere();
        return token;
    }
    Token result;
    result.kind = s.kind;
    result.line = nActLine;
    if (s.kind == TK_NEWLINE) {  // counts from the line that the first of the breaks ends
        result.line = firstLine;
        nActLine = AddLines(nActLine, 1);
    }
    result.text = textBuf;
    result.space = spaceBuf;
    if (s.kind == TK_OPERATOR || s.kind == TK_KEYWORD) {
        token.SetFirst(s.code);
    } else if (s.kind == TK_INTEGER || s.kind == TK_BASED_INTEGER) {
        token.SetFirst(s.integer);
    } else if (s.kind == TK_REAL) {
        token.SetFirst(s.real);
    } else if (s.kind == TK_STRING) {
        token.SetValue(static_cast<const char16_t*>(valueBuf));
    } else if (IsTime(s.kind)) {
        token.SetValue(&time);
    }
    result.SetValue(token.GetBytes());
    return result;
}

// A token of any kind, with anything before it.
Token Scanner::GetAnyToken() {
    if (reader) {
        Recogniser(*this).Recognise();
    } else {
        token.kind = TK_EOF;
        token.line = nActLine;
        token.text = textBuf;
        token.space = spaceBuf;
        token.SetValue(static_cast<const char16_t*>(valueBuf));
    }
    return token;
}
