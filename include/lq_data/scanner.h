// The lexical scanner: IEC 61131-3 source text to tokens, one a call.
//
// Text is 16-bit characters from a STREAM_W. U+001A ends the input wherever it stands. Malformed
// text comes back as a token of kind TK_ERROR; no operation fails otherwise.
//
// Owns the global names Token, Scanner, Address and BufferPair; for translation units with another
// owner: names.h.
#pragma once

#include <cstdint>

#include "lq_data/env/lq_base.h"
#include "lq_data/env/lq_framework.h"
#include "lq_data/export.h"
#include "lq_data/types.h"

class HashTable;

namespace lq::scanner {
class KeywordCache;
}

enum TOKEN_KIND : int32_t {
    TK_ERROR = 0,          // value: SCAN_ERROR
    TK_OPERATOR = 1,       // value: 16-bit OPERATOR_CODE
    TK_INTEGER = 2,        // value: the number modulo 2^32
    TK_BASED_INTEGER = 3,  // value: 32-bit number
    TK_REAL = 4,           // value: double
    TK_IDENTIFIER = 5,
    TK_KEYWORD = 6,         // value: 16-bit keyword id
    TK_NEWLINE = 7,         // a line break directly followed by a non-blank character
    TK_ADDRESS = 8,         // value: Address*
    TK_COMMENT = 9,         // value: the text between the delimiters
    TK_STRING = 10,         // value: the decoded text
    TK_TIME = 11,           // value: Time*
    TK_DATE_AND_TIME = 12,  // value: Time*
    TK_DATE = 13,           // value: Time*
    TK_TIME_OF_DAY = 14,    // value: Time*
    TK_RANGE_START = 15,    // an integer directly followed by ".."; value: the number
    TK_EOF = 16,            // value: a sentence that says so
    TK_NONE = 17,           // no token
};

enum SCAN_ERROR : int32_t {
    SE_NO_TOKEN = 0,
    SE_DECIMAL = 2,
    SE_BASED = 3,
    SE_REAL = 4,
    SE_IDENTIFIER = 5,
    SE_LINE_END = 7,
    SE_ADDRESS = 8,
    SE_COMMENT = 9,
    SE_STRING = 10,
    SE_TIME = 11,
    SE_DATE_AND_TIME = 12,
    SE_DATE = 13,
    SE_TIME_OF_DAY = 14,
};

enum OPERATOR_CODE : uint16_t {
    OP_PLUS = 1,
    OP_MINUS = 2,
    OP_DIV = 3,
    OP_AMPERSAND = 4,
    OP_LPAREN = 5,
    OP_RPAREN = 6,
    OP_SEMICOLON = 7,
    OP_COMMA = 8,
    OP_MUL = 10,
    OP_POWER = 11,
    OP_LT = 20,
    OP_NE = 23,
    OP_LE = 25,
    OP_GT = 30,
    OP_GE = 35,
    OP_COLON = 40,
    OP_ASSIGN = 45,
    OP_EQ = 50,
    OP_ARROW = 53,
    OP_DOT = 60,
    OP_RANGE = 66,
    OP_LBRACKET = 105,
    OP_RBRACKET = 106,
};

// Keyword ids of the constants TRUE and FALSE and of the word OF.
enum KEYWORD_ID : uint16_t { KW_OF = 4, KW_FALSE = 15, KW_TRUE = 53 };

enum tagLocation : uint32_t { LOC_INPUT = 0, LOC_OUTPUT = 1, LOC_MEMORY = 2 };
enum tagSize : uint32_t {
    SIZE_BIT = 0,
    SIZE_BYTE = 1,
    SIZE_WORD = 2,
    SIZE_DWORD = 3,
    SIZE_LWORD = 4,
};

// The parts of a direct address such as %IX4.2.
class LQ_DATA_API Address : public CObject {
    LQ_DECLARE_DYNAMIC(Address)
  public:
    Address() = default;
    Address(tagLocation l, tagSize s, char16_t* t) : location(l), size(s), text(t) {}

    tagLocation location = LOC_INPUT;
    tagSize size = SIZE_BIT;
    char16_t* text = nullptr;  // the numeric part without underscores; not owned
};

// One token. Its pointers, those in `value` included, point into the scanner and stay valid until
// the next GetToken, AssignStream or destruction of that scanner.
class LQ_DATA_API Token : public CObject {
    LQ_DECLARE_DYNAMIC(Token)
  public:
    Token() = default;

    // Makes the kind TK_NONE, the line 0, the text null and the value 0; `space` stays.
    void Clear();

