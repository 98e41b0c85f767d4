// The check of an initial value's syntax: a token list in which operands and operators alternate
// and brackets close what was opened.
//
//   values    = value { "," value }
//   value     = operand { operator operand } | name ":=" value | operand "(" [ values ] ")"
//   operand   = { sign } ( literal | name | "(" values ")" | "[" values "]" )
//
// The values themselves are not judged: whether they fit the type is a later stage's question.

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_model.h"
#include "lq_data/scanner.h"

namespace lq::host {

namespace {

class InitCheck {
  public:
    // Whether the token can follow what came before.
    bool Take(const Token& token) {
        return expectOperand_ ? TakeOperand(token) : TakeOperator(token);
    }

    bool IsComplete() const { return !expectOperand_ && depth_ == 0; }

  private:
    static constexpr int kMaxDepth = 64;  // as many brackets as the bits below

    bool TakeOperand(const Token& token) {
        switch (token.kind) {
            case TK_INTEGER:
            case TK_BASED_INTEGER:
            case TK_REAL:
            case TK_IDENTIFIER:
                if (chars::EqualNoCase(token.text, u"NOT")) {
                    return true;  // a sign of its own
                }
                [[fallthrough]];
            case TK_KEYWORD:
            case TK_ADDRESS:
            case TK_STRING:
            case TK_TIME:
            case TK_DATE_AND_TIME:
            case TK_DATE:
            case TK_TIME_OF_DAY:
                expectOperand_ = false;
                maybeMember_ = token.kind == TK_IDENTIFIER;
                maybeEmpty_ = false;
                return true;
            case TK_ERROR:
                return IsTypePrefix(token);
            case TK_OPERATOR:
                break;
            default:
                return false;
        }
        switch (token.GetCode()) {
            case OP_PLUS:
            case OP_MINUS:
                maybeEmpty_ = false;
                return true;
            case OP_LPAREN:
                return Open(false);
            case OP_LBRACKET:
                return Open(true);
            case OP_RPAREN:
                return maybeEmpty_ && Close(false);
            default:
                return false;
        }
    }

    bool TakeOperator(const Token& token) {
        if (token.kind == TK_IDENTIFIER) {
            return IsWordOperator(token) && ExpectOperand();
        }
        if (token.kind != TK_OPERATOR) {
            return false;
        }
        switch (token.GetCode()) {
            case OP_ASSIGN:
                return maybeMember_ && ExpectOperand();
            case OP_COMMA:
            case OP_PLUS:
            case OP_MINUS:
            case OP_MUL:
            case OP_DIV:
            case OP_POWER:
            case OP_AMPERSAND:
            case OP_DOT:
                return ExpectOperand();
            case OP_LPAREN:  // a repetition, 3(0)
                maybeEmpty_ = Open(false);
                return maybeEmpty_;
            case OP_RPAREN:
                return Close(false);
            case OP_RBRACKET:
                return Close(true);
            default:
                return false;
        }
    }

    // "INT#" before its value: the scanner knows typed literals of times and dates only.
    static bool IsTypePrefix(const Token& token) {
        const std::size_t length = chars::Length(token.text);
        return token.GetNumber() == SE_TIME && length > 1 && token.text[length - 1] == u'#';
    }

    static bool IsWordOperator(const Token& token) {
        for (const char16_t* word : {u"MOD", u"AND", u"OR", u"XOR"}) {
            if (chars::EqualNoCase(token.text, word)) {
                return true;
            }
        }
        return false;
    }

    bool ExpectOperand() {
        expectOperand_ = true;
        maybeMember_ = false;
        maybeEmpty_ = false;
        return true;
    }

    bool Open(bool square) {
        if (depth_ == kMaxDepth) {
            return false;
        }
        square_ = (square_ << 1) | (square ? 1u : 0u);
        ++depth_;
        return ExpectOperand();
    }

    bool Close(bool square) {
        if (depth_ == 0 || ((square_ & 1) != 0) != square) {
            return false;
        }
        square_ >>= 1;
        --depth_;
        expectOperand_ = false;
        maybeMember_ = false;
        return true;
    }

    bool expectOperand_ = true;
    bool maybeMember_ = false;  // the last token is a name, which may be assigned to
    bool maybeEmpty_ = false;   // the last token opened a repetition
    uint64_t square_ = 0;       // the open brackets, the innermost lowest: 1 for "["
    int depth_ = 0;
};

// Most initial values: a few digits, perhaps with a point between them. What it gained: no scanner
// for them, a fifth of the instructions that loading a unit's header takes.
bool IsPlainNumber(const char16_t* text) {
    constexpr std::size_t kMostDigits = 9;  // fits any number
    const auto passDigits = [](const char16_t* from) {
        while (chars::IsDigit(*from)) {
            ++from;
        }
        return from;
    };
    const char16_t* end = passDigits(text);
    const bool hasPoint = end != text && *end == u'.' && chars::IsDigit(end[1]);
    end = hasPoint ? passDigits(end + 1) : end;
    const auto length = static_cast<std::size_t>(end - text);
    return *end == 0 && length != 0 && length <= kMostDigits;
}

bool IsInitSyntax(Scanner& scanner) {
    InitCheck check;
    bool empty = true;
    for (;;) {
        const Token token = scanner.GetToken();
        if (token.kind == TK_EOF) {
            return empty || check.IsComplete();
        }
        if (token.kind == TK_NEWLINE || token.kind == TK_COMMENT) {
            continue;
        }
        if (!check.Take(token)) {
            return false;
        }
        empty = false;
    }
}

}  // namespace

}  // namespace lq::host

// The check scanner may be lent out while this runs, so the text gets a scanner of its own. Without
// memory for one the text passes.
int CheckInitSyntax(ERRHANDLER*, const char16_t* text) {
    if (!text || *text == 0 || lq::host::IsPlainNumber(text)) {
        return 0;
    }
    auto* scanner = static_cast<Scanner*>(Scanner::CreateObject());
    if (!scanner) {
        return 0;
    }
    const auto length = static_cast<int32_t>(lq::chars::Length(text));
    MEMSTREAM_W stream(text, length, length, nullptr);
    scanner->Initialize(stream);
    const bool accepted = lq::host::IsInitSyntax(*scanner);
    delete scanner;
    return accepted ? 0 : 1;
}
