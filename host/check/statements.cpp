// Statements of ST, by their words and brackets.

#include <array>
#include <span>
#include <string>
#include <vector>

#include "host/check/checks.h"
#include "host/check/findings.h"
#include "host/check/value.h"
#include "lq_data/scanner.h"

namespace lq::host::check {

namespace {

constexpr struct {
    u16string_view begin;
    u16string_view end;
    bool isLoop;
} kPairs[] = {
    {u"IF", u"END_IF", false},      {u"CASE", u"END_CASE", false},    {u"FOR", u"END_FOR", true},
    {u"WHILE", u"END_WHILE", true}, {u"REPEAT", u"END_REPEAT", true},
};

class Statements {
  public:
    Statements(Run& run, ID unit, PieceRole role, std::span<const BodyToken> tokens)
        : run_(run), unit_(unit), role_(role), tokens_(tokens) {}

    void Look();

  private:
    struct Open {
        u16string_view closing;  // a word or bracket in capitals
        std::size_t at;
        bool isLoop;
        std::size_t argument = 0;  // of a bracket: where the last one begins
        bool hasElse = false;
    };

    bool Is(std::size_t at, uint16_t operation) const {
        return at < tokens_.size() && tokens_[at].kind == TK_OPERATOR && tokens_[at].Is(operation);
    }
    bool IsWord(std::size_t at) const {
        return at < tokens_.size() && tokens_[at].kind == TK_IDENTIFIER &&
               !(at > 0 && (Is(at - 1, OP_DOT) || tokens_[at - 1].kind == TK_ERROR));
    }
    bool BeginsStatement(std::size_t at) const;
    void TakeWord(std::size_t at);
    void TakeElse(std::size_t at, bool isLast);
    void TakeBracket(std::size_t at);
    void Close(std::size_t at, u16string_view closing);
    void CloseStatement();
    void CheckAssignment(std::size_t at);
    bool PassZero(std::size_t& at, bool& isReal) const;
    void CheckDivision(std::size_t at);
    void CheckCall(const Open& call, std::size_t end);
    void ReportDivision(std::size_t divisor, bool isReal);
    void Report(uint16_t code, std::size_t at, std::string message) {
        ReportAt(run_, code, unit_, SpotOf(tokens_[at]), std::move(message));
    }
    void ReportOpen(const Open& open);
    void ReportUnbalanced(std::size_t at, std::string message);

