// Recognition of one token.
//
// A Recogniser lives for one GetToken call, or for the part of it in which its cursor can walk. It
// looks at the cursor's current character, which belongs to no delivered token yet. Next passes it,
// and what is not passed begins the next token. Until the token is certain, a Recogniser writes
// only the scanner's text buffers, its time and its address: when the token has to be begun again
// with the other cursor, that one writes them anew.
//
// Each family of literals has a source file of its own; all rules end in Finish or Fail. Rules that
// are used often are inline. The others are called on a copy of this object (Apart): its address is
// then not taken, and its fields can stay in registers.
#pragma once

#include <cstdint>
#include <iterator>

#include "lq_data/detail/chars.h"
#include "lq_data/scanner.h"
#include "scanner/buffer_pair.h"
#include "scanner/char_classes.h"
#include "scanner/cursor.h"
#include "scanner/digits.h"
#include "scanner/keyword_cache.h"
#include "scanner/operators.h"
#include "scanner/runs.h"
#include "scanner/string_rules.h"

namespace lq::scanner {
struct Amount;
}

// What a recognised token is, besides its texts and its value, which are left in the scanner.
struct Found {
    TOKEN_KIND kind;  // TK_NONE: the text goes on where the cursor cannot walk
    int32_t line;
};

template <typename Cursor>
class Recogniser {
  public:
    explicit Recogniser(Scanner& scanner) : s_(scanner), cursor_(*scanner.reader) {}

    Found Recognise();

  private:
    using Digits = lq::scanner::Digits;

    static constexpr char16_t kEnd = Scanner::kEndOfInput;
    static constexpr int32_t kValueLength = Scanner::kBufferSize - 1;
    static constexpr Found kElsewhere = {TK_NONE, 0};

    Recogniser Apart() const { return *this; }

    // --- The current character ---------------------------------------------------------------

    char16_t Current() const { return cursor_.Current(); }
    bool At(char16_t c) const { return Current() == c; }
    bool IsA(unsigned classes) const { return lq::scanner::Is(Current(), classes); }
    void Next() { cursor_.Next(); }
    template <typename Run>
    void PassRun(Run run) {
        cursor_.PassRun(run, [](const char16_t*, int32_t) {});
    }
    void CountLine() { ++lines_; }

    // --- Ends of a token ---------------------------------------------------------------------

    // The token is the text from its beginning up to the current character.
    Found Finish(TOKEN_KIND kind) {
        return cursor_.IsElsewhere() ? kElsewhere : CopyAndDeliver(kind);
    }
    template <typename T>
    Found Finish(TOKEN_KIND kind, T value) {
        if (cursor_.IsElsewhere()) {
            return kElsewhere;
        }
        s_.token.SetFirst(value);
        return CopyAndDeliver(kind);
    }
    // An error; the current character begins the next token.
    Found Fail(SCAN_ERROR code) { return Finish(TK_ERROR, static_cast<int32_t>(code)); }
    // These two are called when the token is certain, which means that the cursor is not elsewhere.
    Found CopyAndDeliver(TOKEN_KIND kind) {
        cursor_.CopyText(s_.textBuf, 0, 0);
        return Deliver(kind);
    }
    Found Deliver(TOKEN_KIND kind) {
        const int32_t firstLine = s_.nActLine;
        s_.nActLine = static_cast<int32_t>(static_cast<uint32_t>(firstLine) + lines_);
        cursor_.EndToken(*s_.reader);
        // A line break counts from the line that the first of the breaks ends.
        return {kind, kind == TK_NEWLINE ? firstLine : s_.nActLine};
    }

    // --- recogniser.cpp ----------------------------------------------------------------------

    void SkipBlanks();
    Found Dispatch();
    Found Rare();
    Found Operator();
    Found Comment();
    Found EndOfInput();

    // --- identifier.h ------------------------------------------------------------------------

    // What a character that is no part of a word does behind one.
    enum class Mark { kNothing, kBelongs, kBitSuffix, kUnknown };

    Found Identifier();
    [[gnu::noinline]] Found Word() { return Identifier(); }
    Found FinishIdentifier(int32_t length);
    Found AtSignIdentifier();
    Found BitSuffix();
    // Looks the word in the text buffer up; `id` is its keyword's when it is one.
    bool FindKeyword(int32_t length, uint16_t& id) const;
    bool EndsWord(char16_t c) const;
    // Whether the host takes the current character into the word so far, which is in the text
    // buffer.
    bool HostAccepts(int32_t length);
    Mark JudgeMark();
    Mark JudgePoint();
    bool SignBelongs();
    bool BackslashBelongs();
    bool IsAddressBeginning();

    // --- number.h ----------------------------------------------------------------------------

    // Digits with single underscores; false when an underscore is not followed by a digit. `take`
    // is given each digit.
    template <typename Take>
    bool PassDigits(unsigned digitClass, Take take) {
        for (;;) {
            for (; IsA(digitClass); Next()) {
                take(Current());
            }
            if (!At(u'_')) {
                return true;
            }
            Next();
            if (!IsA(digitClass)) {
                return false;
            }
        }
    }
    // Decimal digits, as a number. `take` is given each of them where the text may lie in pieces;
    // of text that lies whole, which can be read again, it is not given all.
    template <typename Take>
    bool Decimal(Digits& digits, Take take) {
        if constexpr (Cursor::kIsWhole) {
            digits = lq::scanner::DigitsAt(cursor_.At());
            cursor_.Skip(digits.count);
            if (digits.count < lq::scanner::kMostDigitsAt && !At(u'_')) {
                return true;
            }
        }
        return PassDigits(lq::scanner::kDecimal, [&](char16_t c) {
            digits.Add(lq::scanner::DigitValue(c));
            take(c);
        });
    }
    bool Decimal(Digits& digits) {
        return Decimal(digits, [](char16_t) {});
    }

    Found Number();
    Found BasedNumber(const Digits& prefix);
    Found RangeOrReal(Digits whole);

    // --- string_literal.h, address_literal.cpp -----------------------------------------------

    class ValueText;

    Found String();
    bool Escape(ValueText& value);
    Found DirectAddress();

    // --- time_literal.cpp --------------------------------------------------------------------

    // At "#", behind a word: goes on with the literal that the word introduces.
    Found PrefixedLiteral();
    Found TimeLiteral();
    Found FinishTime(TOKEN_KIND kind) { return Finish(kind, &s_.time); }
    Found Duration();
    Found Date();
    Found TimeOfDay();
    Found DateAndTime();
    // Each passes a part of a date or time literal; false leaves the character at fault.
    bool Part(uint32_t& number);
    bool Separator(char16_t c);
    bool CalendarDate(bool& isValid);
    bool ClockTime(uint32_t& minutes);
    bool PassAmount(lq::scanner::Amount& amount);

    Scanner& s_;
    Cursor cursor_;
    uint32_t lines_ = 0;  // the line breaks that were passed
};

// Stands at the end of a source file for each member that is called from other files.
#define LQ_RECOGNISES(MEMBER)                                  \
    template Found Recogniser<lq::scanner::InPlace>::MEMBER(); \
    template Found Recogniser<lq::scanner::Ring>::MEMBER()
