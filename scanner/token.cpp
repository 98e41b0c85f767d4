#include "lq_data/scanner.h"

LQ_IMPLEMENT_DYNAMIC(Token, CObject, nullptr)
LQ_IMPLEMENT_DYNAMIC(Address, CObject, nullptr)

static_assert(sizeof(void*) <= sizeof(Token::value) && sizeof(double) == sizeof(Token::value));

void Token::Clear() {
    kind = TK_NONE;
    line = 0;
    text = nullptr;
    SetValue(uint64_t{0});
}
