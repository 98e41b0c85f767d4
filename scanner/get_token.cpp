// GetToken, and the short way to the commonest tokens.
//
// Nine tokens out of ten are words, operators and line breaks with no more than a few blanks before
// them. Here they are recognised with the reader's position in a register, and nothing but texts in
// buffers is written before all is certain. Whatever is not as usual (the half ends, "#" follows a
// word, the host takes a character into it) is left to the Recogniser, which begins anew. This took
// a fifth off the time of scanning.
#include <iterator>

#include "lq_data/containers.h"
#include "lq_model.h"
#include "scanner/keyword_cache.h"
#include "scanner/process_state.h"
#include "scanner/recogniser.h"

using namespace lq::scanner;

namespace {

constexpr char16_t kEnd = Scanner::kEndOfInput;
constexpr int32_t kLongest = BufferPair::kShort;

// Where a token begins, behind blanks and the line breaks that are no tokens.
struct Beginning {
    const char16_t* blanks;
    const char16_t* at;
    int32_t lineBreaks;
    bool isLineBreak;
};

inline Beginning FindBeginning(const char16_t* at) {
    for (int32_t lineBreaks = 0;; ++lineBreaks) {
        const char16_t* const blanks = at;
        if (Is(*at, kBlank)) {
            at = BlankRun::Hurry(at + 1);
            while (BlankRun::Belongs(*at)) {
                ++at;
            }
        }
        const char16_t* const feed = *at == u'\r' ? at + 1 : at;
        if (*feed != u'\n') {
            return {blanks, at, lineBreaks, false};
        }
        if (!Is(feed[1], kIndent)) {
            return {blanks, at, lineBreaks, true};
        }
        at = feed + 1;
    }
}

inline int32_t AddLines(int32_t line, int32_t count) {
    return static_cast<int32_t>(static_cast<uint32_t>(line) + static_cast<uint32_t>(count));
}

// The next two return a token's length, 0 when it is not short.

inline int32_t ShortOperator(const char16_t* at, const Lead& lead, uint16_t& code) {
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
    if (length >= kLongest || Is(*end, kWordMark)) {
        return 0;
    }
    BufferPair::CopyShort(text, at, length);
    if (!lq::chars::IsSpace(*end)) {
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

bool Recogniser::FindKeyword(const Scanner& scanner, int32_t length, uint16_t& id) {
    static constexpr char16_t kCommentWord[] = u"B_COMMENT";
    const char16_t* const word = scanner.textBuf;
    if (length == std::size(kCommentWord) - 1 && lq::chars::Equal(word, kCommentWord)) {
        commaEndsString = true;
    }
    int32_t found;
    if (!scanner.keywordCache->Find(word, length, found)) {
        found = scanner.keywords->GetID(word);
    }
    id = static_cast<uint16_t>(found);
    return found >= 0;
}

Token Scanner::GetToken() {
    if (!reader || SrcEx || HugeBufLen != 0) {
        return GetAnyToken();
    }
    const Beginning b = FindBeginning(reader->At());
    const auto blankCount = static_cast<int32_t>(b.at - b.blanks);
    const Lead& lead = kLeads[lq::chars::IsAscii(*b.at) ? *b.at : 0];
    TOKEN_KIND kind = TK_NEWLINE;
    uint16_t code = 0;
    int32_t length = 0;
    if (b.isLineBreak) {
        length = *b.at == u'\n' ? 1 : 2;
    } else if (lead.kind == LeadKind::kLetter) {
        length = ShortWord(b.at, textBuf);
    } else if (lead.kind >= LeadKind::kParenthesis) {
        length = ShortOperator(b.at, lead, code);
        kind = TK_OPERATOR;
    }
    if (length == 0 || blankCount > kLongest) {
        return GetAnyToken();
    }
    if (lead.kind == LeadKind::kLetter) {
        kind = Recogniser::FindKeyword(*this, length, code) ? TK_KEYWORD : TK_IDENTIFIER;
    } else {
        BufferPair::CopyShort(textBuf, b.at, length);
        textBuf[length] = 0;
    }
    BufferPair::CopyShort(spaceBuf, b.blanks, blankCount);
    spaceBuf[blankCount] = 0;

    Token result;
    result.kind = kind;
    // A line break counts from the line that the first one ends, any other token from its own.
    const int32_t firstLine = nActLine;
    nActLine = AddLines(nActLine, b.lineBreaks + (b.isLineBreak ? 1 : 0));
    result.line = b.isLineBreak ? firstLine : nActLine;
    result.text = textBuf;
    result.space = spaceBuf;
    if (kind == TK_OPERATOR || kind == TK_KEYWORD) {
        token.SetCode(code);
    }
    result.SetValue(token.GetBytes());
    current = b.at[length];
    reader->MoveTo(b.at + length);
    return result;
}

// A token of any kind.
Token Scanner::GetAnyToken() {
    if (reader) {
        Recogniser(*this).Recognise();
        current = reader->Current();
    } else {
        token.kind = TK_EOF;
        token.line = nActLine;
        token.text = textBuf;
        token.space = spaceBuf;
        token.SetValue(static_cast<const char16_t*>(valueBuf));
    }
    return token;
}
