// The frame of recognition: blanks, the first character, line breaks, operators, comments.
#include "scanner/recogniser.h"

#include <iterator>

using lq::chars::IsLetter;

void Recogniser::Empty() {
    s_.textBuf[0] = s_.valueBuf[0] = 0;
    s_.stringLength = 0;
}

void Recogniser::SkipBlanks() {
    if (s_.SrcEx || s_.HugeBufLen != 0 || s_.HugeBufComplete) {
        s_.FreeHugeBuffer();
    }
    int32_t length = 0;
    if (IsA(lq::scanner::kBlank)) {
        reader_.BeginBlanks();
        PassRun(lq::scanner::BlankRun(), [this, &length](const char16_t* blanks, int32_t count) {
            length +=
                BufferPair::CopyPiece(s_.spaceBuf + length, kValueLength - length, blanks, count);
        });
    }
    s_.spaceBuf[length] = 0;
    s_.token.space = s_.spaceBuf;
    reader_.BeginToken();
}

void Recogniser::Parenthesis() {
    Next();
    if (At(u'*')) {
        return Comment();
    }
    s_.token.SetFirst(uint16_t{OP_LPAREN});
    Finish(TK_OPERATOR);
}

void Recogniser::Operator(const Lead& lead) {
    Next();
    uint16_t code = lead.code;
    for (const Lead::Longer& longer : lead.longer) {
        if (longer.second != Lead::kNoSecond && At(longer.second)) {
            Next();
            code = longer.code;
            break;
        }
    }
    s_.token.SetFirst(code);
    Finish(TK_OPERATOR);
}

void Recogniser::Dispatch() {
    const char16_t c = Current();
    static constexpr Lead kNoLead;
    const Lead& lead = lq::chars::IsAscii(c) ? lq::scanner::kLeads[c] : kNoLead;
    switch (lead.kind) {
        case LeadKind::kDigit:
            return Number();
        case LeadKind::kLetter:
            return Identifier();
        case LeadKind::kAtSign:
            return AtSignIdentifier();
        case LeadKind::kPercent:
            return DirectAddress();
        case LeadKind::kQuote:
            return String();
        case LeadKind::kParenthesis:
            return Parenthesis();
        case LeadKind::kOperator:
            return Operator(lead);
        case LeadKind::kEnd:
            return EndOfInput();
        case LeadKind::kOther:
            return IsLetter(c) ? Identifier() : NoToken();
    }
}

void Recogniser::Recognise() {
    Empty();
    do {
        SkipBlanks();
        if (!At(u'\n') && !At(u'\r')) {
            Dispatch();
            return;
        }
    } while (!LineBreak());
}

void Recogniser::RecogniseHere() {
    Empty();
    reader_.BeginToken();
    Dispatch();
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

void Recogniser::Comment() {
    Next();
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
    int32_t length;
    if (const char16_t* text = reader_.InPlace(length)) {
        length = BufferPair::CopyPiece(s_.valueBuf, kValueLength, text + kDelimiter,
                                       length - 2 * kDelimiter);
        s_.valueBuf[length] = 0;
    } else {
        reader_.CopyText(s_.valueBuf, Scanner::kBufferSize, kDelimiter, kDelimiter);
    }
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
