// The texts of string types, array types and direct addresses.
#include "cgtab/declaration.h"
#include "cgtab/shared_scanner.h"
#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_framework.h"

namespace lq::cgtab {

namespace {

constexpr int32_t kDefaultStringLength = 32;

bool IsNumber(const Token& token) {
    return token.kind == TK_INTEGER || token.kind == TK_BASED_INTEGER;
}

ANY_INT_32 Signed(uint32_t magnitude, bool negative) {
    return {negative && magnitude != 0 ? 1 : 0, magnitude};
}

// The reading of an array type, token by token. Behind the element type one token is passed over,
// whatever it is but a sign: what the length of a string left, when it was none, is such a token.
class ArrayTypeReader {
  public:
    ArrayTypeReader(Scanner& scanner, CgTab::ArrDsc& a, CLQString& typeName)
        : scanner_(scanner), a_(a), typeName_(typeName) {}

    bool Read() {
        for (;;) {
            const Token token = NextToken(scanner_);
            if (!Take(token)) {
                return false;
            }
            if (token.kind == TK_EOF) {
                return state_ == kEnd;
            }
        }
    }

  private:
    enum State { kOpen, kLower, kUpper, kBehindExtent, kOf, kElement, kBehindElement, kEnd };
    enum Sign { kNoSign, kPlus, kMinus };

    bool Take(const Token& token) {
        switch (state_) {
            case kOpen:
                return GoIf(token.IsOperator(OP_LBRACKET), kLower);
            case kLower:
                return TakeSign(token) || TakeLower(token);
            case kUpper:
                return token.IsOperator(OP_RANGE) || TakeSign(token) || TakeUpper(token);
            case kBehindExtent:
                return GoIf(token.IsOperator(OP_COMMA), kLower) ||
                       GoIf(token.IsOperator(OP_RBRACKET), kOf);
            case kOf:
                return GoIf(token.IsKeyword(KW_OF), kElement);
            case kElement:
                return token.kind == TK_IDENTIFIER && TakeElement(token);
            case kBehindElement:
                return GoIf(!IsSign(token), kEnd);
            default:
                return token.kind == TK_EOF;
        }
    }

    bool GoIf(bool condition, State next) {
        if (condition) {
            state_ = next;
        }
        return condition;
    }

    static bool IsSign(const Token& token) {
        return token.IsOperator(OP_PLUS) || token.IsOperator(OP_MINUS);
    }

    bool TakeSign(const Token& token) {
        if (!IsSign(token) || sign_ != kNoSign) {
            return false;
        }
        sign_ = token.IsOperator(OP_MINUS) ? kMinus : kPlus;
        return true;
    }

    ANY_INT_32 TakeNumber(const Token& token) {
        const bool negative = sign_ == kMinus;
        sign_ = kNoSign;
        return Signed(token.GetNumber(), negative);
    }

    bool TakeLower(const Token& token) {
        if (token.kind != TK_INTEGER && token.kind != TK_RANGE_START) {
            return false;
        }
        ext_[0] = TakeNumber(token);
        state_ = kUpper;
        return true;
    }

    bool TakeUpper(const Token& token) {
        if (!IsNumber(token)) {
            return false;
        }
        ext_[1] = TakeNumber(token);
        const bool counted =
            AddSub32(1, ext_[1], ext_[0]) != 0 && AddSub32(0, ext_[1], {0, 1}) != 0;
        if (!counted || ext_[1].sign != 0 || !a_.info->AppendExt(&ext_, 1)) {
            return false;
        }
        state_ = kBehindExtent;
        return true;
    }

    bool TakeElement(const Token& token) {
        IecTypeConv types;
        const char16_t* end = nullptr;
        const IEC_TYPE type = types.GetId(token.text, end);
        if (type == IEC_ARRAY) {
            state_ = kOpen;  // the dimensions of the inner array join those of the outer
            return true;
        }
        a_.info->elemType = type;
        state_ = kBehindElement;
        if (type == IEC_STRING) {
            a_.elemDsc = ScanStringLength(scanner_);
            return a_.elemDsc != 0;
        }
        if (type == IEC_STRUCTURE) {
            typeName_ = token.text;
            a_.elemDsc = static_cast<uint32_t>(-1);
            return !typeName_.HasFailed();
        }
        return IsElementaryType(type) || IsGenericType(type);
    }

    Scanner& scanner_;
    CgTab::ArrDsc& a_;
    CLQString& typeName_;
    State state_ = kOpen;
    Sign sign_ = kNoSign;
    ANY_INT_32 ext_[2] = {};
};

}  // namespace

const char16_t* BehindWord(const char16_t* text) {
    while (chars::IsLetter(*text) || chars::IsDigit(*text) || *text == u'_') {
        ++text;
    }
    return text;
}

uint32_t DefaultStringLength() {
    return GetPrivateProfileIntW(u"Options", u"DefaultStringLength", kDefaultStringLength,
                                 GetIniName());
}

uint32_t ScanStringLength(Scanner& scanner) {
    const Token open = NextToken(scanner);
    if (!open.IsOperator(OP_LPAREN) && !open.IsOperator(OP_LBRACKET)) {
        return DefaultStringLength();
    }
    const Token number = NextToken(scanner);
    const uint32_t length = IsNumber(number) ? number.GetNumber() : 0;
    if (length == 0 || length > IecTypeSize().Get(IEC_STRING)) {
        return DefaultStringLength();
    }
    const Token close = NextToken(scanner);
    const bool isClosed = close.IsOperator(OP_RPAREN) || close.IsOperator(OP_RBRACKET);
    return isClosed && NextToken(scanner).kind == TK_EOF ? length : DefaultStringLength();
}

bool ScanArrDsc(Scanner& scanner, CgTab::ArrDsc& a, CLQString& typeName) {
    return ArrayTypeReader(scanner, a, typeName).Read();
}

bool GetAdrDsc(Scanner& scanner, Address& adr, CLQString& text) {
    const Token token = NextToken(scanner);
    if (token.kind != TK_ADDRESS) {
        return false;
    }
    const Address& found = *token.GetAddress();
    text = found.text;
    adr.location = found.location;
    adr.size = found.size;
    return !text.HasFailed() && NextToken(scanner).kind == TK_EOF;
}

}  // namespace lq::cgtab
