// The frame of recognition: blanks, the first character, line breaks, operators, comments.
#include "scanner/recogniser.h"

#include <array>
#include <iterator>

using lq::chars::IsDigit;
using lq::chars::IsLetter;

namespace {

// Operators of one character, which are also how the longer ones begin.
struct ShortOperator {
    char16_t character;
    OPERATOR_CODE code;
};
constexpr ShortOperator kShortOperators[] = {
    {u'+', OP_PLUS},     {u'-', OP_MINUS},    {u'/', OP_DIV},       {u'&', OP_AMPERSAND},
    {u'(', OP_LPAREN},   {u')', OP_RPAREN},   {u';', OP_SEMICOLON}, {u',', OP_COMMA},
    {u'[', OP_LBRACKET}, {u']', OP_RBRACKET}, {u'*', OP_MUL},       {u'<', OP_LT},
    {u'>', OP_GT},       {u':', OP_COLON},    {u'=', OP_EQ},        {u'.', OP_DOT},
};

struct LongOperator {
    char16_t first;
    char16_t second;
    OPERATOR_CODE code;
};
constexpr LongOperator kLongOperators[] = {
    {u'*', u'*', OP_POWER},  {u'<', u'>', OP_NE},    {u'<', u'=', OP_LE},    {u'>', u'=', OP_GE},
    {u':', u'=', OP_ASSIGN}, {u'=', u'>', OP_ARROW}, {u'.', u'.', OP_RANGE},
};

consteval std::array<Recogniser::Lead, 128> MakeLeads() {
    using LeadKind = Recogniser::LeadKind;
    std::array<Recogniser::Lead, 128> leads{};
    for (unsigned i = 0; i < leads.size(); ++i) {
        const auto c = static_cast<char16_t>(i);
        if (IsDigit(c)) {
            leads[c].kind = LeadKind::kDigit;
        } else if (lq::chars::HasAsciiClass(c, lq::chars::kLetter) || c == u'_') {
            leads[c].kind = LeadKind::kLetter;
        }
    }
    for (const ShortOperator& op : kShortOperators) {
        leads[op.character].kind = LeadKind::kOperator;
        leads[op.character].code = static_cast<uint8_t>(op.code);
    }
    for (const LongOperator& op : kLongOperators) {
        auto& longer = leads[op.first].longer;
        longer[longer[0].second == 0 ? 0 : 1] = {static_cast<uint8_t>(op.second),
                                                 static_cast<uint8_t>(op.code)};
    }
    leads[u'('].kind = LeadKind::kParenthesis;
    leads[u'@'].kind = LeadKind::kAtSign;
    leads[u'%'].kind = LeadKind::kPercent;
    leads[u'\''].kind = leads[u'"'].kind = LeadKind::kQuote;
    leads[Scanner::kEndOfInput].kind = LeadKind::kEnd;
    return leads;
}

// By first character.
constexpr std::array<Recogniser::Lead, 128> kLeads = MakeLeads();

}  // namespace

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
    Finish(TK_OPERATOR, uint16_t{OP_LPAREN});
}

void Recogniser::Operator(const Lead& lead) {
    Next();
    uint16_t code = lead.code;
    for (const Lead::Longer& longer : lead.longer) {
        if (longer.second != 0 && At(longer.second)) {
            Next();
            code = longer.code;
            break;
        }
    }
    Finish(TK_OPERATOR, code);
}

void Recogniser::Dispatch() {
    const char16_t c = Current();
    static constexpr Lead kNoLead;
    const Lead& lead = lq::chars::IsAscii(c) ? kLeads[c] : kNoLead;
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
