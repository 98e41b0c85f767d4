// Variables, the lists that hold them, and data types.

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
        context.Warn(element, kBadAttribute,
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
    unsigned marks = 0;
    for (const auto& row : kLists) {
        if (row.list == list.Name()) {
            section.scope = row.scope;
        }
    }
    section.constant = IsSet(context, list, "constant");
    section.retain = IsSet(context, list, "retain");
    const bool isNonRetain = IsSet(context, list, "nonretain");
    if (isNonRetain && section.retain) {
        context.Warn(list, kBadAttribute,
                     Say("<{}> is retain and nonretain: it was read as nonretain", list.Name()));
        section.retain = false;
    }
    marks |= section.constant ? kMarkConstant : 0u;
    marks |= section.retain ? kMarkRetain : 0u;
    marks |= isNonRetain ? kMarkNonRetain : 0u;
    if (IsSet(context, list, "persistent")) {
        marks |= kMarkPersistent;
        context.Warn(list, kSectionNarrowed,
                     Say("<{}> is persistent, which has no section keyword: it was read as retain",
                         list.Name()));
        section.retain = true;
    }
    Section nearest = NearestSection(section);
    if (nearest != section) {
        context.Warn(list, kSectionNarrowed,
                     Say("<{}> with {} has no section keyword: it was read without {}", list.Name(),
                         Settings(section.constant, section.retain),
                         Settings(section.constant && !nearest.constant,
                                  section.retain && !nearest.retain)));
    }
    nearest.marks = static_cast<uint8_t>(marks);
    return nearest;
}

std::optional<Declaration> ReadVariable(Context& context, const Element& variable, ID owner,
                                        Section section) {
    Declaration declaration;
    const bool isPath = section.scope == Scope::kConfig;
    const std::string_view name =
        Required(context, variable, isPath ? "instancePathAndName" : "name");
    declaration.name = section.scope == Scope::kGlobal ? context.Store(name) : context.Intern(name);
    if (*declaration.name == 0) {
        return {};
    }
    if (const Element* type = variable.Child("type")) {
        declaration.type = context.InternType(TypeText(context, *type));
    } else {
        context.Warn(variable, kMissingElement, Say("<{}> has no type", variable.Name()));
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

void ReadDataType(Context& context, const Element& dataType) {
    DataType type;
    type.name = context.Intern(HolderName(context, dataType, Required(context, dataType, "name")));
    if (*type.name == 0) {
        return;
    }
    if (context.project.FindDataType(type.name) != ID()) {
        context.Warn(dataType, kDuplicateUnit,
                     Say("the name of data type '{}' is taken: the first one is used",
                         dataType.Attribute("name")));
    }
    type.line = dataType.line;
    type.comment = context.Documentation(dataType);
    const Element* base = dataType.Child("baseType");
    const Element* structure = base ? base->Child("struct") : nullptr;
    type.structure = structure != nullptr;
    if (!base) {
        context.Warn(dataType, kMissingElement, Say("<{}> has no base type", dataType.Name()));
    } else if (!structure) {
        type.baseType = context.Intern(TypeText(context, *base));
    }
    if (const Element* value = dataType.Child("initialValue")) {
        type.initValue = context.Intern(InitialValueText(context, *value));
    }
    const ID id = context.project.AddDataType(type);
    if (!structure) {
        return;
    }
    for (const auto& member : structure->children) {
        if (member->Name() != "variable") {
            continue;
        }
        if (const auto declaration = ReadVariable(context, *member, id, {})) {
            context.project.AddDeclaration(*declaration);
        }
    }
}

}  // namespace lq::host::plcopen
