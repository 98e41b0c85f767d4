// Global variables, which units, configurations and resources hold in lists.
#pragma once

#include <unordered_map>

#include "host/diff/teller.h"

namespace lq::host::diff {

// The holders that are the same on both sides have one number, the others one each; by the number
// of their identifier. The null identifier holds what nothing else does.
using Scopes = std::unordered_map<uint32_t, uint32_t>;

// Those of one project.
class Globals {
  public:
    Globals(const Project& project, const Scopes& scopes);

    // What a holder has, of all lists and of all variables.
    struct Part {
        Range lists;
        Range variables;
    };
    Part Of(ID holder) const;

    // Lists of one name in one holder are one, the first of them.
    const IdList& Lists() const { return lists_; }
    const IdList& Variables() const { return variables_; }

    std::vector<Key> KeysOfLists() const;
    std::vector<Key> KeysOfVariables() const;

    // The list's name; empty for one that is called as its holder, as those without a name are.
    Text NameOf(const VariableList& list) const;
    bool HasNames() const;
    void ForgetNames() { hasNames_ = false; }
    const VariableList& ListOf(ID variable) const;

  private:
    Key KeyOf(const VariableList& list) const;

    const Project& project_;
    const Scopes& scopes_;
    bool hasNames_ = true;
    IdList lists_;
    IdList variables_;
    std::unordered_map<uint32_t, Part> parts_;  // by the number of the holder's identifier
};

class GlobalComparison {
  public:
    GlobalComparison(const Teller& teller, const Scopes& inOld, const Scopes& inNew);

    // What two holders that are the same have, or one that the other side does not have.
    void Compare(std::u16string_view path, ID oldHolder, ID newHolder) const;

  private:
    void CompareList(std::u16string_view path, ID inOld, ID inNew) const;
    void CompareVariable(std::u16string_view path, ID inOld, ID inNew) const;

    const Teller& teller_;
    const Scopes& oldScopes_;
    const Scopes& newScopes_;
    Globals before_;
    Globals after_;
    Pairing lists_;
    Pairing variables_;
};

}  // namespace lq::host::diff
