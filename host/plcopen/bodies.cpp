// Bodies. The project keeps no code, only what concerns names beyond a body: its labels and jumps,
// and the POUs that it calls.
//
// In text, a call is a name before an opening bracket, in IL also an instruction that is a name.
// Names that call nothing (standard operators) may be among them; only names of POUs count in the
// end.

#include <string>

#include "host/plcopen/parts.h"
#include "host/text/foreign_text.h"
#include "lq_data/detail/chars.h"
#include "lq_data/host/text/token_columns.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/host/words/words.h"

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

    // A line of IL has ended, or the whole text, in either language.
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

// A stream of code and the scanner, which outlives it.
struct Binding {
    Binding(Scanner& user, STREAM_W& stream, int line) : scanner(user) {
        scanner.AssignStream(stream, line);
    }
    ~Binding() { scanner.ReleaseStream(); }

    Scanner& scanner;
};

// The labels, jumps and calls of IL or ST text.
void ReadCode(Context& context, const Code& source, Language language, Pou& pou, Body& body) {
    std::u16string code;
    DecodeUtf8(source.text, code);
    code = WithoutForeignText(code);
    const auto length = static_cast<int32_t>(code.size());
    MEMSTREAM_W stream(code.c_str(), length, length, nullptr);
    const Binding binding(context.CodeScanner(), stream, static_cast<int>(source.line));
    Scanner& scanner = binding.scanner;

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

constexpr struct {
    std::string_view element;
    Language language;
} kLanguages[] = {
    {"ST", Language::kSt}, {"IL", Language::kIl},   {"FBD", Language::kFbd},
    {"LD", Language::kLd}, {"SFC", Language::kSfc},
};

Language LanguageOf(std::string_view element) {
    for (const auto& row : kLanguages) {
        if (row.element == element) {
            return row.language;
        }
    }
    return Language::kNone;
}

class BodyReader {
  public:
    BodyReader(Context& context, Pou& pou, Body& body)
        : context_(context), pou_(pou), body_(body) {}

    void Read(const Element& element) {
        const Language language = LanguageOf(element.Name());
        if (language == Language::kSt || language == Language::kIl) {
            ReadText(element, language);
            return;
        }
        if (element.Name() == "expression") {
            ReadText(element, Language::kSt);
            return;
        }
        if (element.Name() == "block") {
            context_.project.AddCall(pou_, Name(element, "typeName"));
        } else if (element.Name() == "label") {
            AddMark(body_.labels, element, false);
        } else if (element.Name() == "jump") {
            AddMark(body_.jumps, element, IsWired(element));
        }
        for (const auto& child : element.children) {
            if (!child->IsText() && child->Name() != "addData") {
                Read(*child);
            }
        }
    }

  private:
    void ReadText(const Element& element, Language language) {
        const Code code = CodeOf(element);
        ReadCode(context_, code, language, pou_, body_);
    }

    Text Name(const Element& element, std::string_view attribute) {
        return context_.Intern(Required(context_, element, attribute));
    }

    void AddMark(std::vector<Mark>& marks, const Element& element, bool conditional) {
        const Text name = Name(element, "label");
        if (*name != 0) {
            marks.push_back({name, element.line, element.column, conditional});
        }
    }

    // A jump in a drawing is taken when what is wired to it is true.
    static bool IsWired(const Element& jump) {
        const Element* input = jump.Child("connectionPointIn");
        return input && input->Child("connection");
    }

    Context& context_;
    Pou& pou_;
    Body& body_;
};

}  // namespace

void ReadBody(Context& context, const Element& element, std::string_view name, Pou& pou) {
    Body body;
    body.name = context.Intern(name);
    body.line = element.line;
    for (const auto& child : element.children) {
        if (body.language == Language::kNone) {
            body.language = LanguageOf(child->Name());
        }
    }
    BodyReader(context, pou, body).Read(element);
    pou.bodies.push_back(std::move(body));
}

}  // namespace lq::host::plcopen
