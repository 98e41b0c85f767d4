#include "host/model/code_reader.h"

#include "lq_data/detail/chars.h"
#include "lq_data/host/words/words.h"
#include "lq_data/scanner.h"

namespace lq::host {

namespace {

constexpr struct {
    const char16_t* instruction;
    bool conditional;
} kJumps[] = {{u"JMP", false}, {u"JMPC", true}, {u"JMPCN", true}};

const bool* JumpOf(const std::u16string& name) {
    for (const auto& jump : kJumps) {
        if (chars::EqualNoCase(jump.instruction, name.c_str())) {
            return &jump.conditional;
        }
    }
    return nullptr;
}

}  // namespace

bool CodeToken::Is(uint16_t code) const {
    return kind == TK_OPERATOR && operation == code;
}

void CodeReader::Take(const CodeToken& token) {
    if (il_ && token.line != line_) {
        EndLine();
        line_ = token.line;
    }
    if (isInstruction_ && token.Is(OP_COLON)) {
        body_.labels.push_back({project_.Intern(name_), line_, nameColumn_, false});
        Keep({}, false);
        atStart_ = true;
        return;
    }
    const bool* jump = isInstruction_ ? JumpOf(name_) : nullptr;
    if (!jump) {
        EndName(isInstruction_ || token.Is(OP_LPAREN));
    } else if (token.kind == TK_IDENTIFIER) {
        body_.jumps.push_back({project_.Intern(token.text), line_, token.column, *jump});
    }
    const bool isName = token.kind == TK_IDENTIFIER && !behindDot_;
    behindDot_ = token.Is(OP_DOT);
    Keep(isName ? token.text : std::u16string_view(), isName && il_ && atStart_);
    nameColumn_ = token.column;
    atStart_ = false;
}

void CodeReader::EndLine() {
    EndName(isInstruction_ && !JumpOf(name_));
    Keep({}, false);
    atStart_ = true;
    behindDot_ = false;
}

void CodeReader::Keep(std::u16string_view name, bool isInstruction) {
    name_ = name;
    isInstruction_ = isInstruction;
}

// What follows the kept name shows that it is called, or that it is not.
void CodeReader::EndName(bool called) {
    if (called && IsIdentifier(name_.c_str())) {
        project_.AddCall(pou_, project_.Intern(name_));
    }
}

}  // namespace lq::host
