#include <memory>

#include <nlohmann/json.hpp>

#include "host/text/utf.h"
#include "lq_data/containers.h"
#include "lq_data/pouh.h"
#include "pouh/record_access.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/describe.h"
#include "tools/lq/input.h"
#include "tools/lq/output.h"
#include "tools/lq/project_input.h"
#include "tools/lq/records.h"
#include "tools/lq/tables.h"

namespace lq::tool {

using host::EncodeUtf8;
using Json = nlohmann::ordered_json;

namespace {

const std::vector<Table::Column> kColumns = {{"scope"},   {"name"},    {"type"},    {"initial"},
                                             {"address"}, {"comment"}, {"comment2"}};

Json Declarations(FLIST* decls) {
    Json rows = Json::array();
    for (const DECL_TYP* decl = pouh::DeclAt(decls, LC_FIRST); decl;
         decl = pouh::DeclAt(decls, LC_NEXT)) {
        uint32_t scope = DS_UNKNOWN;
        GetAttrOfDecl(decl, POUH_SCOPE, &scope);
        rows.push_back({{"scope", ScopeText(scope)},
                        {"name", EncodeUtf8(pouh::TextOf(decl, POUH_NAME))},
                        {"type", EncodeUtf8(pouh::TypeTextOf(decl))},
                        {"initial", EncodeUtf8(pouh::InitValueOf(decl))},
                        {"address", EncodeUtf8(pouh::TextOf(decl, POUH_ADDRESS))},
                        {"comment", EncodeUtf8(pouh::CommentOf(decl, POUH_COMMENT))},
                        {"comment2", EncodeUtf8(pouh::CommentOf(decl, POUH_COMMENT2))}});
    }
    return rows;
}

std::string CommentText(const POUH_INFO_TYP* info, POUH_ATTRIBUTE_FLAG flag) {
    POUH_COMMENT_TYP* comment = nullptr;
    GetAttrOfPOUHInfo(info, flag, &comment);
    return comment ? EncodeUtf8(GetRemarkPointerOfPOUHComment(comment)) : "";
}

// The whole header.
Json HeaderOf(const PouOptions& options, const std::u16string& name) {
    const HeaderPtr header(CreatePOUHeader());
    if (!header || !LoadPOUHeader(header.get(), name.c_str())) {
        throw CommandError("no unit or data type is called '" + options.name + "'");
    }
    POUH_INFO_TYP* info = nullptr;
    uint32_t kind = PT_OTHER;
    GetAttrOfPOUHeader(header.get(), POUH_INFO, &info);
    GetAttrOfPOUHInfo(info, POUH_POUTYPE, &kind);
    return {{"name", EncodeUtf8(pouh::TextOf(info, POUH_NAME))},
            {"kind", UnitKindName(kind)},
            {"comment", CommentText(info, POUH_POUCOMMENT)},
            {"interface comment", CommentText(info, POUH_COMMENT)},
            {"declarations", Declarations(pouh::ListOf(header.get()))}};
}

// The parameters only.
Json InterfaceOf(const PouOptions& options, const std::u16string& name) {
    LQNAVIOBJECT* object = LQNAVIOBJECTMAN::Get()->Get(FindPOUByName(name.c_str()));
    auto* pou = dynamic_cast<LQPOU*>(object);
    if (!pou) {
        throw CommandError("no unit is called '" + options.name + "'");
    }
    const DeclListPtr list(CreatePOUHDeclList());
    if (!list || !LoadInterface(list.get(), pou)) {
        throw CommandError("'" + options.name + "' is no function or function block: it has no " +
                           "parameters");
    }
    return {{"name", EncodeUtf8(pou->GetName())},
            {"declarations", Declarations(pouh::ListOf(list.get()))}};
}

}  // namespace

int RunPou(const PouOptions& options) {
    CurrentProject current;
    const int status = ReadAndReport(options.project, current.project);
    const std::u16string name = DecodeArgument(options.name);
    const Json unit = options.interfaceOnly ? InterfaceOf(options, name) : HeaderOf(options, name);
    if (options.json) {
        PrintJson(unit);
        return status;
    }
    for (const char* member : {"name", "kind", "comment", "interface comment"}) {
        if (unit.contains(member) && !unit.at(member).get<std::string>().empty()) {
            PrintLine(std::string(member) + ": " + OneLine(unit.at(member).get<std::string>()));
        }
    }
    PrintLine("");
    Print(TableOf("", kColumns, unit.at("declarations")));
    return status;
}

int RunFb(const FbOptions& options) {
    CurrentProject current;
    const int status = ReadAndReport(options.project, current.project);
    const std::u16string pou = DecodeArgument(options.pou);
    const std::u16string instance = DecodeArgument(options.instance);
    if (!FindPOUByName(pou.c_str()).GetNumber()) {
        throw CommandError("no unit is called '" + options.pou + "'");
    }
    CLQString type;
    const bool found = FindFBName(instance.c_str(), pou.c_str(), &type) != 0;
    const std::string typeName = EncodeUtf8(type.GetText());
    if (options.json) {
        PrintLine(Json({{"unit", options.pou},
                        {"instance", options.instance},
                        {"function block", found ? Json(typeName) : Json(nullptr)}})
                      .dump(2));
    } else if (found) {
        PrintLine(typeName);
    } else {
        ReportFault("'" + options.instance + "' is no function block instance in '" + options.pou +
                    "', nor a global one");
    }
    return found ? status : kInputHasFaults;
}

}  // namespace lq::tool
