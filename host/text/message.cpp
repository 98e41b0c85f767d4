#include "lq_data/host/text/message.h"

#include <algorithm>
#include <atomic>

#include "host/text/messages_932.h"

namespace lq::host {

namespace {

constexpr std::uint32_t kJapanese = 932;
constexpr std::uint32_t kEnglish = 1252;

constinit std::atomic<bool> isJapanese = false;

}  // namespace

void UseLanguage(std::uint32_t codePage) noexcept {
    isJapanese.store(codePage == kJapanese, std::memory_order_relaxed);
}

std::uint32_t LanguageCodePage() noexcept {
    return isJapanese.load(std::memory_order_relaxed) ? kJapanese : kEnglish;
}

std::string_view Translated(std::string_view format) noexcept {
    if (LanguageCodePage() != kJapanese) {
        return format;
    }
    for (const std::span<const Translation> translations :
         {kMessages932, kCheckMessages932, kRuleMessages932}) {
        const auto at = std::ranges::lower_bound(translations, format, {}, &Translation::english);
        if (at != translations.end() && at->english == format) {
            return at->translated;
        }
    }
    return format;
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
