// IEC data types and constant values: the type catalogue, typed constants and their checked
// arithmetic, classification of constants by the types that can hold them, and array extents.
//
// Owns the global names Time, Val, Lit and ArrInfo; for translation units with another owner:
// names.h.
#pragma once

#include <cstdint>

#include "lq_data/env/lq_framework.h"
#include "lq_data/export.h"
#include "lq_data/memory.h"

class CLQString;
class Scanner;

// ---------------------------------------------------------------------------------------------
// Type catalogue
// ---------------------------------------------------------------------------------------------

// Identifies an IEC data type.
enum IEC_TYPE : int32_t {
    IEC_NO_TYPE = -1,
    IEC_BOOL = 0,
    IEC_SINT = 1,
    IEC_INT = 2,
    IEC_DINT = 3,
    IEC_LINT = 4,
    IEC_USINT = 5,
    IEC_UINT = 6,
    IEC_UDINT = 7,
    IEC_ULINT = 8,
    IEC_REAL = 9,
    IEC_LREAL = 10,
    IEC_TIME = 11,
    IEC_DATE = 12,
    IEC_TOD = 13,
    IEC_DT = 14,
    IEC_STRING = 15,
    IEC_BYTE = 16,
    IEC_WORD = 17,
    IEC_DWORD = 18,
    IEC_LWORD = 19,
    IEC_LAST_ELEMENTARY = IEC_LWORD,
    IEC_ANY = 32,
    IEC_ANY_NUM = 33,
    IEC_ANY_REAL = 34,
    IEC_ANY_INT = 35,
    IEC_ANY_BIT = 36,
    IEC_ANY_DATE = 37,
    IEC_ANY16 = 38,
    IEC_ANY32 = 39,
    IEC_ANY_SIMPLE = 40,
    IEC_ANY_DUT = 41,
    IEC_ANY_FB = 42,
    IEC_SIZE_ONLY = 50,  // has a size slot and no name
    IEC_ARRAY = 51,
    IEC_STRUCTURE = 52,  // also any user data type
    IEC_FUNCTION_BLOCK = 53,
    IEC_DUT_OR_FB = 64,  // "..": of either kind
};

// Whether the type is one of BOOL to LWORD.
constexpr bool IsElementaryType(int32_t type) {
    return type >= IEC_BOOL && type <= IEC_LWORD;
}
// Whether the type is one of ANY to ANY_FB.
constexpr bool IsGenericType(int32_t type) {
    return type >= IEC_ANY && type <= IEC_ANY_FB;
}

// One named type.
struct IEC_TYPE_DSC {
    IEC_TYPE id;
    const char16_t* name;
    uint32_t len;  // characters of `name`; 0 until the first IecTypeConv is constructed
};

// The number of descriptors (36), and the first of them. Their order decides which of two names
// IecTypeConv::GetName gives.
LQ_DATA_API uint32_t GetIecDscSize();
// The first of the type descriptors.
LQ_DATA_API IEC_TYPE_DSC* GetIecTypeDsc();

// Type names to identifiers and back. Construct one before calling its operations: the first one
// in the process measures the names. Names are case-sensitive; texts must not be null.
class LQ_DATA_API IecTypeConv {
  public:
    IecTypeConv();
    ~IecTypeConv() {}
    IecTypeConv(const IecTypeConv&) = default;
    IecTypeConv& operator=(const IecTypeConv&) = default;

    // The type whose name stands at the start of `text`, after blanks; `end` receives the place
    // behind it. A name that is not in the catalogue and names a user data type of the project
    // (the text up to its end) gives IEC_STRUCTURE. Otherwise IEC_NO_TYPE, and `end` is `text`.
    IEC_TYPE GetId(const char16_t* text, const char16_t*& end);

    // The type of a whole type text: of string and array types only the leading keyword counts.
    // No blanks are skipped and no user data type is looked up. IEC_NO_TYPE when there is none.
    IEC_TYPE GetId(const char16_t* text);