    // The value by kind. For the kinds without a value, and for the bytes behind the 16 bits of
    // operators and keywords, it is what an earlier token left.
    uint16_t GetCode() const { return Read<uint16_t>(); }    // operator code, keyword id
    uint32_t GetNumber() const { return Read<uint32_t>(); }  // integers, error code
    // The value of a real.
    double GetReal() const { return Read<double>(); }
    // What a string or a comment holds.
    const char16_t* GetValueText() const { return Read<const char16_t*>(); }
    // The parts of an address.
    const Address* GetAddress() const { return Read<const Address*>(); }
    // The value of a duration, a date or a time of day.
    Time* GetTime() const { return Read<Time*>(); }

    // All bytes of the value, whatever the kind.
    uint64_t GetBytes() const { return Read<uint64_t>(); }
    // Replaces the first bytes of the value. All of its bytes are written in one step, since a copy
    // of the value would otherwise wait for the narrow write.
    template <typename T>
    void SetFirst(T v) {
        uint64_t bytes = GetBytes();
        __builtin_memcpy(&bytes, &v, sizeof(v));
        SetValue(bytes);
    }

    // Whether the token is this operator.
    bool IsOperator(OPERATOR_CODE code) const { return kind == TK_OPERATOR && GetCode() == code; }
    // Whether the token is the keyword with this id.
    bool IsKeyword(uint16_t id) const { return kind == TK_KEYWORD && GetCode() == id; }

    // Sets the first bytes of the value, without those behind.
    template <typename T>
    void SetValue(T v) {
        static_assert(sizeof(T) <= sizeof(value));
        __builtin_memcpy(value, &v, sizeof(v));
    }

    int32_t kind = TK_ERROR;
    int32_t line = 0;
    const char16_t* text = nullptr;   // as written in the source
    const char16_t* space = nullptr;  // the blanks and tabs before the token on its line
    alignas(8) unsigned char value[8] = {};

  private:
    template <typename T>
    T Read() const {
        T v;
        __builtin_memcpy(&v, value, sizeof(v));
        return v;
    }
};

class BufferPair;
template <typename Cursor>
class Recogniser;

// The scanner. Created by name or through CreateObject; one thread a scanner, and any number of
// threads with scanners of their own. A flag (set by the identifier B_COMMENT: a comma then ends
// the next string that has one) is shared by all scanners of a thread and reset by every
// construction on it.
//
// A token of kBufferSize - 1 characters and more fills `text`, which then ends in a mark in place
// of its last characters: "..*)" in a comment, "..'" in a string in single quotes, ".." otherwise;
// GetSrcEx has it whole. The value of a comment, and the text of an address, are marked likewise
// when what they are taken from fills their buffer: the token from its third character on, or from
// behind the size letter. The mark is written before the closing delimiter of a comment is cut off,
// so that little of it may be left.
//
// Where the forms of literals leave room:
// - The numbers that dates and times are made of wrap at 32 bits: the parts of dates and times of
//   day, and the first component of a duration, which alone has no limit, when it is an integer of
//   days, hours or seconds. So T#3000000000s is a negative duration, T#4294967298s two seconds.
//   Minutes that come first, milliseconds and fractions are read as doubles; they are an error when
//   they come to more than 32 bits of days.
// - A base is read as it is written: 4294967298#1 has a bad base, though 4294967298 wraps to 2.
// - A component of a duration that exceeds its limit ends the error in front of its unit: T#1h60m
//   is the error T#1h60 and the identifier m. So does one whose unit is not smaller than the one
//   before: T#1s30m is the error T#1s30 and the identifier m.
// - Letters and spaces are those of Unicode, digits 0 to 9 only: U+0661 is a letter.
// - A stream that hands out less than it is asked for is asked again; only nothing, or less, is
//   its end.
// - Integers count with all their digits, however many; reals with those that fit the buffers.
//
// Memory: CreateObject gives null, and Initialize a scanner at the end of its input, when memory is
// short. A token whose overflow text cannot be kept has its kind and its end all the same; its text
// is what could be kept, and HasLostText() says so.
class LQ_DATA_API Scanner : public CObject {
    LQ_DECLARE_DYNAMIC(Scanner)
  public:
    // A new scanner, bound to nothing; null when memory is short.
    static CObject* CreateObject();
    // Releases the stream as ReleaseStream does, and does not destroy it.
    ~Scanner() override;
    Scanner(const Scanner&) = delete;
    Scanner& operator=(const Scanner&) = delete;

