// Any text ends, in no more tokens than characters and one. Every token's text is the source in
// front of the scanner's position; between two of them lie only blanks and line breaks, and the
// blanks of a token's own line are its `space`. (Of a text with a NUL only the number of tokens is
// checked: the NUL ends the texts of its tokens early, so that their places cannot be told.) And
// the tokens are the same wherever the text lies in the reader: it is scanned once more behind so
// many blanks that the end of a half falls within it.
#include <algorithm>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "fuzz/targets.h"
#include "lq_data/scanner.h"

namespace lq::fuzz {

namespace {

constexpr size_t kMostBlanks = ::Scanner::kBufferSize - 1;

void CheckGap(std::u16string_view gap, std::u16string_view space) {
    Require(gap.find_first_not_of(u" \t\r\n") == gap.npos, "only blanks and line breaks between");
    const size_t lineBreak = gap.rfind(u'\n');
    const std::u16string_view blanks = lineBreak == gap.npos ? gap : gap.substr(lineBreak + 1);
    Require(blanks.substr(0, kMostBlanks) == space, "the blanks in front of a token");
}

std::unique_ptr<::Scanner> NewScanner(STREAM_W& stream) {
    std::unique_ptr<::Scanner> scanner(static_cast<::Scanner*>(::Scanner::CreateObject()));
    scanner->Initialize(stream);
    return scanner;
}

// A token's kind, line, text and value.
using Seen = std::tuple<int32_t, int32_t, std::u16string, std::u16string, double>;

Seen See(const Token& token) {
    const bool hasText = token.kind == TK_COMMENT || token.kind == TK_STRING;
    const bool hasNumber = token.kind == TK_ERROR || token.kind == TK_INTEGER ||
                           token.kind == TK_BASED_INTEGER || token.kind == TK_RANGE_START;
    const bool hasTime = token.kind >= TK_TIME && token.kind <= TK_TIME_OF_DAY;
    double number = 0;
    if (token.kind == TK_REAL) {
        number = token.GetReal();
    } else if (hasNumber) {
        number = token.GetNumber();
    } else if (token.kind == TK_OPERATOR) {
        number = token.GetCode();
    } else if (hasTime) {
        const Time& time = *token.GetTime();
        number = time.sign * (time.days * 86400000.0 + time.ms);
    }
    const char16_t* const value = hasText                    ? token.GetValueText()
                                  : token.kind == TK_ADDRESS ? token.GetAddress()->text
                                                             : u"";
    return {token.kind, token.line, token.text, value, number};
}

std::vector<Seen> SeeAll(const std::u16string& text) {
    const auto length = static_cast<int32_t>(text.size());
    MEMSTREAM_W stream(text.c_str(), length, length, nullptr);
    const auto scanner = NewScanner(stream);
    std::vector<Seen> all;
    do {
        all.push_back(See(scanner->GetToken()));
    } while (std::get<0>(all.back()) != TK_EOF);
    return all;
}

void CheckBehindBlanks(const std::u16string& text) {
    constexpr size_t kHalf = 1023;
    if (!text.empty()) {
        const size_t place = text.back() % std::min(text.size(), kHalf);
        const std::u16string blanks(kHalf - place, u' ');
        Require(SeeAll(text) == SeeAll(blanks + text), "the same tokens at every place");
    }
}

}  // namespace

void Scanner(const uint8_t* data, size_t size) {
    Input input(data, size);
    const std::u16string all = input.AnyRest();
    const std::u16string_view text(all.data(),
                                   std::min(all.find(::Scanner::kEndOfInput), all.size()));
    CheckBehindBlanks(all);
    const bool tellsPlaces = text.find(u'\0') == text.npos;
    const auto length = static_cast<int32_t>(all.size());
    MEMSTREAM_W stream(all.c_str(), length, length, nullptr);
    const auto scanner = NewScanner(stream);
    size_t at = 0;
    for (size_t tokens = 0;; ++tokens) {
        Require(tokens <= text.size(), "no more tokens than characters and one");
        const Token token = scanner->GetToken();
        if (!tellsPlaces) {
            if (token.kind == TK_EOF) {
                return;
            }
            continue;
        }
        if (token.kind == TK_EOF) {
            CheckGap(text.substr(at), token.space);
            return;
        }
        const std::u16string_view source(scanner->GetSrcEx() ? scanner->GetSrcEx() : token.text);
        const size_t end = static_cast<size_t>(scanner->GetStreamPosition() + scanner->IsEOF());
        Require(!source.empty() && end >= at + source.size(), "a token has a text");
        const size_t start = end - source.size();
        Require(text.substr(start, source.size()) == source, "a token's text is the source");
        CheckGap(text.substr(at, start - at), token.space);
        at = end;
    }
}

}  // namespace lq::fuzz
