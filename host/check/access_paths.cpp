// The paths of VAR_ACCESS and VAR_CONFIG: where they lead.

#include "host/check/checks.h"
#include "host/check/run.h"

namespace lq::host::check {

namespace {

using Kind = TypeInfo::Kind;

// The name in front of the first point, without the indexes behind it; what it is of goes from
// `path`, with the point.
u16string_view TakeStep(u16string_view& path, bool& isIndexed) {
    const std::size_t point = FindOutside(path, u".");
    const u16string_view step = Trim(path.substr(0, point));
    path = Trim(path.substr(std::min(point + 1, path.size())));
    const std::size_t bracket = std::min(step.find(u'['), step.size());
    isIndexed = bracket < step.size();
    return Trim(step.substr(0, bracket));
}

class AccessPaths {
  public:
    explicit AccessPaths(Run& run) : run_(run) {}

    void Take(ID id, const Declaration& access) {
        whole_ = access.section.scope == Scope::kConfig ? access.name : access.comment2;
        u16string_view path = whole_;
        if (path.empty()) {
            return;  // the reader says so
        }
        bool isIndexed = false;
        ID at = access.owner;
        while (!path.empty() && path.front() != u'%') {
            const u16string_view name = TakeStep(path, isIndexed);
            const ID next = at == access.owner ? First(at, name) : Below(at, name);
            if (next == ID()) {
                Tell(id, access, at, name);
                return;
            }
            at = next;
            if (const ProgramInstance* instance = run_.project.GetProgramInstance(at)) {
                at = run_.project.FindPou(instance->typeName);
            } else if (run_.project.GetDeclaration(at)) {
                at = path.empty() ? at : Holder(at, isIndexed);
            }
            if (at == ID()) {
                return;  // of a type that is not known, or has no names
            }
            if (run_.project.GetDeclaration(at) && !path.empty()) {
                break;  // an elementary variable
            }
        }
        const bool isBit = path.starts_with(u'%') || (!path.empty() && chars::IsDigit(path[0]));
        const bool isVariable = run_.project.GetDeclaration(at) ? path.empty() || isBit : isBit;
        if (!isVariable) {
            run_.Report(5012, id, Say("'{}' leads to no variable", Utf8(whole_)));
        }
    }

  private:
    // What a path begins with.
    ID First(ID owner, u16string_view name) {
        if (SortOf(owner) == Sort::kPou) {
            return Below(owner, name);
        }
        const Configuration* configuration = run_.project.GetConfiguration(owner);
        for (const ID resource : configuration ? configuration->resources : IdList()) {
            if (EqualNames(run_.project.NameOf(resource), name)) {
                return resource;
            }
        }
        if (const ID global = GlobalOf(owner, name); global != ID()) {
            return global;
        }
        if (EqualNames(run_.project.NameOf(owner), name)) {
            return owner;  // tools write the whole path
        }
        // The name of a configuration's only resource may be left out.
        return configuration && configuration->resources.size() == 1
                   ? Below(configuration->resources.front(), name)
                   : ID();
    }

    ID Below(ID at, u16string_view name) {
        const Resource* resource = run_.project.GetResource(at);
        if (!resource) {
            return run_.types.Members(at).Find(name);
        }
        const auto isIt = [&](ID id) { return EqualNames(run_.project.NameOf(id), name); };
        for (const ID task : resource->tasks) {
            const IdList& programs = run_.project.GetTask(task)->programs;
            if (const auto it = std::ranges::find_if(programs, isIt); it != programs.end()) {
                return *it;
            }
        }
        const auto it = std::ranges::find_if(resource->programs, isIt);
        return it != resource->programs.end() ? *it : GlobalOf(at, name);
    }

    // A global of one configuration or resource.
    ID GlobalOf(ID parent, u16string_view name) {
        if (globals_.empty()) {
            for (const VariableList& list : run_.project.VariableLists()) {
                NameTable& names =
                    globals_.try_emplace(list.parent.GetNumber(), run_.project).first->second;
                for (const ID id : list.declarations) {
                    names.Add(id);
                }
            }
        }
        const auto names = globals_.find(parent.GetNumber());
        return names == globals_.end() ? ID() : names->second.Find(name);
    }

    // The structure or block in which the next name stands, or the declaration where nothing can;
    // null where that is not known.
    ID Holder(ID declaration, bool isIndexed) {
        const TypeInfo& type = run_.types.Resolved(run_.project.GetDeclaration(declaration)->type);
        const TypeInfo& held = isIndexed ? run_.types.Innermost(type) : type;
        return held.kind == Kind::kStructure || held.kind == Kind::kBlock ? held.object
               : held.kind == Kind::kElementary                           ? declaration
                                                                          : ID();
    }

    void Tell(ID id, const Declaration& access, ID at, u16string_view name) {
        // A global of a file that is missing, and what a standard block has beyond the standard.
        const bool isOpen = at == access.owner || SortOf(at) == Sort::kResource;
        const Pou* pou = run_.project.GetPou(at);
        if (pou && pou->isStandard) {
            return;
        }
        run_.Report(5012, isOpen ? run_.OpenSeverity() : run_.SeverityOf(5012), id,
                    Say("nothing is called '{}' in '{}', where '{}' leads", Utf8(name),
                        Utf8(run_.project.NameOf(at)), Utf8(whole_)));
    }

    Run& run_;
    u16string_view whole_;                             // the path at hand
    std::unordered_map<uint32_t, NameTable> globals_;  // by what their lists are in
};

void CheckAccessPaths(Run& run) {
    AccessPaths paths(run);
    for (uint32_t i = 0; i < run.project.Declarations().size(); ++i) {
        const ID id = MakeId(Sort::kDeclaration, i);
        const Declaration& declaration = run.project.Declarations()[i];
        const Scope scope = declaration.section.scope;
        if ((scope == Scope::kAccess || scope == Scope::kConfig) && declaration.owner != ID() &&
            run.IsOwn(id)) {
            paths.Take(id, declaration);
        }
    }
}

constexpr Check kRows[] = {
    {5012, "bad-access-path", Severity::kError,
     Message("The paths of VAR_ACCESS and VAR_CONFIG lead to variables: over a resource, a program "
             "instance, instances and members"),
     Message("What asks for the variable from outside gets none, and a value or address is lost"),
     "PROGRAM Main\nVAR\n  Level : INT;\nEND_VAR\nEND_PROGRAM\nCONFIGURATION c\nRESOURCE r\n"
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;\nEND_RESOURCE\n"
     "VAR_ACCESS\n  Out : r.p.Levle : INT READ_ONLY;\nEND_VAR\nEND_CONFIGURATION",
     "PROGRAM Main\nVAR\n  Level : INT;\nEND_VAR\nEND_PROGRAM\nCONFIGURATION c\nRESOURCE r\n"
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;\nEND_RESOURCE\n"
     "VAR_ACCESS\n  Out : r.p.Level : INT READ_ONLY;\nEND_VAR\nEND_CONFIGURATION",
     CheckAccessPaths},
};

}  // namespace

Rows AccessRows() {
    return kRows;
}

}  // namespace lq::host::check
