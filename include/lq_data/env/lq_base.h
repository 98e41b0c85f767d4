// What the library requires of the base library: the string class, the character and byte streams,
// and small services. Nothing declared here throws.
#pragma once

#include <cstddef>
#include <cstdint>

#include "lq_data/export.h"
#include "lq_data/memory.h"

class Scanner;

// A text. The empty text needs no memory, so a default-constructed one always holds.
//
// Memory: an operation that cannot get memory leaves the text empty, and so do the additions after
// it, until the text is assigned or formatted anew. HasFailed() tells.
class LQ_DATA_API CLQString {
  public:
    CLQString() = default;
    CLQString(const char16_t* text);
    // An empty text with room for `capacity` characters.
    explicit CLQString(int capacity);
    CLQString(const CLQString& other);
    virtual ~CLQString();

    CLQString& operator=(const char16_t* text);  // null empties the text
    CLQString& operator=(const CLQString& other);
    // Adds a text; null adds nothing.
    CLQString& operator+=(const char16_t* text);
    // Adds a character.
    CLQString& operator+=(char16_t c);

    // The text, terminated; never null. Valid until the text changes. It may be assigned or added
    // to the text itself.
    const char16_t* GetText() const { return text_ ? text_ : small_; }
    // As GetText.
    operator const char16_t*() const { return GetText(); }
    // The number of characters.
    int32_t GetLength() const { return static_cast<int32_t>(length_); }
    // Non-zero for the empty text.
    int IsEmpty() const { return length_ == 0; }
    // 1 when the last assignment, or an addition since, could not get memory.
    int HasFailed() const { return capacity_ == kFailed ? 1 : 0; }

    // Makes the text empty.
    void Empty();

    // The text of string resource `id` of the current resource module; non-zero on success, the
    // empty text otherwise.
    int LoadStringW(unsigned int id);

    // printf-style: %d %u %x %ld %lu %lx (32-bit, with and without the l), %c, %s (16-bit text),
    // %%, width, precision and the flags - and 0. Anything else after a % is copied and takes no
    // argument. An argument may be this text.
    void Format(const char16_t* format, ...);

    // The text of `value` with `digits` significant digits (1 to 40), as printf's %.*g writes it:
    // no trailing zeros, an exponent of two or more digits when it is below -4 or not below
    // `digits`. The decimal point is a point in every locale.
    void _gcvt(double value, int digits);

    // The marked form of an erroneous text: the text between two "?". Null marks the empty text.
    // `text` may be this text.
    void x_MarkErrorString(const char16_t* text);

    // The type name of a function block instance specification (`spec` is an FBINST_SPEC_TYP,
    // `flag` the attribute that holds it); empty when there is none.
    void y_GetAttrOfFBInstSpec(void* spec, int flag);

    LQ_ALLOCATED

  private:
    bool Reserve(std::size_t capacity);
    void Append(const char16_t* text, std::size_t count);
    void Fail();
    void Swap(CLQString& other);

    char16_t* Buffer() { return text_ ? text_ : small_; }

    // Projects hold hundreds of thousands of texts, so an object is kept small: a failure is marked
    // by a capacity that no text has, and a short text, as most are, lies in the object itself.
    static constexpr uint32_t kFailed = 0xFFFFFFFF;
    static constexpr uint32_t kSmall = 11;

    char16_t* text_ = nullptr;
    uint32_t length_ = 0;
    uint32_t capacity_ = kSmall;
    char16_t small_[kSmall + 1] = {};
};

// Error code of a stream operation.
enum STREAMERROR : int32_t {
    STREAM_OK = 0,
    STREAM_END = 1,     // read past the end, sought outside
    STREAM_FULL = 2,    // no room to write
    STREAM_FAILED = 3,  // the medium refused
};

// A stream of 16-bit characters with a reading and a writing position of its own. Positions and
// counts are in characters. Every operation takes an error pointer that may be null and stores
// STREAM_OK or the reason why it did less than it was asked for.
class LQ_DATA_API STREAM_W {
  public:
    virtual ~STREAM_W() = default;

