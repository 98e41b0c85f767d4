// The fuzz targets: each takes arbitrary bytes and aborts when a promise is broken. The same
// functions run under the fuzzer and, over stored inputs, in the tests.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace lq::fuzz {

using Target = void (*)(const uint8_t* data, size_t size);

void Scanner(const uint8_t* data, size_t size);
void Value(const uint8_t* data, size_t size);
void Declaration(const uint8_t* data, size_t size);
void Image(const uint8_t* data, size_t size);
void RecordFile(const uint8_t* data, size_t size);
void Tables(const uint8_t* data, size_t size);
void List(const uint8_t* data, size_t size);
void PairedList(const uint8_t* data, size_t size);
void Hash(const uint8_t* data, size_t size);
void MemberInit(const uint8_t* data, size_t size);
void Plcopen(const uint8_t* data, size_t size);
void TextSource(const uint8_t* data, size_t size);
void TextWords(const uint8_t* data, size_t size);
void Uses(const uint8_t* data, size_t size);

struct NamedTarget {
    const char* name;
    Target run;
};
inline constexpr NamedTarget kTargets[] = {
    {"scanner", Scanner},         {"value", Value},
    {"declaration", Declaration}, {"image", Image},
    {"record_file", RecordFile},  {"list", List},
    {"paired_list", PairedList},  {"hash", Hash},
    {"member_init", MemberInit},  {"plcopen", Plcopen},
    {"tables", Tables},           {"text_source", TextSource},
    {"text_words", TextWords},    {"uses", Uses},
};

// Ends the run when a promise does not hold.
inline void Require(bool holds, const char* promise) {
    if (!holds) {
        std::fprintf(stderr, "broken promise: %s\n", promise);
        std::abort();
    }
}

// Takes decisions and texts from the front of the input; at its end everything is 0 or empty.
class Input {
  public:
    Input(const uint8_t* data, size_t size) : at_(data), left_(size) {}

    bool IsEmpty() const { return left_ == 0; }
    uint8_t Byte() {
        if (left_ == 0) {
            return 0;
        }
        --left_;
        return *at_++;
    }
    uint32_t Number() {
        uint32_t number = 0;
        for (int i = 0; i < 4; ++i) {
            number = number << 8 | Byte();
        }
        return number;
    }
    uint32_t Below(uint32_t limit) { return (uint32_t{Byte()} << 8 | Byte()) % limit; }
    // A text from the bytes up to a zero byte. A byte below 0x80 is a character; one from 0x80 on
    // is, without its highest bit, the upper half of a character whose lower half follows; behind
    // kAnyCharacter both halves of any character follow. Zeros in the text become blanks.
    std::u16string Text() {
        std::u16string text = AnyText();
        std::replace(text.begin(), text.end(), u'\0', u' ');
        return text;
    }
    std::u16string AnyText() {
        std::u16string text;
        while (left_ != 0) {
            const uint8_t byte = Byte();
            if (byte == 0) {
                break;
            }
            if (byte == kAnyCharacter) {
                text += Pair(Byte());
            } else if (byte >= 0x80) {
                text += Pair(byte & 0x7F);
            } else {
                text += static_cast<char16_t>(byte);
            }
        }
        return text;
    }
    // All texts that are left, one behind the other.
    std::u16string Rest() { return Join(&Input::Text); }
    std::u16string AnyRest() { return Join(&Input::AnyText); }

  private:
    static constexpr uint8_t kAnyCharacter = 1;

    char16_t Pair(int high) { return static_cast<char16_t>(high << 8 | Byte()); }
    std::u16string Join(std::u16string (Input::*next)()) {
        std::u16string text;
        while (left_ != 0) {
            text += (this->*next)();
        }
        return text;
    }

    const uint8_t* at_;
    size_t left_;
};

}  // namespace lq::fuzz
