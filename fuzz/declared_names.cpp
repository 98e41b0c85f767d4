#include "fuzz/declared_names.h"

#include <algorithm>
#include <cstddef>
#include <span>

namespace lq::fuzz {

namespace {

struct Word {
    std::u16string_view text;
    std::u16string capitals;
    uint32_t line;
    bool isFirst;  // of its line
    bool isName;
};

bool IsLetter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_';
}
bool IsDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

// Names and numbers as they are, all else character by character.
std::vector<Word> WordsOf(std::u16string_view text) {
    std::vector<Word> words;
    uint32_t line = 1;
    for (std::size_t at = 0, end = 0; at < text.size(); at = end) {
        end = at + 1;
        if (text[at] == u'\n') {
            ++line;
        }
        if (text[at] <= u' ') {
            continue;
        }
        const bool isWord = IsLetter(text[at]) || IsDigit(text[at]);
        while (isWord && end < text.size() && (IsLetter(text[end]) || IsDigit(text[end]))) {
            ++end;
        }
        Word word{text.substr(at, end - at),
                  {},
                  line,
                  words.empty() || words.back().line != line,
                  IsLetter(text[at])};
        for (const char16_t c : word.text) {
            word.capitals += static_cast<char16_t>(c >= u'a' && c <= u'z' ? c - 32 : c);
        }
        words.push_back(std::move(word));
    }
    return words;
}

using Words = std::span<const std::u16string_view>;

constexpr std::u16string_view kSections[] = {u"VAR",        u"VAR_INPUT", u"VAR_OUTPUT",
                                             u"VAR_IN_OUT", u"VAR_TEMP",  u"VAR_EXTERNAL",
                                             u"VAR_GLOBAL", u"VAR_INST",  u"VAR_STAT"};
constexpr std::u16string_view kMarks[] = {u"CONSTANT", u"RETAIN", u"NON_RETAIN", u"PERSISTENT"};
constexpr std::u16string_view kLeftOut[] = {
    u"METHOD", u"PROPERTY", u"CLASS",      u"INTERFACE",  u"TEST",    u"NAMESPACE", u"UNION",
    u"USING",  u"ON",       u"VAR_CONFIG", u"VAR_ACCESS", u"EXTENDS", u"IMPLEMENTS"};
// What may stand where a name does without being one, or that ends declarations.
constexpr std::u16string_view kWords[] = {u"PROGRAM",
                                          u"FUNCTION",
                                          u"FUNCTION_BLOCK",
                                          u"TYPE",
                                          u"CONFIGURATION",
                                          u"RESOURCE",
                                          u"TASK",
                                          u"STRUCT",
                                          u"AT",
                                          u"PUBLIC",
                                          u"PRIVATE",
                                          u"PROTECTED",
                                          u"INTERNAL",
                                          u"ABSTRACT",
                                          u"FINAL",
                                          u"OVERRIDE",
                                          u"R_EDGE",
                                          u"F_EDGE",
                                          u"INITIAL_STEP",
                                          u"STEP",
                                          u"TRANSITION",
                                          u"ACTION",
                                          u"EN",
                                          u"ENO"};

bool IsOneOf(Words words, const Word& word) {
    return std::ranges::find(words, std::u16string_view(word.capitals)) != words.end();
}

class Finder {
  public:
    explicit Finder(const std::vector<Word>& words) : words_(words) {}

    std::vector<DeclaredName> Find() {
        for (std::size_t at = 0; at < words_.size(); ++at) {
            Take(at);
        }
        return std::move(names_);
    }

  private:
    bool Is(std::size_t at, std::u16string_view text) const {
        return at < words_.size() && words_[at].capitals == text;
    }
    bool IsPlainName(std::size_t at) const {
        return at < words_.size() && words_[at].isName &&
               !words_[at].capitals.starts_with(u"END_") && !IsOneOf(kSections, words_[at]) &&
               !IsOneOf(kMarks, words_[at]) && !IsOneOf(kWords, words_[at]);
    }

    void Take(std::size_t at) {
        const Word& word = words_[at];
        if (Is(at, u"STRUCT")) {
            depth_ += 1;
        } else if (word.capitals.starts_with(u"END_") || IsOneOf(kWords, word)) {
            depth_ = Is(at, u"END_STRUCT") ? 0 : depth_;
            block_ = Is(at, u"AT") ? block_ : nullptr;
        }
        const bool isName = Is(at + 1, u":") || Is(at + 1, u",");
        const bool isOfTypes = Is(at, u"TYPE") && IsPlainName(at + 1) && Is(at + 2, u":");
        if (word.isFirst && !isName && depth_ == 0 && (IsOneOf(kSections, word) || isOfTypes)) {
            block_ = &word;
        }
        // Behind a ";" or the block's first word.
        const bool isBegin = at > 0 && (Is(at - 1, u";") || &words_[at - 1] == block_);
        if (!block_ || depth_ != 0 || !isBegin) {
            return;
        }
        std::size_t end = at + 1;
        while (Is(end, u",") && IsPlainName(end + 1) && block_->capitals != u"TYPE") {
            end += 2;
        }
        // ":=" is an assignment's.
        if (!IsPlainName(at) || !Is(end, u":") || Is(end + 1, u"=")) {
            return;
        }
        for (; at < end; at += 2) {
            names_.push_back({words_[at].text, words_[at].line, block_->line});
        }
    }

    const std::vector<Word>& words_;
    std::vector<DeclaredName> names_;
    const Word* block_ = nullptr;
    int depth_ = 0;
};

}  // namespace

std::vector<DeclaredName> DeclaredNames(std::u16string_view text) {
    const auto isOdd = [](char16_t c) {
        return c >= 0x7F || (c < u' ' && c != u'\n') ||
               std::u16string_view(u"'\"{}/@$#").find(c) != std::u16string_view::npos;
    };
    if (std::ranges::any_of(text, isOdd) || text.find(u"(*") != text.npos) {
        return {};
    }
    const std::vector<Word> words = WordsOf(text);
    const auto isLeftOut = [](const Word& word) { return IsOneOf(kLeftOut, word); };
    return std::ranges::any_of(words, isLeftOut) ? std::vector<DeclaredName>()
                                                 : Finder(words).Find();
}

}  // namespace lq::fuzz
