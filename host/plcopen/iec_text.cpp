// Types and values as IEC text.

#include <utility>

#include "host/plcopen/parts.h"
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

// "STRING[80]" as the model spells it; what namespaces hold is read without them.
std::string NamedType(std::string_view name) {
    name = name.substr(name.rfind('\\') + 1);
    std::string text(name);
    const std::size_t open = text.find('[');
    if (text.ends_with(']') && (text.starts_with("STRING[") || text.starts_with("WSTRING["))) {
        text[open] = '(';
        text.back() = ')';
    }
    return text;
}

std::string BaseType(Context& context, const Element& element) {
    const Element* base = element.Child("baseType");
    if (!base) {
        context.Warn(element, kMissingElement, Say("<{}> has no base type", element.Name()));
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
        const Element* const range =
            child->Name() == "iec:DimensionSpec" ? child->Child("iec:IndexRange") : child;
        if (range && (child != range || child->Name() == "dimension")) {
            AppendItem(dimensions, ", ", Bounds(context, *range));
        }
    }
    if (dimensions.empty()) {
        context.Warn(array, kMissingElement, Say("<{}> has no dimension", array.Name()));
    }
    return "ARRAY [" + dimensions + "] OF " + BaseType(context, array);
}

std::string SubrangeText(Context& context, const Element& subrange) {
    const Element* range = subrange.Child("range");
    if (!range) {
        context.Warn(subrange, kMissingElement, Say("<{}> has no range", subrange.Name()));
    }
    const std::string bounds = range ? " (" + Bounds(context, *range) + ")" : std::string();
    return BaseType(context, subrange) + bounds;
}

std::string EnumerationText(Context& context, const Element& enumeration) {
    std::string names;
    const Element* values = enumeration.Child("values");
    for (const auto& value : values ? values->children : enumeration.children) {
        if (value->Name() != "value" && value->Name() != "iec:Enumerator") {
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

std::string ValueText(Context& context, const Element& holder);

std::string ElementsText(Context& context, const Element& array) {
    std::string text;
    const char* separator = "";
    for (const auto& value : array.children) {
        if (value->Name() != "value") {
            continue;
        }
        text += std::exchange(separator, ", ");
        const std::string_view count = Trim(value->Attribute("repetitionValue"));
        const std::string element = ValueText(context, *value);
        text += count.empty() || count == "1" ? element
                                              : std::string(count).append("(" + element + ")");
    }
    return text;
}

std::string MembersText(Context& context, const Element& structure) {
    std::string text;
    const char* separator = "";
    for (const auto& value : structure.children) {
        if (value->Name() != "value") {
            continue;
        }
        text += std::exchange(separator, ", ");
        text.append(Required(context, *value, "member")) += " := " + ValueText(context, *value);
    }
    return text;
}

// A value inside another one.
std::string ValueText(Context& context, const Element& holder) {
    const Element* value = holder.FirstElement();
    if (value && value->Name() == "structValue") {
        return "(" + MembersText(context, *value) + ")";
    }
    return InitialValueText(context, holder);
}

}  // namespace

std::string TypeText(Context& context, const Element& holder) {
    const Element* type = holder.FirstElement();
    if (!type && holder.parent->Name() == "iec:UserDefinedTypeSpec") {
        return NamedType(Prose(holder));
    }
    if (!type || type->Name() == "addData") {
        context.Warn(holder, kMissingElement, Say("<{}> holds no type", holder.Name()));
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
    if (name == "iec:TypeName") {
        return NamedType(Prose(*type));
    }
    if (name == "iec:InstantlyDefinedType") {
        return SpecificationText(context, *type);
    }
    if (name == "pointer") {
        return "REF_TO " + BaseType(context, *type);
    }
    // An elementary or generic type, or an unknown one, which has been reported.
    return std::string(name);
}

std::string SpecificationText(Context& context, const Element& specification) {
    const std::string_view type = XsiTypeOf(specification);
    if (type == "ArrayTypeSpec") {
        return ArrayText(context, specification);
    }
    if (type == "EnumTypeSpec" || type == "EnumTypeWithNamedValueSpec") {
        return EnumerationText(context, specification);
    }
    context.Warn(specification, kNotKept, Say("the type specification '{}' is not read", type));
    return {};
}

std::string InitialValueText(Context& context, const Element& holder) {
    const Element* value = holder.FirstElement();
    if (!value) {
        context.Warn(holder, kMissingElement, Say("<{}> holds no value", holder.Name()));
        return {};
    }
    const std::string_view name = value->Name();
    if (name == "arrayValue") {
        return "[" + ElementsText(context, *value) + "]";
    }
    if (name == "structValue") {
        return MembersText(context, *value);
    }
    return std::string(Trim(value->Attribute("value")));
}

}  // namespace lq::host::plcopen