    // The name of the type, or the empty text when it has none.
    const char16_t* GetName(IEC_TYPE id) const;

    // Non-zero when `text` holds nothing but blanks.
    int TypeEnd(const char16_t* text);

    static IEC_TYPE_DSC* IecTypeDsc;
    static uint32_t wMaxSize;  // the longest name's length, once measured
};

// Storage sizes in bytes. One table serves the whole process; the environment may replace it.
class LQ_DATA_API IecTypeSize {
  public:
    // Index of a type's slot in the table.
    enum VAL_IDX : int32_t { NO_SLOT = -1, SLOT_COUNT = 18 };

    // Copies `sizes`, when given, over the table, which then holds for every user in the process.
    explicit IecTypeSize(uint32_t (*sizes)[18] = nullptr);
    ~IecTypeSize() {}
    IecTypeSize(const IecTypeSize&) = default;
    IecTypeSize& operator=(const IecTypeSize&) = default;

    // The default table, from which the constructor restores the defaults. Not to be written.
    uint32_t (*GetDftSize())[18];

    // The index of a type's size.
    VAL_IDX TypeToIdx(IEC_TYPE id);

    // 1, or 0 and no change when `id` has no slot (its size is fixed).
    int Set(IEC_TYPE id, uint32_t size);

    // The size of the type; 0 when it has none.
    uint32_t Get(IEC_TYPE id);

    static uint32_t Size[18];
};

// ---------------------------------------------------------------------------------------------
// Constant values
// ---------------------------------------------------------------------------------------------

// Sign and magnitude: -4294967295 to 4294967295. Reading, adding and subtracting give zero the
// sign 0.
struct ANY_INT_32 {
    int sign;  // 1 for a negative number, else 0
    uint32_t magnitude;
};

// a = a + b for `op` 0, a = a - b for `op` 1. 1, or 0 on overflow; `a` then holds the magnitude
// modulo 2^32.
LQ_DATA_API int AddSub32(int op, ANY_INT_32& a, ANY_INT_32 b);

// Multiplies the magnitudes; a.sign stays and b.sign is not read. 1, or 0 on overflow; `a` then
// holds the product modulo 2^32.
LQ_DATA_API int Mul32(ANY_INT_32& a, ANY_INT_32 b);

// A duration or a point in time as the scanner reads it.
class LQ_DATA_API Time : public CObject {
    LQ_DECLARE_DYNAMIC(Time)
  public:
    Time() = default;
    Time(int32_t d, double m, int s) : days(d), ms(m), sign(s) {}

    int32_t days = 0;
    double ms = 0.0;
    int sign = 1;  // -1 marks a negative duration
};

// The class of a constant value. The numbering is not that of IEC_TYPE.
enum VAL_TYPE : uint32_t {
    VT_BOOL = 0,     // 32-bit 0 or 1
    VT_SINT = 1,     // signed 8-bit
    VT_USINT = 2,    // unsigned 8-bit
    VT_INT = 3,      // signed 32-bit, -32768 to 32767
    VT_UINT = 4,     // unsigned 16-bit
    VT_DINT = 5,     // signed 32-bit
    VT_UDINT = 6,    // unsigned 32-bit
    VT_LINT = 7,     // 64-bit; never produced here
    VT_ULINT = 8,    // 64-bit; never produced here
    VT_REAL = 9,     // float
    VT_LREAL = 10,   // double
    VT_TIME = 11,    // signed 32-bit days, double milliseconds
    VT_DATE = 12,    // signed 32-bit days
    VT_TOD = 13,     // double milliseconds
    VT_DT = 14,      // signed 32-bit days, double milliseconds
    VT_STRING = 15,  // no payload
    VT_NONE = 255,   // no valid value
};

