#include "host/diff/written.h"

#include <algorithm>

#include "lq_data/detail/in_order.h"

namespace lq::host::diff {

namespace {

constexpr RowOf<Language, Text> kLanguages[] = {
    {Language::kNone, u""},   {Language::kSt, u"ST"}, {Language::kIl, u"IL"},
    {Language::kFbd, u"FBD"}, {Language::kLd, u"LD"}, {Language::kSfc, u"SFC"},
};
static_assert(AreInOrder(kLanguages, Language::kSfc));

void Append(std::u16string& text, std::u16string_view between, std::u16string_view part) {
    if (!part.empty()) {
        text.append(between).append(part);
    }
}

}  // namespace

Text KindText(LQ_OBJECT_KIND kind) {
    switch (kind) {
        case LQ_KIND_FUNCTION:
            return u"function";
        case LQ_KIND_FUNCTION_BLOCK:
            return u"function block";
        default:
            return u"program";
    }
}

Text LanguageText(Language language) {
    return kLanguages[static_cast<std::size_t>(language)].value;
}

Text ConditionText(const Mark& jump) {
    return jump.conditional ? u"conditional" : u"";
}

Text TypeText(const DataType& type) {
    return type.structure ? u"STRUCT" : type.baseType;
}

Text TaskText(const Project& project, const ProgramInstance& instance) {
    const Task* task = project.GetTask(instance.parent);
    return task ? task->name : u"";
}

std::u16string Written(const Pou& pou) {
    std::u16string text = KindText(pou.kind);
    Append(text, u" : ", pou.resultType);
    return text;
}

std::u16string Written(const DataType& type) {
    std::u16string text = TypeText(type);
    Append(text, u" := ", type.initValue);
    return text;
}

std::u16string Written(const Declaration& declaration) {
    const bool isMember = SortOf(declaration.owner) == Sort::kDataType;
    std::u16string text = isMember ? u"" : WrittenSection(declaration.section) + u" ";
    text += declaration.type;
    Append(text, u" AT ", declaration.address);
    Append(text, u" := ", declaration.initValue);
    return text;
}

std::u16string Written(const Task& task) {
    std::u16string text;
    Append(text, u", SINGLE := ", task.event);
    Append(text, u", INTERVAL := ", task.interval);
    Append(text, u", PRIORITY := ", task.priority);
    return text.substr(std::min<std::size_t>(text.size(), 2));
}

std::u16string Written(const Project& project, const ProgramInstance& instance) {
    std::u16string text;
    Append(text, u"WITH ", TaskText(project, instance));
    Append(text, text.empty() ? u"" : u" : ", instance.typeName);
    return text;
}

}  // namespace lq::host::diff
