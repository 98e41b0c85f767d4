#include "host/plcopen/xml_encoding.h"

#include <algorithm>
#include <cctype>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

#include "host/text/code_page.h"

namespace lq::host::plcopen {

namespace {

constexpr struct {
    std::string_view name;  // in small letters
    TextEncoding encoding;
} kNames[] = {
    {"windows-1252", TextEncoding::kWindows1252},
    {"cp1252", TextEncoding::kWindows1252},
    {"shift_jis", TextEncoding::kShiftJis},
    {"shift-jis", TextEncoding::kShiftJis},
    {"sjis", TextEncoding::kShiftJis},
    {"x-sjis", TextEncoding::kShiftJis},
    {"windows-31j", TextEncoding::kShiftJis},
    {"cp932", TextEncoding::kShiftJis},
};

// The character of the bytes; -1 when they are none.
int CharacterOf(CodePage& page, std::string_view bytes) {
    std::u16string text;
    const bool isOne = page.Take(bytes, text) && bytes.empty() && text.size() == 1;
    return isOne ? text[0] : -1;
}

bool LeadsPair(unsigned char byte) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

int XMLCALL ConvertPair(void* page, const char* bytes) {
    try {
        return CharacterOf(*static_cast<CodePage*>(page), {bytes, 2});
    } catch (const std::exception&) {  // a character has no need of memory
        return -1;
    }
}

void XMLCALL Close(void* page) {
    delete static_cast<CodePage*>(page);
}

}  // namespace

int XMLCALL OnUnknownEncoding(void*, const XML_Char* name, XML_Encoding* encoding) {
    try {
        std::string lower(name);
        std::ranges::transform(lower, lower.begin(),
                               [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        for (const auto& row : kNames) {
            auto page = row.name == lower ? std::make_unique<CodePage>(row.encoding) : nullptr;
            if (!page || !page->IsOpen()) {
                continue;
            }
            const bool hasPairs = row.encoding == TextEncoding::kShiftJis;
            for (int byte = 0; byte < 256; ++byte) {
                const char c = static_cast<char>(byte);
                encoding->map[byte] = hasPairs && LeadsPair(static_cast<unsigned char>(byte))
                                          ? -2
                                          : CharacterOf(*page, {&c, 1});
            }
            encoding->convert = hasPairs ? ConvertPair : nullptr;
            encoding->release = Close;
            encoding->data = page.release();
            return XML_STATUS_OK;
        }
    } catch (const std::exception&) {  // told as an encoding that is not known
    }
    return XML_STATUS_ERROR;
}

}  // namespace lq::host::plcopen
