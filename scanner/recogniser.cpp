// GetToken, and what every token needs: blanks and line breaks in front of it, and the choice of
// its rule by its first character. And the rules of operators and comments.
#include "scanner/recogniser.h"

#include "scanner/identifier.h"
#include "scanner/number.h"
#include "scanner/string_literal.h"

using lq::scanner::InPlace;
using lq::scanner::Ring;

template <typename Cursor>
inline void Recogniser<Cursor>::SkipBlanks() {
    int32_t length = 0;
    if (IsA(lq::scanner::kBlank)) {
        cursor_.BeginBlanks();
        cursor_.PassRun(lq::scanner::BlankRun(), [&](const char16_t* blanks, int32_t count) {
            length +=
                BufferPair::CopyPiece(s_.spaceBuf + length, kValueLength - length, blanks, count);
        });
    }
    s_.spaceBuf[length] = 0;
    cursor_.BeginToken();
}

// A line break is a token only when the next line starts in its first column.
template <typename Cursor>
inline Found Recogniser<Cursor>::Recognise() {
    for (;;) {
        if (s_.SrcEx || (s_.HugeBufLen | s_.HugeBufComplete) != 0) {
            s_.FreeHugeBuffer();
        }
        SkipBlanks();
        if (!IsA(lq::scanner::kLineEnd)) {
            return Dispatch();
        }
        if (At(u'\r')) {
            Next();
            if (!At(u'\n')) {
                return Fail(SE_LINE_END);
            }
        }
        Next();
        CountLine();
        if (!IsA(lq::scanner::kIndent)) {
            return Finish(TK_NEWLINE);
        }
    }
}

template <typename Cursor>
inline Found Recogniser<Cursor>::Dispatch() {
    const unsigned classes = lq::scanner::ClassesOf(Current());
    if ((classes & lq::scanner::kWordLead) != 0) {
        return Identifier();
    }
    if ((classes & lq::scanner::kDecimal) != 0) {
        return Number();
    }
    if ((classes & lq::scanner::kOperatorLead) != 0) {
        return Operator();
    }
    if ((classes & lq::scanner::kQuote) != 0) {
        return String();
    }
    return Apart().Rare();
}

template <typename Cursor>
[[gnu::noinline]] Found Recogniser<Cursor>::Rare() {
    switch (Current()) {
        case u'@':
            return AtSignIdentifier();
        case u'%':
            return DirectAddress();
        case kEnd:
            return EndOfInput();
        default:
            break;
    }
    if (lq::chars::IsLetter(Current())) {
        return Identifier();
    }
    Next();
    return Fail(SE_NO_TOKEN);
}

template <typename Cursor>
inline Found Recogniser<Cursor>::Operator() {
    using lq::scanner::Lead;
    const Lead& lead = lq::scanner::kLeads[Current()];
    Next();
    uint16_t code = lead.code;
    for (const Lead::Longer& longer : lead.longer) {
        if (longer.second != Lead::kNoSecond && At(longer.second)) {
            Next();
            code = longer.code;
            break;
        }
    }
    if (code == lq::scanner::kCommentBegins) {
        return Apart().Comment();
    }
    return Finish(TK_OPERATOR, code);
}

template <typename Cursor>
[[gnu::noinline]] Found Recogniser<Cursor>::Comment() {
    for (;;) {
        PassRun(lq::scanner::CommentRun());
        const char16_t c = Current();
        if (c == kEnd) {
            return Fail(SE_COMMENT);
        }
        Next();
        if (c == u'\n') {
            CountLine();
        } else if (At(u')')) {
            break;
        }
    }
    Next();
    constexpr int32_t kDelimiter = 2;
    cursor_.CopyText(s_.valueBuf, kDelimiter, kDelimiter);
    return Finish(TK_COMMENT, static_cast<const char16_t*>(s_.valueBuf));
}

template <typename Cursor>
Found Recogniser<Cursor>::EndOfInput() {
    static constexpr char16_t kSentence[] = u"The end of the input has been reached.";
    for (size_t i = 0; i < std::size(kSentence); ++i) {
        s_.valueBuf[i] = kSentence[i];
    }
    const Found found = Finish(TK_EOF, static_cast<const char16_t*>(s_.valueBuf));
    s_.textBuf[0] = kEnd;
    s_.textBuf[1] = 0;
    return found;
}

namespace {

[[gnu::noinline]] Found RecogniseInPieces(Scanner& scanner) {
    return Recogniser<Ring>(scanner).Recognise();
}

}  // namespace

[[gnu::flatten]] Token Scanner::GetToken() {
    Found found = {TK_EOF, nActLine};
    if (reader) {
        found = Recogniser<InPlace>(*this).Recognise();
        if (found.kind == TK_NONE) {
            found = RecogniseInPieces(*this);
        }
    } else {
        token.SetValue(static_cast<const char16_t*>(valueBuf));
    }
    // The caller copies the result in wide steps, and a processor makes a wide load wait for narrow
    // stores to the same place. So kind and line are written as one word: the assembler statement,
    // which does nothing, keeps the compiler from taking the word apart. All fields are read
    // before, so that the stores stand together.
    const char16_t* const text = textBuf;
    const char16_t* const space = spaceBuf;
    const uint64_t value = token.GetBytes();
    uint64_t kindAndLine = static_cast<uint32_t>(found.kind) |
                           static_cast<uint64_t>(static_cast<uint32_t>(found.line)) << 32;
    asm("" : "+r"(kindAndLine));
    Token result;
    result.kind = static_cast<int32_t>(kindAndLine);
    result.line = static_cast<int32_t>(kindAndLine >> 32);
    result.text = text;
    result.space = space;
    result.SetValue(value);
    return result;
}
