// Identifiers and keywords, and the system's own addresses and constants that the host recognises
// inside them.
#pragma once

#include "lq_data/env/lq_addrcheck.h"
#include "lq_data/env/lq_model.h"
#include "lq_data/hash_table.h"
#include "scanner/recogniser.h"

namespace lq::scanner {

inline bool BeginsWithE(const char16_t* text) {
    return text[0] == u'E' || text[0] == u'e';
}

// Whether the text is E, then only digits and signs up to the first point: the beginning of texts
// such as E1.5. The text must have a point.
inline bool IsSignedDigitsAfterE(const char16_t* text) {
    if (!BeginsWithE(text) || chars::Length(text) < 4) {
        return false;
    }
    for (const char16_t* p = text + 1; *p != u'.'; ++p) {
        if (!chars::IsDigit(*p) && *p != u'+' && *p != u'-') {
            return false;
        }
    }
    return true;
}

}  // namespace lq::scanner

template <typename Cursor>
inline bool Recogniser<Cursor>::FindKeyword(int32_t length, uint16_t& id) const {
    static constexpr char16_t kCommentWord[] = u"B_COMMENT";
    constexpr int32_t kCommentWordLength = std::size(kCommentWord) - 1;
    const char16_t* const word = s_.textBuf;
    if (length == kCommentWordLength && lq::chars::Equal(word, kCommentWord)) {
        lq::scanner::commaEndsString.Set(true);
    }
    int32_t found = s_.keywordCache->Find(word, length);
    if (found < 0 && !s_.keywordCache->IsComplete()) {
        found = s_.keywords->GetID(word);  // there are more keywords than the cache holds
    }
    id = static_cast<uint16_t>(found);
    return found >= 0;
}

// Ends the word, of which `length` characters are in the text buffer: all of them, or the beginning
// of a word that is longer than the buffer.
template <typename Cursor>
inline Found Recogniser<Cursor>::FinishIdentifier(int32_t length) {
    if (cursor_.IsElsewhere()) {
        return kElsewhere;
    }
    length = cursor_.CompleteCopy(s_.textBuf, length);
    uint16_t id;
    if (!FindKeyword(length, id)) {
        return Deliver(TK_IDENTIFIER);
    }
    s_.token.SetFirst(id);
    return Deliver(TK_KEYWORD);
}

template <typename Cursor>
[[gnu::noinline]] Found Recogniser<Cursor>::AtSignIdentifier() {
    Next();
    if (!lq::chars::IsLetter(Current()) && !lq::chars::IsDigit(Current())) {
        return Fail(SE_IDENTIFIER);
    }
    return Identifier();
}

template <typename Cursor>
inline Found Recogniser<Cursor>::Identifier() {
    for (;;) {
        PassRun(lq::scanner::WordRun());
        if (IsA(lq::scanner::kWordMark)) {
            if (At(u'#')) {
                return Apart().PrefixedLiteral();
            }
            const Mark mark = Apart().JudgeMark();
            if (mark == Mark::kUnknown) {
                return kElsewhere;
            }
            if (mark == Mark::kBitSuffix) {
                return Apart().BitSuffix();
            }
            if (mark == Mark::kBelongs) {
                Next();
                continue;
            }
        }
        const int32_t length = cursor_.CopySoFar(s_.textBuf, 1);
        if (EndsWord(Current()) || !HostAccepts(length)) {
            return FinishIdentifier(length);
        }
        Next();
    }
}

template <typename Cursor>
inline bool Recogniser<Cursor>::EndsWord(char16_t c) const {
    return lq::chars::IsAscii(c) ? lq::scanner::Is(c, lq::scanner::kWordEnd)
                                 : lq::chars::IsSpace(c);
}

template <typename Cursor>
inline bool Recogniser<Cursor>::HostAccepts(int32_t length) {
    s_.textBuf[length] = Current();
    s_.textBuf[length + 1] = 0;
    return CheckIdentifier(nullptr, s_.textBuf, 1) == 0;
}

template <typename Cursor>
[[gnu::noinline]] typename Recogniser<Cursor>::Mark Recogniser<Cursor>::JudgeMark() {
    if (!cursor_.CanPeek()) {
        return Mark::kUnknown;
    }
    if (At(u'.')) {
        return JudgePoint();
    }
    const bool belongs = At(u'\\') ? BackslashBelongs() : SignBelongs();
    return belongs ? Mark::kBelongs : Mark::kNothing;
}

// Whether the sign belongs to the word: it may be part of a constant in a notation of the system's
// own, such as K+1 or E-2.
template <typename Cursor>
bool Recogniser<Cursor>::SignBelongs() {
    const int32_t length = cursor_.CopySoFar(s_.valueBuf, 2);
    char16_t* const text = s_.valueBuf;
    const bool isK = length == 1 && (text[0] == u'K' || text[0] == u'k');
    if (!isK && !lq::scanner::BeginsWithE(text)) {
        return false;
    }
    text[length] = Current();
    text[length + 1] = cursor_.Peek();
    text[length + 2] = 0;
    return bIsVdConstant(text, 1, 1) != 0;
}

template <typename Cursor>
typename Recogniser<Cursor>::Mark Recogniser<Cursor>::JudgePoint() {
    const char16_t following = cursor_.Peek();
    const int32_t length = cursor_.CopySoFar(s_.valueBuf, 2);
    char16_t* const text = s_.valueBuf;
    text[length] = u'.';
    text[length + 1] = following;
    text[length + 2] = 0;
    if (lq::chars::IsDigit(following) && lq::scanner::IsSignedDigitsAfterE(text)) {
        return Mark::kBelongs;
    }
    return IsAddressBeginning() ? Mark::kBitSuffix : Mark::kNothing;
}

template <typename Cursor>
bool Recogniser<Cursor>::BackslashBelongs() {
    s_.valueBuf[cursor_.CopySoFar(s_.valueBuf, 0)] = 0;
    return IsAddressBeginning();
}

// Whether the text in the value buffer, which is turned to upper case, begins an address of the
// system's own.
template <typename Cursor>
bool Recogniser<Cursor>::IsAddressBeginning() {
    for (char16_t* p = s_.valueBuf; *p != 0; ++p) {
        *p = lq::chars::ToUpper(*p);
    }
    return IsCustomAdress(s_.valueBuf, s_.checkAccessOfCustomAddress, 1) != 0;
}

// A point and one hex digit, which name the bit of a device address.
template <typename Cursor>
[[gnu::noinline]] Found Recogniser<Cursor>::BitSuffix() {
    Next();
    if (!IsA(lq::scanner::kHex)) {
        return Fail(SE_IDENTIFIER);
    }
    Next();
    if (lq::chars::IsLetter(Current()) || lq::chars::IsDigit(Current())) {
        return Fail(SE_IDENTIFIER);
    }
    return Finish(TK_IDENTIFIER);
}
