// Bodies. Unless the project is to keep code, only what concerns names beyond a body is read: its
// labels and jumps, and the POUs that it calls.

#include <algorithm>
#include <charconv>
#include <string>
#include <unordered_set>
#include <vector>

#include "host/model/code_reader.h"
#include "host/plcopen/parts.h"
#include "host/text/foreign_text.h"
#include "lq_data/detail/chars.h"
#include "lq_data/host/text/message.h"
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

void TakePragmas(CodeReader& reader, std::u16string_view text, const TextSpans& pragmas,
                 const Code& source) {
    TextPlaces places(text, source.breaks);
    for (const auto& [begin, end] : pragmas) {
        places.Pass(begin);
        reader.TakePragma(text.substr(0, end), places);
    }
}

// The labels, jumps and calls of IL or ST text, and its tokens where they are kept.
void ReadCode(Context& context, const Code& source, Language language, Pou& pou, Body& body,
              const BodyPiece* piece) {
    std::u16string text;
    DecodeUtf8(source.text, text);
    TextSpans pragmas;
    const std::u16string code =
        WithoutForeignText(text, context.project.KeepsCode() ? &pragmas : nullptr);
    const auto length = static_cast<int32_t>(code.size());
    MEMSTREAM_W stream(code.c_str(), length, length, nullptr);
    const Binding binding(context.CodeScanner(), stream, 1);
    Scanner& scanner = binding.scanner;

    TokenColumns columns(code, source.breaks);
    CodeReader reader(context.project, language, pou, body);
    if (piece) {
        reader.BeginPiece(*piece);
    }
    for (Token token = scanner.GetToken(); token.kind != TK_EOF; token = scanner.GetToken()) {
        const uint32_t column = columns.Next(scanner, token);
        if (token.kind != TK_NEWLINE) {
            const uint16_t operation = token.kind == TK_OPERATOR ? token.GetCode() : uint16_t{0};
            reader.Take({token.kind, operation, token.text, columns.Line(), column,
                         static_cast<uint32_t>(token.line)});
        }
    }
    reader.EndLine();
    TakePragmas(reader, text, pragmas, source);
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

// What stands in an attribute of a drawing's element, or of a chart's. Empty for any parent.
constexpr struct {
    std::string_view element;
    std::string_view parent;
    std::string_view attribute;
    PieceRole role;
    bool isExpression;
} kAttributes[] = {
    {"block", "", "typeName", PieceRole::kBlock, false},
    {"variable", "inputVariables", "formalParameter", PieceRole::kInput, false},
    {"variable", "outputVariables", "formalParameter", PieceRole::kOutput, false},
    {"variable", "inOutVariables", "formalParameter", PieceRole::kInputOutput, false},
    {"step", "", "name", PieceRole::kStep, false},
    {"macroStep", "", "name", PieceRole::kMacroStep, false},
    {"jumpStep", "", "targetName", PieceRole::kJumpStep, false},
    {"reference", "condition", "name", PieceRole::kTransition, false},
    {"reference", "action", "name", PieceRole::kAction, false},
    {"action", "actionBlock", "indicator", PieceRole::kIndicator, true},
    {"action", "actionBlock", "duration", PieceRole::kDuration, true},
    {"inline", "", "name", PieceRole::kPart, false},
};

// The expressions of a drawing, by the elements that they stand in.
constexpr struct {
    std::string_view element;
    std::string_view parent;
    PieceRole role;
} kExpressions[] = {
    {"expression", "inVariable", PieceRole::kIn},
    {"expression", "outVariable", PieceRole::kOut},
    {"expression", "inOutVariable", PieceRole::kInOut},
    {"expression", "connectionPointIn", PieceRole::kIn},  // in the place of a wire
    {"expression", "connectionPointOut", PieceRole::kOut},
    {"variable", "contact", PieceRole::kContact},
    {"variable", "coil", PieceRole::kCoil},
};

// The wires of a drawing: what they lead to, and what there is.
class Wires {
  public:
    void Take(const Element& element) {
        if (const auto id = Trim(element.Attribute("localId")); !id.empty()) {
            boxes_.insert(id);
        }
        if (element.Name() == "connection") {
            ends_.push_back({Trim(element.Attribute("refLocalId")), false, &element});
        } else if (element.Name() == "connector") {
            connectors_.insert(Capitals(element.Attribute("name")));
        } else if (element.Name() == "continuation") {
            ends_.push_back({Trim(element.Attribute("name")), true, &element});
        }
    }

    void KeepLoose(Context& context, Body& body) const {
        for (const End& end : ends_) {
            const bool isThere = end.isContinuation ? connectors_.contains(Capitals(end.partner))
                                                    : boxes_.contains(end.partner);
            if (!end.partner.empty() && !isThere) {
                context.project.EditCode(body).looseWires.push_back(
                    {context.Intern(end.partner), end.isContinuation, end.element->line,
                     end.element->column});
            }
        }
    }

  private:
    struct End {
        std::string_view partner;
        bool isContinuation;
        const Element* element;
    };
    static std::u16string Capitals(std::string_view text) {
        std::u16string name;
        DecodeUtf8(Trim(text), name);
        std::ranges::transform(name, name.begin(), chars::ToUpper);
        return name;
    }

    std::unordered_set<std::string_view> boxes_;  // by their numbers
    std::unordered_set<std::u16string> connectors_;
    std::vector<End> ends_;
};

class BodyReader {
  public:
    BodyReader(Context& context, Pou& pou, Body& body)
        : context_(context), pou_(pou), body_(body) {}

    void ReadWhole(const Element& element) {
        Read(element);
        wires_.KeepLoose(context_, body_);
    }

  private:
    void Read(const Element& element) {
        const Language language = LanguageOf(element.Name());
        if (language == Language::kSt || language == Language::kIl) {
            ReadText(element, language);
            return;
        }
        if (ReadExpression(element)) {
            return;
        }
        if (context_.project.KeepsCode()) {
            KeepAttributes(element);
            wires_.Take(element);
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

    void ReadText(const Element& element, Language language, const BodyPiece* piece = nullptr) {
        const Code code = CodeOf(element);
        ReadCode(context_, code, language, pou_, body_, piece);
    }

    // Contacts and coils concern only who wants the code.
    bool ReadExpression(const Element& element) {
        for (const auto& row : kExpressions) {
            if (row.element == element.Name() && row.parent == element.parent->Name() &&
                (row.element == "expression" || context_.project.KeepsCode())) {
                BodyPiece piece = PieceOf(element, *element.parent, row.role);
                const Element* const holder = element.parent->parent;
                if (holder && holder->parent && holder->parent->Name() == "inOutVariables") {
                    piece.role = PieceRole::kInOut;
                }
                ReadText(element, Language::kSt, &piece);
                return true;
            }
        }
        return false;
    }

    void KeepAttributes(const Element& element) {
        for (const auto& row : kAttributes) {
            const std::string_view value = Trim(element.Attribute(row.attribute));
            if (row.element != element.Name() || value.empty() ||
                (!row.parent.empty() && row.parent != element.parent->Name())) {
                continue;
            }
            BodyPiece piece = PieceOf(element, element, row.role);
            if (row.isExpression) {
                const Code code{std::string(value), {{0, element.line, element.column}}};
                ReadCode(context_, code, Language::kSt, pou_, body_, &piece);
                continue;
            }
            const std::string_view initial = element.Attribute("initialStep");
            if (row.role == PieceRole::kStep && (initial == "true" || initial == "1")) {
                piece.role = PieceRole::kInitialStep;
            }
            piece.name = context_.Intern(value);
            piece.second = context_.Intern(Trim(element.Attribute("instanceName")));
            const std::string_view path =
                row.role == PieceRole::kBlock ? Trim(element.Attribute("instanceName")) : value;
            const bool isPath =
                (row.role == PieceRole::kBlock || row.role == PieceRole::kTransition ||
                 row.role == PieceRole::kAction) &&
                IsPath(path);
            if (isPath) {
                const Code code{std::string(path), {{0, element.line, element.column}}};
                ReadCode(context_, code, Language::kSt, pou_, body_, &piece);
            } else {
                CodeReader(context_.project, Language::kSt, pou_, body_).BeginPiece(piece);
            }
        }
    }

    // More than a name: a member, an element, an address or a constant.
    static bool IsPath(std::string_view text) {
        const auto is = [text](std::string_view word) {
            return text.size() == word.size() &&
                   std::ranges::equal(text, word, {}, [](char c) { return c & ~0x20; });
        };
        return text.find_first_of(".[%^#(") != text.npos || is("TRUE") || is("FALSE");
    }

    static uint32_t NumberOf(std::string_view text) {
        uint32_t number = 0;
        text = Trim(text);
        std::from_chars(text.data(), text.data() + text.size(), number);
        return number;
    }

    // A piece at `element` that belongs to `box`.
    static BodyPiece PieceOf(const Element& element, const Element& box, PieceRole role) {
        const Element* input = box.Child("connectionPointIn");
        const Element* wire = input ? input->Child("connection") : nullptr;
        return {.role = role,
                .line = element.line,
                .column = element.column,
                .id = NumberOf(box.Attribute("localId")),
                .wire = wire ? NumberOf(wire->Attribute("refLocalId")) : 0};
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
    Wires wires_;
};

}  // namespace

void ReadBody(Context& context, const Element& element, std::string_view name, Pou& pou) {
    Body body;
    body.name = context.Intern(name);
    body.line = element.line;
    body.column = element.column;
    for (const auto& child : element.children) {
        if (body.language == Language::kNone) {
            body.language = LanguageOf(child->Name());
        }
    }
    BodyReader(context, pou, body).ReadWhole(element);
    pou.bodies.push_back(std::move(body));
}

void ReadIecBody(Context& context, const Element& element, std::string_view name, Pou& pou) {
    for (const auto& content : element.children) {
        if (content->Name() != "iec:BodyContent") {
            continue;
        }
        const std::string_view type = XsiTypeOf(*content);
        Body body;
        body.name = context.Intern(name);
        body.language = LanguageOf(type);
        body.line = content->line;
        body.column = content->column;
        if (body.language == Language::kSt || body.language == Language::kIl) {
            ReadCode(context, CodeOf(*content), body.language, pou, body, nullptr);
        } else {
            context.Warn(*content, kNotKept,
                         Say("of a body in '{}' only the language is read", type));
        }
        pou.bodies.push_back(std::move(body));
    }
}

}  // namespace lq::host::plcopen
