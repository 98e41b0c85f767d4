// Identifiers and keywords, and the system's own addresses and constants that the host recognises
// inside them.
#include "lq_addrcheck.h"
#include "lq_data/hash_table.h"
#include "lq_model.h"
#include "scanner/recogniser.h"

using namespace lq::chars;

namespace {

bool BeginsWithE(const char16_t* text) {
    return text[0] == u'E' || text[0] == u'e';
}

// E followed by digits and signs only, up to the first point, which there must be: the beginning of
// texts such as E1.5.
bool IsSignedDigitsAfterE(const char16_t* text) {
    if (!BeginsWithE(text) || Length(text) < 4) {
        return false;
    }
    for (const char16_t* p = text + 1; *p != u'.'; ++p) {
        if (!IsDigit(*p) && *p != u'+' && *p != u'-') {
            return false;
        }
    }
    return true;
}

void MakeUpper(char16_t* text) {
    for (; *text != 0; ++text) {
        *text = ToUpper(*text);
    }
}

}  // namespace

void Recogniser::FinishIdentifier() {
    const int32_t length = Finish(TK_IDENTIFIER);
    uint16_t id;
    if (FindKeyword(s_, length, id)) {
        s_.token.kind = TK_KEYWORD;
        s_.token.SetFirst(id);
    }
}

// One that the cache has no room for.
int32_t Recogniser::FindRareKeyword(const Scanner& scanner) {
    return scanner.keywords->GetID(scanner.textBuf);
}

void Recogniser::AtSignIdentifier() {
    Next();
    if (!IsLetter(Current()) && !IsDigit(Current())) {
        return Fail(SE_IDENTIFIER);
    }
    Identifier();
}

void Recogniser::Identifier() {
    for (;;) {
        PassRun(lq::scanner::WordRun());
        const char16_t c = Current();
        if (IsSpace(c) || c == kEnd) {
            return FinishIdentifier();
        }
        if (c == u'#') {
            return PrefixedLiteral();
        }
        bool deviceAddress = false;
        const bool belongs = ((c == u'+' || c == u'-') && SignBelongs()) ||
                             (c == u'.' && PointBelongs(deviceAddress)) ||
                             (c == u'\\' && BackslashBelongs());
        if (deviceAddress) {
            return BitSuffix();
        }
        if (!belongs && !HostAccepts()) {
            return FinishIdentifier();
        }
        Next();
    }
}

int32_t Recogniser::TextSoFar(int32_t room) {
    return reader_.CopyBeginning(s_.valueBuf, Scanner::kBufferSize - room);
}

bool Recogniser::HostAccepts() {
    const int32_t length = TextSoFar(1);
    s_.valueBuf[length] = Current();
    s_.valueBuf[length + 1] = 0;
    return CheckIdentifier(nullptr, s_.valueBuf, 1) == 0;
}

// A sign may belong to a constant notation of the system's own: K+1, E-2.
bool Recogniser::SignBelongs() {
    const int32_t length = TextSoFar(2);
    char16_t* const text = s_.valueBuf;
    const bool isK = length == 1 && (text[0] == u'K' || text[0] == u'k');
    if (!isK && !BeginsWithE(text)) {
        return false;
    }
    text[length] = Current();
    text[length + 1] = reader_.Peek();
    text[length + 2] = 0;
    return bIsVdConstant(text, 1, 1) != 0;
}

bool Recogniser::PointBelongs(bool& deviceAddress) {
    const char16_t following = reader_.Peek();
    const int32_t length = TextSoFar(2);
    char16_t* const text = s_.valueBuf;
    text[length] = u'.';
    text[length + 1] = following;
    text[length + 2] = 0;
    if (IsDigit(following) && IsSignedDigitsAfterE(text)) {
        return true;
    }
    MakeUpper(text);
    deviceAddress = IsCustomAdress(text, s_.checkAccessOfCustomAddress, 1) != 0;
    return false;
}

bool Recogniser::BackslashBelongs() {
    TextSoFar(0);
    MakeUpper(s_.valueBuf);
    return IsCustomAdress(s_.valueBuf, s_.checkAccessOfCustomAddress, 1) != 0;
}

// The bit of a device address: a point and one hex digit.
void Recogniser::BitSuffix() {
    Next();
    if (!IsHex(Current())) {
        return Fail(SE_IDENTIFIER);
    }
    Next();
    if (IsLetter(Current()) || IsDigit(Current())) {
        return Fail(SE_IDENTIFIER);
    }
    Finish(TK_IDENTIFIER);
}
