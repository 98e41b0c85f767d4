// Who calls whom. A POU calls the POUs that its bodies name and the function blocks that it
// declares instances of, alone or as an array's elements.

#include <new>
#include <string_view>
#include <vector>

#include "lq_data/detail/chars.h"
#include "lq_data/host/model/project.h"

namespace lq::host {

namespace {

// The last word of a type text: the type itself, or the elements' type.
std::u16string_view LastWord(std::u16string_view type) {
    const std::size_t blank = type.rfind(u' ');
    return blank == type.npos ? type : type.substr(blank + 1);
}

class CallSearch {
  public:
    explicit CallSearch(const Project& project)
        : project_(project), seen_(project.Pous().size()), hiddenIn_(project.Pous().size()) {}

    // Whether a chain of at least one call leads from `caller` to `callee`.
    bool Reaches(ID caller, ID callee) {
        pending_.push_back(caller);
        while (!pending_.empty()) {
            const ID id = pending_.back();
            pending_.pop_back();
            EnterCallees(id);
            if (seen_[IndexOf(callee)]) {
                return true;
            }
        }
        return false;
    }

  private:
    void EnterCallees(ID caller) {
        const Pou& pou = *project_.GetPou(caller);
        for (const ID id : pou.declarations) {
            const Declaration& declaration = *project_.GetDeclaration(id);
            // A variable hides the POU of its name; one of the caller's own name is its result.
            const ID hidden = project_.FindPou(declaration.name);
            if (hidden != ID() && hidden != caller) {
                hiddenIn_[IndexOf(hidden)] = caller;
            }
            const ID type = project_.FindPou(LastWord(declaration.type));
            if (type != ID() && project_.GetPou(type)->kind == LQ_KIND_FUNCTION_BLOCK) {
                Enter(type);
            }
        }
        for (const Text name : pou.calls) {
            const ID callee = project_.FindPou(name);
            if (callee != ID() && hiddenIn_[IndexOf(callee)] != caller) {
                Enter(callee);
            }
        }
    }

    void Enter(ID pou) {
        if (!seen_[IndexOf(pou)]) {
            seen_[IndexOf(pou)] = true;
            pending_.push_back(pou);
        }
    }

    const Project& project_;
    std::vector<bool> seen_;
    IdList hiddenIn_;  // by POU, the last caller that has a variable of its name
    IdList pending_;
};

}  // namespace

}  // namespace lq::host

// Without memory for the search the answer is no.
int CheckIsRecursiveCallEx(const char16_t* caller, const char16_t* callee, int) {
    const lq::host::Project* project = lq::host::GetProject();
    if (!project || !caller || !callee) {
        return 0;
    }
    const ID from = project->FindPou(caller);
    const ID to = project->FindPou(callee);
    if (from == ID() || to == ID()) {
        return 0;
    }
    try {
        return lq::host::CallSearch(*project).Reaches(from, to) ? 1 : 0;
    } catch (const std::bad_alloc&) {
        lq::ReportShortage();
        return 0;
    }
}
