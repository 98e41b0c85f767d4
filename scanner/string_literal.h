// Character strings and their escapes.
#pragma once

#include "scanner/recogniser.h"
#include "scanner/string_rules.h"

// Collects the decoded text in the value buffer. What that has no room for is dropped; text that
// lies whole in one half of the reader always fits.
template <typename Cursor>
class Recogniser<Cursor>::ValueText {
  public:
    explicit ValueText(char16_t* buffer) : buffer_(buffer) {}
    void Store(char16_t c) {
        if (Cursor::kIsWhole || length_ < kValueLength) {
            buffer_[length_++] = c;
        }
    }
    void Store(const char16_t* text, int32_t count) {
        if constexpr (Cursor::kIsWhole) {
            BufferPair::CopyAll(buffer_ + length_, text, count);
            length_ += count;
        } else {
            length_ +=
                BufferPair::CopyPiece(buffer_ + length_, kValueLength - length_, text, count);
        }
    }
    const char16_t* End() {
        buffer_[length_] = 0;
        return buffer_;
    }

  private:
    char16_t* const buffer_;
    int32_t length_ = 0;
};

template <typename Cursor>
inline Found Recogniser<Cursor>::String() {
    ValueText value(s_.valueBuf);
    const char16_t quote = Current();
    Next();
    for (;;) {
        cursor_.PassRun(lq::scanner::StringRun(), [&value](const char16_t* text, int32_t count) {
            value.Store(text, count);
        });
        const char16_t c = Current();
        if (c == quote) {
            Next();
            return Finish(TK_STRING, value.End());
        }
        if (c == u',' && lq::scanner::commaEndsString.Take()) {
            return Finish(TK_STRING, value.End());
        }
        if (c == kEnd) {
            return Fail(SE_STRING);
        }
        Next();
        if (c == u'\n') {
            CountLine();
        } else if (c != u'$') {
            value.Store(c);
        } else if (!Escape(value)) {
            return Fail(SE_STRING);
        }
    }
}

// Passes what follows "$" and stores what it stands for. False when it is no escape: the character
// at fault is then the current one.
template <typename Cursor>
inline bool Recogniser<Cursor>::Escape(ValueText& value) {
    if (const lq::scanner::Escape* escape = lq::scanner::FindEscape(Current())) {
        Next();
        value.Store(escape->stored[0]);
        if (escape->stored[1] != 0) {
            value.Store(escape->stored[1]);
        }
        return true;
    }
    if (!IsA(lq::scanner::kHex)) {
        return false;
    }
    const unsigned high = lq::scanner::DigitValue(Current());
    Next();
    if (!IsA(lq::scanner::kHex)) {
        return false;
    }
    const unsigned code = high * 16 + lq::scanner::DigitValue(Current());
    if (code == 0 && !s_.allowNulEscape) {
        return false;
    }
    Next();
    value.Store(static_cast<char16_t>(code));
    return true;
}
