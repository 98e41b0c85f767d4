// Others who do the same work, in a shared library as ours is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace lq::bench {

// --- Scanners ------------------------------------------------------------------------------------

// By TOKEN_KIND.
constexpr std::size_t kKinds = 18;
struct KindCounts {
    uint64_t of[kKinds] = {};

    uint64_t Total() const {
        uint64_t total = 0;
        for (const uint64_t count : of) {
            total += count;
        }
        return total;
    }
};

// Only classifies 8-bit text: nothing is kept of a token but its kind. `text` ends in two zero
// characters, which it holds nowhere else; it is as before afterwards.
KindCounts CountWithFlex(std::string& text);

// What the two below deliver, of the same 16-bit text as our scanner.
struct RivalToken {
    int32_t kind;
    int32_t line;
    const char16_t* text;  // a copy, as `space` is: the blanks before the token
    const char16_t* space;
    uint64_t value;
};

// The end of their text: a zero character, which it holds nowhere else, and what a copy in wide
// steps may read behind it.
constexpr std::size_t kPadding = 17;
constexpr std::size_t kBuffer = 2048 + kPadding;

// A scanner that re2c made. A keyword is an identifier to it; the values of integers and operators
// are all that it works out.
class Re2cScanner {
  public:
    explicit Re2cScanner(const std::u16string& text) : at_(text.c_str()) {}
    RivalToken GetToken();

  private:
    const char16_t* at_;
    int32_t line_ = 0;
    std::u16string text_ = std::u16string(kBuffer, u'\0');
    std::u16string space_ = std::u16string(kBuffer, u'\0');
};

// Literals between blanks by a hand-written loop, one character after the other: integers, based
// integers and durations of whole components. TK_ERROR is all else, TK_EOF the end.
struct RivalTime {
    int32_t days;
    double ms;
    int sign;
};
class LiteralLoop {
  public:
    explicit LiteralLoop(const std::u16string& text) : at_(text.c_str()) {}
    RivalToken GetToken();

  private:
    // Each passes and copies a part; `to` moves with it.
    int32_t Number(char16_t*& to, uint64_t& value);
    int32_t Based(char16_t*& to, uint64_t& value);
    int32_t Duration(char16_t*& to);

    const char16_t* at_;
    RivalTime time_ = {};
    // No token of its texts is longer.
    char16_t text_[kBuffer];
    char16_t space_[kBuffer];
};

// --- A list --------------------------------------------------------------------------------------

// A ring of nodes as our lists have them, in blocks of twenty, and a position. The step is what a
// function that others call cannot do without.
class Cursor {
  public:
    Cursor();
    ~Cursor();
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;

    void Append(uint32_t value);
    void Rewind();
    // The next element's index, 0 behind the last; copies the element to `out`.
    uint32_t Step(uint32_t* out);
    // The same; `slot` becomes where the element lies.
    uint32_t StepToSlot(void*& slot);

  private:
    struct Node {
        Node* next;
        Node* prev;
        uint32_t value;
    };
    struct Block;

    Node* head_;
    Node* current_;
    uint32_t index_ = 0;
    Block* blocks_ = nullptr;
};

}  // namespace lq::bench
