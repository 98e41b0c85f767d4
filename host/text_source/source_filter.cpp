#include "host/text_source/source_filter.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "host/text/foreign_text.h"

namespace lq::host::text_source {

namespace {

constexpr std::u16string_view kOpening = u"(*";
constexpr std::u16string_view kClosing = u"*)";
constexpr char16_t kLetter = u'x';
constexpr std::size_t kNone = std::u16string_view::npos;

// Whether something that is no plain code may begin with the character.
constexpr bool Begins(char16_t c) {
    return c == u'(' || c == u'/' || c == u'{' || c == u'\'' || c == u'"';
}
constexpr auto kBegins = [] {
    std::array<bool, 128> begins{};
    for (std::size_t c = 0; c < begins.size(); ++c) {
        begins[c] = Begins(static_cast<char16_t>(c));
    }
    return begins;
}();

bool MayBegin(char16_t c) {
    return c < kBegins.size() && kBegins[c];
}

// Eight characters, which are compared in one step.
using Step [[gnu::vector_size(16)]] = uint16_t;
constexpr std::size_t kStep = sizeof(Step) / sizeof(char16_t);

// Whether none of them does.
bool IsPlain(const char16_t* text) {
    Step step;
    std::memcpy(&step, text, sizeof step);
    const auto is = [&step](uint16_t c) { return step == c; };
    const auto begins = is(u'(') | is(u'/') | is(u'{') | is(u'\'') | is(u'"');
    uint64_t halves[2];
    static_assert(sizeof halves == sizeof begins);
    std::memcpy(halves, &begins, sizeof halves);
    return (halves[0] | halves[1]) == 0;
}

}  // namespace

void SourceFilter::TakeFirst() {
    ++taken_;
    if (taken_ == foreign_.size()) {
        foreign_.clear();
        taken_ = 0;
    }
}

int32_t SourceFilter::GetBlock(char16_t* buffer, int32_t count, STREAMERROR* error) {
    const std::size_t first = at_;
    const std::size_t stop = at_ + static_cast<std::size_t>(std::max(count, 0));
    const std::size_t end = std::min(stop, text_.size());
    while (at_ < end) {
        if (at_ == end_) {
            Begin();
        }
        const std::size_t part = std::min(end, end_);
        buffer = Put(buffer, part);
    }
    if (at_ == text_.size() && at_ < stop) {
        *buffer = u' ';
        ++at_;
    }
    if (error) {
        *error = at_ == stop ? STREAM_OK : STREAM_END;
    }
    return static_cast<int32_t>(at_ - first);
}

// What is shown up to `part`, which lies in the part that is being shown.
char16_t* SourceFilter::Put(char16_t* to, std::size_t part) {
    const char16_t* const text = text_.data();
    if (show_ == Show::kBlank) {
        to = std::fill_n(to, part - at_, u' ');
        at_ = part;
    } else if (show_ == Show::kCode) {
        for (; at_ < part; ++at_) {
            *to++ = std::max(text[at_], u' ');
        }
    } else {
        for (; at_ < part; ++at_) {
            *to++ = at_ == begin_ || at_ == end_ - 1 ? text[begin_] : kLetter;
        }
    }
    return to;
}

// What begins with the character here, up to where it ends.
void SourceFilter::Begin() {
    begin_ = at_;
    show_ = Show::kCode;
    end_ = at_ + 1;
    if (!MayBegin(text_[at_])) {
        end_ = EndOfCode(end_);
    } else if (At(kOpening)) {
        BeginComment(kClosing, EndOfComment());
    } else if (At(u"/*")) {
        BeginComment(u"*/", text_.find(u"*/", at_ + 2));
    } else if (At(u"//")) {
        BeginForeign(Foreign::kLineComment, EndOfLine(at_));
    } else if (At(u"{")) {
        BeginPragma();
    } else if (!At(u"(") && !At(u"/")) {
        BeginString();
    }
}

// Where something may begin that is no plain code; in wide steps, while there is nothing.
std::size_t SourceFilter::EndOfCode(std::size_t from) const {
    while (text_.size() - from >= kStep && IsPlain(text_.data() + from)) {
        from += kStep;
    }
    while (from < text_.size() && !MayBegin(text_[from])) {
        ++from;
    }
    return from;
}

void SourceFilter::BeginForeign(Foreign::Kind kind, std::size_t end, bool isOpen) {
    show_ = Show::kBlank;
    end_ = end;
    foreign_.push_back({static_cast<uint32_t>(at_), static_cast<uint32_t>(end), kind, isOpen});
}

void SourceFilter::BeginComment(std::u16string_view mark, std::size_t end) {
    const bool isOpen = end == kNone;
    BeginForeign(Foreign::kComment, isOpen ? text_.size() : end + mark.size(), isOpen);
}

// Is asked for ever later places: a long line is searched once.
std::size_t SourceFilter::EndOfLine(std::size_t from) {
    if (from >= lineEnd_) {
        lineEnd_ = std::min(text_.find(u'\n', from), text_.size());
    }
    const std::size_t end = lineEnd_;
    return end > from && text_[end - 1] == u'\r' ? end - 1 : end;
}

// The closing mark of the comment that begins here.
std::size_t SourceFilter::EndOfComment() {
    const std::size_t flat = text_.find(kClosing, at_ + 2);
    if (flat == kNone || !nests_ || text_.substr(at_ + 2, flat - at_ - 2).find(kOpening) == kNone) {
        return flat;
    }
    for (std::size_t i = flat + 2; i + 1 < text_.size(); ++i) {
        const std::u16string_view mark = text_.substr(i, 2);
        if (mark == kOpening) {
            return flat;
        }
        if (mark == kClosing) {
            const std::size_t end = EndOfNest();
            nests_ = end != kNone;
            return nests_ ? end : flat;
        }
    }
    return flat;
}

std::size_t SourceFilter::EndOfNest() const {
    std::size_t depth = 1;
    for (std::size_t i = at_ + 2; i + 1 < text_.size(); ++i) {
        const std::u16string_view mark = text_.substr(i, 2);
        if (mark == kOpening) {
            ++depth;
            ++i;
        } else if (mark == kClosing) {
            if (--depth == 0) {
                return i;
            }
            ++i;
        }
    }
    return kNone;
}

// The time stays in proportion to the text, however many pragmas are open.
void SourceFilter::BeginPragma() {
    constexpr int kMostOpen = 16;
    const std::size_t line = EndOfLine(at_);
    const std::u16string_view where = openPragmas_ < kMostOpen ? text_ : text_.substr(0, line);
    bool isOpen = false;
    const std::size_t end = EndOfPragma(where, at_, &isOpen);
    openPragmas_ += isOpen ? 1 : 0;
    BeginForeign(Foreign::kPragma, isOpen ? line : end, isOpen);
}

void SourceFilter::BeginString() {
    const std::size_t line = EndOfLine(at_);
    std::size_t end = at_ + 1;
    while (end < line && text_[end] != text_[at_]) {
        end += text_[end] == u'$' ? 2 : 1;
    }
    if (end < line) {
        show_ = Show::kString;
        end_ = end + 1;
        return;
    }
    BeginForeign(Foreign::kString, line, true);
    show_ = line > at_ + 1 ? Show::kString : Show::kBlank;
}

}  // namespace lq::host::text_source
