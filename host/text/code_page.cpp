// Texts in the code pages that came before Unicode. The C library knows what they hold.

#include "host/text/code_page.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <iconv.h>
#include <new>

#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"

namespace lq::host {

namespace {

bool IsControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 && c != '\t' && c != '\n' && c != '\r' && c != '\f' && byte != 0x1A;
}

constexpr std::size_t kConverterSize = 64 * 1024;  // about what loading one takes

}  // namespace

// A converter that could not be loaded for want of memory is told like one that there is not: the
// second try finds it, or shows that nothing can be had.
CodePage::CodePage(TextEncoding encoding) {
    for (int tries = 0; tries < 2 && !IsOpen(); ++tries) {
        handle_ = iconv_open("UTF-16LE", encoding == TextEncoding::kShiftJis ? "CP932" : "CP1252");
    }
    if (!IsOpen()) {
        const bool isShort = errno == ENOMEM;
        void* volatile probe = std::malloc(kConverterSize);  // not to be left out
        std::free(probe);
        if (isShort || !probe) {
            throw std::bad_alloc();
        }
    }
}

CodePage::~CodePage() {
    if (IsOpen()) {
        iconv_close(handle_);
    }
}

bool CodePage::IsOpen() const {
    return handle_ != reinterpret_cast<iconv_t>(-1);
}

bool CodePage::Take(std::string_view& bytes, std::u16string& text) {
    char16_t piece[4096];
    char* from = const_cast<char*>(bytes.data());  // only read
    std::size_t left = bytes.size();
    char* to = reinterpret_cast<char*>(piece);
    std::size_t room = sizeof piece;
    const bool isWhole = iconv(handle_, &from, &left, &to, &room) != static_cast<std::size_t>(-1);
    const bool isFull = !isWhole && errno == E2BIG;
    text.append(piece, (sizeof piece - room) / sizeof(char16_t));
    bytes.remove_prefix(bytes.size() - left);
    return isWhole || isFull;
}

TextStatus DecodeCodePage(std::string_view bytes, TextEncoding encoding, std::u16string& text) {
    text.clear();
    CodePage page(encoding);
    std::string_view left = bytes;
    bool isFine = page.IsOpen();
    while (isFine && !left.empty()) {
        isFine = page.Take(left, text);
    }
    return {isFine ? TextFault::kNone : TextFault::kNoCharacter, bytes.size() - left.size()};
}

TextStatus DecodeAnySource(std::string_view bytes, std::u16string& text) {
    TextEncoding encoding = TextEncoding::kUtf8;
    const TextStatus status = DecodeSource(bytes, text, &encoding);
    if (status.IsFine() || encoding != TextEncoding::kUtf8 ||
        std::ranges::any_of(bytes, IsControl)) {
        return status;
    }
    const bool isJapanese = LanguageCodePage() == 932;
    for (const bool shiftJis : {isJapanese, !isJapanese}) {
        std::u16string read;
        const TextEncoding tried = shiftJis ? TextEncoding::kShiftJis : TextEncoding::kWindows1252;
        if (DecodeCodePage(bytes, tried, read).IsFine()) {
            text.swap(read);
            return {TextFault::kNone, bytes.size()};
        }
    }
    return status;
}

}  // namespace lq::host
