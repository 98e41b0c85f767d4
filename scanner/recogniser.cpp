// The frame of recognition: blanks, the first character, line breaks, operators, comments.
#include "scanner/recogniser.h"

#include <iterator>

using lq::chars::IsDigit;
using lq::chars::IsLetter;

void Recogniser::Recognise() {
    s_.textBuf[0] = s_.valueBuf[0] = 0;
    s_.stringLength = 0;
    do {
        SkipBlanks();
        if (!At(u'\n') && !At(u'\r')) {
            Dispatch();
            return;
        }
    } while (!LineBreak());
}

void Recogniser::Finish(TOKEN_KIND kind) {
    reader_.CopyText(s_.textBuf, Scanner::kBufferSize, 0, 0);
    s_.token.kind = kind;
    s_.token.text = s_.textBuf;
    s_.token.line = s_.nActLine;
}

void Recogniser::SkipBlanks() {
    s_.FreeHugeBuffer();
    reader_.BeginBlanks();
    int32_t length = 0;
    while (At(u' ') || At(u'\t')) {
        if (length < kValueLength) {
            s_.spaceBuf[length++] = Current();
        }
        Next();
    }
    s_.spaceBuf[length] = 0;
    s_.token.space = s_.spaceBuf;
    reader_.BeginToken();
}

void Recogniser::Dispatch() {
    const char16_t c = Current();
    switch (c) {
        case u'_':
            return Identifier();
        case u'@':
            return AtSignIdentifier();
        case u'%':
            return DirectAddress();
        case u'\'':
        case u'"':
            return String();
        case u'(':
            return ParenthesisOrComment();
        case u'+':
            return Operator(OP_PLUS);
        case u'-':
            return Operator(OP_MINUS);
        case u'/':
            return Operator(OP_DIV);
        case u'&':
            return Operator(OP_AMPERSAND);
        case u')':
            return Operator(OP_RPAREN);
        case u';':
            return Operator(OP_SEMICOLON);
        case u',':
            return Operator(OP_COMMA);
        case u'[':
            return Operator(OP_LBRACKET);
        case u']':
            return Operator(OP_RBRACKET);
        case u'*':
            return OneOrTwo(OP_MUL, u'*', OP_POWER);
        case u'>':
            return OneOrTwo(OP_GT, u'=', OP_GE);
        case u':':
            return OneOrTwo(OP_COLON, u'=', OP_ASSIGN);
        case u'=':
            return OneOrTwo(OP_EQ, u'>', OP_ARROW);
        case u'.':
            return OneOrTwo(OP_DOT, u'.', OP_RANGE);
        case u'<':
            if (reader_.Peek() == u'>') {
                return OneOrTwo(OP_LT, u'>', OP_NE);
            }
            return OneOrTwo(OP_LT, u'=', OP_LE);
        case kEnd:
            return EndOfInput();
        default:
            break;
    }
    if (IsDigit(c)) {
        Number();
    } else if (IsLetter(c)) {
        Identifier();
    } else {
        NoToken();
    }
}

bool Recogniser::LineBreak() {
    if (At(u'\r')) {
        Next();
        if (!At(u'\n')) {
            Fail(SE_LINE_END);
            return true;
        }
    }
    return LineFeed();
}

// A line break is a token only when the next line starts in its first column.
bool Recogniser::LineFeed() {
    Next();
    CountLine();
    ++lineBreaks_;
    if (At(u' ') || At(u'\t') || At(u'\r') || At(kEnd)) {
        return false;
    }
    Finish(TK_NEWLINE);
    s_.token.line = static_cast<int32_t>(static_cast<uint32_t>(s_.nActLine) - lineBreaks_);
    return true;
}

void Recogniser::Operator(OPERATOR_CODE code) {
    Next();
    Finish(TK_OPERATOR, static_cast<uint16_t>(code));
}

void Recogniser::OneOrTwo(OPERATOR_CODE one, char16_t second, OPERATOR_CODE two) {
    Next();
    if (At(second)) {
        return Operator(two);
    }
    Finish(TK_OPERATOR, static_cast<uint16_t>(one));
}

void Recogniser::ParenthesisOrComment() {
    Next();
    if (At(u'*')) {
        return Comment();
    }
    Finish(TK_OPERATOR, static_cast<uint16_t>(OP_LPAREN));
}

void Recogniser::Comment() {
    Next();
    for (;;) {
        const char16_t c = Current();
        if (c == kEnd) {
            return Fail(SE_COMMENT);
        }
        Next();
        if (c == u'\n') {
            CountLine();
        } else if (c == u'*' && At(u')')) {
            break;
        }
    }
    Next();
    reader_.CopyText(s_.valueBuf, Scanner::kBufferSize, 2, 2);
    Finish(TK_COMMENT, static_cast<const char16_t*>(s_.valueBuf));
}

void Recogniser::EndOfInput() {
    static constexpr char16_t kSentence[] = u"The end of the input has been reached.";
    for (size_t i = 0; i < std::size(kSentence); ++i) {
        s_.valueBuf[i] = kSentence[i];
    }
    Finish(TK_EOF, static_cast<const char16_t*>(s_.valueBuf));
    s_.textBuf[0] = kEnd;
    s_.textBuf[1] = 0;
}

void Recogniser::NoToken() {
    Next();
    Fail(SE_NO_TOKEN);
}
