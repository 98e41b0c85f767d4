#include <algorithm>
#include <memory>

#include "lq_data/containers.h"
#include "lq_data/handles.h"
#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/pouh.h"
#include "lq_data/records.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/describe.h"
#include "tools/lq/escape.h"
#include "tools/lq/input.h"
#include "tools/lq/messages.h"
#include "tools/lq/output.h"
#include "tools/lq/project_input.h"
#include "tools/lq/suggestion.h"
#include "tools/lq/tables.h"

namespace lq::tool {

using host::EncodeUtf8;
using host::Message;
using host::Say;

namespace {

constexpr int kPouSchema = 2;

// As the loader marks a text.
bool IsMarked(const Json& value) {
    const std::string text = value.is_string() ? value.get<std::string>() : "";
    return text.size() > 2 && text.front() == '?' && text.back() == '?';
}

const std::vector<Column> kColumns = {{"scope"},   {"name"},    {"type"},    {"initial"},
                                      {"address"}, {"comment"}, {"comment2"}};

// The loader stands what it does not take between question marks. In JSON these go, and the row
// tells which of its members had them.
void MoveMarks(Json& row) {
    Json marked = Json::array();
    for (const auto& [title, value] : row.items()) {
        if (IsMarked(value)) {
            marked.push_back(title);
        }
    }
    for (const Json& title : marked) {
        std::string& text = row[title.get<std::string>()].get_ref<std::string&>();
        text = text.substr(1, text.size() - 2);
    }
    row["marked"] = marked;
}

Json Declarations(FLIST* decls) {
    Json rows = Json::array();
    for (const Declaration decl : lq::Declarations(decls)) {
        rows.push_back({{"scope", ScopeText(decl.Scope())},
                        {"name", EncodeUtf8(decl.Name())},
                        {"type", EncodeUtf8(decl.TypeText())},
                        {"initial", EncodeUtf8(decl.InitialValue())},
                        {"address", EncodeUtf8(decl.Address())},
                        {"comment", EncodeUtf8(decl.Comment())},
                        {"comment2", EncodeUtf8(decl.SecondComment())}});
    }
    return rows;
}

std::string CommentText(const POUH_INFO_TYP* info, POUH_ATTRIBUTE_FLAG flag) {
    POUH_COMMENT_TYP* comment = nullptr;
    GetAttrOfPOUHInfo(info, flag, &comment);
    return comment ? EncodeUtf8(GetRemarkPointerOfPOUHComment(comment)) : "";
}

// The file of the unit, as the standard's have none that of the project.
Place PlaceOf(const host::Project& project, ID unit, const ProjectFiles& files) {
    const std::string file = FileNameOf(project, unit);
    return file.empty() ? WholeOf(files) : Place{file};
}

// The declarations that may be instances for the unit: its own and the global ones.
std::vector<std::string> InstanceNames(const host::Project& project, const char16_t* unit) {
    std::vector<std::string> names;
    const ID pou = project.FindAnyPou(unit);
    for (const host::Declaration& declaration : project.Declarations()) {
        const bool isGlobal = project.GetVariableList(declaration.owner) != nullptr;
        const bool isBlock = project.FindAnyPou(declaration.type) != ID();
        if ((declaration.owner == pou || isGlobal) && isBlock) {
            names.push_back(EncodeUtf8(declaration.name));
        }
    }
    return names;
}

// What stands between question marks is explained once.
void ExplainMarks(const Json& declarations, const Place& place) {
    const bool isAny = std::ranges::any_of(
        declarations, [](const Json& row) { return std::ranges::any_of(row, IsMarked); });
    if (isAny) {
        PrintMessage(place,
                     Say("what stands between two '?' is no type, name or value that is known"));
    }
}

// The whole header.
Json HeaderOf(const host::Project& project, const PouOptions& options, const std::u16string& name) {
    const HeaderPtr header(CreatePOUHeader());
    if (!header || !LoadPOUHeader(header.get(), name.c_str())) {
        ThrowNoUnit(options.files, project, options.name, true);
    }
    POUH_INFO_TYP* info = nullptr;
    uint32_t kind = PT_OTHER;
    GetAttrOfPOUHeader(header.get(), POUH_INFO, &info);
    GetAttrOfPOUHInfo(info, POUH_POUTYPE, &kind);
    return {{"name", EncodeUtf8(pouh::TextOf(info, POUH_NAME))},
            {"kind", UnitKindName(kind)},
            {"comment", CommentText(info, POUH_POUCOMMENT)},
            {"interface_comment", CommentText(info, POUH_COMMENT)},
            {"declarations", Declarations(pouh::ListOf(header.get()))}};
}

// The parameters only.
Json InterfaceOf(const host::Project& project, const PouOptions& options,
                 const std::u16string& name) {
    LQNAVIOBJECT* object = LQNAVIOBJECTMAN::Get()->Get(FindPOUByName(name.c_str()));
    auto* pou = dynamic_cast<LQPOU*>(object);
    if (!pou) {
        ThrowNoUnit(options.files, project, options.name, false);
    }
    const DeclListPtr list(CreatePOUHDeclList());
    if (!list || !LoadInterface(list.get(), pou)) {
        throw InputError(
            PlaceOf(project, FindPOUByName(name.c_str()), options.files),
            Say("'{}' is no function or function block: it has no parameters", options.name));
    }
    return {{"name", EncodeUtf8(pou->GetName())},
            {"declarations", Declarations(pouh::ListOf(list.get()))}};
}

}  // namespace

int RunPou(const PouOptions& options) {
    CurrentProject current;
    const int status = ReadAndReport(options.files, current.project);
    const std::u16string name = DecodeArgument(options.name);
    Json unit = options.interfaceOnly ? InterfaceOf(current.project, options, name)
                                      : HeaderOf(current.project, options, name);
    if (options.json) {
        for (Json& row : unit["declarations"]) {
            MoveMarks(row);
        }
        Json document = NewDocument(kPouSchema);
        document.update(unit);
        PrintJson(document);
        return status;
    }
    for (const char* title : {"name", "kind", "comment", "interface comment"}) {
        const std::string member = MemberOf(title);
        if (unit.contains(member) && !unit.at(member).get<std::string>().empty()) {
            PrintLine(std::string(title) + ": " + OneLine(unit.at(member).get<std::string>()));
        }
    }
    PrintLine("");
    Print(TableOf("", kColumns, unit.at("declarations")));
    ExplainMarks(unit.at("declarations"),
                 PlaceOf(current.project, FindPOUByName(name.c_str()), options.files));
    return status;
}

int RunFb(const FbOptions& options) {
    CurrentProject current;
    const int status = ReadAndReport(options.files, current.project);
    const std::u16string pou = DecodeArgument(options.pou);
    const std::u16string instance = DecodeArgument(options.instance);
    if (!FindPOUByName(pou.c_str()).GetNumber()) {
        ThrowNoUnit(options.files, current.project, options.pou, false);
    }
    CLQString type;
    const bool found = FindFBName(instance.c_str(), pou.c_str(), &type) != 0;
    const std::string typeName = EncodeUtf8(type.GetText());
    if (options.json) {
        Json document = NewDocument();
        document.update({{"unit", options.pou},
                         {"instance", options.instance},
                         {"function_block", found ? Json(typeName) : Json(nullptr)}});
        PrintJson(document);
    } else if (found) {
        PrintLine(OneLine(typeName));
    }
    if (!found) {
        PrintMessage(PlaceOf(current.project, FindPOUByName(pou.c_str()), options.files),
                     Say("'{}' is no function block instance in '{}', nor a global one",
                         options.instance, options.pou) +
                         DidYouMean(options.instance, InstanceNames(current.project, pou.c_str())));
    }
    return found ? status : kInputHasFaults;
}

}  // namespace lq::tool
