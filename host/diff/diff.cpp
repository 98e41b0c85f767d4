#include "lq_data/host/diff/diff.h"

#include <optional>
#include <string>
#include <unordered_map>

#include "host/diff/globals.h"
#include "host/diff/teller.h"
#include "host/diff/written.h"

namespace lq::host {

namespace diff {

namespace {

using std::u16string_view;

// Of a sort, what is neither a library's nor the standard's.
template <typename Record>
IdList OwnOf(const Project& project, const std::deque<Record>& records, Sort sort) {
    IdList own;
    for (uint32_t index = 0; index < records.size(); ++index) {
        const ID id = MakeId(sort, index);
        const SourceFile* file = project.FileOf(id);
        const Pou* pou = project.GetPou(id);
        if (!(file && file->isLibrary) && !(pou && pou->isStandard)) {
            own.push_back(id);
        }
    }
    return own;
}

// The one that is left on either side counts as renamed.
Pairs WithRenamed(Pairs pairs) {
    pairs.pairing.MatchLast();
    return pairs;
}

// What configurations say of variables, by the number of the configuration.
using Configured = std::unordered_map<uint32_t, IdList>;

Configured ConfiguredIn(const Project& project) {
    Configured configured;
    for (uint32_t index = 0; index < project.Declarations().size(); ++index) {
        const ID owner = project.Declarations()[index].owner;
        if (SortOf(owner) == Sort::kConfiguration) {
            configured[owner.GetNumber()].push_back(MakeId(Sort::kDeclaration, index));
        }
    }
    return configured;
}

// With what the unit says of access to its variables.
IdList DeclaredIn(const Project& project, const Pou& unit) {
    IdList declared = unit.declarations;
    for (const ID id : unit.implicit) {
        if (project.GetDeclaration(id)->section.scope == Scope::kAccess) {
            declared.push_back(id);
        }
    }
    return declared;
}

// With tasks and without.
IdList ProgramsOf(const Project& project, ID resource) {
    IdList programs;
    for (const ID task : project.Below(resource)) {
        const IdList& ofTask = project.Below(task);
        programs.insert(programs.end(), ofTask.begin(), ofTask.end());
    }
    if (const Resource* record = project.GetResource(resource)) {
        programs.insert(programs.end(), record->programs.begin(), record->programs.end());
    }
    return programs;
}

class Comparison {
  public:
    explicit Comparison(const Teller& teller)
        : teller_(teller),
          oldConfigured_(ConfiguredIn(teller.before)),
          newConfigured_(ConfiguredIn(teller.after)) {}

    void Run();

  private:
    // Of one sort, paired by name.
    template <typename Record>
    Pairs PairsOf(const std::deque<Record>& inOld, const std::deque<Record>& inNew,
                  Sort sort) const {
        return {teller_, OwnOf(teller_.before, inOld, sort), OwnOf(teller_.after, inNew, sort)};
    }
    Pairs ResourcesOf(ID oldConfiguration, ID newConfiguration) const;
    void SetScopes(const Pairs& pairs);

    void CompareType(ID inOld, ID inNew) const;
    void CompareUnit(ID inOld, ID inNew) const;
    void CompareConfiguration(ID inOld, ID inNew);
    void CompareResource(ID inOld, ID inNew) const;
    void CompareTask(u16string_view path, ID inOld, ID inNew) const;
    void CompareProgram(u16string_view path, ID inOld, ID inNew) const;

