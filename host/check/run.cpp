#include "host/check/run.h"

#include <algorithm>
#include <set>
#include <tuple>

#include "host/check/suppression.h"
#include "host/model/report_codes.h"

namespace lq::host {

namespace check {

namespace {

struct ObjectPlace {
    std::string file;
    uint32_t line = 0;
    uint32_t column = 0;
};

ObjectPlace PlaceOf(const Project& project, ID object) {
    ObjectPlace place;
    if (const SourceFile* file = project.FileOf(object)) {
        place.file = Utf8(file->name);
        place.line = project.LineOf(object);
        place.column = project.ColumnOf(object);
    }
    return place;
}

// The same for the same text, on every machine.
std::string Digest(std::string_view text) {
    uint64_t hash = 0xCBF29CE484222325;
    for (const char c : text) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    }
    std::string digits(16, '0');
    for (std::size_t i = digits.size(); i-- > 0; hash >>= 4) {
        digits[i] = "0123456789abcdef"[hash & 15];
    }
    return digits;
}

}  // namespace

Run::Run(const Project& checkedProject, const CheckOptions& checkOptions)
    : project(checkedProject),
      options(checkOptions),
      types(checkedProject),
      graph(checkedProject, types) {
    for (const Check* check : AllChecks()) {
        byCode_.resize(std::max<std::size_t>(byCode_.size(), check->code + std::size_t{1}));
        byCode_[check->code] = check;
    }
    FindOwners();
    isOpen_ = types.HasUnknown() || graph.HasUnknownCalls();
}

void Run::FindOwners() {
    const auto enter = [this](Sort sort, const auto& records) {
        for (uint32_t i = 0; i < records.size(); ++i) {
            const ID id = MakeId(sort, i);
            if (IsOwn(id)) {
                owners_.push_back(id);
            }
        }
    };
    enter(Sort::kDataType, project.DataTypes());
    enter(Sort::kPou, project.Pous());
    enter(Sort::kVariableList, project.VariableLists());
    for (uint32_t i = 0; i < project.Resources().size(); ++i) {
        hasResource_ = hasResource_ || IsOwn(MakeId(Sort::kResource, i));
    }
}

bool Run::IsOwn(ID object) const {
    const Pou* pou = project.GetPou(object);
    const SourceFile* file = project.FileOf(object);
    return !(pou && pou->isStandard) && (options.checkLibraries || !file || !file->isLibrary);
}

Severity Run::SeverityOf(uint16_t code) const {
    const auto found = options.severity.find(code);
    const Check* check = code < byCode_.size() ? byCode_[code] : nullptr;
    return found != options.severity.end() ? found->second
           : check                         ? check->severity
                                           : Severity::kOff;
}

Finding& Run::Report(uint16_t code, ID object, std::string message) {
    return Report(code, SeverityOf(code), object, std::move(message));
}

Finding& Run::Report(uint16_t code, Severity severity, ID object, std::string message) {
    if (!Wants(code)) {
        nowhere_ = {};
        return nowhere_;
    }
    Finding& finding = entries_.emplace_back().finding;
    finding.check = byCode_[code];
    finding.severity = options.severity.contains(code) ? SeverityOf(code) : severity;
    finding.object = object;
    finding.unit = PathOf(object);
    finding.name = Utf8(project.NameOf(object));
    finding.message = std::move(message);
    ObjectPlace place = PlaceOf(project, object);
    finding.file = std::move(place.file);
    finding.line = place.line;
    finding.column = place.column;
    return finding;
}

void Run::Relate(Finding& finding, ID object, std::string message) const {
    ObjectPlace place = PlaceOf(project, object);
    finding.related.push_back(
        {std::move(place.file), place.line, place.column, std::move(message)});
}

ID Run::HolderOf(ID object) const {
    switch (SortOf(object)) {
        case Sort::kDeclaration:
            return project.GetDeclaration(object)->owner;
        case Sort::kVariableList:
            return project.GetVariableList(object)->parent;
        case Sort::kResource:
            return project.GetResource(object)->configuration;
        case Sort::kTask:
            return project.GetTask(object)->resource;
        case Sort::kProgramInstance:
            return project.GetProgramInstance(object)->parent;
        default:
            return {};
    }
}

std::string Run::PathOf(ID object) const {
    ID holder = HolderOf(object);
    if (SortOf(holder) == Sort::kVariableList || SortOf(holder) == Sort::kTask) {
        holder = HolderOf(holder);
    }
    if (const Resource* resource = project.GetResource(holder)) {
        const std::string configuration = Utf8(project.NameOf(resource->configuration));
        const std::string name = Utf8(resource->name);
        return configuration + (configuration.empty() || name.empty() ? "" : ".") + name;
    }
    return Utf8(project.NameOf(holder));
}

std::size_t Run::RankOf(const std::string& file) {
    return files_.try_emplace(file, files_.size()).first->second;
}

void Run::TakeReports() {
    for (const host::Report& report : *options.reports) {
        uint16_t code = report.code;
        if (code == 0) {  // of a reader that has no codes
            code = report.error ? kUnreadable : kNotRead;
        }
        if (!Wants(code) || byCode_[code]->run) {
            continue;  // a check of the model says it
        }
        Finding& finding = Report(code, {}, report.message);
        finding.file = report.file;
        finding.line = report.line;
        finding.column = report.column;
        finding.name = report.path;
        finding.more = report.more;
    }
}

CheckCounts Run::Deliver(const TakeFinding& take) {
    if (options.reports) {
        TakeReports();
    }
    CheckCounts counts;
    Suppressions suppressions(*this);
    std::vector<const Entry*> left;
    const auto enter = [&](Entry& entry) {
        entry.file = RankOf(entry.finding.file);
        left.push_back(&entry);
    };
    for (Entry& entry : entries_) {
        if (suppressions.Cover(entry.finding)) {
            ++counts.suppressed;
        } else {
            enter(entry);
        }
    }
    const std::size_t count = entries_.size();
    suppressions.ReportUnused(*this);
    std::for_each(entries_.begin() + static_cast<std::ptrdiff_t>(count), entries_.end(), enter);
    std::ranges::stable_sort(left, [](const Entry* a, const Entry* b) {
        const auto key = [](const Entry& e) {
            return std::tuple(e.file, e.finding.line, e.finding.column, e.finding.check->code);
        };
        return key(*a) < key(*b);
    });
    std::unordered_map<std::string, unsigned> met;
    for (const Entry* entry : left) {
        Finding finding = entry->finding;
        const std::string key =
            CodeText(finding.check->code) + '\n' + finding.unit + '\n' + finding.name;
        const unsigned earlier = met[key]++;
        finding.fingerprint = Digest(earlier == 0 ? key : key + '\n' + std::to_string(earlier));
        take(finding);
    }
    return counts;
}

}  // namespace check

CheckCounts RunChecks(const Project& project, const CheckOptions& options,
                      const TakeFinding& take) {
    check::Run run(project, options);
    std::set<void (*)(check::Run&)> done;
    for (const Check* check : AllChecks()) {
        if (check->run && run.Wants(check->code) && done.insert(check->run).second) {
            check->run(run);
        }
    }
    return run.Deliver(take);
}

}  // namespace lq::host
