#include "host/plcopen/xml_encoding.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "lq_data/host/text/utf.h"

namespace lq::host::plcopen {

namespace {

constexpr unsigned kBytes = 256;
constexpr int kNone = -1;
constexpr int kFirstOfTwo = -2;

// In lower case. The second page has the first name and others in use, which all mean what the
// system of that page writes.
constexpr struct {
    std::string_view name;
    TextEncoding encoding;
} kEncodings[] = {
    {"windows-1252", TextEncoding::kWindows1252}, {"cp1252", TextEncoding::kWindows1252},
    {"x-cp1252", TextEncoding::kWindows1252},     {"shift_jis", TextEncoding::kShiftJis},
    {"shift-jis", TextEncoding::kShiftJis},       {"sjis", TextEncoding::kShiftJis},
    {"x-sjis", TextEncoding::kShiftJis},          {"windows-31j", TextEncoding::kShiftJis},
    {"cp932", TextEncoding::kShiftJis},           {"ms932", TextEncoding::kShiftJis},
    {"windows-932", TextEncoding::kShiftJis},
};

const TextEncoding* Find(std::string_view name) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    for (const auto& row : kEncodings) {
        if (std::ranges::equal(name, row.name, {}, lower)) {
            return &row.encoding;
        }
    }
    return nullptr;
}

bool IsFirstOfTwo(unsigned byte) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

// The characters of two bytes, by both; -1 for none.
struct Pairs {
    std::array<std::array<int, kBytes>, kBytes> of;
};

// The only character of the bytes.
int CharacterOf(std::string_view bytes, TextEncoding encoding) {
    std::u16string text;
    return DecodeCodePage(bytes, encoding, text).IsFine() && text.size() == 1 ? text[0] : kNone;
}

// Where the second byte is no character, those behind it are decoded anew.
void FillRow(unsigned first, std::array<int, kBytes>& row) {
    constexpr unsigned kLowest = 0x40;
    constexpr unsigned kHighest = 0xFC;
    row.fill(kNone);
    for (unsigned second = kLowest; second <= kHighest; ++second) {
        std::string bytes;
        for (unsigned byte = second; byte <= kHighest; ++byte) {
            bytes += {static_cast<char>(first), static_cast<char>(byte)};
        }
        std::u16string text;
        DecodeCodePage(bytes, TextEncoding::kShiftJis, text);
        for (const char16_t c : text) {
            row[second++] = c;
        }
    }
}

int XMLCALL Convert(void* pairs, const char* bytes) {
    const auto first = static_cast<unsigned char>(bytes[0]);
    const auto second = static_cast<unsigned char>(bytes[1]);
    return static_cast<const Pairs*>(pairs)->of[first][second];
}

void XMLCALL Release(void* pairs) {
    delete static_cast<Pairs*>(pairs);
}

}  // namespace

bool DescribeEncoding(const XML_Char* name, XML_Encoding& description) {
    const TextEncoding* const encoding = Find(name);
    if (!encoding || CharacterOf("A", *encoding) != 'A') {
        return false;
    }
    const bool hasPairs = *encoding == TextEncoding::kShiftJis;
    for (unsigned byte = 0; byte < kBytes; ++byte) {
        const char c = static_cast<char>(byte);
        description.map[byte] =
            hasPairs && IsFirstOfTwo(byte) ? kFirstOfTwo : CharacterOf({&c, 1}, *encoding);
    }
    if (hasPairs) {
        auto pairs = std::make_unique<Pairs>();
        for (unsigned first = 0; first < kBytes; ++first) {
            if (IsFirstOfTwo(first)) {
                FillRow(first, pairs->of[first]);
            }
        }
        description.data = pairs.release();
        description.convert = Convert;
        description.release = Release;
    }
    return true;
}

}  // namespace lq::host::plcopen
