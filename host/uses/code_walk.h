// The names in a piece of code, each with what it stands for and what is done with it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

#include "host/uses/names.h"

namespace lq::host::uses {

// The names of the parts of a unit: steps, actions and transitions.
using PartNames = FlatIndex<Text>;

class CodeWalk {
  public:
    // `unit` and `body` are those of the uses.
    CodeWalk(Names& names, const PartNames& parts, ID unit, const Body* body, const TakeUse& take);

    // Text in ST, or an expression: what is done with it where it is one variable as a whole.
    void RunSt(std::span<const BodyToken> tokens, UseKind whole = UseKind::kRead);
    void RunIl(std::span<const BodyToken> tokens);

    // The role of the uses that come.
    void SetRole(PieceRole role) { role_ = role; }

    // What a name alone stands for.
    Meaning Resolve(u16string_view name) const;
    void Tell(const BodyToken& token, const Meaning& meaning, UseKind kind,
              bool isInPragma = false);
    // What is done with what a parameter is given.
    UseKind KindOfParameter(ID parameter, bool isOutput = false) const;

  private:
    // What an open bracket belongs to.
    struct Open {
        enum class Kind : uint8_t { kGroup, kIndex, kCall };

        Kind kind = Kind::kGroup;
        std::size_t at = 0;  // of the bracket
        // Of a call.
        ID callee;                             // null when it is not known
        bool isFunction = false;               // of the standard, which writes to nothing
        uint32_t position = 0;                 // of the argument that comes
        UseKind argument = UseKind::kUnknown;  // what is done with it
    };
    // A use that comes when the walk is at its token.
    struct Awaited {
        std::size_t at = 0;
        Meaning meaning;
        UseKind kind = UseKind::kRead;
    };
    static constexpr std::size_t kNoIndex = static_cast<std::size_t>(-1);
    struct Path {
        std::vector<Meaning> meanings;    // of the name and its members
        std::vector<std::size_t> places;  // of their tokens
        std::size_t end = 0;              // behind the path
        std::size_t pointed = 0;          // so many of them stand in front of a "^"
        std::size_t indexed = kNoIndex;   // and so many in front of the first "["
    };

    void Run();
    void Begin(std::span<const BodyToken> tokens);
    bool Is(std::size_t at, uint16_t operation) const;
    bool IsName(std::size_t at) const;
    bool IsLineEnd(std::size_t at) const;
    void TakeToken(std::size_t& at);
    void TakeName(std::size_t& at);
    void TakePrefix(std::size_t& at);
    bool TakeParameter(std::size_t& at);
    void TakeAddress(std::size_t at);
    void BeginInstruction(std::size_t& at);
    void BeginOperands(std::size_t at);

    void TellAt(std::size_t at, const Meaning& meaning, UseKind kind);
    bool IsCaseLabel(std::size_t at);
    void TakeWord(u16string_view word);
    const Path& ReadPath(std::size_t at);
    void TellPath(const Path& path, UseKind kind);
    void TellAwaited(std::size_t at);
    UseKind KindOf(std::size_t at, std::size_t end) const;
    UseKind KindOfPosition(const Open& call);
    Open CallOf(const Meaning& callee, u16string_view name, std::size_t at) const;
    void OpenBracket(std::size_t at);
    void CloseBracket(bool isIndex);

    Names& names_;
    const PartNames& parts_;
    const ID unit_;
    const Body* const body_;
    const TakeUse& take_;
    PieceRole role_ = PieceRole::kSt;
    bool isElement_ = false;  // of the array that is told of

    std::span<const BodyToken> tokens_;
    std::vector<std::size_t> closing_;  // by opening square bracket, its partner; 0 for none
    Path path_;                         // that was read last
    std::vector<Open> open_;
    std::vector<Open> awaited_;     // calls whose brackets come
    std::vector<Awaited> members_;  // behind indexes that come, the next one last
    UseKind whole_ = UseKind::kRead;
    std::size_t operand_ = 0;  // where what `whole_` is about begins
    bool isIl_ = false;
    uint32_t row_ = 0;              // of the instruction
    std::vector<bool> statements_;  // that are open: whether they are CASE
    // What the text jumps to, in capitals; read for the first label that is no variable.
    std::optional<std::unordered_set<std::u16string>> jumps_;
};

}  // namespace lq::host::uses
