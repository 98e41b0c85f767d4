// GetToken, and the short way to the commonest tokens.
//
// Nine tokens out of ten are words, operators and line breaks with no more than a few blanks before
// them. Here they are recognised with the reader's position in a register, and nothing but texts in
// buffers is written before all is certain. Whatever is not as usual (the half ends, "#" follows a
// word, the host takes a character into it) is left to the Recogniser, which begins anew. This took
// a fifth off the time of scanning.
#include "lq_model.h"
#include "scanner/recogniser.h"

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

// Leaves the word in `text`.
inline int32_t ShortWord(const char16_t* at, char16_t* text) {
    const char16_t* end = WordRun::Hurry(at + 1);
    while (WordRun::Belongs(*end)) {
        ++end;
    }
    const auto length = static_cast<int32_t>(end - at);
    const unsigned behind = ClassesOf(*end);
    if (length >= kLongest || (behind & kWordMark) != 0) {
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
    TOKEN_KIND kind = TK_ERROR;
    uint16_t code = 0;
    int32_t length = 0;
    if ((b.classes & kWordLead) != 0) {
        length = ShortWord(b.at, textBuf);
        if (length != 0) {
            kind = Recogniser::FindKeyword(*this, length, code) ? TK_KEYWORD : TK_IDENTIFIER;
        }
    } else {
        if ((b.classes & kOperatorLead) != 0) {
            length = ShortOperator(b.at, code);
            kind = TK_OPERATOR;
        } else if ((b.classes & kLineEnd) != 0) {
            length = LineBreakLength(b.at);
            kind = TK_NEWLINE;
            if (length == 0) {
                return GetAnyToken();
            }
        }
        BufferPair::CopyShort(textBuf, b.at, length);
        textBuf[length] = 0;
    }
    if (blankCount != 0) {
        BufferPair::CopyShort(spaceBuf, b.blanks, blankCount);
    }
    spaceBuf[blankCount] = 0;
    // A line break counts from the line that the first one ends, any other token from its own.
    const int32_t firstLine = nActLine;
    nActLine = AddLines(firstLine, b.lineBreaks);
    reader->MoveTo(b.at + length);
    if (length == 0) {
        token.space = spaceBuf;
        Recogniser(*this).RecogniseHere();
        return token;
    }
    Token result;
    result.kind = kind;
    result.line = nActLine;
    if (kind == TK_NEWLINE) {
        result.line = firstLine;
        nActLine = AddLines(nActLine, 1);
    }
    result.text = textBuf;
    result.space = spaceBuf;
    if (kind == TK_OPERATOR || kind == TK_KEYWORD) {
        token.SetCode(code);
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
