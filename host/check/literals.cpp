#include "host/check/literals.h"

#include <algorithm>
#include <string>

#include "host/check/checks.h"
#include "host/check/name_uses.h"
#include "lq_data/scanner.h"

namespace lq::host::check {

namespace {

using Kind = Constant::Kind;

class Literals {
  public:
    explicit Literals(Run& run) : run_(run) {}

    void Look() {
        for (const ID owner : run_.Owners()) {
            const Pou* pou = run_.project.GetPou(owner);
            const std::size_t count = pou ? pou->bodies.size() : 0;
            for (std::size_t i = 0; i < count; ++i) {
                if (const BodyCode* code = run_.project.CodeOf(pou->bodies[i])) {
                    LookAt(owner, code->tokens);
                }
            }
        }
    }

    Places remnants;

  private:
    void LookAt(ID unit, const std::vector<BodyToken>& tokens) {
        for (std::size_t at = 0; at < tokens.size(); ++at) {
            const u16string_view text(tokens[at].text);
            const bool isMember = at > 0 && tokens[at - 1].Is(OP_DOT);  // ".%X0"
            if (tokens[at].kind == TK_ERROR && !isMember && IsBegun(text)) {
                Judge(unit, tokens, at);
            }
        }
    }

    // Whether it can be nothing but the beginning of a literal or an address.
    static bool IsBegun(u16string_view text) {
        constexpr u16string_view kTimes[] = {u"T#",  u"TIME#",        u"D#",   u"DATE#",
                                             u"DT#", u"TIME_OF_DAY#", u"TOD#", u"DATE_AND_TIME#"};
        const std::u16string capitals = Upper(text);
        return chars::IsDigit(text.front()) || text.front() == u'%' ||
               std::ranges::any_of(
                   kTimes, [&](u16string_view prefix) { return capitals.starts_with(prefix); });
    }

    // The scanner's numbers have 32 bits, and its durations no microseconds.
    void Judge(ID unit, const std::vector<BodyToken>& tokens, std::size_t at) {
        const BodyToken& first = tokens[at];
        std::u16string whole(first.text);
        Places rest;
        for (std::size_t next = at + 1; next < tokens.size(); ++next) {
            const BodyToken& token = tokens[next];
            const bool isPart =
                token.kind == TK_IDENTIFIER || token.kind == TK_INTEGER || token.kind == TK_ERROR;
            if (!isPart || token.line != first.line ||
                token.column != first.column + whole.size()) {
                break;
            }
            rest.insert({unit.GetNumber(), token.line, token.column});
            whole += token.text;
        }
        remnants.merge(rest);
        const Kind kind = ReadConstant(whole).kind;
        if (kind == Kind::kNone || kind == Kind::kMalformed) {
            const std::u16string& text = texts_.emplace_back(whole);
            ReportAt(run_, 8011, unit, {text.c_str(), first.line, first.column},
                     text.front() == u'%' ? Say("'{}' is no direct address", Utf8(text))
                                          : Say("'{}' is malformed", Utf8(text)));
        }
    }

    Run& run_;
    std::deque<std::u16string> texts_;
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