// A typed constant.
class LQ_DATA_API Val {
  public:
    // Holds no value: the class is VT_NONE.
    Val() = default;
    explicit Val(ANY_INT_32 v) { Set(v); }
    explicit Val(uint32_t v) { Set(v); }
    Val(uint16_t kind, Time& t, int neg) { Set(kind, t, neg); }
    Val(const char16_t* text, int unsignedOnly) { Set(text, unsignedOnly); }
    Val(const Val&) = default;
    Val& operator=(const Val&) = default;

    // Stores a number in the smallest class that holds it. The result is 1, or 0 when there is none
    // and the class is VT_NONE: for a negative number with a magnitude above 2147483648.
    int Set(ANY_INT_32 v);
    // Stores a bit string in the smallest class that holds it; 0 and 1 give VT_BOOL. The result is
    // always 1.
    int Set(uint32_t v);
    // Stores a duration, date or time of day; `kind` is the token kind of the literal (TK_TIME to
    // TK_TIME_OF_DAY; any other gives VT_NONE and the result 0). `neg` negates. `t` is unchanged on
    // return.
    int Set(uint16_t kind, Time& t, int neg);

    // Reads one constant, with an optional sign, from the scanner's next tokens. `unsignedOnly`
    // types integers as bit strings and refuses every sign. 1 when a value was stored, and at the
    // end of the input (then without a value); else 0 with VT_NONE.
    int Set(Scanner& scanner, int unsignedOnly);
    // The whole text must be one constant. 1, or 0 with VT_NONE, also for null and when memory is
    // short.
    int Set(const char16_t* text, int unsignedOnly);

    // Reads an integer class. 1, or 0 for every other class (out.sign is 0 then).
    int Get(ANY_INT_32& out);

    // The payload of `v` (not of this object) and its size in bytes; null and 0 when the class has
    // none. Valid as long as `v` lives.
    void* GetValBuf(Val& v, uint32_t& size);

    // Writes the text form: numbers in decimal, durations and times of day in milliseconds, dates
    // in seconds; counts are modulo 2^32. 1, or 0 when the value has no text form (`out` is then
    // empty, or says so for the 64-bit classes) or memory is short (`out` is then empty).
    virtual int GetCValue_LQ(CLQString* out);

    // The value as one 32-bit number: integers, counts as in the text form, the bits of a real as a
    // float. 1, or 0 for strings and no value (`out` is 0 then). The 64-bit classes leave `out`.
    int GetAnyNumberValue(uint32_t& out);

    // Not virtual: a Val is never destroyed through another type.
    ~Val() = default;

    VAL_TYPE type = VT_NONE;
    // The value lies here as VAL_TYPE says, from the first byte on; the milliseconds of VT_TIME and
    // VT_DT begin with the fifth byte.
    unsigned char payload[12] = {};
};

// A constant with its text as written in the source.
class LQ_DATA_API Lit {
  public:
    Lit() = default;
    // Copies share the text: only one of them may still hold it when it is destroyed.
    Lit(const Lit&) = default;
    Lit& operator=(const Lit&) = default;
    ~Lit();

    // Replaces the text by a copy of `source` (null: no text). 1, or 0 when memory is short; the
    // old text stays then.
    int SetText(const char16_t* source);

    char16_t* text = nullptr;  // owned; a block of lq::Allocate
    Val val;
};

// ---------------------------------------------------------------------------------------------
// Constant range classification
// ---------------------------------------------------------------------------------------------

// A type bitset: one bit a type. Bits 0 to 19 are the elementary types by their numbers.
enum TYPE_BITS : uint32_t {
    TB_ARRAY = 0x100000,
    TB_STRUCTURE = 0x200000,
    TB_DUT_OR_FB = 0x400000,
    TB_FUNCTION_BLOCK = 0x800000,
    TB_ANY = 0xFFFFFF,
    TB_ANY_NUM = 0x7FE,
    TB_ANY_REAL = 0x600,
    TB_ANY_INT = 0x1FE,
    TB_ANY_BIT = 0xF0001,
    TB_ANY_DATE = 0x7000,
    TB_ANY16 = 0x20044,
    TB_ANY32 = 0x40088,
    TB_ANY_SIMPLE = 0xFFFFF,
    TB_ANY_DUT = 0x600000,
    TB_ANY_FB = 0xC00000,
};

