#include "tools/lq/generated_text.h"

#include <algorithm>
#include <set>
#include <string>

#include "lq_data/host/model/project.h"
#include "tools/lq/input.h"
#include "tools/lq/project_input.h"

namespace lq::tool {

namespace {

using Names = std::set<std::u16string>;

// Units and types, in small letters.
Names NamesOf(const SourceFile& source, const ProjectFiles& files) {
    host::Project project;
    std::vector<host::Report> reports;
    try {
        ReadFile(source.path, files.encoding, project, reports);
    } catch (const CommandError&) {  // it is told when the file is read
    }
    Names names;
    const auto add = [&names](host::Text name) {
        std::u16string lower(name);
        std::ranges::transform(lower, lower.begin(), [](char16_t c) {
            return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
        });
        names.insert(std::move(lower));
    };
    for (const ID pou : project.Below(project.PouPool())) {
        add(project.NameOf(pou));
    }
    for (const host::DataType& type : project.DataTypes()) {
        add(type.name);
    }
    host::SetProject(nullptr);
    return names;
}

InputKind KindOfFile(const SourceFile& source) {
    try {
        InputBuffer bytes(source.path, kMaxProject);
        return KindOf(bytes.Peek());
    } catch (const CommandError&) {
        return InputKind::kImage;
    }
}

}  // namespace

std::vector<std::string> OriginsOf(const std::vector<SourceFile>& sources,
                                   const ProjectFiles& files) {
    std::vector<std::string> origins(sources.size());
    std::vector<InputKind> kinds;
    kinds.reserve(sources.size());
    for (const SourceFile& source : sources) {
        // Standard input is read once only.
        kinds.push_back(source.path == "-" || sources.size() == 1 ? InputKind::kImage
                                                                  : KindOfFile(source));
    }
    if (std::ranges::find(kinds, InputKind::kText) == kinds.end()) {
        return origins;
    }
    std::vector<std::pair<Names, std::string>> documents;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        if (kinds[i] == InputKind::kXml) {
            documents.emplace_back(NamesOf(sources[i], files), sources[i].path);
        }
    }
    for (std::size_t i = 0; i < sources.size() && !documents.empty(); ++i) {
        const Names names = kinds[i] == InputKind::kText ? NamesOf(sources[i], files) : Names();
        for (const auto& [others, path] : documents) {
            const bool isSame =
                !names.empty() && !others.empty() &&
                (std::ranges::includes(others, names) || std::ranges::includes(names, others));
            origins[i] = isSame ? path : origins[i];
        }
    }
    return origins;
}

}  // namespace lq::tool
