#include "host/model/chart_text.h"

#include <string_view>
#include <utility>

#include "lq_data/detail/chars.h"
#include "lq_data/scanner.h"

namespace lq::host {

namespace {

class ChartText {
  public:
    explicit ChartText(BodyCode& code) : code_(code), tokens_(std::move(code.tokens)) {
        code_.pieces.clear();
        code_.tokens.clear();
    }

    void Split() {
        while (at_ < tokens_.size()) {
            if (TakeWord(u"INITIAL_STEP")) {
                TakeStep(PieceRole::kInitialStep);
            } else if (TakeWord(u"STEP")) {
                TakeStep(PieceRole::kStep);
            } else if (TakeWord(u"TRANSITION")) {
                TakeTransition();
            } else {
                ++at_;
            }
        }
    }

  private:
    bool IsOperator(uint16_t operation) const {
        return at_ < tokens_.size() && tokens_[at_].kind == TK_OPERATOR &&
               tokens_[at_].Is(operation);
    }
    bool IsWord(const char16_t* word) const {
        return at_ < tokens_.size() && tokens_[at_].kind != TK_STRING &&
               chars::EqualNoCase(tokens_[at_].text, word);
    }
    bool TakeOperator(uint16_t operation) {
        const bool is = IsOperator(operation);
        at_ += is ? 1 : 0;
        return is;
    }
    bool TakeWord(const char16_t* word) {
        const bool is = IsWord(word);
        at_ += is ? 1 : 0;
        return is;
    }

    BodyPiece& Add(PieceRole role) {
        return code_.pieces.emplace_back(
            BodyPiece{.role = role,
                      .line = tokens_[at_].line,
                      .column = tokens_[at_].column,
                      .first = static_cast<uint32_t>(code_.tokens.size())});
    }

    bool TakeName(PieceRole role) {
        if (at_ >= tokens_.size() || tokens_[at_].kind != TK_IDENTIFIER) {
            return false;
        }
        Add(role).name = tokens_[at_].text;
        ++at_;
        return true;
    }

    // "Name: Action(N, Indicator); END_STEP"
    void TakeStep(PieceRole role) {
        TakeName(role);
        TakeOperator(OP_COLON);
        while (at_ < tokens_.size() && !TakeWord(u"END_STEP")) {
            if (!TakeName(PieceRole::kAction)) {
                ++at_;
            } else if (TakeOperator(OP_LPAREN)) {
                TakeQualifier();
            }
        }
    }

    // "D, T#1s, Indicator)"
    void TakeQualifier() {
        bool isTimed = false;
        if (at_ < tokens_.size() && tokens_[at_].kind == TK_IDENTIFIER) {
            const std::u16string_view qualifier(tokens_[at_++].text);
            isTimed = qualifier.find_first_of(u"LDld") != qualifier.npos;
        }
        while (TakeOperator(OP_COMMA) && at_ < tokens_.size()) {
            Add(std::exchange(isTimed, false) ? PieceRole::kDuration : PieceRole::kIndicator);
            while (at_ < tokens_.size() && !IsOperator(OP_COMMA) && !IsOperator(OP_RPAREN)) {
                code_.tokens.push_back(tokens_[at_++]);
            }
        }
        TakeOperator(OP_RPAREN);
    }

    // "Name (PRIORITY := 1) FROM A TO (B, C) := condition; END_TRANSITION", in IL with a colon.
    void TakeTransition() {
        if (!IsWord(u"FROM")) {
            TakeName(PieceRole::kPart);
        }
        while (at_ < tokens_.size() && !IsWord(u"FROM") && !IsWord(u"END_TRANSITION")) {
            ++at_;
        }
        while (at_ < tokens_.size() && !IsOperator(OP_ASSIGN) && !IsOperator(OP_COLON) &&
               !IsWord(u"END_TRANSITION")) {
            if (IsWord(u"FROM") || IsWord(u"TO") || !TakeName(PieceRole::kJumpStep)) {
                ++at_;
            }
        }
        const PieceRole role = IsOperator(OP_COLON) ? PieceRole::kIl : PieceRole::kSt;
        at_ += IsOperator(OP_ASSIGN) || IsOperator(OP_COLON) ? 1 : 0;
        if (at_ < tokens_.size()) {
            Add(role);
        }
        while (at_ < tokens_.size() && !TakeWord(u"END_TRANSITION")) {
            code_.tokens.push_back(tokens_[at_++]);
        }
    }

    BodyCode& code_;
    const std::vector<BodyToken> tokens_;
    std::size_t at_ = 0;
};

}  // namespace

void SplitChart(BodyCode& code) {
    ChartText(code).Split();
}

}  // namespace lq::host
