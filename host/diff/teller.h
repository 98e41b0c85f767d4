// What the parts of a comparison share: the two projects, and who is told what differs.
#pragma once

#include <string>
#include <vector>

#include "host/diff/pairing.h"
#include "host/diff/same_text.h"
#include "lq_data/host/diff/diff.h"

namespace lq::host::diff {

struct Teller {
    // What two objects of one name are, either of which may be none: added, removed or changed.
    Difference About(Subject subject, std::u16string_view path, std::u16string_view name, ID inOld,
                     ID inNew) const;
    // Their name is that of the new one, else that of the old one.
    Difference About(Subject subject, std::u16string_view path, ID inOld, ID inNew) const;
    Text NameOf(ID inOld, ID inNew) const;

    // Of what was added or removed, as what it was declared.
    void TellWhole(Difference about, std::u16string_view text) const;
    // Of what is on both sides, one of its aspects, if it has changed.
    void TellIfChanged(Difference about, Aspect aspect, Text inOld, Text inNew,
                       bool (*isSame)(Text, Text) = IsSameCode) const;

    static ID At(const IdList& objects, uint32_t item) {
        return item == kNone ? ID() : objects[item];
    }
    static std::vector<Key> KeysOf(const Project& project, const IdList& objects);

    const Project& before;
    const Project& after;
    const TakeDifference& take;
};

// The objects of two lists, paired by their names.
struct Pairs {
    Pairs(const Teller& teller, IdList before, IdList after);

    // Calls take(inOld, inNew); either may be none.
    template <typename Take>
    void ForEach(Take take) const {
        pairing.Walk([&](uint32_t oldItem, uint32_t newItem) {
            take(Teller::At(inOld, oldItem), Teller::At(inNew, newItem));
        });
    }

    IdList inOld;
    IdList inNew;
    Pairing pairing;
};

// "Configuration.Resource", or the name.
std::u16string PathOf(const Project& project, ID holder);

// The variables of a unit or configuration, the members of a type.
void CompareDeclarations(const Teller& teller, Subject subject, std::u16string_view path,
                         const IdList& inOld, const IdList& inNew);
// A pair of them.
void CompareDeclaration(const Teller& teller, const Difference& about);

// Of two bodies in one language.
void CompareCode(const Teller& teller, Difference about, const Body& inOld, const Body& inNew);
void CompareBodies(const Teller& teller, std::u16string_view path, ID oldUnit, ID newUnit);

}  // namespace lq::host::diff
