#include "host/uses/code_walk.h"

#include <algorithm>

#include "lq_data/detail/chars.h"
#include "lq_data/host/words/words.h"
#include "lq_data/scanner.h"

namespace lq::host::uses {

namespace {

// Words of statements beside the keywords, where no variable has the name.
constexpr u16string_view kWords[] = {u"AND_THEN", u"CONTINUE", u"GOTO",  u"JMP",
                                     u"NULL",     u"OR_ELSE",  u"SUPER", u"THIS"};
constexpr u16string_view kJumpWords[] = {u"GOTO", u"JMP", u"JMPC", u"JMPCN"};

std::u16string Capitals(u16string_view name) {
    std::u16string capitals(name);
    std::ranges::transform(capitals, capitals.begin(), chars::ToUpper);
    return capitals;
}

bool IsOneOf(std::span<const u16string_view> words, u16string_view name) {
    return std::ranges::any_of(words, [name](u16string_view word) { return Equal(word, name); });
}

// What literals begin with beside the words that no identifier may be.
bool IsLiteralPrefix(u16string_view word) {
    constexpr u16string_view kPrefixes[] = {
        u"D",    u"T",    u"DT",    u"TOD",   u"LD",    u"LT",           u"LDT",           u"LTOD",
        u"CHAR", u"DATE", u"LDATE", u"LTIME", u"WCHAR", u"LTIME_OF_DAY", u"LDATE_AND_TIME"};
    return IsOneOf(kPrefixes, word);
}

// The functions that write to what they are given, or look at something but its value.
bool MayWrite(u16string_view function) {
    constexpr u16string_view kOthers[] = {u"ADR", u"BITADR", u"INDEXOF",    u"LOWER_BOUND",
                                          u"REF", u"SIZEOF", u"UPPER_BOUND"};
    return IsOneOf(kOthers, function) || Equal(function.substr(0, 6), u"SPLIT_");
}

}  // namespace

CodeWalk::CodeWalk(Names& names, const PartNames& parts, ID unit, const Body* body,
                   const TakeUse& take)
    : names_(names), parts_(parts), unit_(unit), body_(body), take_(take) {}

Meaning CodeWalk::Resolve(u16string_view name) const {
    if (const Meaning own = names_.OfUnit(unit_, name)) {
        return own;
    }
    if (parts_.Find(HashOfName(name), [name](Text part) { return Equal(part, name); })) {
        return {UseObject::kPart, {}, {}};
    }
    if (const Meaning other = names_.OfProject(unit_, name)) {
        return other;
    }
    return IsStandardFunction(name) ? Meaning{UseObject::kFunction, {}, {}} : Meaning{};
}

void CodeWalk::Tell(const BodyToken& token, const Meaning& meaning, UseKind kind, bool isInPragma) {
    take_({.object = meaning.object,
           .kind = kind,
           .id = meaning.id,
           .global = meaning.global,
           .globals = meaning.Globals(),
           .name = token.text,
           .unit = unit_,
           .body = body_,
           .role = role_,
           .isInPragma = isInPragma,
           .isElement = isElement_,
           .line = token.line,
           .column = token.column,
           .where = unit_});
}

// -- Tokens ---------------------------------------------------------------------------------------

bool CodeWalk::Is(std::size_t at, uint16_t operation) const {
    return at < tokens_.size() && tokens_[at].kind == TK_OPERATOR && tokens_[at].Is(operation);
}

bool CodeWalk::IsName(std::size_t at) const {
    return at < tokens_.size() && tokens_[at].kind == TK_IDENTIFIER;
}

// Whether the operand of an instruction, or the whole text, ends in front of `at`.
bool CodeWalk::IsLineEnd(std::size_t at) const {
    return at >= tokens_.size() || (isIl_ && (tokens_[at].row != row_ || Is(at, OP_RPAREN)));
}

void CodeWalk::RunSt(std::span<const BodyToken> tokens, UseKind whole) {
    isIl_ = false;
    whole_ = whole;
    operand_ = 0;
    Begin(tokens);
    Run();
}

void CodeWalk::Begin(std::span<const BodyToken> tokens) {
    tokens_ = tokens;
    open_.clear();
    awaited_.clear();
    members_.clear();
    statements_.clear();
    jumps_.reset();
    closing_.assign(tokens.size(), 0);
    std::vector<std::size_t> square;
    for (std::size_t at = 0; at < tokens.size(); ++at) {
        if (Is(at, OP_LBRACKET)) {
            square.push_back(at);
        } else if (Is(at, OP_RBRACKET) && !square.empty()) {
            closing_[square.back()] = at;
            square.pop_back();
        }
    }
}

void CodeWalk::Run() {
    for (std::size_t at = 0; at < tokens_.size();) {
        TellAwaited(at);
        const bool isInCall = !open_.empty() && open_.back().kind == Open::Kind::kCall &&
                              Is(open_.back().at, OP_LPAREN);
        if (isIl_ && tokens_[at].row != row_ && !isInCall) {
            BeginInstruction(at);
        } else {
            TakeToken(at);
        }
    }
    TellAwaited(tokens_.size());
}

void CodeWalk::TakeToken(std::size_t& at) {
    const BodyToken& token = tokens_[at];
    if (token.kind == TK_IDENTIFIER) {
        TakeName(at);
        return;
    }
    const u16string_view text(token.text);
    if (token.kind == TK_ERROR && text.ends_with(u'#')) {
        TakePrefix(at);
        return;
    }
    if (token.kind == TK_ADDRESS) {
        TakeAddress(at);
    } else if (Is(at, OP_LPAREN) || Is(at, OP_LBRACKET)) {
        OpenBracket(at);
    } else if (Is(at, OP_RPAREN) || Is(at, OP_RBRACKET)) {
        CloseBracket(Is(at, OP_RBRACKET));
    } else if (Is(at, OP_COMMA) && !open_.empty() && open_.back().kind == Open::Kind::kCall) {
        ++open_.back().position;
        open_.back().argument = KindOfPosition(open_.back());
    } else if (Is(at, OP_SEMICOLON)) {
        open_.clear();  // whatever was not closed
    }
    ++at;
}

// -- Brackets and calls ---------------------------------------------------------------------------

void CodeWalk::OpenBracket(std::size_t at) {
    Open open;
    open.kind = Is(at, OP_LBRACKET) ? Open::Kind::kIndex : Open::Kind::kGroup;
    open.at = at;
    if (!awaited_.empty() && awaited_.back().at == at) {
        open = awaited_.back();
        awaited_.pop_back();
        open.argument = KindOfPosition(open);
    }
    open_.push_back(open);
}

void CodeWalk::CloseBracket(bool isIndex) {
    while (!open_.empty()) {
        const bool isPartner = (open_.back().kind == Open::Kind::kIndex) == isIndex;
        open_.pop_back();
        if (isPartner) {
            return;
        }
    }
}

// A call of `callee`, which is spelled `name`, whose bracket stands at `at`.
CodeWalk::Open CodeWalk::CallOf(const Meaning& callee, u16string_view name, std::size_t at) const {
    Open open;
    open.kind = Open::Kind::kCall;
    open.at = at;
    open.callee = names_.CalleeOf(callee);
    open.isFunction = callee.object == UseObject::kFunction && !MayWrite(name);
    return open;
}

UseKind CodeWalk::KindOfParameter(ID parameter, bool isOutput) const {
    const Declaration* declaration = names_.GetProject().GetDeclaration(parameter);
    if (!declaration) {
        return isOutput ? UseKind::kWrite : UseKind::kUnknown;
    }
    const Scope scope = declaration->section.scope;
    return scope == Scope::kInOut && !declaration->section.constant ? UseKind::kReadWrite
           : isOutput || scope == Scope::kOutput                    ? UseKind::kWrite
                                                                    : UseKind::kRead;
}

UseKind CodeWalk::KindOfPosition(const Open& call) {
    if (call.callee == ID()) {
        return call.isFunction ? UseKind::kRead : UseKind::kUnknown;
    }
    const IdList& parameters = names_.ParametersOf(call.callee);
    return call.position < parameters.size() ? KindOfParameter(parameters[call.position])
                                             : UseKind::kUnknown;
}

// "name :=" and "name =>" directly in brackets. In those of a value they are members of what it is
// assigned to, which is not looked for.
bool CodeWalk::TakeParameter(std::size_t& at) {
    const bool isOutput = Is(at + 1, OP_ARROW);
    if (open_.empty() || open_.back().kind == Open::Kind::kIndex ||
        (!isOutput && !Is(at + 1, OP_ASSIGN))) {
        return false;
    }
    Open& open = open_.back();
    if (open.kind == Open::Kind::kCall) {
        const Meaning of{UseObject::kUnit, open.callee, {}};
        Meaning parameter = open.callee != ID() ? names_.MemberOf(of, tokens_[at].text) : Meaning{};
        open.argument =
            open.isFunction && !isOutput ? UseKind::kRead : KindOfParameter(parameter.id, isOutput);
        parameter = parameter ? parameter : Meaning{UseObject::kParameter, open.callee, {}};
        Tell(tokens_[at], parameter,
             isOutput                               ? UseKind::kRead
             : open.argument == UseKind::kReadWrite ? UseKind::kReadWrite
                                                    : UseKind::kWrite);
    }
    at += 2;
    return true;
}

// -- Names ----------------------------------------------------------------------------------------

void CodeWalk::TakeName(std::size_t& at) {
    const BodyToken& token = tokens_[at];
    const u16string_view name(token.text);
    const bool isPart = at > 1 && Is(at - 2, OP_DOT) && tokens_[at - 1].kind == TK_ERROR;
    if (isPart || (at > 0 && Is(at - 1, OP_DOT))) {
        ++at;  // of a path that was told, or of something without a name
        return;
    }
    if (TakeParameter(at)) {
        return;
    }
    const bool isOwn = static_cast<bool>(names_.OfUnit(unit_, name));
    if (!isOwn && IsOneOf(kJumpWords, name) && IsName(at + 1)) {
        at += 2;
        return;
    }
    if (!isOwn && Equal(name, u"THIS")) {
        ++at;
        while (at < tokens_.size() &&
               (Is(at, OP_DOT) || u16string_view(tokens_[at].text) == u"^")) {
            ++at;
        }
        if (!IsName(at) || !Is(at - 1, OP_DOT)) {
            return;
        }
    } else if (!isOwn && (!IsIdentifier(token.text) || IsOneOf(kWords, name))) {
        TakeWord(name);
        ++at;
        return;
    }
    const Path& path = ReadPath(at);
    const BodyToken& last = tokens_[path.places.back()];
    if (Is(path.end, OP_LPAREN)) {
        awaited_.push_back(CallOf(path.meanings.back(), last.text, path.end));
        TellPath(path, UseKind::kCall);
    } else if (!path.meanings.front() && path.places.size() == 1 && Is(path.end, OP_COLON) &&
               !IsCaseLabel(at)) {
        // A label of dialects of ST.
    } else {
        const UseKind kind = KindOf(at, path.end);
        if (kind == UseKind::kRead && path.end == at + 1 &&
            names_.CalleeOf(path.meanings.front()) != ID()) {
            // An instance has no value: an enumerator of its name is meant.
            const Meaning value = names_.ValueNamed(name);
            path_.meanings.front() = value ? value : path.meanings.front();
        }
        TellPath(path, kind);
    }
    ++at;
}

// Whether the name in front of a colon is a value of CASE, and no label that is jumped to.
bool CodeWalk::IsCaseLabel(std::size_t at) {
    if (isIl_ || statements_.empty() || !statements_.back()) {
        return false;
    }
    if (!jumps_) {
        jumps_.emplace();
        for (std::size_t i = 0; i + 1 < tokens_.size(); ++i) {
            if (IsName(i) && IsName(i + 1) && IsOneOf(kJumpWords, tokens_[i].text)) {
                jumps_->insert(Capitals(tokens_[i + 1].text));
            }
        }
    }
    return Is(at - 1, OP_COMMA) || !jumps_->contains(Capitals(tokens_[at].text));
}

// What opens and closes statements: a colon means something else in CASE.
void CodeWalk::TakeWord(u16string_view word) {
    constexpr u16string_view kOpening[] = {u"CASE", u"FOR", u"IF", u"REPEAT", u"WHILE"};
    if (IsOneOf(kOpening, word)) {
        statements_.push_back(Equal(word, kOpening[0]));
    } else if (!statements_.empty() && word.size() > 4 && Equal(word.substr(0, 4), u"END_")) {
        statements_.pop_back();
    }
}

const CodeWalk::Path& CodeWalk::ReadPath(std::size_t at) {
    Path& path = path_;
    path.meanings.clear();
    path.places.clear();
    path.pointed = 0;
    path.indexed = kNoIndex;
    path.meanings.push_back(Resolve(tokens_[at].text));
    path.places.push_back(at);
    // Recursion: the function's name before a bracket is the function.
    if (path.meanings[0].object == UseObject::kResult && Is(at + 1, OP_LPAREN)) {
        path.meanings[0].object = UseObject::kUnit;
    }
    for (path.end = at + 1; path.end < tokens_.size();) {
        if (Is(path.end, OP_LBRACKET) && closing_[path.end] != 0) {
            path.indexed = std::min(path.indexed, path.places.size());
            path.end = closing_[path.end] + 1;
        } else if (tokens_[path.end].kind == TK_ERROR &&
                   u16string_view(tokens_[path.end].text) == u"^") {
            path.pointed = path.places.size();
            ++path.end;
        } else if (Is(path.end, OP_DOT) && IsName(path.end + 1) &&
                   !(isIl_ && tokens_[path.end].row != tokens_[path.end + 1].row)) {
            Meaning member = names_.MemberOf(path.meanings.back(), tokens_[path.end + 1].text);
            member.object = member ? member.object : UseObject::kMember;
            path.meanings.push_back(member);
            path.places.push_back(path.end + 1);
            path.end += 2;
        } else if (Is(path.end, OP_DOT) && path.end + 1 < tokens_.size() &&
                   tokens_[path.end + 1].kind == TK_INTEGER) {
            path.end += 2;  // a bit
        } else if (Is(path.end, OP_DOT) && IsName(path.end + 2) &&
                   tokens_[path.end + 1].kind == TK_ERROR) {
            path.end += 3;  // likewise, or a byte or word: ".%X0"
        } else {
            break;
        }
    }
    return path;
}

// Where the whole is written to, so is each part of a variable; what a pointer stands in is read.
// Where the whole is called, what it is in is read. Members behind an index come after what is in
// that.
void CodeWalk::TellPath(const Path& path, UseKind kind) {
    const std::size_t count = path.places.size();
    const auto kindOf = [&](std::size_t i) {
        const UseObject object = path.meanings[i].object;
        const bool isPrefix =
            i + 1 < count && (kind == UseKind::kCall || object == UseObject::kUnit ||
                              object == UseObject::kType || object == UseObject::kList);
        const bool isCalled =
            i + 1 == count && kind == UseKind::kCall;  // "p^()" calls by a pointer
        return !isCalled && (i < path.pointed || isPrefix) ? UseKind::kRead : kind;
    };
    const std::size_t index = std::min(path.indexed, count);
    for (std::size_t i = 0; i < index; ++i) {
        TellAt(path.places[i], path.meanings[i], kindOf(i));
    }
    for (std::size_t i = count; i-- > index;) {
        members_.push_back({path.places[i], path.meanings[i], kindOf(i)});
    }
}

void CodeWalk::TellAwaited(std::size_t at) {
    while (!members_.empty() && members_.back().at <= at) {
        const Awaited member = members_.back();
        members_.pop_back();
        TellAt(member.at, member.meaning, member.kind);
    }
}

void CodeWalk::TellAt(std::size_t at, const Meaning& meaning, UseKind kind) {
    isElement_ = Is(at + 1, OP_LBRACKET);
    Tell(tokens_[at], meaning, kind);
    isElement_ = false;
}

// What is done with the variable between `at` and `end`.
UseKind CodeWalk::KindOf(std::size_t at, std::size_t end) const {
    if (open_.empty() && Is(end, OP_ASSIGN)) {
        return UseKind::kWrite;
    }
    if (at == operand_ && IsLineEnd(end)) {
        return whole_;
    }
    if (open_.empty() || open_.back().kind != Open::Kind::kCall) {
        return UseKind::kRead;
    }
    const bool isWhole = at == open_.back().at + 1 || Is(at - 1, OP_COMMA) ||
                         Is(at - 1, OP_ASSIGN) || Is(at - 1, OP_ARROW);
    return isWhole && (Is(end, OP_COMMA) || IsLineEnd(end) || Is(end, OP_RPAREN))
               ? open_.back().argument
               : UseKind::kRead;
}

// "Color#Red", "INT#5", "16#FF" by scanners that do not read it.
void CodeWalk::TakePrefix(std::size_t& at) {
    std::u16string type(tokens_[at].text);
    type.pop_back();
    BodyToken token = tokens_[at];
    token.text = type.c_str();
    const Meaning meaning = names_.TypeNamed(type);
    if (meaning) {
        Tell(token, meaning, UseKind::kDeclare);
    } else if (IsIdentifier(token.text) && !IsLiteralPrefix(type) && !Resolve(type)) {
        Tell(token, {}, UseKind::kDeclare);
    }
    ++at;
    if (IsName(at)) {
        const Meaning value = names_.ValueOf(type, tokens_[at].text);
        if (value || names_.IsEnumeration(type)) {
            Tell(tokens_[at], value, UseKind::kRead);
        }
        ++at;
    }
}

void CodeWalk::TakeAddress(std::size_t at) {
    Tell(tokens_[at], {UseObject::kAddress, {}, {}}, KindOf(at, at + 1));
}

}  // namespace lq::host::uses
