// Bodies. The project keeps no code, only what concerns names beyond a body: its labels and jumps,
// and the POUs that it calls.

#include <string>

#include "host/model/code_reader.h"
#include "host/plcopen/parts.h"
#include "host/text/foreign_text.h"
#include "lq_data/host/text/token_columns.h"
#include "lq_data/host/text/utf.h"

namespace lq::host::plcopen {

namespace {

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
            const uint16_t operation = token.kind == TK_OPERATOR ? token.GetCode() : uint16_t{0};
            reader.Take(
                {token.kind, operation, token.text, static_cast<uint32_t>(token.line), column});
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
