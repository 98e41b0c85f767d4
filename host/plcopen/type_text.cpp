#include "host/plcopen/iec_text.h"
#include "lq_data/host/text/message.h"

namespace lq::host::plcopen {

namespace {

// `separator` stands between two items.
void AppendItem(std::string& list, std::string_view separator, std::string_view item) {
    if (!list.empty()) {
        list += separator;
    }
    list += item;
}

std::string BaseType(Context& context, const Element& element) {
    const Element* base = element.Child("baseType");
    if (!base) {
        context.Warn(element, Say("<{}> has no base type", element.Name()));
        return {};
    }
    return TypeText(context, *base);
}

std::string Bounds(Context& context, const Element& range) {
    std::string bounds(Required(context, range, "lower"));
    return bounds.append("..").append(Required(context, range, "upper"));
}

std::string StringText(std::string_view keyword, const Element& element) {
    const std::string_view length = Trim(element.Attribute("length"));
    std::string text(keyword);
    return length.empty() ? text : text.append("(").append(length).append(")");
}

std::string ArrayText(Context& context, const Element& array) {
    std::string dimensions;
    for (const auto& child : array.children) {
        if (child->Name() == "dimension") {
            AppendItem(dimensions, ", ", Bounds(context, *child));
        }
    }
    if (dimensions.empty()) {
        context.Warn(array, Say("<{}> has no dimension", array.Name()));
    }
    return "ARRAY [" + dimensions + "] OF " + BaseType(context, array);
}

std::string SubrangeText(Context& context, const Element& subrange) {
    const Element* range = subrange.Child("range");
    if (!range) {
        context.Warn(subrange, Say("<{}> has no range", subrange.Name()));
    }
    const std::string bounds = range ? " (" + Bounds(context, *range) + ")" : std::string();
    return BaseType(context, subrange) + bounds;
}

std::string EnumerationText(Context& context, const Element& enumeration) {
    std::string names;
    const Element* values = enumeration.Child("values");
    for (const auto& value : values ? values->children : enumeration.children) {
        if (value->Name() != "value") {
            continue;
        }
        std::string item(Required(context, *value, "name"));
        const std::string_view number = Trim(value->Attribute("value"));
        AppendItem(names, ", ", number.empty() ? item : item.append(" := ").append(number));
    }
    const std::string base =
        enumeration.Child("baseType") ? BaseType(context, enumeration) + " " : std::string();
    return base + "(" + names + ")";
}

std::string StructureText(Context& context, const Element& structure) {
    std::string text = "STRUCT ";
    for (const auto& member : structure.children) {
        const Element* type = member->Child("type");
        if (member->Name() != "variable" || !type) {
            continue;
        }
        text.append(Required(context, *member, "name")) += " : " + TypeText(context, *type);
        if (const Element* value = member->Child("initialValue")) {
            text += " := " + InitialValueText(context, *value);
        }
        text += "; ";
    }
    return text + "END_STRUCT";
}

}  // namespace

std::string TypeText(Context& context, const Element& holder) {
    const Element* type = holder.FirstElement();
    if (!type || type->Name() == "addData") {
        context.Warn(holder, Say("<{}> holds no type", holder.Name()));
        return {};
    }
    const std::string_view name = type->Name();
    if (name == "derived") {
        return std::string(Required(context, *type, "name"));
    }
    if (name == "string" || name == "STRING") {
        return StringText("STRING", *type);
    }
    if (name == "wstring" || name == "WSTRING") {
        return StringText("WSTRING", *type);
    }
    if (name == "array") {
        return ArrayText(context, *type);
    }
    if (name == "subrangeSigned" || name == "subrangeUnsigned") {
        return SubrangeText(context, *type);
    }
    if (name == "enum") {
        return EnumerationText(context, *type);
    }
    if (name == "struct") {
        return StructureText(context, *type);
    }
    if (name == "pointer") {
        return "REF_TO " + BaseType(context, *type);
    }
    // An elementary or generic type, or an unknown one, which has been reported.
    return std::string(name);
}

}  // namespace lq::host::plcopen
