#include "host/plcopen/parts.h"
#include "lq_data/host/text/message.h"

namespace lq::host::plcopen {

void ReadDataType(Context& context, const Element& dataType) {
    DataType type;
    type.name = context.Intern(HolderName(context, dataType, Required(context, dataType, "name")));
    if (*type.name == 0) {
        return;
    }
    if (context.project.FindDataType(type.name) != ID()) {
        context.Warn(dataType, Say("the name of data type '{}' is taken: the first one is used",
                                   dataType.Attribute("name")));
    }
    type.line = dataType.line;
    type.comment = context.Documentation(dataType);
    const Element* base = dataType.Child("baseType");
    const Element* structure = base ? base->Child("struct") : nullptr;
    type.structure = structure != nullptr;
    if (!base) {
        context.Warn(dataType, Say("<{}> has no base type", dataType.Name()));
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
