#include "host/check/run.h"

#include <algorithm>
#include <set>

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

}  // namespace

Run::Run(const Project& checkedProject, const CheckOptions& checkOptions, Store& store)
    : project(checkedProject),
      options(checkOptions),
      types(checkedProject),
      globals(checkedProject),
      graph(checkedProject, types, globals),
      store_(store) {
    for (const Check* check : AllChecks()) {
        byCode_.resize(std::max<std::size_t>(byCode_.size(), check->code + std::size_t{1}));
        byCode_[check->code] = check;
    }
    FindOwners();
    ReadTypes();
    isOpen_ = types.HasUnknown() || graph.HasUnknownCalls() || !KnowsPrograms();
}

// Those that the graph has no edge for.
void Run::ReadTypes() {
    for (const Declaration& declaration : project.Declarations()) {
        if (declaration.owner != ID()) {
            types.Named(declaration.type);
        }
    }
    for (const Pou& pou : project.Pous()) {
        if (*pou.resultType) {
            types.Named(pou.resultType);
        }
    }
}

bool Run::KnowsPrograms() const {
    return std::ranges::all_of(project.ProgramInstances(), [this](const ProgramInstance& instance) {
        return project.FindAnyPou(instance.typeName) != ID();
    });
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

// Without what was not read nothing is right: that can be made less by nobody.
Severity Run::SeverityOf(uint16_t code) const {
    if (code == kUnreadable) {
        return Severity::kError;
    }
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
    Finding& finding = Add(code, severity, object);
    finding.OwnTexts().message = std::move(message);
    return finding;
}

Finding& Run::ReportName(uint16_t code, Severity severity, ID object, const char* format) {
    Finding& finding = Add(code, severity, object);
    finding.format = format;
    return finding;
}

Finding& Run::Add(uint16_t code, Severity severity, ID object) {
    if (!Wants(code)) {
        return nowhere_ = {};
    }
    return store_.Add(*byCode_[code], options.severity.contains(code) ? SeverityOf(code) : severity,
                      object);
}

void Run::Relate(Finding& finding, ID object, std::string message) const {
    ObjectPlace place = PlaceOf(project, object);
    finding.OwnTexts().related.push_back(
        {std::move(place.file), place.line, place.column, std::move(message)});
}

void Run::Relate(Finding& finding, uint32_t line, uint32_t column, std::string message) const {
    finding.OwnTexts().related.push_back({{}, line, column, std::move(message)});
}

void Run::TakeReports() {
    for (const host::Report& report : *options.reports) {
        const uint16_t code = CheckOf(report).code;
        if (!Wants(code) || byCode_[code]->run) {
            continue;  // a check of the model says it
        }
        Finding& finding = Report(code, {}, report.message);
        finding.SetName({}, report.path);
        finding.file = store_.NumberOf(report.file);
        finding.line = report.line;
        finding.column = report.column;
        finding.more = report.more;
    }
}

std::size_t Run::Finish() {
    if (options.reports) {
        TakeReports();
    }
    Suppressions suppressions(*this, store_);
    std::size_t suppressed = 0;
    const std::size_t count = store_.All().size();
    for (Finding& finding : store_.All()) {
        if (suppressions.Cover(finding)) {
            ++suppressed;
        } else {
            store_.Keep(finding);
        }
    }
    suppressions.ReportUnused(*this);
    for (std::size_t i = count; i < store_.All().size(); ++i) {
        store_.Keep(store_.All()[i]);
    }
    store_.Arrange();
    return suppressed;
}

}  // namespace check

Findings::Findings(const Project& project, const CheckOptions& options)
    : store_(std::make_unique<check::Store>(project)) {
    check::Run run(project, options, *store_);
    std::set<void (*)(check::Run&)> done;
    for (const Check* check : AllChecks()) {
        if (check->run && run.Wants(check->code) && done.insert(check->run).second) {
            check->run(run);
        }
    }
    suppressed_ = run.Finish();
}

Findings::~Findings() = default;

std::size_t Findings::Count() const noexcept {
    return store_->Kept();
}

void Findings::ForEach(const TakeFinding& take) const {
    store_->ForEach(Severity::kOff, take);
}

void Findings::ForEach(Severity severity, const TakeFinding& take) const {
    store_->ForEach(severity, take);
}

CheckCounts RunChecks(const Project& project, const CheckOptions& options,
                      const TakeFinding& take) {
    const Findings findings(project, options);
    findings.ForEach(take);
    return {findings.Suppressed()};
}

}  // namespace lq::host
