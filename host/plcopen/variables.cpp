#include <string>

#include "host/plcopen/parts.h"
#include "lq_data/host/text/message.h"

namespace lq::host::plcopen {

namespace {

constexpr struct {
    std::string_view list;
    Scope scope;
} kLists[] = {
    {"localVars", Scope::kLocal},   {"tempVars", Scope::kTemp},
    {"inputVars", Scope::kInput},   {"outputVars", Scope::kOutput},
    {"inOutVars", Scope::kInOut},   {"externalVars", Scope::kExternal},
    {"globalVars", Scope::kGlobal},
};

bool IsSet(Context& context, const Element& element, std::string_view attribute) {
    const std::string_view value = Trim(element.Attribute(attribute));
    if (value == "true" || value == "1") {
        return true;
    }
    if (!value.empty() && value != "false" && value != "0") {
        context.Warn(element,
                     Say("the attribute {} of <{}> is neither true nor false: it was read as false",
                         attribute, element.Name()));
    }
    return false;
}

const char* Settings(bool constant, bool retain) {
    return !constant ? "retain" : retain ? "constant retain" : "constant";
}

}  // namespace

Section ReadSection(Context& context, const Element& list) {
    Section section;
    for (const auto& row : kLists) {
        if (row.list == list.Name()) {
            section.scope = row.scope;
        }
    }
    section.constant = IsSet(context, list, "constant");
    section.retain = IsSet(context, list, "retain");
    if (IsSet(context, list, "nonretain") && section.retain) {
        context.Warn(list,
                     Say("<{}> is retain and nonretain: it was read as nonretain", list.Name()));
        section.retain = false;
    }
    if (IsSet(context, list, "persistent")) {
        context.Warn(list,
                     Say("<{}> is persistent, which has no section keyword: it was read as retain",
                         list.Name()));
        section.retain = true;
    }
    const Section nearest = NearestSection(section);
    if (nearest != section) {
        context.Warn(list, Say("<{}> with {} has no section keyword: it was read without {}",
                               list.Name(), Settings(section.constant, section.retain),
                               Settings(section.constant && !nearest.constant,
                                        section.retain && !nearest.retain)));
    }
    return nearest;
}

std::optional<Declaration> ReadVariable(Context& context, const Element& variable, ID owner,
                                        Section section) {
    Declaration declaration;
    const std::string_view name = Required(context, variable, "name");
    declaration.name = section.scope == Scope::kGlobal ? context.Store(name) : context.Intern(name);
    if (*declaration.name == 0) {
        return {};
    }
    if (const Element* type = variable.Child("type")) {
        declaration.type = context.InternType(TypeText(context, *type));
    } else {
        context.Warn(variable, Say("<{}> has no type", variable.Name()));
    }
    if (const Element* value = variable.Child("initialValue")) {
        declaration.initValue = context.Intern(InitialValueText(context, *value));
    }
    declaration.address = context.Intern(Trim(variable.Attribute("address")));
    declaration.comment = context.Documentation(variable);
    declaration.owner = owner;
    declaration.line = variable.line;
    declaration.column = variable.column;
    declaration.section = section;
    return declaration;
}

}  // namespace lq::host::plcopen
