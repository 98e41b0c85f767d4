// Labels, jumps and calls of textual code. A call is a name before an opening bracket, in IL also
// an instruction that is a name. Names that call nothing (standard operators) may be among them;
// only names of POUs count in the end.

#include <memory>
#include <new>
#include <string>

#include "host/plcopen/parts.h"
#include "host/text/foreign_text.h"
#include "host/text/token_columns.h"
#include "lq_data/detail/chars.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/host/words/words.h"
#include "lq_data/scanner.h"

namespace lq::host::plcopen {

namespace {

constexpr struct {
    const char16_t* instruction;
    bool conditional;
} kJumps[] = {{u"JMP", false}, {u"JMPC", true}, {u"JMPCN", true}};

class CodeReader {
  public:
    CodeReader(Project& project, Language language, Pou& pou, Body& body)
        : project_(project), il_(language == Language::kIl), pou_(pou), body_(body) {}

    void Take(const Token& token, uint32_t column) {
        if (il_ && token.line != line_) {
            EndLine();
            line_ = token.line;
        }
        if (isInstruction_ && token.IsOperator(OP_COLON)) {
            body_.labels.push_back({project_.Intern(name_), Line(), nameColumn_, false});
            Keep({}, false);
            atStart_ = true;
            return;
        }
        const bool* jump = isInstruction_ ? JumpOf(name_) : nullptr;
        if (!jump) {
            EndName(isInstruction_ || token.IsOperator(OP_LPAREN));
        } else if (token.kind == TK_IDENTIFIER) {
            body_.jumps.push_back({project_.Intern(token.text), Line(), column, *jump});
        }
        const bool isName = token.kind == TK_IDENTIFIER && !behindDot_;
        behindDot_ = token.IsOperator(OP_DOT);
        Keep(isName ? token.text : u"", isName && il_ && atStart_);
        nameColumn_ = column;
        atStart_ = false;
    }

    // Of IL text, and of all text.
    void EndLine() {
        EndName(isInstruction_ && !JumpOf(name_));
        Keep({}, false);
        atStart_ = true;
        behindDot_ = false;
    }

  private:
    void Keep(std::u16string_view name, bool isInstruction) {
        name_ = name;
        isInstruction_ = isInstruction;
    }

    // What follows the kept name shows that it is called, or that it is not.
    void EndName(bool called) {
        if (called && IsIdentifier(name_.c_str())) {
            project_.AddCall(pou_, project_.Intern(name_));
        }
    }

    static const bool* JumpOf(const std::u16string& name) {
        for (const auto& jump : kJumps) {
            if (chars::EqualNoCase(jump.instruction, name.c_str())) {
                return &jump.conditional;
            }
        }
        return nullptr;
    }

    uint32_t Line() const { return static_cast<uint32_t>(line_); }

    Project& project_;
    const bool il_;
    Pou& pou_;
    Body& body_;
    std::u16string name_;  // the last token, when it is a name, else empty
    uint32_t nameColumn_ = 0;
    bool isInstruction_ = false;  // it is the first of an IL line
    bool atStart_ = true;         // nothing on the line yet, but for a label
    bool behindDot_ = false;      // what follows is a part of something, and no POU
    int32_t line_ = -1;
};

}  // namespace

void ReadCode(Context& context, const Code& source, Language language, Pou& pou, Body& body) {
    std::u16string code;
    DecodeUtf8(source.text, code);
    code = WithoutForeignText(code);
    const auto length = static_cast<int32_t>(code.size());
    MEMSTREAM_W stream(code.c_str(), length, length, nullptr);  // outlives its scanner
    const std::unique_ptr<CObject> object(Scanner::CreateObject());
    if (!object) {
        throw std::bad_alloc();
    }
    auto& scanner = static_cast<Scanner&>(*object);
    scanner.Initialize(stream);
    scanner.SetnActLine(static_cast<int>(source.line));

    TokenColumns columns(code, source.column);
    CodeReader reader(context.project, language, pou, body);
    for (Token token = scanner.GetToken(); token.kind != TK_EOF; token = scanner.GetToken()) {
        const uint32_t column = columns.Next(scanner, token);
        if (token.kind != TK_NEWLINE) {
            reader.Take(token, column);
        }
    }
    reader.EndLine();
}

}  // namespace lq::host::plcopen
