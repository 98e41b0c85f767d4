// The course of a document: which parts are streamed, what their beginnings and ends mean, and
// which operation reads a part once it is complete. Only one variable, data type, body or task is
// in memory at a time.

#include <algorithm>
#include <charconv>
#include <fstream>
#include <string>
#include <system_error>
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
    void StrayText(const Element& text) override;
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
    static bool IsData(const Element& element) { return element.Name() == "data"; }
    Treatment Open(const Element& element);
    Treatment StartOfData(const Element& element);
    void EndOfData(const Element& data);

    bool Enter(const Element&) { return true; }
    bool OpenPou(const Element& pou);
    bool OpenNamespace(const Element& space);
    bool OpenVariables(const Element& list);
    bool OpenConfiguration(const Element& configuration);
    bool OpenResource(const Element& resource);
    bool OpenData(const Element&);

    void Leave(const Element&) {}
    void CloseInterface(const Element&) { eno_.Close(project_, pou_); }
    void ClosePou(const Element&) { pou_ = {}; }
    void CloseIecUnit(const Element& unit) {
        CloseInterface(unit);
        ClosePou(unit);
    }
    void CloseResource(const Element&) {
        resource_ = {};
        tasks_ = {};
    }
    void CloseConfiguration(const Element&) { configuration_ = {}; }

    void TakeHeader(const Element& header);
    void TakeDataType(const Element& type) { ReadDataType(context_, type); }
    void CheckOrder(const Element& variable);
    void TakeVariable(const Element& variable);
    void TakeConfigVariable(const Element& variable);
    void TakeAccessVariable(const Element& variable);
    void TakeResultType(const Element& type);
    void TakeBody(const Element& body) { ReadBody(context_, body, {}, *project_.EditPou(pou_)); }
    void TakeNamedBody(const Element& part);
    void TakeIecBody(const Element& body) {
        ReadIecBody(context_, body, {}, *project_.EditPou(pou_));
    }
    void TakeIecAction(const Element& action);
    void TakeTask(const Element& task);
    void TakeIecInstance(const Element& instance);
    void TakeInstance(const Element& pou) { ReadProgramInstance(context_, pou, resource_); }
    void TakeDocumentation(const Element& documentation);

    std::string_view NameOf(const Element& holder) {
        return HolderName(context_, holder, Required(context_, holder, "name"));
    }

    auto IsTask(Text name) const {
        return [this, name](uint32_t number) {
            return chars::EqualNoCase(project_.NameOf(ID(number)), name);
        };
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
    uint32_t lastParameter_ = 0;  // of the open POU
    FlatIndex<uint32_t> tasks_;   // of the resource, by name: the numbers of their identifiers
    struct Data {
        bool isRead = false;  // something of it, or
        bool isLeft = false;  // left out
    };
    std::vector<Data> data_;  // additional data, each in what the one before it holds
    EnoPair eno_;             // of the open POU
};

// ORDER: elements that are streamed, then parts that are read as a whole.
const Reader::Step Reader::kSteps[] = {
    {"project", &Reader::Enter, &Reader::Leave},
    {"types", &Reader::Enter, &Reader::Leave},
    {"dataTypes", &Reader::Enter, &Reader::Leave},
    {"pous", &Reader::Enter, &Reader::Leave},
    {"pou", &Reader::OpenPou, &Reader::ClosePou},
    {"iec:GlobalNamespace", &Reader::Enter, &Reader::Leave},
    {"iec:NamespaceDecl", &Reader::OpenNamespace, &Reader::Leave},
    {"iec:Program", &Reader::OpenPou, &Reader::CloseIecUnit},
    {"iec:FunctionBlock", &Reader::OpenPou, &Reader::CloseIecUnit},
    {"iec:Function", &Reader::OpenPou, &Reader::CloseIecUnit},
    {"iec:Parameters", &Reader::Enter, &Reader::Leave},
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
    {"addData", &Reader::Enter, &Reader::Leave},
    {"data", &Reader::OpenData, &Reader::Leave},

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
    {"iec:MainBody", nullptr, &Reader::TakeIecBody},
    {"iec:Action", nullptr, &Reader::TakeIecAction},
    {"iec:ProgramInstance", nullptr, &Reader::TakeIecInstance},
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
    if (!element.parent && element.Name() != "project" && element.Name() != "pou") {
        refusal_ = element.Name() == "{}project"
                       ? Say("the file is no PLCopen project: its root element <project> has no "
                             "namespace (xmlns)")
                       : Say("the file is no PLCopen project: its root element is <{}>",
                             element.Name().substr(element.Name().starts_with("{}") ? 2 : 0));
        return Treatment::kRefuse;
    }
    if (element.parent && JudgeElement(context_, element) != Verdict::kRead) {
        return Treatment::kSkip;
    }
    return element.parent && IsData(*element.parent) ? StartOfData(element) : Open(element);
}

Treatment Reader::Open(const Element& element) {
    const Step& step = StepOf(*element.kind);
    if (!step.open) {
        return Treatment::kCapture;
    }
    JudgeAttributes(context_, element);
    return (this->*step.open)(element) ? Treatment::kStream : Treatment::kSkip;
}

