// The tokens of a source text with their places, and the comments between them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/model/report_codes.h"
#include "host/model/report_list.h"
#include "host/text_source/source_filter.h"
#include "host/text_source/words.h"
#include "lq_data/scanner.h"

namespace lq::host::text_source {

// A place in the text.
struct Spot {
    uint32_t at = 0;
    uint32_t line = 1;
    uint32_t lineBegin = 0;
    uint32_t halves = 0;  // second halves of characters between the two
};

struct Piece {
    int32_t kind = TK_EOF;   // TOKEN_KIND
    uint16_t operation = 0;  // OPERATOR_CODE of an operator
    Word word = Word::kNone;
    bool isFirst = false;  // of its line
    uint32_t end = 0;
    Spot spot;

    bool Is(OPERATOR_CODE code) const { return kind == TK_OPERATOR && operation == code; }
    bool IsEnd() const { return kind == TK_EOF; }
    bool Touches(const Piece& next) const { return end == next.spot.at; }
};

class Cursor {
  public:
    // `text` must outlive it. Throws std::bad_alloc.
    Cursor(std::u16string_view text, ReportList& reports);
    ~Cursor();
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;

    // The next token, or the one behind as many others. At the end an end, again and again.
    // The reference is valid until the next call: looking further moves what is held.
    const Piece& Peek(std::size_t ahead = 0) {
        while (ahead_.size() - next_ <= ahead) {
            ahead_.push_back(Fetch());
        }
        return ahead_[next_ + ahead];
    }
    Piece Take() {
        if (ahead_.empty()) {
            return last_ = Fetch();
        }
        if (ahead_.size() == 1) {
            last_ = ahead_.front();
            ahead_.clear();
            return last_;
        }
        return TakeAhead();
    }
    // The next token, if it is none of the words and not the end; false leaves it.
    bool TakePlain(Piece& piece) {
        const bool isFetched = ahead_.empty();
        piece = isFetched ? Fetch() : ahead_[next_];
        if (piece.word != Word::kNone || piece.IsEnd()) {
            if (isFetched) {
                ahead_.push_back(piece);
            }
            return false;
        }
        if (!isFetched) {
            TakeAhead();
        }
        last_ = piece;
        return true;
    }
    // They come again, before what comes now; `last` was taken before them.
    void PutBack(const std::vector<Piece>& pieces, const Piece& last);

    // The one that was taken last.
    const Piece& Last() const { return last_; }

    std::u16string_view TextOf(const Piece& piece) const {
        return text_.substr(piece.spot.at, piece.end - piece.spot.at);
    }
    std::u16string_view TextBetween(uint32_t begin, uint32_t end) const {
        return text_.substr(begin, end - begin);
    }
    // From 1, in characters.
    static uint32_t ColumnOf(const Spot& spot) {
        return spot.at - spot.lineBegin - spot.halves + 1;
    }
    Spot EndOf(const Piece& piece) const;

    // An identifier, or what the scanner refuses for one only.
    bool IsName(const Piece& piece) const;

    // The comment that ends on the line before `piece`, or directly before it, and has its lines
    // for itself; for what is declared from `piece` to the token taken last, first the one behind
    // that on its line, and at last one within it, or in front of it on its line. Empty without
    // one.
    std::u16string CommentBefore(const Piece& piece, bool isHeader = false);
    std::u16string CommentOn(const Piece& first);

    // Of those that were passed since they were forgotten last: where each begins and ends.
    const std::vector<std::pair<Spot, uint32_t>>& Pragmas() const { return pragmas_; }
    void KeepPragmas() { keepsPragmas_ = true; }
    void ForgetPragmas(uint32_t before);  // those that begin before that position
    // Of the one that was passed last, kept or not.
    const Spot& LastPragma() const { return lastPragma_; }

    // How many strings are open at the end of their line, so far.
    uint32_t OpenStrings() const { return openStrings_; }

    // Reports that a comment is open at the end of the text. False when none is.
    bool TellOpenComment(ReportList& reports) const;

    void Warn(const Spot& spot, ReportCode code, std::string message);
    void Warn(const Piece& piece, ReportCode code, std::string message) {
        Warn(piece.spot, code, std::move(message));
    }

  private:
    struct Comment {
        Spot spot;
        uint32_t end;
        uint32_t endLine;
        uint32_t reach;              // the last line of the pragmas that follow it
        bool isAlone;                // no token and no other comment stands before it on its line
        bool hasCodeBehind = false;  // on the line of its end
    };

    Piece Fetch();
    Piece TakeAhead();
    void PassBlanks();
    void BeginLine(uint32_t at);
    uint32_t SecondHalves(std::u16string_view text) const;
    void PassTo(uint32_t end);
    void PassForeign(const Foreign& foreign);
    std::u16string TextOf(const Comment& comment) const;

    std::u16string_view text_;
    const bool hasHalves_;  // any second half of a character
    ReportList& reports_;
    SourceFilter filter_;
    std::unique_ptr<CObject> object_;
    Scanner* scanner_;
    Spot spot_;              // of what was fetched last, its end
    uint32_t codeLine_ = 0;  // of the last token
    std::vector<Piece> ahead_;
    std::size_t next_ = 0;
    Piece last_;
    std::vector<Comment> comments_;  // the last ones
    uint32_t openStrings_ = 0;
    std::optional<Spot> openComment_;
    Spot lastPragma_;
    bool keepsPragmas_ = false;
    std::vector<std::pair<Spot, uint32_t>> pragmas_;
};

}  // namespace lq::host::text_source
