// Any text ends, in no more tokens than characters and one. Every token's text is the source in
// front of the scanner's position; between two of them lie only blanks and line breaks, and the
// blanks of a token's own line are its `space`. (A text with a NUL has to end as soon; what ends
// texts hides where its tokens lie.)
#include <algorithm>
#include <memory>

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

}  // namespace

void Scanner(const uint8_t* data, size_t size) {
    Input input(data, size);
    const std::u16string all = input.AnyRest();
    const std::u16string_view text(all.data(),
                                   std::min(all.find(::Scanner::kEndOfInput), all.size()));
    const bool tellsPlaces = text.find(u'\0') == text.npos;
    const auto length = static_cast<int32_t>(all.size());
    MEMSTREAM_W stream(all.c_str(), length, length, nullptr);
    const std::unique_ptr<::Scanner> scanner(static_cast<::Scanner*>(::Scanner::CreateObject()));
    scanner->Initialize(stream);
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
