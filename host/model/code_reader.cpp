#include "host/model/code_reader.h"

#include <algorithm>

#include "host/model/chart_text.h"
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

void CodeReader::BeginPiece(BodyPiece piece) {
    if (code_) {
        piece.first = static_cast<uint32_t>(code_->tokens.size());
        code_->pieces.push_back(piece);
        hasPiece_ = true;
    }
}

void CodeReader::KeepToken(const CodeToken& token) {
    if (!hasPiece_) {
        BeginPiece({il_ ? PieceRole::kIl : PieceRole::kSt, token.line, token.column});
    }
    code_->tokens.push_back({project_.Intern(token.text), token.line, token.column, token.operation,
                             static_cast<uint8_t>(token.kind), token.Row()});
}

void CodeReader::TakePragma(std::u16string_view text, TextPlaces places) {
    const auto isWord = [](char16_t c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || chars::IsDigit(c) ||
               c == u'_' || c >= 0x80;
    };
    while (code_ && places.Position() < text.size()) {
        const std::size_t at = places.Position();
        std::size_t end = at;
        while (end < text.size() && isWord(text[end])) {
            ++end;
        }
        if (end > at && !chars::IsDigit(text[at])) {
            code_->pragmaWords.push_back({project_.Intern(text.substr(at, end - at)), places.Line(),
                                          places.Column(), 0, TK_IDENTIFIER});
        }
        places.Pass(std::max(end, at + 1));
    }
}

void CodeReader::Take(const CodeToken& token) {
    if (code_) {
        KeepToken(token);
    }
    if (il_ && token.Row() != row_) {
        EndLine();
        line_ = token.line;
        row_ = token.Row();
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
        body_.jumps.push_back({project_.Intern(token.text), token.line, token.column, *jump});
    }
    const bool isName = token.kind == TK_IDENTIFIER && !behindDot_;
    behindDot_ = token.Is(OP_DOT);
    Keep(isName ? token.text : std::u16string_view(), isName && il_ && atStart_);
    nameColumn_ = token.column;
    atStart_ = false;
}

void CodeReader::EndLine() {
    if (chart_ && code_) {
        SplitChart(*code_);
    }
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
