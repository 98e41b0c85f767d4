// Variables, the lists that hold them, and data types.

#include <utility>

#include "host/model/reading.h"
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

constexpr struct {
    std::string_view attribute;
    unsigned mark;
} kMarks[] = {
    {"constant", kMarkConstant},
    {"retain", kMarkRetain},
    {"nonretain", kMarkNonRetain},
    {"persistent", kMarkPersistent},
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

uint8_t DirectionOf(Context& context, const Element& access) {
    const std::string_view direction = Trim(access.Attribute("direction"));
    if (direction != "readOnly" && direction != "readWrite" && !direction.empty()) {
        context.Warn(access, kBadAttribute,
                     Say("the attribute direction of <{}> is neither readOnly nor "
                         "readWrite",
                         access.Name()));
    }
    return direction == "readOnly" ? kMarkReadOnly : direction == "readWrite" ? kMarkReadWrite : 0;
}

}  // namespace

Section ReadSection(Context& context, const Element& list) {
    Scope scope = Scope::kLocal;
    for (const auto& row : kLists) {
        if (row.list == list.Name()) {
            scope = row.scope;
        }
    }
    unsigned marks = 0;
    for (const auto& row : kMarks) {
        marks |= IsSet(context, list, row.attribute) ? row.mark : 0u;
    }
    std::vector<std::string> faults;
    const std::string name = "<" + std::string(list.Name()) + ">";
    const Section section = SectionOf(scope, marks, name, faults);
    for (std::string& fault : faults) {
        context.Warn(list, kSectionNarrowed, std::move(fault));
    }
    return section;
}

std::optional<Declaration> ReadVariable(Context& context, const Element& variable, ID owner,
                                        Section section) {
    Declaration declaration;
    const bool isAccess = section.scope == Scope::kAccess;
    const bool isPath = section.scope == Scope::kConfig;
    const std::string_view name = Required(context, variable,
                                           isAccess ? "alias"
                                           : isPath ? "instancePathAndName"
                                                    : "name");
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
    const Element* address = variable.Child("iec:Address");
    declaration.address =
        context.Intern(Trim((address ? *address : variable).Attribute("address")));
    declaration.comment = context.Documentation(variable);
    if (isAccess) {
        declaration.comment2 = context.Intern(Required(context, variable, "instancePathAndName"));
        section.marks = DirectionOf(context, variable);
    }
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
    type.column = dataType.column;
    type.comment = context.Documentation(dataType);
    const Element* base = dataType.Child("baseType");
    const Element* specification = dataType.Child("iec:UserDefinedTypeSpec");
    const bool isIecStructure = specification && XsiTypeOf(*specification) == "StructTypeSpec";
    const Element* structure = isIecStructure ? specification
                               : base         ? base->Child("struct")
                                              : nullptr;
    type.structure = structure != nullptr;
    if (specification && !structure) {
        type.baseType = context.Intern(SpecificationText(context, *specification));
    } else if (!base && !structure) {
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