void Reader::End(const Element& element) {
    if (IsData(element)) {
        EndOfData(element);
        return;
    }
    const Step& step = StepOf(*element.kind);
    if (!step.open) {
        JudgeTree(context_, element);
    }
    (this->*step.close)(element);
}

// Text in additional data is the producer's, as all that is not known there.
void Reader::StrayText(const Element& text) {
    if (IsData(*text.parent)) {
        data_.back().isLeft = true;
    } else {
        ReportText(context_, text);
    }
}

// -- Additional data ------------------------------------------------------------------------------

bool Reader::OpenData(const Element&) {
    data_.emplace_back();
    return true;
}

// Producers keep there what the format has no place for: lists of global variables, units and types
// of a project, configuration or resource. What is theirs alone is left out.
Treatment Reader::StartOfData(const Element& element) {
    const std::string_view name = element.Name();
    const std::string_view holder = element.parent->parent->parent->Name();
    const bool isRead = (name == "globalVars" || name == "pou" || name == "dataType") &&
                        (holder == "project" || holder == "configuration" || holder == "resource");
    (isRead ? data_.back().isRead : data_.back().isLeft) = true;
    return isRead ? Open(element) : Treatment::kSkip;
}

void Reader::EndOfData(const Element& data) {
    if (data_.back().isRead && data_.back().isLeft) {
        context_.Warn(
            data, kNotKept,
            Say("of additional data '{}' a part is not read", Shortened(data.Attribute("name"))));
    } else if (!data_.back().isRead) {
        JudgeData(context_, data);
    }
    data_.pop_back();
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
        {"iec:Program", LQ_KIND_PROGRAM},
        {"iec:FunctionBlock", LQ_KIND_FUNCTION_BLOCK},
        {"iec:Function", LQ_KIND_FUNCTION},
    };
    const bool isPlcopen = element.Name() == "pou";
    const std::string_view type = isPlcopen ? element.Attribute("pouType") : element.Name();
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
            context_.Warn(element, kDuplicateUnit,
                          Say("the name of POU '{}' is taken: the first one is used",
                              element.Attribute("name")));
        }
        pou_ = project_.AddPou(pou);
        lastParameter_ = 0;
        return true;
    }
    context_.Warn(element, kUnitLeftOut,
                  Say("the POU type '{}' is not known: the POU was left out", type));
    return false;
}

bool Reader::OpenNamespace(const Element& element) {
    context_.Warn(
        element, kNotKept,
        Say("what namespace '{}' holds was read without it", Shortened(element.Attribute("name"))));
    return true;
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

// IEC 61131-10 numbers parameters across their sections.
void Reader::CheckOrder(const Element& variable) {
    const std::string_view text = Trim(variable.Attribute("orderWithinParamSet"));
    uint32_t number = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), number).ec != std::errc()) {
        return;
    }
    if (number < lastParameter_) {
        context_.Warn(variable, kNotKept,
                      Say("parameters are read in the order of the document, which is "
                          "not that of their numbers"));
    }
    lastParameter_ = number;
}

void Reader::TakeVariable(const Element& variable) {
    CheckOrder(variable);
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
        context_.Warn(variable, kDuplicateGlobal,
                      Say("the name of global '{}' is taken: the first one is used",
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

void Reader::TakeIecAction(const Element& action) {
    const std::string_view name = NameOf(action);
    if (const Element* body = action.Child("iec:Body")) {
        ReadIecBody(context_, *body, name, *project_.EditPou(pou_));
    }
}

void Reader::TakeTask(const Element& task) {
    ReadTask(context_, task, resource_);
    const Resource* resource = project_.GetResource(resource_);
    if (resource && !resource->tasks.empty()) {
        const ID id = resource->tasks.back();
        tasks_.AddFirst(id.GetNumber(), HashOfName(project_.NameOf(id)),
                        IsTask(project_.NameOf(id)));
    }
}

// The instance names its task.
void Reader::TakeIecInstance(const Element& instance) {
    const Text name = context_.Intern(Trim(instance.Attribute("associatedTaskName")));
    const ID task = ID(tasks_.Find(HashOfName(name), IsTask(name)));
    if (*name && task == ID()) {
        context_.Warn(instance, kNotKept,
                      Say("no task is called '{}': '{}' runs without one",
                          Shortened(instance.Attribute("associatedTaskName")),
                          Shortened(instance.Attribute("name"))));
    }
    ReadProgramInstance(context_, instance, task == ID() ? resource_ : task);
}

void Reader::TakeDocumentation(const Element& documentation) {
    const std::string_view parent = documentation.parent->Name();
    const Text text = context_.Intern(Prose(documentation));
    const bool isUnit = parent == "pou" || parent == "iec:Program" ||
                        parent == "iec:FunctionBlock" || parent == "iec:Function";
    if (isUnit || parent == "configuration" || parent == "resource") {
        const ID owner = isUnit ? pou_ : parent == "resource" ? resource_ : configuration_;
        project_.SetComment(owner, text);
    } else if (parent == "interface") {
        project_.EditPou(pou_)->headerComment = text;
    } else if (parent == "globalVars") {
        project_.SetComment(owner_, text);
    } else {
        context_.Warn(documentation, kNotKept,
                      Say("<{}> in <{}> has no place in the project and was left out",
                          documentation.Name(), parent));
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
