// The course of a document: which parts are streamed, what their beginnings and ends mean, and
// which operation reads a part once it is complete. Only one variable, data type, body or task is
// in memory at a time.

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "host/model/reading.h"
#include "host/plcopen/context.h"
#include "host/plcopen/parts.h"
#include "host/plcopen/schema.h"
#include "host/plcopen/xml.h"
#include "lq_data/host/text/message.h"

namespace lq::host {

namespace plcopen {

namespace {

class Reader final : public ElementHandler {
  public:
    explicit Reader(Context& context) : context_(context), project_(context.project) {}

    Treatment Start(const Element& element) override;
    void End(const Element& element) override;
    void StrayText(const Element& text) override { ReportText(context_, text); }
    std::string Refusal() const override { return refusal_; }

  private:
    using Part = void (Reader::*)(const Element&);

    // How an element is read: `open` at its beginning, which makes it a streamed one, `close` at
    // its end.
    struct Step {
        std::string_view element;
        bool (Reader::*open)(const Element&);  // false leaves the element out
        Part close;
    };
    static const Step kSteps[];
    static const Step& StepOf(const Kind& kind);

    bool Enter(const Element&) { return true; }
    bool OpenPou(const Element& pou);
    bool OpenVariables(const Element& list);
    bool OpenConfiguration(const Element& configuration);
    bool OpenResource(const Element& resource);

    void Leave(const Element&) {}
    void CloseInterface(const Element&) { eno_.Close(project_, pou_); }
    void ClosePou(const Element&) { pou_ = {}; }
    void CloseConfiguration(const Element&) { configuration_ = {}; }
    void CloseResource(const Element&) { resource_ = {}; }

    void TakeHeader(const Element& header);
    void TakeDataType(const Element& type) { ReadDataType(context_, type); }
    void TakeVariable(const Element& variable);
    void TakeConfigVariable(const Element& variable);
    void TakeAccessVariable(const Element& variable);
    void TakeResultType(const Element& type);
    void TakeBody(const Element& body) { ReadBody(context_, body, {}, *project_.EditPou(pou_)); }
    void TakeNamedBody(const Element& part);
    void TakeTask(const Element& task) { ReadTask(context_, task, resource_); }
    void TakeInstance(const Element& pou) { ReadProgramInstance(context_, pou, resource_); }
    void TakeDocumentation(const Element& documentation);
    void TakeData(const Element& data);

    std::string_view NameOf(const Element& holder) {
        return HolderName(context_, holder, Required(context_, holder, "name"));
    }

    Context& context_;
    Project& project_;
    std::string refusal_;

