#include "lq_data/host/text/message.h"

#include <algorithm>

#include "host/text/messages_932.h"

namespace lq::host {

namespace {

constexpr std::uint32_t kJapanese = 932;

constinit std::span<const Translation> translations;  // none in English

}  // namespace

void UseLanguage(std::uint32_t codePage) noexcept {
    translations = codePage == kJapanese ? kMessages932 : std::span<const Translation>();
}

std::string_view Translated(std::string_view format) noexcept {
    const auto at = std::ranges::lower_bound(translations, format, {}, &Translation::english);
    return at != translations.end() && at->english == format ? at->translated : format;
}

std::string SayWords(std::string_view format, std::initializer_list<std::string_view> words) {
    std::string text;
    std::string_view rest = Translated(format);
    std::size_t next = 0;
    for (std::size_t at; (at = rest.find('{')) != rest.npos;) {
        text += rest.substr(0, at);
        rest.remove_prefix(at + 1);
        const bool isNext = rest.starts_with('}');
        const std::size_t word = isNext ? next++ : static_cast<std::size_t>(rest.front() - '1');
        text += word < words.size() ? words.begin()[word] : std::string_view();
        rest.remove_prefix(isNext ? 1 : 2);
    }
    return text += rest;
}

}  // namespace lq::host