    const Teller& teller_;
    Configured oldConfigured_;
    Configured newConfigured_;
    Scopes oldScopes_;
    Scopes newScopes_;
    uint32_t lastScope_ = 0;
    std::optional<GlobalComparison> globals_;
};

Pairs Comparison::ResourcesOf(ID oldConfiguration, ID newConfiguration) const {
    return WithRenamed(
        {teller_, teller_.before.Below(oldConfiguration), teller_.after.Below(newConfiguration)});
}

void Comparison::SetScopes(const Pairs& pairs) {
    pairs.ForEach([this](ID inOld, ID inNew) {
        ++lastScope_;
        if (inOld != ID()) {
            oldScopes_.emplace(inOld.GetNumber(), lastScope_);
        }
        if (inNew != ID()) {
            newScopes_.emplace(inNew.GetNumber(), lastScope_);
        }
    });
}

void Comparison::Run() {
    const Project& before = teller_.before;
    const Project& after = teller_.after;
    const Pairs types = PairsOf(before.DataTypes(), after.DataTypes(), Sort::kDataType);
    const Pairs units = PairsOf(before.Pous(), after.Pous(), Sort::kPou);
    const Pairs configurations =
        WithRenamed(PairsOf(before.Configurations(), after.Configurations(), Sort::kConfiguration));
    oldScopes_.emplace(0, ++lastScope_);
    newScopes_.emplace(0, lastScope_);
    SetScopes(units);
    SetScopes(configurations);
    configurations.ForEach([this](ID inOld, ID inNew) { SetScopes(ResourcesOf(inOld, inNew)); });
    globals_.emplace(teller_, oldScopes_, newScopes_);

    if (*before.Name() && *after.Name()) {
        teller_.TellIfChanged({}, Aspect::kName, before.Name(), after.Name(), IsSameProse);
    }
    types.ForEach([this](ID inOld, ID inNew) { CompareType(inOld, inNew); });
    units.ForEach([this](ID inOld, ID inNew) { CompareUnit(inOld, inNew); });
    globals_->Compare(u"", {}, {});
    configurations.ForEach([this](ID inOld, ID inNew) { CompareConfiguration(inOld, inNew); });
}

// -- Types and units ------------------------------------------------------------------------------

void Comparison::CompareType(ID inOld, ID inNew) const {
    const DataType* const a = teller_.before.GetDataType(inOld);
    const DataType* const b = teller_.after.GetDataType(inNew);
    const Text path = teller_.NameOf(inOld, inNew);
    const Difference about = teller_.About(Subject::kType, path, u"", inOld, inNew);
    if (!a || !b) {
        teller_.TellWhole(about, Written(a ? *a : *b));
        return;
    }
    teller_.TellIfChanged(about, Aspect::kType, TypeText(*a), TypeText(*b));
    teller_.TellIfChanged(about, Aspect::kValue, a->initValue, b->initValue);
    teller_.TellIfChanged(about, Aspect::kComment, a->comment, b->comment, IsSameProse);
    CompareDeclarations(teller_, Subject::kMember, path, a->members, b->members);
}

void Comparison::CompareUnit(ID inOld, ID inNew) const {
    const Pou* const a = teller_.before.GetPou(inOld);
    const Pou* const b = teller_.after.GetPou(inNew);
    const Text path = teller_.NameOf(inOld, inNew);
    const Difference about = teller_.About(Subject::kUnit, path, u"", inOld, inNew);
    if (a && b) {
        const auto enableText = [](const Pou& pou) { return pou.eno ? u"EN, ENO" : u""; };
        teller_.TellIfChanged(about, Aspect::kKind, KindText(a->kind), KindText(b->kind));
        teller_.TellIfChanged(about, Aspect::kType, a->resultType, b->resultType);
        teller_.TellIfChanged(about, Aspect::kEnable, enableText(*a), enableText(*b));
        teller_.TellIfChanged(about, Aspect::kComment, a->comment, b->comment, IsSameProse);
        teller_.TellIfChanged(about, Aspect::kInterfaceComment, a->headerComment, b->headerComment,
                              IsSameProse);
        CompareDeclarations(teller_, Subject::kVariable, path, DeclaredIn(teller_.before, *a),
                            DeclaredIn(teller_.after, *b));
    } else {
        teller_.TellWhole(about, Written(a ? *a : *b));
    }
    globals_->Compare(path, inOld, inNew);
    if (a && b) {
        CompareBodies(teller_, path, inOld, inNew);
    }
}

// -- Configurations -------------------------------------------------------------------------------

void Comparison::CompareConfiguration(ID inOld, ID inNew) {
    const Configuration* const a = teller_.before.GetConfiguration(inOld);
    const Configuration* const b = teller_.after.GetConfiguration(inNew);
    const Text path = teller_.NameOf(inOld, inNew);
    const Difference about = teller_.About(Subject::kConfiguration, path, u"", inOld, inNew);
    if (a && b) {
        teller_.TellIfChanged(about, Aspect::kName, a->name, b->name);
        teller_.TellIfChanged(about, Aspect::kComment, a->comment, b->comment, IsSameProse);
    } else {
        teller_.TellWhole(about, u"");
    }
    globals_->Compare(path, inOld, inNew);
    CompareDeclarations(teller_, Subject::kVariable, path, oldConfigured_[inOld.GetNumber()],
                        newConfigured_[inNew.GetNumber()]);
    ResourcesOf(inOld, inNew).ForEach([this](ID oldResource, ID newResource) {
        CompareResource(oldResource, newResource);
    });
}

void Comparison::CompareResource(ID inOld, ID inNew) const {
    const Resource* const a = teller_.before.GetResource(inOld);
    const Resource* const b = teller_.after.GetResource(inNew);
    const std::u16string path = b ? PathOf(teller_.after, inNew) : PathOf(teller_.before, inOld);
    const Difference about = teller_.About(Subject::kResource, path, u"", inOld, inNew);
    if (a && b) {
        teller_.TellIfChanged(about, Aspect::kName, a->name, b->name);
        teller_.TellIfChanged(about, Aspect::kComment, a->comment, b->comment, IsSameProse);
    } else {
        teller_.TellWhole(about, u"");
    }
    globals_->Compare(path, inOld, inNew);
    const Pairs tasks(teller_, teller_.before.Below(inOld), teller_.after.Below(inNew));
    tasks.ForEach([&](ID oldTask, ID newTask) { CompareTask(path, oldTask, newTask); });
    const Pairs programs(teller_, ProgramsOf(teller_.before, inOld),
                         ProgramsOf(teller_.after, inNew));
    programs.ForEach([&](ID oldOne, ID newOne) { CompareProgram(path, oldOne, newOne); });
}

void Comparison::CompareTask(u16string_view path, ID inOld, ID inNew) const {
    const Task* const a = teller_.before.GetTask(inOld);
    const Task* const b = teller_.after.GetTask(inNew);
    const Difference about = teller_.About(Subject::kTask, path, inOld, inNew);
    if (!a || !b) {
        teller_.TellWhole(about, Written(a ? *a : *b));
        return;
    }
    teller_.TellIfChanged(about, Aspect::kPriority, a->priority, b->priority);
    teller_.TellIfChanged(about, Aspect::kInterval, a->interval, b->interval);
    teller_.TellIfChanged(about, Aspect::kEvent, a->event, b->event);
    teller_.TellIfChanged(about, Aspect::kComment, a->comment, b->comment, IsSameProse);
}

void Comparison::CompareProgram(u16string_view path, ID inOld, ID inNew) const {
    const ProgramInstance* const a = teller_.before.GetProgramInstance(inOld);
    const ProgramInstance* const b = teller_.after.GetProgramInstance(inNew);
    const Difference about = teller_.About(Subject::kProgram, path, inOld, inNew);
    if (!a || !b) {
        teller_.TellWhole(about, Written(a ? teller_.before : teller_.after, a ? *a : *b));
        return;
    }
    teller_.TellIfChanged(about, Aspect::kType, a->typeName, b->typeName);
    teller_.TellIfChanged(about, Aspect::kTask, TaskText(teller_.before, *a),
                          TaskText(teller_.after, *b));
    teller_.TellIfChanged(about, Aspect::kComment, a->comment, b->comment, IsSameProse);
}

}  // namespace

}  // namespace diff

void ForEachDifference(const Project& before, const Project& after, const TakeDifference& take) {
    const diff::Teller teller{before, after, take};
    diff::Comparison(teller).Run();
}

}  // namespace lq::host