    Run& run_;
    const ID unit_;
    const PieceRole role_;
    std::span<const BodyToken> tokens_;
    std::vector<Open> open_;
    bool isTold_ = false;  // that something does not close; what follows is not certain then
};

void Statements::Look() {
    for (std::size_t at = 0; at < tokens_.size(); ++at) {
        if (role_ == PieceRole::kSt && IsWord(at)) {
            TakeWord(at);
        } else {
            TakeBracket(at);
        }
        if (role_ == PieceRole::kSt) {
            CheckAssignment(at);
        }
        CheckDivision(at);
    }
    if (!open_.empty()) {
        ReportOpen(open_.back());
    }
}

void Statements::ReportOpen(const Open& open) {
    ReportUnbalanced(open.at, Say("'{}' is not closed by '{}'", Utf8(tokens_[open.at].text),
                                  Utf8(open.closing)));
}

void Statements::ReportUnbalanced(std::size_t at, std::string message) {
    if (!isTold_) {
        Report(8015, at, std::move(message));
    }
    isTold_ = true;
}

void Statements::TakeWord(std::size_t at) {
    const std::u16string word = Upper(tokens_[at].text);
    for (const auto& pair : kPairs) {
        if (pair.begin == word) {
            open_.push_back({pair.end, at, pair.isLoop});
            return;
        }
        if (pair.end == word) {
            Close(at, pair.end);
            return;
        }
    }
    if (word == u"ELSE" || word == u"ELSIF") {
        TakeElse(at, word == u"ELSE");
    }
    if (word != u"EXIT" && word != u"CONTINUE") {
        return;
    }
    const bool isStatement = Is(at + 1, OP_SEMICOLON);
    const bool isInLoop = std::ranges::any_of(open_, &Open::isLoop);
    if (isStatement && !isInLoop && !isTold_ && run_.types.Members(unit_).Find(word) == ID()) {
        Report(8018, at, Say("'{}' stands in no loop", Utf8(tokens_[at].text)));
    }
}

// Those of CASE are an ELSE.
void Statements::TakeElse(std::size_t at, bool isLast) {
    const bool isInIf = !open_.empty() && open_.back().closing == kPairs[0].end;
    const bool isInCase = !open_.empty() && open_.back().closing == kPairs[1].end;
    if (open_.empty() || open_.back().hasElse || !(isInIf || (isLast && isInCase))) {
        ReportUnbalanced(at, Say("'{}' belongs to nothing", Utf8(tokens_[at].text)));
    } else {
        open_.back().hasElse = isLast;
    }
}

void Statements::TakeBracket(std::size_t at) {
    if (Is(at, OP_LPAREN)) {
        open_.push_back({u")", at, false, at + 1});
    } else if (Is(at, OP_LBRACKET)) {
        open_.push_back({u"]", at, false});
    } else if (Is(at, OP_RPAREN)) {
        Close(at, u")");
    } else if (Is(at, OP_RBRACKET)) {
        Close(at, u"]");
    } else if (Is(at, OP_COMMA) && !open_.empty()) {
        open_.back().argument = at + 1;
    } else if (Is(at, OP_SEMICOLON)) {
        CloseStatement();
    }
}

// No bracket goes over the end of a statement: what is open there is what was forgotten.
void Statements::CloseStatement() {
    const auto isBracket = [](const Open& open) { return open.closing.size() == 1; };
    if (!open_.empty() && isBracket(open_.back())) {
        ReportOpen(open_.back());
    }
    while (!open_.empty() && isBracket(open_.back())) {
        open_.pop_back();
    }
}

void Statements::Close(std::size_t at, u16string_view closing) {
    if (!open_.empty() && open_.back().closing == closing) {
        CheckCall(open_.back(), at);
        open_.pop_back();
        return;
    }
    const std::string text = Utf8(tokens_[at].text);
    ReportUnbalanced(
        at, open_.empty() ? Say("'{}' closes nothing", text)
                          : Say("'{}' closes nothing: '{}' is to be closed by '{}'", text,
                                Utf8(tokens_[open_.back().at].text), Utf8(open_.back().closing)));
    while (!open_.empty()) {
        const bool isIt = open_.back().closing == closing;
        open_.pop_back();
        if (isIt) {
            return;
        }
    }
}

bool Statements::BeginsStatement(std::size_t at) const {
    constexpr u16string_view kWords[] = {u"THEN", u"ELSE", u"DO", u"REPEAT"};
    return at == 0 || Is(at - 1, OP_SEMICOLON) || Is(at - 1, OP_COLON) ||
           (IsWord(at - 1) && std::ranges::any_of(kWords, [&](u16string_view word) {
                return EqualNames(tokens_[at - 1].text, word);
            }));
}

// "x := x;" or "a[1].x := a[1].x;" as a statement of its own, without calls.
void Statements::CheckAssignment(std::size_t at) {
    if (!BeginsStatement(at) || !IsWord(at)) {
        return;
    }
    std::size_t sign = at;
    while (sign < tokens_.size() && !Is(sign, OP_ASSIGN)) {
        const bool isPath = !Is(sign, OP_LPAREN) && !Is(sign, OP_SEMICOLON) &&
                            !Is(sign, OP_COLON) && !(sign > at && IsWord(sign) && IsWord(sign - 1));
        if (!isPath) {
            return;
        }
        ++sign;
    }
    const std::size_t count = sign - at;
    for (std::size_t i = 0; i < count; ++i) {
        if (sign + 1 + i >= tokens_.size() ||
            !EqualNames(tokens_[at + i].text, tokens_[sign + 1 + i].text)) {
            return;
        }
    }
    if (Is(sign + 1 + count, OP_SEMICOLON)) {
        Report(8016, at, Say("'{}' is assigned to itself", Utf8(tokens_[at].text)));
    }
}

// Passes the literal 0, which may have a type, a sign and brackets around it.
bool Statements::PassZero(std::size_t& at, bool& isReal) const {
    std::size_t depth = 0;
    for (; Is(at, OP_LPAREN) || Is(at, OP_MINUS) || Is(at, OP_PLUS); ++at) {
        depth += Is(at, OP_LPAREN) ? 1 : 0;
    }
    std::u16string text;
    for (; at < tokens_.size() && tokens_[at].kind == TK_ERROR; ++at) {
        text += tokens_[at].text;  // "INT#"
    }
    if (at >= tokens_.size()) {
        return false;
    }
    text += tokens_[at++].text;
    const Constant value = ReadConstant(text);
    isReal = value.kind == Constant::Kind::kReal;
    const bool isZero = isReal ? value.real == 0
                               : value.kind == Constant::Kind::kInteger && value.magnitude == 0 &&
                                     !value.isTooLarge;
    for (; isZero && depth > 0 && Is(at, OP_RPAREN); ++at) {
        --depth;
    }
    return isZero && depth == 0 && !Is(at, OP_POWER);
}

void Statements::CheckDivision(std::size_t at) {
    const auto isCalled = [&](u16string_view word) {
        return IsWord(at) && EqualNames(tokens_[at].text, word);
    };
    const bool isIl = role_ == PieceRole::kIl;
    const bool isDivision = Is(at, OP_DIV) || isCalled(u"MOD") || (isIl && isCalled(u"DIV"));
    std::size_t end = at + 1;
    bool isReal = false;
    if (isDivision && (at > 0 || isIl) && PassZero(end, isReal)) {
        ReportDivision(at + 1, isReal);
    }
}

// "DIV(a, 0)", whose last argument may have a name.
void Statements::CheckCall(const Open& call, std::size_t end) {
    const bool isDivision = role_ != PieceRole::kIl && call.at > 0 && IsWord(call.at - 1) &&
                            EqualNames(tokens_[call.at - 1].text, u"DIV");
    const std::size_t divisor =
        Is(call.argument + 1, OP_ASSIGN) ? call.argument + 2 : call.argument;
    std::size_t behind = divisor;
    bool isReal = false;
    if (isDivision && PassZero(behind, isReal) && behind == end) {
        ReportDivision(divisor, isReal);
    }
}

void Statements::ReportDivision(std::size_t divisor, bool isReal) {
    ReportAt(run_, 8017, isReal ? Severity::kWarning : run_.SeverityOf(8017), unit_,
             SpotOf(tokens_[divisor]), Say("this divides by 0"));
}

void CheckStatements(Run& run) {
    ForEachCode(run, [&run](ID owner, const BodyCode& code) {
        for (std::size_t n = 0; n < code.pieces.size(); ++n) {
            const bool isLast = n + 1 == code.pieces.size();
            const std::size_t begin = code.pieces[n].first;
            const std::size_t end = isLast ? code.tokens.size() : code.pieces[n + 1].first;
            Statements(run, owner, code.pieces[n].role,
                       std::span(code.tokens).subspan(begin, end - begin))
                .Look();
        }
    });
}

constexpr Check kRows[] = {
    {8015, "unbalanced", Severity::kError,
     Message("What is opened in a body is closed: brackets and statements"),
     Message("The body cannot be built"),
     "PROGRAM Main\nVAR\n  a : INT;\nEND_VAR\nIF a > 0 THEN\n  a := 0;\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  a : INT;\nEND_VAR\nIF a > 0 THEN\n  a := 0;\nEND_IF;\nEND_PROGRAM",
     CheckStatements},
    {8016, "self-assignment", Severity::kWarning, Message("Nothing is assigned to itself"),
     Message("It has no effect; another variable was meant"),
     "PROGRAM Main\nVAR\n  a : INT;\nEND_VAR\na := a;\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  a : INT;\nEND_VAR\na := a + 1;\nEND_PROGRAM", CheckStatements},
    {8017, "division-by-zero", Severity::kError, Message("Nothing is divided by 0"),
     Message("The program stops, or goes on with any value"),
     "PROGRAM Main\nVAR\n  a : INT;\nEND_VAR\na := a / 0;\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  a : INT;\nEND_VAR\na := a / 2;\nEND_PROGRAM", CheckStatements},
    {8018, "exit-outside-loop", Severity::kError, Message("EXIT and CONTINUE stand in a loop"),
     Message("The body cannot be built"),
     "PROGRAM Main\nVAR\n  a : INT;\nEND_VAR\na := a + 1;\nEXIT;\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  a : INT;\nEND_VAR\nFOR a := 1 TO 2 DO\n  EXIT;\nEND_FOR;\nEND_PROGRAM",
     CheckStatements},
};

}  // namespace

Rows StatementRows() {
    return kRows;
}

}  // namespace lq::host::check
