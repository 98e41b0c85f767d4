// Messages in the user's language. The English format is the key of its translation, and what is
// said where there is none.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

#include <initializer_list>

#include "lq_data/export.h"

namespace lq::host {

// The language of a code page, for the whole process and from now on: 932 is Japanese, any other
// English. Texts are UTF-8 in all languages. A program that speaks the user's language begins with
// UseLanguage(frame::ReadCodePage()), of frame/code_page.h.
LQ_DATA_API void UseLanguage(std::uint32_t codePage) noexcept;

// That of the language: 932 or 1252.
LQ_DATA_API std::uint32_t LanguageCodePage() noexcept;

// The format in that language.
LQ_DATA_API std::string_view Translated(std::string_view format) noexcept;

// Marks a format that Say gets later, out of a table for instance, as one to be translated.
constexpr const char* Message(const char* format) {
    return format;
}

// What Say makes of its words.
LQ_DATA_API std::string SayWords(std::string_view format,
                                 std::initializer_list<std::string_view> words);

inline std::string_view AsWord(std::string_view word) {
    return word;
}
std::string AsWord(std::integral auto number) {
    return std::to_string(number);
}

// The translated format with the words, texts and whole numbers, in their places: "{}" is the place
// of the next one, "{2}" that of the second one.
template <typename... Words>
std::string Say(std::string_view format, const Words&... words) {
    return SayWords(format, {AsWord(words)...});
}

}  // namespace lq::host