    // Reads up to `count` characters; returns how many were read.
    virtual int32_t GetBlock(char16_t* buffer, int32_t count, STREAMERROR* error) = 0;
    // Writes up to `count` characters; returns how many were written.
    virtual int32_t PutBlock(const char16_t* buffer, int32_t count, STREAMERROR* error) = 0;
    // Where the next character is read.
    virtual int32_t TellRead() = 0;
    // Where the next character is written.
    virtual int32_t TellWrite() = 0;
    // Returns 1 when the position was taken, else 0 and the position stays. A position lies between
    // 0 and the length of the text.
    virtual int SeekRead(int32_t position, STREAMERROR* error) = 0;
    // Sets the writing position, as SeekRead the reading one.
    virtual int SeekWrite(int32_t position, STREAMERROR* error) = 0;

    LQ_ALLOCATED
};

// Over a caller's buffer of `size` characters, of which `length` are text. The buffer is neither
// copied nor owned. Reading starts at the first character, writing behind the text. Impossible
// sizes are cut: below 0 to 0, a length above the size to the size.
class LQ_DATA_API MEMSTREAM_W : public STREAM_W {
  public:
    // For reading: the buffer is never written.
    MEMSTREAM_W(const char16_t* buffer, int32_t size, int32_t length, STREAMERROR* error);
    // For reading and writing.
    MEMSTREAM_W(char16_t* buffer, int32_t size, int32_t length, STREAMERROR* error);

    int32_t GetBlock(char16_t* buffer, int32_t count, STREAMERROR* error) override;
    int32_t PutBlock(const char16_t* buffer, int32_t count, STREAMERROR* error) override;
    int32_t TellRead() override { return read_; }
    int32_t TellWrite() override { return write_; }
    int SeekRead(int32_t position, STREAMERROR* error) override;
    int SeekWrite(int32_t position, STREAMERROR* error) override;

  protected:
    const char16_t* source_ = nullptr;
    char16_t* target_ = nullptr;  // null for a stream that is only read
    int32_t size_ = 0;
    int32_t length_ = 0;
    int32_t read_ = 0;
    int32_t write_ = 0;
};

// Over a growing buffer of its own. A block for which there is no memory is not written at all
// (STREAM_FULL).
class LQ_DATA_API HEAPSTREAM_W : public MEMSTREAM_W {
  public:
    HEAPSTREAM_W();
    ~HEAPSTREAM_W() override;
    HEAPSTREAM_W(const HEAPSTREAM_W&) = delete;
    HEAPSTREAM_W& operator=(const HEAPSTREAM_W&) = delete;

    int32_t PutBlock(const char16_t* buffer, int32_t count, STREAMERROR* error) override;
};

// A stream of bytes.
class LQ_DATA_API STREAM_A {
  public:
    virtual ~STREAM_A() = default;

    // Reads up to `count` bytes; returns how many were read.
    virtual int32_t GetBlock(void* buffer, int32_t count, STREAMERROR* error) = 0;
    // Writes up to `count` bytes; returns how many were written.
    virtual int32_t PutBlock(const void* buffer, int32_t count, STREAMERROR* error) = 0;

    LQ_ALLOCATED
};

// The path of the environment's settings file, empty when memory is short. Valid on its thread
// until that ends or calls lq::ReleaseThread.
LQ_DATA_API const char16_t* GetIniName();

// Lends the check scanner of the calling thread, whose keyword table holds the type keywords (ids
// 6461 to 6505), with no stream bound; null when memory is short. Every GetCheckScanner is followed
// by a ReleaseCheckScanner, also one that gave null.
LQ_DATA_API Scanner* GetCheckScanner();
// Gives back what GetCheckScanner lent.
LQ_DATA_API void ReleaseCheckScanner();

// Non-zero for letters, digits and underscore.
LQ_DATA_API int __istcsym(char16_t c);
