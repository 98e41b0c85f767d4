// Character strings and their escapes.
#include "scanner/escapes.h"
#include "scanner/process_state.h"
#include "scanner/recogniser.h"

using namespace lq::chars;

void Recogniser::Store(char16_t c) {
    if (s_.stringLength < kValueLength) {
        s_.valueBuf[s_.stringLength++] = c;
    }
}

void Recogniser::Store(const char16_t* text, int32_t count) {
    s_.stringLength += BufferPair::CopyPiece(s_.valueBuf + s_.stringLength,
                                             kValueLength - s_.stringLength, text, count);
}

void Recogniser::String() {
    const char16_t quote = Current();
    Next();
    for (;;) {
        PassRun(lq::scanner::StringRun(),
                [this](const char16_t* text, int32_t count) { Store(text, count); });
        const char16_t c = Current();
        if (c == quote) {
            Next();
            return FinishString();
        }
        if (c == u',' && lq::scanner::commaEndsString.Take()) {
            return FinishString();
        }
        if (c == kEnd) {
            return Fail(SE_STRING);
        }
        Next();
        if (c == u'\n') {
            CountLine();
        } else if (c != u'$') {
            Store(c);
        } else if (!Escape()) {
            return Fail(SE_STRING);
        }
    }
}

// Behind "$"; false leaves the character at fault.
bool Recogniser::Escape() {
    if (const lq::scanner::Escape* escape = lq::scanner::FindEscape(Current())) {
        Next();
        Store(escape->stored[0]);
        if (escape->stored[1] != 0) {
            Store(escape->stored[1]);
        }
        return true;
    }
    return IsHex(Current()) && HexEscape();
}

bool Recogniser::HexEscape() {
    const unsigned high = HexValue(Current());
    Next();
    if (!IsHex(Current())) {
        return false;
    }
    const unsigned code = high * 16 + HexValue(Current());
    if (code == 0 && !s_.allowNulEscape) {
        return false;
    }
    Next();
    Store(static_cast<char16_t>(code));
    return true;
}

void Recogniser::FinishString() {
    s_.valueBuf[s_.stringLength] = 0;
    Finish(TK_STRING, static_cast<const char16_t*>(s_.valueBuf));
}
