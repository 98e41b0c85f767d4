// The type classifier: a small recursive-descent reader over the check scanner's tokens. It knows
// keywords by their ids only; which type names have which id is decided by the base library.

#include "pouh/type_class.h"

#include "lq_data/env/lq_model.h"
#include "pouh/check_scan.h"

namespace lq::pouh {

namespace {

constexpr uint16_t kFirstSimple = 6461;  // integers, other elementary types, generic types
constexpr uint16_t kLastElementary = 6481;
constexpr uint16_t kLastSimple = 6490;
constexpr uint16_t kGenericElement1 = 6488;  // the generic types that an array may hold
constexpr uint16_t kGenericElement2 = 6489;
constexpr uint16_t kString = 6491;
constexpr uint16_t kArray = 6492;
constexpr uint16_t kOf = 6493;
constexpr uint16_t kStruct = 6504;
constexpr uint16_t kOtherStruct = 6505;

constexpr bool IsIn(uint16_t id, uint16_t first, uint16_t last) {
    return id >= first && id <= last;
}

bool IsStringSize(CheckScan& scan) {
    int32_t size = 0;
    return CheckStringSize(&scan.GetScanner(), size) != 0;
}

// The next token, behind a sign if there is one.
Token AfterSign(CheckScan& scan) {
    Token token = scan.Next();
    const bool isSign = token.IsOperator(OP_PLUS) || token.IsOperator(OP_MINUS);
    return isSign ? scan.Next() : token;
}

// "lower .. upper". A lower bound directly followed by ".." is one token with it.
bool ReadDimension(CheckScan& scan) {
    const int32_t lower = AfterSign(scan).kind;
    if (lower == TK_INTEGER) {
        if (!scan.Next().IsOperator(OP_RANGE)) {
            return false;
        }
    } else if (lower != TK_RANGE_START) {
        return false;
    }
    return AfterSign(scan).kind == TK_INTEGER;
}

// "[", dimensions separated by ",", "]".
bool ReadDimensions(CheckScan& scan) {
    Token token = scan.Next();
    if (!token.IsOperator(OP_LBRACKET)) {
        return false;
    }
    do {
        if (!ReadDimension(scan)) {
            return false;
        }
        token = scan.Next();
    } while (token.IsOperator(OP_COMMA));
    return token.IsOperator(OP_RBRACKET);
}

bool ReadElementType(CheckScan& scan) {
    const Token token = scan.Next();
    if (token.kind == TK_IDENTIFIER) {
        const char16_t* const name = scan.WholeText(token);
        return name && GetDutByName(name);
    }
    if (token.kind != TK_KEYWORD) {
        return false;
    }
    const uint16_t id = token.GetCode();
    if (id == kString) {
        return IsStringSize(scan);
    }
    return IsIn(id, kFirstSimple, kLastElementary) || id == kGenericElement1 ||
           id == kGenericElement2;
}

bool ReadArray(CheckScan& scan) {
    return ReadDimensions(scan) && scan.Next().IsKeyword(kOf) && ReadElementType(scan) &&
           scan.AtEnd();
}

// `type` is set before the text is known to be accepted; the caller drops it when it is not.
bool AcceptKeyword(CheckScan& scan, uint16_t id, TypeClass& type) {
    if (IsIn(id, kFirstSimple, kLastSimple)) {
        // Nothing may follow, no subrange either.
        return scan.AtEnd();
    }
    switch (id) {
        case kString:
            type = TypeClass::kString;
            return IsStringSize(scan) && scan.AtEnd();
        case kArray:
            type = TypeClass::kArray;
            return ReadArray(scan);
        case kStruct:
            type = TypeClass::kStructText;
            return true;  // whatever follows
        case kOtherStruct:
            type = TypeClass::kOtherStructText;
            return true;
        default:
            return false;
    }
}

// `identifier` is null when memory was short for it.
bool AcceptIdentifier(CheckScan& scan, const char16_t* identifier, const char16_t* text,
                      TypeClass& type) {
    if (!identifier) {
        return false;
    }
    if (IsFBName(identifier)) {
        type = TypeClass::kFbInstance;
        return scan.AtEnd();
    }
    type = TypeClass::kStructInstance;
    return GetDutByName(text) && scan.AtEnd();
}

bool Accept(CheckScan& scan, const char16_t* text, TypeClass& type) {
    const Token token = scan.Next();
    switch (token.kind) {
        case TK_IDENTIFIER:
            return AcceptIdentifier(scan, scan.WholeText(token), text, type);
        case TK_KEYWORD:
            return AcceptKeyword(scan, token.GetCode(), type);
        default:
            return false;
    }
}

}  // namespace

Classification ClassifyType(const char16_t* text, TypeClass& type) {
    type = TypeClass::kElementary;
    CheckScan scan(text);
    if (!scan.IsOpen()) {
        return Classification::kUnavailable;
    }
    if (Accept(scan, text, type)) {
        return Classification::kAccepted;
    }
    type = TypeClass::kElementary;
    return Classification::kRejected;
}

}  // namespace lq::pouh
