// Recognition of one token.
//
// A Recogniser lives for one GetToken call. It works on the reader's current character, which no
// delivered token holds yet: Next passes it, and what is not passed begins the next token. Each
// family of literals has a source file of its own; all of them end in Finish or Fail.
#pragma once

#include <cstdint>
#include <iterator>

#include "frame/chars.h"
#include "lq_data/scanner.h"
#include "scanner/buffer_pair.h"
#include "scanner/char_classes.h"
#include "scanner/digits.h"
#include "scanner/keyword_cache.h"
#include "scanner/leads.h"
#include "scanner/process_state.h"
#include "scanner/runs.h"
#include "scanner/time_parts.h"

class Recogniser {
  public:
    explicit Recogniser(Scanner& scanner) : s_(scanner), reader_(*scanner.reader) {}

    // Leaves the recognised token in the scanner's `token`.
    void Recognise();
    // The same for a token that begins at the current character; `space` is set already.
    void RecogniseHere();

    // Whether the `length` characters in the text buffer are a keyword. They end a word: what a
    // word does to the scanner is done.
    static bool FindKeyword(const Scanner& scanner, int32_t length, uint16_t& id) {
        static constexpr char16_t kCommentWord[] = u"B_COMMENT";
        constexpr int32_t kCommentWordLength = std::size(kCommentWord) - 1;
        const char16_t* const word = scanner.textBuf;
        if (length == kCommentWordLength && lq::chars::Equal(word, kCommentWord)) {
            lq::scanner::commaEndsString.Set(true);
        }
        int32_t found = scanner.keywordCache->Find(word, length);
        if (found < 0 && !scanner.keywordCache->IsComplete()) {
            found = FindRareKeyword(scanner);
        }
        id = static_cast<uint16_t>(found);
        return found >= 0;
    }

  private:
    using Lead = lq::scanner::Lead;
    using LeadKind = lq::scanner::LeadKind;

    static constexpr char16_t kEnd = Scanner::kEndOfInput;
    static constexpr int32_t kValueLength = Scanner::kBufferSize - 1;

    // --- The current character ---------------------------------------------------------------

    char16_t Current() const { return reader_.Current(); }
    bool At(char16_t c) const { return Current() == c; }
    bool IsA(unsigned classes) const { return lq::scanner::Is(Current(), classes); }
    void Next() { reader_.NextChar(); }
    template <typename Run>
    void PassRun(Run run) {
        PassRun(run, [](const char16_t*, int32_t) {});
    }
    template <typename Run, typename Take>
    void PassRun(Run run, Take take) {
        reader_.PassRun(run, take);
    }
    void CountLine() { s_.nActLine = static_cast<int32_t>(static_cast<uint32_t>(s_.nActLine) + 1); }

    // --- Ends of a token ---------------------------------------------------------------------

    // The token is the text from its beginning up to the current character. Returns the length of
    // the text as delivered.
    int32_t Finish(TOKEN_KIND kind) {
        s_.token.kind = kind;
        s_.token.text = s_.textBuf;
        s_.token.line = s_.nActLine;
        return reader_.CopyToken(s_.textBuf, Scanner::kBufferSize);
    }
    template <typename T>
    void Finish(TOKEN_KIND kind, T value) {
        s_.token.SetValue(value);
        Finish(kind);
    }
    // An error; the current character begins the next token.
    void Fail(SCAN_ERROR code) { Finish(TK_ERROR, static_cast<int32_t>(code)); }

    // --- recogniser.cpp ----------------------------------------------------------------------

    // Used there only. Inline, since calls and what they save would make a fifth of a short token's
    // cost.
    inline void Empty();
    inline void SkipBlanks();
    inline void Dispatch();
    inline void Parenthesis();
    inline void Operator(const Lead& lead);
    // Both return true when a token was finished.
    bool LineBreak();
    bool LineFeed();
    void Comment();
    void EndOfInput();
    void NoToken();

    // --- identifier.cpp ----------------------------------------------------------------------

    static int32_t FindRareKeyword(const Scanner& scanner);
    void AtSignIdentifier();
    void Identifier();
    inline void FinishIdentifier();  // used there only
    void BitSuffix();
    bool PointBelongs(bool& deviceAddress);
    bool SignBelongs();
    bool BackslashBelongs();
    bool HostAccepts();
    // Puts the token's text so far into the value buffer; leaves room for `room` more characters.
    int32_t TextSoFar(int32_t room);

    // --- number.cpp --------------------------------------------------------------------------

    void Number();
    void FinishDecimal();
    void RangeStart();
    void BasedNumber();
    void Fraction();
    void Exponent();
    void FinishReal();
    // Passes digits with single underscores; false when an underscore is not followed by a digit.
    bool Digits(unsigned digitClass) {
        for (;;) {
            PassRun(lq::scanner::DigitsRun{digitClass});
            if (!At(u'_')) {
                return true;
            }
            Next();
            if (!IsA(digitClass)) {
                return false;
            }
        }
    }
    bool DecimalDigits() { return Digits(lq::scanner::kDecimal); }
    // Texts of the token where they lie, or in the value buffer when that is in pieces.
    struct Text {
        const char16_t* begin;
        int32_t length;
    };
    Text BeginningText();            // of a token that goes on
    Text TokenText(int32_t offset);  // from there to the token's end
    // The token's text from `offset` on, without underscores, in the value buffer.
    int32_t DigitsText(int32_t offset);

    // --- string_literal.cpp ------------------------------------------------------------------

    void String();
    bool Escape();
    bool HexEscape();
    void Store(char16_t c);
    void Store(const char16_t* text, int32_t count);
    void FinishString();

    // --- address_literal.cpp -----------------------------------------------------------------

    void DirectAddress();

    // --- duration.cpp, date_literal.cpp ------------------------------------------------------

    // The identifier so far stands before "#": continues the literal that it introduces.
    void PrefixedLiteral();
    void FinishTime(TOKEN_KIND kind) { Finish(kind, &s_.time); }
    void Duration();
    void Date();
    void TimeOfDay();
    void DateAndTime();
    // Each passes a part of a date or time literal; false leaves the character at fault.
    bool Part(uint32_t& number);
    bool Separator(char16_t c);
    bool CalendarDate(bool& isValid);
    bool ClockTime(uint32_t& minutes);
    bool CollectDigits(bool isIntegerPart);
    // Digits, and a fraction when a point follows.
    bool CollectNumber(lq::scanner::Amount& amount);

    Scanner& s_;
    BufferPair& reader_;
    uint32_t lineBreaks_ = 0;  // passed in this call
};
