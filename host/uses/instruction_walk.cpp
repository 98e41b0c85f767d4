// Texts in IL: an instruction a line, what is done with its operand, and calls without brackets.

#include <algorithm>
#include <iterator>
#include <optional>

#include "host/uses/code_walk.h"
#include "lq_data/scanner.h"

namespace lq::host::uses {

namespace {

// What instructions of IL do with their operand; all others are functions.
struct Instruction {
    u16string_view name;
    std::optional<UseKind> kind;  // nothing for one that takes no name of the unit
};
constexpr Instruction kInstructions[] = {
    {u"LD", UseKind::kRead},
    {u"LDN", UseKind::kRead},
    {u"ST", UseKind::kWrite},
    {u"STN", UseKind::kWrite},
    {u"S", UseKind::kWrite},
    {u"R", UseKind::kWrite},
    {u"AND", UseKind::kRead},
    {u"ANDN", UseKind::kRead},
    {u"OR", UseKind::kRead},
    {u"ORN", UseKind::kRead},
    {u"XOR", UseKind::kRead},
    {u"XORN", UseKind::kRead},
    {u"NOT", UseKind::kRead},
    {u"ADD", UseKind::kRead},
    {u"SUB", UseKind::kRead},
    {u"MUL", UseKind::kRead},
    {u"DIV", UseKind::kRead},
    {u"MOD", UseKind::kRead},
    {u"GT", UseKind::kRead},
    {u"GE", UseKind::kRead},
    {u"EQ", UseKind::kRead},
    {u"NE", UseKind::kRead},
    {u"LE", UseKind::kRead},
    {u"LT", UseKind::kRead},
    {u"CAL", UseKind::kCall},
    {u"CALC", UseKind::kCall},
    {u"CALCN", UseKind::kCall},
    {u"S1", UseKind::kCall},
    {u"R1", UseKind::kCall},
    {u"CLK", UseKind::kCall},
    {u"CU", UseKind::kCall},
    {u"CD", UseKind::kCall},
    {u"PV", UseKind::kCall},
    {u"IN", UseKind::kCall},
    {u"PT", UseKind::kCall},
    {u"RET", {}},
    {u"RETC", {}},
    {u"RETCN", {}},
    {u"JMP", {}},
    {u"JMPC", {}},
    {u"JMPCN", {}},
};

const Instruction* InstructionNamed(u16string_view name) {
    const auto* row = std::ranges::find_if(
        kInstructions, [name](const Instruction& other) { return Equal(other.name, name); });
    return row == std::end(kInstructions) ? nullptr : row;
}

}  // namespace

void CodeWalk::RunIl(std::span<const BodyToken> tokens) {
    isIl_ = true;
    row_ = 0;
    Begin(tokens);
    Run();
}

void CodeWalk::BeginInstruction(std::size_t& at) {
    if (!open_.empty() && open_.back().kind == Open::Kind::kCall) {
        open_.pop_back();  // operands of a function without brackets
    }
    row_ = tokens_[at].row;
    while (IsName(at) && Is(at + 1, OP_COLON)) {
        at += 2;  // a label
        if (at < tokens_.size()) {
            row_ = tokens_[at].row;
        }
    }
    BeginOperands(at);
    if (Is(at, OP_AMPERSAND) && IsName(at + 1) && Equal(tokens_[at + 1].text, u"N")) {
        at += 2;  // ANDN
        BeginOperands(at);
        return;
    }
    if (!IsName(at)) {
        return;
    }
    const u16string_view name(tokens_[at].text);
    const Instruction* instruction = InstructionNamed(name);
    Meaning function = instruction && IsLineEnd(at + 1) ? names_.OfProject(unit_, name) : Meaning{};
    if (function.object == UseObject::kUnit) {
        instruction = nullptr;  // of a function that is called like an input: R1
    }
    if (!instruction && Is(at + 1, OP_LPAREN)) {
        return;  // a call as in ST
    }
    if (instruction) {
        ++at;
        BeginOperands(at);
        if (!instruction->kind) {
            while (at < tokens_.size() && tokens_[at].row == row_) {
                ++at;
            }
            return;
        }
        whole_ = *instruction->kind;
        // Of an instance LD, S and R set an input.
        const bool isCall = IsName(at) && tokens_[at].row == row_ && whole_ != UseKind::kCall &&
                            (Equal(name, u"LD") || Equal(name, u"S") || Equal(name, u"R")) &&
                            !Is(at + 1, OP_DOT) && !Is(at + 1, OP_LBRACKET) &&
                            names_.GetProject().GetDeclaration(Resolve(tokens_[at].text).Typed()) &&
                            names_.CalleeOf(Resolve(tokens_[at].text)) != ID();
        whole_ = isCall ? UseKind::kCall : whole_;
        return;
    }
    function = Resolve(name);
    if (function.object == UseObject::kResult) {
        function.object = UseObject::kUnit;
    }
    Tell(tokens_[at], function, UseKind::kCall);
    Open call = CallOf(function, name, at);
    call.position = 1;  // the first argument is the current result
    call.argument = KindOfPosition(call);
    open_.push_back(call);
    ++at;
}

void CodeWalk::BeginOperands(std::size_t at) {
    whole_ = UseKind::kRead;
    operand_ = at;
}

}  // namespace lq::host::uses