    // Binds the scanner to its first stream. To be called once, before the first GetToken. The
    // stream is not owned and must outlive its binding.
    void Initialize(STREAM_W& stream);
    // Binds the scanner to another stream, whose first line has the number `line`. The stream
    // before it should have been released. Keywords stay.
    void AssignStream(STREAM_W& stream, int line);
    // Unbinds the stream, positioned at the first character that no delivered token used, and at
    // the end of the input on its last character (IsEOF tells); null when none is bound.
    STREAM_W* ReleaseStream();

    // 1 when the scanner can read; 0 before Initialize, and when memory was short for the stream
    // bound last: every token is then TK_EOF.
    int CanRead() const;

    // The next token; TK_EOF at the end of the input, and from then on.
    Token GetToken();

    // Identifiers of exactly that spelling come out as TK_KEYWORD with the low 16 bits of `id`. 1,
    // or 0 when the name was registered already (the old id stays) or memory is short.
    int RegisterKeyword(const char16_t* name, int id);

    // The line that the scanner is in.
    int GetnActLine() const { return nActLine; }
    // Makes that line another one; the lines behind follow it.
    void SetnActLine(int line) { nActLine = line; }
    // The offset in the stream, in characters, of the first character not yet in a token; at the
    // end of the input that of the last character.
    int32_t GetStreamPosition() const;
    // 1 at the end of the input.
    int IsEOF() const;

    // Sets the flag that is passed on to the address check library, at first 1. Returns the one
    // before.
    int SetCheckAccessOfCustomAddress(int flag);

    // The overflow text: the whole text of a token longer than the ring. The scanner frees it at
    // the next token; a caller that needs it longer takes it over, sets null and releases it with
    // lq::Release.
    char16_t* GetSrcEx() const { return SrcEx; }
    // Puts another overflow text in its place, null to take it over.
    void SetSrcEx(char16_t* text) { SrcEx = text; }
    // The characters of the overflow text, its terminator included; 0 without one.
    int32_t GetHugeBufLen() const { return HugeBufLen; }
    // Sets that number.
    void SetHugeBufLen(int32_t length) { HugeBufLen = length; }
    // 1 when the overflow text is whole.
    int IsHugeBufComplete() const { return HugeBufComplete; }
    // Sets that answer.
    void HugeBufIsComplete(int complete) { HugeBufComplete = complete; }
    // 1 when memory ran short for the overflow text of the last token.
    int HasLostText() const { return HugeBufLen != 0 && !HugeBufComplete ? 1 : 0; }

    static constexpr char16_t kEndOfInput = 0x1A;
    // Capacity of the text, blanks and value buffers, their terminators included.
    static constexpr int32_t kBufferSize = 2049;

  protected:
    Scanner();

  private:
    friend class BufferPair;
    template <typename Cursor>
    friend class Recogniser;
    friend struct ScannerTestAccess;

    bool HasBuffers() const;
    void FreeHugeBuffer();

    char16_t* textBuf = nullptr;
    char16_t* spaceBuf = nullptr;
    char16_t* valueBuf = nullptr;
    char16_t* SrcEx = nullptr;
    int32_t HugeBufLen = 0;  // characters in SrcEx, its terminator included
    int32_t HugeBufComplete = 0;
    Token token;
    Address address;
    Time time;
    int32_t nActLine = 0;
    BufferPair* reader = nullptr;
    HashTable* keywords = nullptr;
    int32_t allowNulEscape = 0;  // "$00" is accepted in strings
    int32_t checkAccessOfCustomAddress = 1;
    lq::scanner::KeywordCache* keywordCache = nullptr;
};

// ---------------------------------------------------------------------------------------------
// Calendar and string literals
// ---------------------------------------------------------------------------------------------

// 1 for a leap year of the proleptic Gregorian calendar, else 0.
LQ_DATA_API int IsLeapYear(int32_t year);

// The date of a day number (days since 1970-01-01). Weekday 0 is Sunday, and true up to the last
// day number, where days + 4 exceeds 32 bits. Always 1.
LQ_DATA_API int ConvertDaysToDate(uint32_t days, uint32_t* day, uint32_t* month, uint32_t* year,
                                  int* weekday);

// Writes `source` as a string literal in single quotes. `destSize` is the capacity of `dest` in
// characters, terminator included; a source that does not fit is cut between characters. 1, or 0
// and no change when `destSize` is below 3.
LQ_DATA_API int ConvertStringToIECString(const char16_t* source, char16_t* dest, uint32_t destSize,
                                         uint32_t sourceLength);
