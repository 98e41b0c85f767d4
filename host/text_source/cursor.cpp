#include "host/text_source/cursor.h"

#include <algorithm>
#include <new>
#include <utility>

#include "lq_data/detail/chars.h"
#include "lq_data/host/text/message.h"

namespace lq::host::text_source {

namespace {

constexpr std::size_t kMostComments = 64;

bool IsBlank(char16_t c) {
    return c <= u' ';
}

std::u16string_view Trimmed(std::u16string_view text) {
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool IsSecondHalf(char16_t c) {
    return (c & 0xFC00) == 0xDC00;
}

// Whether there is any such character. Nearly all texts have none of those that are looked for:
// that is found out in wide steps, which a loop that stops at the first one has not.
template <typename Is>
bool HasAny(std::u16string_view text, Is is) {
    uint16_t any = 0;  // as wide as a character, for the compiler's sake
    for (const char16_t c : text) {
        any = static_cast<uint16_t>(any | (is(c) ? 1 : 0));
    }
    return any != 0;
}

// The text up to the mark of its end.
std::u16string_view ToEndOfInput(std::u16string_view text) {
    const bool hasMark = HasAny(text, [](char16_t c) { return c == Scanner::kEndOfInput; });
    return hasMark ? text.substr(0, text.find(Scanner::kEndOfInput)) : text;
}

}  // namespace

Cursor::Cursor(std::u16string_view text, ReportList& reports)
    : text_(ToEndOfInput(text)),
      hasHalves_(HasAny(text_, IsSecondHalf)),
      reports_(reports),
      filter_(text_),
      object_(Scanner::CreateObject()),
      scanner_(static_cast<Scanner*>(object_.get())) {
    if (!scanner_) {
        throw std::bad_alloc();
    }
    scanner_->Initialize(filter_);
    if (scanner_->CanRead() == 0) {
        throw std::bad_alloc();
    }
}

Cursor::~Cursor() = default;

Piece Cursor::TakeAhead() {
    last_ = ahead_[next_++];
    constexpr std::size_t kMostPassed = 64;
    if (next_ == ahead_.size() || next_ == kMostPassed) {
        ahead_.erase(ahead_.begin(), ahead_.begin() + static_cast<std::ptrdiff_t>(next_));
        next_ = 0;
    }
    return last_;
}

void Cursor::PutBack(const std::vector<Piece>& pieces, const Piece& last) {
    last_ = last;
    ahead_.erase(ahead_.begin(), ahead_.begin() + static_cast<std::ptrdiff_t>(next_));
    ahead_.insert(ahead_.begin(), pieces.begin(), pieces.end());
    next_ = 0;
}

Piece Cursor::Fetch() {
    const Token token = scanner_->GetToken();
    PassBlanks();
    Piece piece;
    piece.kind = token.kind;
    piece.isFirst = spot_.line != codeLine_;
    piece.spot = spot_;
    piece.end = spot_.at;
    codeLine_ = spot_.line;
    if (!comments_.empty() && comments_.back().endLine == spot_.line) {
        comments_.back().hasCodeBehind = true;
    }
    if (token.kind == TK_EOF) {
        return piece;
    }
    if (token.kind == TK_OPERATOR) {
        piece.operation = token.GetCode();
    }
    piece.end = std::min(static_cast<uint32_t>(scanner_->GetStreamPosition()),
                         static_cast<uint32_t>(text_.size()));
    spot_.at = piece.end;
    if (token.kind != TK_OPERATOR) {
        spot_.halves += SecondHalves(TextOf(piece));
    }
    if (token.kind == TK_IDENTIFIER) {
        piece.word = WordOf(TextOf(piece));
    } else if (token.kind == TK_STRING) {
        const Foreign* const open = filter_.First();
        if (open && open->begin == piece.spot.at) {
            PassForeign(*open);
        }
    }
    return piece;
}

// Between two tokens there are blanks, line breaks and what is foreign, which begins with no blank.
void Cursor::PassBlanks() {
    for (;;) {
        uint32_t at = spot_.at;
        for (; at < text_.size() && IsBlank(text_[at]); ++at) {
            if (text_[at] == u'\n') {
                BeginLine(at + 1);
            }
        }
        spot_.at = at;
        const Foreign* const foreign = filter_.First();
        // An open string is a token, unless it is nothing but its mark.
        const bool isToken =
            foreign && foreign->kind == Foreign::kString && foreign->end - foreign->begin > 1;
        if (!foreign || foreign->begin != at || isToken) {
            return;
        }
        PassForeign(*foreign);
    }
}

void Cursor::BeginLine(uint32_t at) {
    ++spot_.line;
    spot_.lineBegin = at;
    spot_.halves = 0;
}

uint32_t Cursor::SecondHalves(std::u16string_view text) const {
    return hasHalves_ ? static_cast<uint32_t>(std::ranges::count_if(text, IsSecondHalf)) : 0;
}

void Cursor::PassTo(uint32_t end) {
    constexpr uint32_t kStep = 16;
    for (uint32_t at = spot_.at; at < end;) {
        if (end - at >= kStep && !hasHalves_ &&
            !HasAny(text_.substr(at, kStep), [](char16_t c) { return c == u'\n'; })) {
            at += kStep;
            continue;
        }
        for (const uint32_t last = std::min(end, at + kStep); at < last; ++at) {
            if (text_[at] == u'\n') {
                BeginLine(at + 1);
            }
            spot_.halves += IsSecondHalf(text_[at]) ? 1 : 0;
        }
    }
    spot_.at = end;
}

void Cursor::PassForeign(const Foreign& foreign) {
    const Foreign passed = foreign;
    filter_.TakeFirst();
    Spot begin = spot_;
    begin.halves -= SecondHalves(text_.substr(passed.begin, spot_.at - passed.begin));
    begin.at = passed.begin;  // an open string has been passed as a token
    PassTo(passed.end);
    if (passed.isOpen && passed.kind == Foreign::kComment) {
        openComment_ = begin;
        TellOpenComment(reports_);
    } else if (passed.isOpen) {
        const bool isString = passed.kind == Foreign::kString;
        openStrings_ += isString ? 1 : 0;
        Warn(begin, kNotRead,
             isString ? Say("a string is not closed on its line")
                      : Say("a pragma is not closed: it was read to the end of its line"));
    }
    if (passed.kind == Foreign::kPragma) {
        lastPragma_ = begin;
        if (keepsPragmas_) {
            pragmas_.emplace_back(begin, passed.end);
        }
    }
    if (passed.kind == Foreign::kPragma && !comments_.empty() &&
        comments_.back().reach + 1 >= begin.line) {
        comments_.back().reach = spot_.line;
    }
    if (passed.kind != Foreign::kComment && passed.kind != Foreign::kLineComment) {
        return;
    }
    if (comments_.size() >= 2 * kMostComments) {
        comments_.erase(comments_.begin(), comments_.begin() + kMostComments);
    }
    const bool isAlone =
        codeLine_ != begin.line && (comments_.empty() || comments_.back().endLine != begin.line);
    comments_.push_back({begin, passed.end, spot_.line, spot_.line, isAlone});
}

bool Cursor::TellOpenComment(ReportList& reports) const {
    if (openComment_) {
        reports.Warn(openComment_->line, ColumnOf(*openComment_), kNotRead,
                     Say("a comment is not closed: it was read to the end of the file"));
    }
    return openComment_.has_value();
}

void Cursor::ForgetPragmas(uint32_t before) {
    std::erase_if(pragmas_, [before](const auto& pragma) { return pragma.first.at < before; });
}

Spot Cursor::EndOf(const Piece& piece) const {
    Spot end = piece.spot;
    end.at = piece.end;
    end.halves += SecondHalves(TextOf(piece));
    return end;
}

bool Cursor::IsName(const Piece& piece) const {
    if (piece.kind == TK_IDENTIFIER) {
        return true;
    }
    const auto isNamePart = [](char16_t c) {
        return chars::IsLetter(c) || chars::IsDigit(c) || c == u'_';
    };
    const std::u16string_view text = TextOf(piece);
    return piece.kind == TK_ERROR && !text.empty() && !chars::IsDigit(text.front()) &&
           std::ranges::all_of(text, isNamePart);
}

std::u16string Cursor::CommentBefore(const Piece& piece, bool isHeader) {
    const auto isNear = [&](const Comment& comment) {
        const uint32_t reach = isHeader ? comment.reach : comment.endLine;
        if (isHeader && comment.endLine == piece.spot.line) {
            return Trimmed(TextBetween(comment.end, piece.spot.at)).empty();
        }
        return comment.isAlone && !comment.hasCodeBehind && reach + 1 == piece.spot.line;
    };
    for (std::size_t i = comments_.size(); i-- > 0;) {
        if (comments_[i].end <= piece.spot.at) {
            return isNear(comments_[i]) ? TextOf(comments_[i]) : std::u16string();
        }
    }
    return {};
}

std::u16string Cursor::CommentOn(const Piece& first) {
    Peek();  // passes what stands behind the last one
    for (const Comment& comment : comments_) {
        if (comment.spot.at >= last_.end && comment.spot.line == last_.spot.line &&
            comment.end <= Peek().spot.at) {
            return TextOf(comment);
        }
    }
    std::u16string before = CommentBefore(first);
    for (const Comment& comment : comments_) {
        const bool isWithin = comment.spot.at >= first.spot.at && comment.end <= last_.end;
        const bool isInFront = comment.spot.line == first.spot.line &&
                               comment.end <= first.spot.at &&
                               Trimmed(TextBetween(first.spot.lineBegin, comment.spot.at)).empty();
        if (before.empty() && (isWithin || isInFront)) {
            before = TextOf(comment);
        }
    }
    return before;
}

// Without its marks, and without carriage returns.
std::u16string Cursor::TextOf(const Comment& comment) const {
    std::u16string_view text = text_.substr(comment.spot.at, comment.end - comment.spot.at);
    const bool isLine = text.starts_with(u"//");
    text.remove_prefix(2);
    if (!isLine && (text.ends_with(u"*)") || text.ends_with(u"*/"))) {
        text.remove_suffix(2);
    }
    std::u16string plain(Trimmed(text));
    std::erase(plain, u'\r');
    return plain;
}

void Cursor::Warn(const Spot& spot, ReportCode code, std::string message) {
    reports_.Warn(spot.line, ColumnOf(spot), code, std::move(message));
}

}  // namespace lq::host::text_source
