#include <utility>

#include "host/plcopen/iec_text.h"
#include "lq_data/host/text/message.h"

namespace lq::host::plcopen {

namespace {

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

std::string InitialValueText(Context& context, const Element& holder) {
    const Element* value = holder.FirstElement();
    if (!value) {
        context.Warn(holder, Say("<{}> holds no value", holder.Name()));
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
