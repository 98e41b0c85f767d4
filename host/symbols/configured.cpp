#include "host/symbols/configured.h"

#include "host/symbols/address.h"
#include "lq_data/detail/chars.h"

namespace lq::host::symbols {

namespace {

using std::u16string_view;

bool IsIncomplete(u16string_view address) {
    return address.starts_with(u'%') && address.ends_with(u'*');
}

// In capitals and without blanks.
void AppendPath(std::u16string& to, u16string_view path) {
    for (const char16_t c : path) {
        if (!chars::IsBlank(c)) {
            to += chars::ToUpper(c);
        }
    }
}

// "RESOURCE."
void AppendResource(std::u16string& to, u16string_view name) {
    AppendPath(to, name);
    to += name.empty() ? u"" : u".";
}

// What tells a configuration's paths from another's.
std::u16string MarkOf(ID configuration) {
    const uint32_t number = configuration.GetNumber();
    return {static_cast<char16_t>(number >> 16), static_cast<char16_t>(number & 0xFFFF)};
}

}  // namespace

ID HolderOf(const Project& project, const Declaration& declaration) {
    const VariableList* list = project.GetVariableList(declaration.owner);
    return list ? list->parent : declaration.owner;
}

void ConfiguredAddresses::Read() {
    for (const Declaration& declaration : project_.Declarations()) {
        if (declaration.section.scope == Scope::kConfig && IsOneAddress(declaration.address)) {
            Enter(declaration);
        }
    }
    if (!addresses_.empty()) {
        ReadBeginnings();
    }
}

void ConfiguredAddresses::Enter(const Declaration& given) {
    const ID holder = HolderOf(project_, given);
    const Configuration* configuration = project_.GetConfiguration(holder);
    if (!configuration) {
        return;
    }
    std::u16string path;
    AppendPath(path, given.name);
    std::u16string whole;  // tools write the configuration's name, too
    AppendResource(whole, configuration->name);
    const bool isWhole = !whole.empty() && path.starts_with(whole);
    EnterPath(MarkOf(holder) + path, given.address);
    if (isWhole) {
        EnterPath(MarkOf(holder) + path.substr(whole.size()), given.address);
    }
    if (configuration->resources.size() == 1) {  // whose name may be left out
        std::u16string inner = MarkOf(holder);
        AppendResource(inner, project_.NameOf(configuration->resources.front()));
        EnterPath(inner + path, given.address);
    }
}

void ConfiguredAddresses::EnterPath(const std::u16string& path, u16string_view address) {
    const auto [entry, isNew] = addresses_.try_emplace(path, address);
    if (!isNew && CompareAddresses(entry->second, address) != 0) {
        entry->second = {};
    }
}

void ConfiguredAddresses::ReadBeginnings() {
    for (uint32_t i = 0; i < project_.Configurations().size(); ++i) {
        const ID id = MakeId(Sort::kConfiguration, i);
        const std::u16string mark = MarkOf(id);
        beginnings_[id.GetNumber()].push_back(mark);
        for (const ID resource : project_.Configurations()[i].resources) {
            const Resource& own = *project_.GetResource(resource);
            std::u16string path = mark;
            AppendResource(path, own.name);
            beginnings_[resource.GetNumber()].push_back(path);
            ReadPrograms(own.programs, path);
            for (const ID task : own.tasks) {
                ReadPrograms(project_.GetTask(task)->programs, path);
            }
        }
    }
}

void ConfiguredAddresses::ReadPrograms(const IdList& instances, const std::u16string& path) {
    for (const ID id : instances) {
        const ProgramInstance& instance = *project_.GetProgramInstance(id);
        std::u16string beginning = path;
        AppendResource(beginning, instance.name);
        const ID program = project_.FindPou(instance.typeName);
        beginnings_[program.GetNumber()].push_back(std::move(beginning));
    }
}

u16string_view ConfiguredAddresses::InPlaceOf(u16string_view address, ID holder,
                                              u16string_view name) const {
    const auto beginnings =
        IsIncomplete(address) ? beginnings_.find(holder.GetNumber()) : beginnings_.end();
    if (beginnings == beginnings_.end()) {
        return address;
    }
    u16string_view given;
    for (const std::u16string& beginning : beginnings->second) {
        std::u16string path = beginning;
        AppendPath(path, name);
        const auto entry = addresses_.find(path);
        const bool isGiven = entry != addresses_.end() && !entry->second.empty();
        if (!isGiven || (!given.empty() && CompareAddresses(given, entry->second) != 0)) {
            return address;
        }
        given = entry->second;
    }
    return given;
}

}  // namespace lq::host::symbols
