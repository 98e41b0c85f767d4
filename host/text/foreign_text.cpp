#include "host/text/foreign_text.h"

#include <algorithm>
#include <utility>

namespace lq::host {

namespace {

class Blanker {
  public:
    Blanker(std::u16string_view text, TextSpans* pragmas) : text_(text), pragmas_(pragmas) {
        code_.reserve(text.size());
    }

    std::u16string Run() {
        while (at_ < text_.size()) {
            const std::size_t start = at_;
            while (at_ < text_.size() && !MayBegin(text_[at_])) {
                ++at_;
            }
            code_ += text_.substr(start, at_ - start);
            if (at_ < text_.size()) {
                Pass();
            }
        }
        return std::move(code_);
    }

  private:
    // Whether something that is no code may begin with the character.
    static bool MayBegin(char16_t c) {
        return c == u'(' || c == u'/' || c == u'{' || c == u'\'' || c == u'"';
    }

    bool At(std::u16string_view mark) const { return text_.substr(at_).starts_with(mark); }

    // What begins with the character here, be it code or not.
    void Pass() {
        if (At(u"(*")) {
            Blank(EndOfComment());
        } else if (At(u"/*")) {
            Blank(Behind(u"*/", at_ + 2));
        } else if (At(u"//")) {
            Blank(std::min(text_.find(u'\n', at_), text_.size()));
        } else if (At(u"{")) {
            const std::size_t end = EndOfPragma(text_, at_);
            if (pragmas_) {
                pragmas_->emplace_back(at_, end);
            }
            Blank(end);
        } else if (At(u"'") || At(u"\"")) {
            PassString();
        } else {
            code_ += text_[at_++];
        }
    }

    void PassString() {
        const char16_t marks[] = {text_[at_], u'\n', u'$', 0};
        std::size_t end = at_ + 1;
        while ((end = text_.find_first_of(marks, end)) < text_.size() && text_[end] == u'$') {
            // A line's last character escapes nothing.
            end += text_.substr(end + 1, 1) == u"\n" ? 1 : 2;
        }
        end = std::min(end, text_.size());
        const bool isClosed = end < text_.size() && text_[end] == marks[0];
        if (isClosed) {
            code_ += text_[at_++];
        }
        Blank(end);
        if (isClosed) {
            code_ += text_[at_++];
        }
    }

    std::size_t Behind(std::u16string_view mark, std::size_t from) const {
        const std::size_t at = text_.find(mark, from);
        return at == text_.npos ? text_.size() : at + mark.size();
    }

    // A search for the mark that closes all may run to the end in vain. It is the last one then:
    // what follows has no more pairs, and the time stays in proportion to the text.
    std::size_t EndOfComment() {
        std::size_t depth = 1;
        for (std::size_t i = at_ + 2; marksPair_ && i + 1 < text_.size();) {
            const std::u16string_view mark = text_.substr(i, 2);
            const bool opens = mark == u"(*";
            const bool closes = mark == u"*)";
            depth += opens ? 1 : 0;
            depth -= closes ? 1 : 0;
            i += opens || closes ? 2 : 1;
            if (depth == 0) {
                return i;
            }
        }
        marksPair_ = false;
        return Behind(u"*)", at_ + 2);
    }

    // A character of two halves is one blank, as it is one column.
    void Blank(std::size_t end) {
        for (; at_ < end; ++at_) {
            const char16_t c = text_[at_];
            if (c == u'\n') {
                code_ += c;
            } else if (c < 0xDC00 || c > 0xDFFF) {
                code_ += u' ';
            }
        }
    }

    std::u16string_view text_;
    TextSpans* pragmas_;
    std::u16string code_;
    std::size_t at_ = 0;
    bool marksPair_ = true;  // no search for a comment's own closing mark was in vain
};

}  // namespace

std::size_t EndOfPragma(std::u16string_view text, std::size_t at, bool* isOpen) {
    std::size_t open = 0;
    while ((at = text.find_first_of(u"{}", at)) < text.size()) {
        open = text[at++] == u'{' ? open + 1 : open - 1;
        if (open == 0) {
            return at;
        }
    }
    if (isOpen) {
        *isOpen = true;
    }
    return text.size();
}

std::u16string WithoutForeignText(std::u16string_view text, TextSpans* pragmas) {
    return Blanker(text, pragmas).Run();
}

}  // namespace lq::host
