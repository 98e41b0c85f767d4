// The leading word of a type text, and the length behind the string keyword.

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_model.h"
#include "lq_data/scanner.h"

namespace {

using namespace lq;

// Whether `text` begins with `keyword` as a whole word.
bool BeginsWith(const char16_t* text, const char16_t* keyword) {
    if (!text) {
        return false;
    }
    const std::size_t length = chars::Length(keyword);
    if (chars::CompareNoCase(text, keyword, length) != 0) {
        return false;
    }
    const char16_t next = text[length];
    return !chars::IsLetter(next) && !chars::IsDigit(next) && next != u'_';
}

Token NextToken(Scanner& scanner) {
    const Token token = scanner.GetToken();
    return token.kind == TK_NEWLINE ? scanner.GetToken() : token;
}

}  // namespace

int IsStringType(const char16_t* typeText) {
    return BeginsWith(typeText, u"STRING") ? 1 : 0;
}

int IsArrayType(const char16_t* typeText) {
    return BeginsWith(typeText, u"ARRAY") ? 1 : 0;
}

// A token cannot be given back. Without a length only the end may follow, and the scanner delivers
// that again at every further call.
int CheckStringSize(Scanner* scanner, int32_t& size) {
    if (!scanner) {
        return 0;
    }
    const Token opening = NextToken(*scanner);
    if (opening.kind == TK_EOF) {
        size = 0;
        return 1;
    }
    const bool round = opening.IsOperator(OP_LPAREN);
    if (!round && !opening.IsOperator(OP_LBRACKET)) {
        return 0;
    }
    const Token length = NextToken(*scanner);
    const bool number = length.kind == TK_INTEGER || length.kind == TK_BASED_INTEGER;
    if (!number || length.GetNumber() == 0 || length.GetNumber() > INT32_MAX) {
        return 0;
    }
    if (!NextToken(*scanner).IsOperator(round ? OP_RPAREN : OP_RBRACKET)) {
        return 0;
    }
    size = static_cast<int32_t>(length.GetNumber());
    return 1;
}
