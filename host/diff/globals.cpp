#include "host/diff/globals.h"

#include <algorithm>

#include "host/diff/written.h"
#include "lq_data/detail/chars.h"

namespace lq::host::diff {

namespace {

Range Behind(const IdList& items, uint32_t begin) {
    return {begin, static_cast<uint32_t>(items.size())};
}

std::u16string PathOfList(const Project& project, const Globals& globals,
                          const VariableList& list) {
    const std::u16string path = PathOf(project, list.parent);
    const std::u16string name(globals.NameOf(list));
    return path + (path.empty() || name.empty() ? u"" : u".") + name;
}

}  // namespace

// -- Of one project -------------------------------------------------------------------------------

Globals::Globals(const Project& project, const Scopes& scopes)
    : project_(project), scopes_(scopes) {
    IdList holders;
    std::unordered_map<uint32_t, IdList> listsOf;
    for (uint32_t index = 0; index < project.VariableLists().size(); ++index) {
        const ID holder = project.VariableLists()[index].parent;
        const SourceFile* file = project.FileOf(MakeId(Sort::kVariableList, index));
        if (!scopes.contains(holder.GetNumber()) || (file && file->isLibrary)) {
            continue;  // a library's
        }
        IdList& lists = listsOf[holder.GetNumber()];
        if (lists.empty()) {
            holders.push_back(holder);
        }
        lists.push_back(MakeId(Sort::kVariableList, index));
    }
    for (const ID holder : holders) {
        const auto firstList = static_cast<uint32_t>(lists_.size());
        const auto firstVariable = static_cast<uint32_t>(variables_.size());
        FlatIndex<Text> names;
        for (const ID id : listsOf[holder.GetNumber()]) {
            const IdList& variables = project.Below(id);
            variables_.insert(variables_.end(), variables.begin(), variables.end());
            const Text name = NameOf(*project.GetVariableList(id));
            const auto isSame = [name](Text other) { return chars::EqualNoCase(name, other); };
            if (names.AddFirst(name, HashOfName(name), isSame)) {
                lists_.push_back(id);
            }
        }
        parts_[holder.GetNumber()] = {Behind(lists_, firstList), Behind(variables_, firstVariable)};
    }
}

Globals::Part Globals::Of(ID holder) const {
    const auto part = parts_.find(holder.GetNumber());
    return part == parts_.end() ? Part() : part->second;
}

Key Globals::KeyOf(const VariableList& list) const {
    return {scopes_.at(list.parent.GetNumber()), u"", NameOf(list)};
}

std::vector<Key> Globals::KeysOfLists() const {
    std::vector<Key> keys;
    for (const ID id : lists_) {
        keys.push_back(KeyOf(*project_.GetVariableList(id)));
    }
    return keys;
}

std::vector<Key> Globals::KeysOfVariables() const {
    std::vector<Key> keys;
    for (const ID id : variables_) {
        keys.push_back(KeyOf(ListOf(id)));
        keys.back().name = project_.NameOf(id);
    }
    return keys;
}

Text Globals::NameOf(const VariableList& list) const {
    const bool isNamed = hasNames_ && !chars::EqualNoCase(list.name, project_.NameOf(list.parent));
    return isNamed ? list.name : u"";
}

bool Globals::HasNames() const {
    return std::ranges::any_of(
        lists_, [this](ID id) { return *NameOf(*project_.GetVariableList(id)) != 0; });
}

const VariableList& Globals::ListOf(ID variable) const {
    return *project_.GetVariableList(project_.GetDeclaration(variable)->owner);
}

// -- Of both --------------------------------------------------------------------------------------

GlobalComparison::GlobalComparison(const Teller& teller, const Scopes& inOld, const Scopes& inNew)
    : teller_(teller),
      oldScopes_(inOld),
      newScopes_(inNew),
      before_(teller.before, inOld),
      after_(teller.after, inNew),
      lists_(before_.Lists().size(), after_.Lists().size()),
      variables_(before_.Variables().size(), after_.Variables().size()) {
    // Not all sources can name lists.
    if (!before_.HasNames() || !after_.HasNames()) {
        before_.ForgetNames();
        after_.ForgetNames();
    }
    lists_.Match(before_.KeysOfLists(), after_.KeysOfLists());
    variables_.Match(before_.KeysOfVariables(), after_.KeysOfVariables());
    // What is left may be in another list.
    variables_.Match(Teller::KeysOf(teller.before, before_.Variables()),
                     Teller::KeysOf(teller.after, after_.Variables()));
}

void GlobalComparison::Compare(std::u16string_view path, ID oldHolder, ID newHolder) const {
    const Globals::Part inOld = before_.Of(oldHolder);
    const Globals::Part inNew = after_.Of(newHolder);
    lists_.Walk(inOld.lists, inNew.lists, [&](uint32_t oldItem, uint32_t newItem) {
        CompareList(path, Teller::At(before_.Lists(), oldItem),
                    Teller::At(after_.Lists(), newItem));
    });
    variables_.Walk(inOld.variables, inNew.variables, [&](uint32_t oldItem, uint32_t newItem) {
        CompareVariable(path, Teller::At(before_.Variables(), oldItem),
                        Teller::At(after_.Variables(), newItem));
    });
}

// A list without a name is no thing of its own.
void GlobalComparison::CompareList(std::u16string_view path, ID inOld, ID inNew) const {
    const VariableList* const a = teller_.before.GetVariableList(inOld);
    const VariableList* const b = teller_.after.GetVariableList(inNew);
    const Text name = b ? after_.NameOf(*b) : before_.NameOf(*a);
    const Difference about = teller_.About(Subject::kList, path, name, inOld, inNew);
    if (a && b) {
        teller_.TellIfChanged(about, Aspect::kComment, a->comment, b->comment, IsSameProse);
    } else if (*name) {
        teller_.TellWhole(about, u"");
    }
}

void GlobalComparison::CompareVariable(std::u16string_view path, ID inOld, ID inNew) const {
    const Difference about = teller_.About(Subject::kVariable, path, inOld, inNew);
    CompareDeclaration(teller_, about);
    if (inOld == ID() || inNew == ID()) {
        return;
    }
    const VariableList& a = before_.ListOf(inOld);
    const VariableList& b = after_.ListOf(inNew);
    if (a.parent == ID() || b.parent == ID()) {
        return;  // nobody's list may become anybody's
    }
    if (oldScopes_.at(a.parent.GetNumber()) != newScopes_.at(b.parent.GetNumber()) ||
        !chars::EqualNoCase(before_.NameOf(a), after_.NameOf(b))) {
        teller_.TellIfChanged(about, Aspect::kList, PathOfList(teller_.before, before_, a).c_str(),
                              PathOfList(teller_.after, after_, b).c_str(),
                              [](Text, Text) { return false; });
    }
}

}  // namespace lq::host::diff
