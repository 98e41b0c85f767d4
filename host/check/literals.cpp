#include "host/check/literals.h"

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include "host/check/checks.h"
#include "host/check/name_uses.h"
#include "lq_data/host/words/words.h"
#include "lq_data/scanner.h"

namespace lq::host::check {

namespace {

using Kind = Constant::Kind;

class Literals {
  public:
    explicit Literals(Run& run) : run_(run) {}

    void Look() {
        ForEachCode(run_, [this](ID owner, const BodyCode& code) { LookAt(owner, code.tokens); });
    }

    Places remnants;

  private:
    void LookAt(ID unit, const std::vector<BodyToken>& tokens) {
        for (std::size_t at = 0; at < tokens.size();) {
            const bool isMember = at > 0 && tokens[at - 1].Is(OP_DOT);  // ".%X0"
            const bool isJudged = !isMember && (IsBegun(tokens[at]) || IsCut(tokens, at));
            at = isJudged ? Judge(unit, tokens, at) : at + 1;
        }
    }

    static bool HasPrefix(u16string_view text, std::span<const u16string_view> prefixes) {
        const std::size_t mark = text.find(u'#');
        return mark != text.npos && std::ranges::any_of(prefixes, [&](u16string_view prefix) {
                   return EqualNames(prefix, text.substr(0, mark));
               });
    }

    // Whether what the scanner refuses can be nothing but the beginning of a literal or an address.
    static bool IsBegun(const BodyToken& token) {
        constexpr u16string_view kTimes[] = {u"T",   u"TIME",        u"D",  u"DATE",
                                             u"TOD", u"TIME_OF_DAY", u"DT", u"DATE_AND_TIME"};
        if (token.kind != TK_ERROR || *token.text == 0) {
            return false;
        }
        const u16string_view text(token.text);
        return chars::IsDigit(text.front()) || text.front() == u'%' || HasPrefix(text, kTimes) ||
               HasPrefix(text, kLater);
    }

    // Whether a name or number follows a literal without a blank.
    static bool IsCut(const std::vector<BodyToken>& tokens, std::size_t at) {
        const uint8_t kind = tokens[at].kind;
        const bool isLiteral = kind == TK_INTEGER || kind == TK_BASED_INTEGER || kind == TK_REAL ||
                               (kind >= TK_TIME && kind <= TK_TIME_OF_DAY);
        return isLiteral && IsPart(tokens, at, u16string_view(tokens[at].text).size(), at + 1) &&
               (tokens[at + 1].kind != TK_IDENTIFIER || IsIdentifier(tokens[at + 1].text));
    }

    // Whether the token at `next` can go on with the `length` characters that begin at `at`.
    static bool IsPart(const std::vector<BodyToken>& tokens, std::size_t at, std::size_t length,
                       std::size_t next) {
        if (next >= tokens.size()) {
            return false;
        }
        const BodyToken& token = tokens[next];
        return (token.kind == TK_IDENTIFIER || token.kind == TK_INTEGER ||
                token.kind == TK_ERROR) &&
               token.line == tokens[at].line && token.column == tokens[at].column + length;
    }

    // The scanner's numbers have 32 bits, and its durations no microseconds. Answers with the token
    // behind the literal.
    std::size_t Judge(ID unit, const std::vector<BodyToken>& tokens, std::size_t at) {
        const BodyToken& first = tokens[at];
        std::u16string whole(first.text);
        std::size_t next = at + 1;
        for (; IsPart(tokens, at, whole.size(), next); ++next) {
            remnants.insert({unit.GetNumber(), tokens[next].line, tokens[next].column});
            whole += tokens[next].text;
        }
        if (chars::ToUpper(whole.back()) == u'E' && next + 1 < tokens.size() &&
            (tokens[next].Is(OP_MINUS) || tokens[next].Is(OP_PLUS)) &&
            tokens[next + 1].kind == TK_INTEGER) {
            whole += tokens[next].text;  // the exponent of "2E-3"
            whole += tokens[next + 1].text;
            next += 2;
        }
        const Kind kind = ReadConstant(whole).kind;
        if (!HasPrefix(whole, kLater) && (kind == Kind::kNone || kind == Kind::kMalformed)) {
            ReportAt(run_, 8011, unit, {whole.c_str(), first.line, first.column},
                     whole.front() == u'%' ? Say("'{}' is no direct address", Utf8(whole))
                                           : Say("'{}' is malformed", Utf8(whole)));
        }
        return next;
    }

    // Of the third edition; they are not judged.
    static constexpr u16string_view kLater[] = {
        u"LTIME", u"LT", u"LDATE", u"LD", u"LTOD", u"LTIME_OF_DAY", u"LDT", u"LDATE_AND_TIME"};

    Run& run_;
};

constexpr Check kRows[] = {
    {8011, "malformed-token", Severity::kError,
     Message("Numbers, durations, dates, times of day and addresses in a body are well formed"),
     Message("The body cannot be built"),
     "PROGRAM Main\nVAR\n  a : TIME;\nEND_VAR\na := T#25h70m;\nEND_PROGRAM",
     "PROGRAM Main\nVAR\n  a : TIME;\nEND_VAR\na := T#26h10m;\nEND_PROGRAM", CheckVariableUses},
};

}  // namespace

Places CheckLiterals(Run& run) {
    Literals literals(run);
    literals.Look();
    return std::move(literals.remnants);
}

Rows LiteralRows() {
    return kRows;
}

}  // namespace lq::host::check