    // What is open.
    ID pou_;
    ID configuration_;
    ID resource_;
    ID owner_;  // of the variables that come
    Section section_;
    EnoPair eno_;  // of the open POU
};

// ORDER: elements that are streamed, then parts that are read as a whole.
const Reader::Step Reader::kSteps[] = {
    {"project", &Reader::Enter, &Reader::Leave},
    {"types", &Reader::Enter, &Reader::Leave},
    {"dataTypes", &Reader::Enter, &Reader::Leave},
    {"pous", &Reader::Enter, &Reader::Leave},
    {"pou", &Reader::OpenPou, &Reader::ClosePou},
    {"interface", &Reader::Enter, &Reader::CloseInterface},
    {"localVars", &Reader::OpenVariables, &Reader::Leave},
    {"tempVars", &Reader::OpenVariables, &Reader::Leave},
    {"inputVars", &Reader::OpenVariables, &Reader::Leave},
    {"outputVars", &Reader::OpenVariables, &Reader::Leave},
    {"inOutVars", &Reader::OpenVariables, &Reader::Leave},
    {"externalVars", &Reader::OpenVariables, &Reader::Leave},
    {"globalVars", &Reader::OpenVariables, &Reader::Leave},
    {"configVars", &Reader::Enter, &Reader::Leave},
    {"accessVars", &Reader::Enter, &Reader::Leave},
    {"actions", &Reader::Enter, &Reader::Leave},
    {"transitions", &Reader::Enter, &Reader::Leave},
    {"instances", &Reader::Enter, &Reader::Leave},
    {"configurations", &Reader::Enter, &Reader::Leave},
    {"configuration", &Reader::OpenConfiguration, &Reader::CloseConfiguration},
    {"resource", &Reader::OpenResource, &Reader::CloseResource},

    {"contentHeader", nullptr, &Reader::TakeHeader},
    {"dataType", nullptr, &Reader::TakeDataType},
    {"variable", nullptr, &Reader::TakeVariable},
    {"configVariable", nullptr, &Reader::TakeConfigVariable},
    {"accessVariable", nullptr, &Reader::TakeAccessVariable},
    {"returnType", nullptr, &Reader::TakeResultType},
    {"body", nullptr, &Reader::TakeBody},
    {"action", nullptr, &Reader::TakeNamedBody},
    {"transition", nullptr, &Reader::TakeNamedBody},
    {"task", nullptr, &Reader::TakeTask},
    {"pouInstance", nullptr, &Reader::TakeInstance},
    {"documentation", nullptr, &Reader::TakeDocumentation},
    {"addData", nullptr, &Reader::TakeData},
};

// The schema lets no element be read that has no step.
const Reader::Step& Reader::StepOf(const Kind& kind) {
    if (kind.step == Kind::kNotLooked) {
        const auto isNamed = [&kind](const Step& step) { return step.element == kind.name; };
        kind.step = static_cast<uint8_t>(std::ranges::find_if(kSteps, isNamed) - kSteps);
    }
    return kSteps[kind.step];
}

Treatment Reader::Start(const Element& element) {
    // Editors export single units, too.
    if (!element.parent && element.Name() != "project" && element.Name() != "pou") {
        refusal_ = Say("the file is no PLCopen project: its root element is <{}>", element.Name());
        return Treatment::kRefuse;
    }
    if (element.parent && JudgeElement(context_, element) != Verdict::kRead) {
        return Treatment::kSkip;
    }
    const Step& step = StepOf(*element.kind);
    if (!step.open) {
        return Treatment::kCapture;
    }
    JudgeAttributes(context_, element);
    return (this->*step.open)(element) ? Treatment::kStream : Treatment::kSkip;
}

void Reader::End(const Element& element) {
    const Step& step = StepOf(*element.kind);
    if (!step.open) {
        JudgeTree(context_, element);
    }
    (this->*step.close)(element);
}

// -- Beginnings and ends --------------------------------------------------------------------------

bool Reader::OpenPou(const Element& element) {
    constexpr struct {
        std::string_view type;
        LQ_OBJECT_KIND kind;
    } kKinds[] = {
        {"program", LQ_KIND_PROGRAM},
        {"functionBlock", LQ_KIND_FUNCTION_BLOCK},
        {"function", LQ_KIND_FUNCTION},
    };
    const std::string_view type = element.Attribute("pouType");
    for (const auto& row : kKinds) {
        if (row.type != type) {
            continue;
        }
        Pou pou;
        pou.name = context_.Intern(NameOf(element));
        pou.kind = row.kind;
        pou.line = element.line;
        pou.column = element.column;
        if (*pou.name == 0) {
            return false;
        }
        if (project_.FindPou(pou.name) != ID()) {
            context_.Warn(element, Say("the name of POU '{}' is taken: the first one is used",
                                       element.Attribute("name")));
        }
        pou_ = project_.AddPou(pou);
        return true;
    }
    context_.Warn(element, Say("the POU type '{}' is not known: the POU was left out", type));
    return false;
}

bool Reader::OpenVariables(const Element& element) {
    section_ = ReadSection(context_, element);
    if (section_.scope != Scope::kGlobal) {
        owner_ = pou_;
        return true;
    }
    VariableList list;
    list.parent = pou_ != ID() ? pou_ : resource_ != ID() ? resource_ : configuration_;
    const std::string_view name = HolderName(context_, element, Trim(element.Attribute("name")));
    list.name = name.empty() ? project_.NameOf(list.parent) : context_.Intern(name);
    list.line = element.line;
    list.column = element.column;
    owner_ = project_.AddVariableList(list);
    return true;
}

bool Reader::OpenConfiguration(const Element& element) {
    Configuration configuration;
    configuration.name = context_.Intern(NameOf(element));
    configuration.line = element.line;
    configuration.column = element.column;
    configuration_ = project_.AddConfiguration(configuration);
    return true;
}

bool Reader::OpenResource(const Element& element) {
    Resource resource;
    resource.name = context_.Intern(NameOf(element));
    resource.configuration = configuration_;
    resource.line = element.line;
    resource.column = element.column;
    resource_ = project_.AddResource(resource);
    return true;
}

// -- Parts ----------------------------------------------------------------------------------------

void Reader::TakeHeader(const Element& header) {
    project_.SetName(context_.Intern(Trim(header.Attribute("name"))));
}

void Reader::TakeVariable(const Element& variable) {
    const auto declaration = ReadVariable(context_, variable, owner_, section_);
    if (!declaration) {
        return;
    }
    if (owner_ == pou_ && eno_.Take(project_, *declaration)) {
        return;
    }
    ID earlier;
    project_.AddDeclaration(*declaration, &earlier);
    if (earlier != ID() && project_.GetDeclaration(earlier)->owner == owner_) {
        context_.Warn(variable, Say("the name of global '{}' is taken: the first one is used",
                                    variable.Attribute("name")));
    }
}

void Reader::TakeConfigVariable(const Element& variable) {
    if (const auto declaration =
            ReadVariable(context_, variable, configuration_, {Scope::kConfig})) {
        project_.AddAside(*declaration);
    }
}

void Reader::TakeAccessVariable(const Element& variable) {
    const ID owner = pou_ != ID() ? pou_ : configuration_;
    if (const auto declaration = ReadVariable(context_, variable, owner, {Scope::kAccess})) {
        project_.AddAside(*declaration);
    }
}

void Reader::TakeResultType(const Element& type) {
    project_.EditPou(pou_)->resultType = context_.Intern(TypeText(context_, type));
}

void Reader::TakeNamedBody(const Element& part) {
    const std::string_view name = NameOf(part);
    if (const Element* body = part.Child("body")) {
        ReadBody(context_, *body, name, *project_.EditPou(pou_));
    }
}

void Reader::TakeDocumentation(const Element& documentation) {
    const std::string_view parent = documentation.parent->Name();
    const Text text = context_.Intern(Prose(documentation));
    if (parent == "pou" || parent == "configuration" || parent == "resource") {
        const ID owner = parent == "pou" ? pou_ : parent == "resource" ? resource_ : configuration_;
        project_.SetComment(owner, text);
    } else if (parent == "interface") {
        project_.EditPou(pou_)->headerComment = text;
    } else if (parent == "globalVars") {
        project_.SetComment(owner_, text);
    } else {
        context_.Warn(documentation,
                      Say("<{}> in <{}> has no place in the project and was left out",
                          documentation.Name(), parent));
    }
}

// Some producers keep lists of global variables here.
void Reader::TakeData(const Element& addData) {
    for (const auto& data : addData.children) {
        const Element* const list = data->Child(kGlobalList);
        if (!list) {
            continue;
        }
        JudgeTree(context_, *list);
        OpenVariables(*list);
        for (const auto& child : list->children) {
            if (child->Name() == "variable") {
                TakeVariable(*child);
            } else if (child->Name() == "documentation") {
                TakeDocumentation(*child);
            }
        }
    }
}

bool Read(std::istream& source, Context& context) {
    context.BeginFile();
    Reader reader(context);
    XmlFault fault;
    if (ParseXml(source, reader, fault)) {
        return true;
    }
    context.Fail(fault.line, fault.column, fault.message);
    return false;
}

}  // namespace

}  // namespace plcopen

bool ReadPlcopen(std::istream& source, const std::string& fileName, Project& project,
                 std::vector<Report>& reports) noexcept {
    return Contained(fileName, reports, [&] {
        plcopen::Context context(project, fileName, reports);
        return plcopen::Read(source, context);
    });
}

bool ReadPlcopenFile(const std::string& path, Project& project,
                     std::vector<Report>& reports) noexcept {
    return Contained(path, reports, [&] {
        std::ifstream source;
        ReportList list(path, reports);
        if (!OpenSource(source, list)) {
            return false;
        }
        plcopen::Context context(project, path, reports);
        return plcopen::Read(source, context);
    });
}

}  // namespace lq::host