// The types that can hold an integer constant, given its sign (`neg` non-zero: negative) and
// magnitude.
LQ_DATA_API void DCE_GetIntConstRange(int neg, uint32_t magnitude, uint32_t* bits);
// The types that can hold a real constant, given its magnitude.
LQ_DATA_API void DCE_GetRealConstRange(double value, uint32_t* bits);
// The types that can hold an integer constant that is written in binary, octal or hexadecimal.
LQ_DATA_API void DCE_GetBOHConstRange(int32_t value, uint32_t* bits);

// The set that a type stands for; 0 for a number that is no type.
LQ_DATA_API int32_t MapTypeToBitset(int type);
// The first type of the set, or IEC_NO_TYPE.
LQ_DATA_API IEC_TYPE MapBitsetToType(int32_t bits);
// The most specific single type for the whole set, or IEC_NO_TYPE.
LQ_DATA_API IEC_TYPE MapAllBitsetToType(int32_t bits);
// The set of a variable type by its code in the second numbering, in which BOOL is 1, INT 2, DINT 3
// and so on; 0 for an unknown code.
LQ_DATA_API int32_t MapVarTypeToBitset(int32_t varType);
// Replaces the set by its member with the smallest size; a set whose members have no size stays.
LQ_DATA_API void MapBitsetToMinSize(int32_t* bits);

// ---------------------------------------------------------------------------------------------
// Array extents
// ---------------------------------------------------------------------------------------------

// The shape of an array type.
class LQ_DATA_API ArrInfo {
  public:
    enum CLEAR_ID : int32_t { CLEAR_END = 0, CLEAR_BEGIN = 1, CLEAR_CURSOR = 2 };

    ArrInfo() = default;
    ~ArrInfo() { Clear(CLEAR_END); }
    ArrInfo(const ArrInfo&) = delete;
    ArrInfo& operator=(const ArrInfo&) = delete;

    // CLEAR_END and CLEAR_BEGIN empty the description, CLEAR_CURSOR rewinds the reading cursor.
    // 1, or 0 and no change for any other mode.
    int Clear(CLEAR_ID mode);

    // The number of dimensions, at most 255.
    int GetDim() const { return dims; }

    // Appends an extent: [0] the lower bound, [1] the number of elements. With `multiply` non-zero
    // the total is multiplied by that number. 1; or 0 when memory is short or 255 dimensions exist
    // (nothing is stored), or when the total reaches 2^32 (the extent is stored all the same).
    int AppendExt(ANY_INT_32 (*ext)[2], int multiply);

    // Reads the extent at the cursor (`index` 0 or less) or the index-th from 1; the cursor moves
    // behind it. 1, or 0 when there is none.
    int GetExt(ANY_INT_32 (*ext)[2], int index);

    // Makes `dst` a copy; a copy onto itself changes nothing. 1, or 0 when memory is short (`dst`
    // then holds the first extents).
    int Copy(ArrInfo& dst) const;

    // Hands this description over to `dst`; this one receives the extents that `dst` had and keeps
    // its own element type and total, so the caller clears it. Returns 1.
    int Move(ArrInfo& dst);

    IEC_TYPE elemType = IEC_NO_TYPE;
    ANY_INT_32 total = {0, 1};  // the product of all element counts

    LQ_ALLOCATED

  private:
    struct Extent {
        ANY_INT_32 lower;
        ANY_INT_32 count;
        Extent* next;
    };

    Extent* head = nullptr;
    Extent* tail = nullptr;
    Extent* cursor = nullptr;
    uint8_t dims = 0;
};
