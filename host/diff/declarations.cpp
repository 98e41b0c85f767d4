// Variables and members.

#include "host/diff/teller.h"
#include "host/diff/written.h"

namespace lq::host::diff {

namespace {

// Whether a declaration's place among those before and behind it means something.
bool IsOrdered(const Declaration& declaration) {
    const Scope scope = declaration.section.scope;
    return SortOf(declaration.owner) == Sort::kDataType || scope == Scope::kInput ||
           scope == Scope::kOutput || scope == Scope::kInOut;
}

// Which of the new ones were moved, and the places of all in the order, from 1.
class Order {
  public:
    Order(const Teller& teller, const Pairs& pairs)
        : oldPlaces_(PlacesIn(teller.before, pairs.inOld)),
          newPlaces_(PlacesIn(teller.after, pairs.inNew)),
          isMoved_(pairs.inNew.size()) {
        std::vector<uint32_t> items;
        std::vector<uint32_t> places;
        for (uint32_t item = 0; item < isMoved_.size(); ++item) {
            const uint32_t partner = pairs.pairing.OldOf(item);
            if (newPlaces_[item] != 0 && partner != kNone && oldPlaces_[partner] != 0) {
                items.push_back(item);
                places.push_back(oldPlaces_[partner]);
            }
        }
        const std::vector<bool> stays = LongestRise(places);
        for (std::size_t i = 0; i < items.size(); ++i) {
            isMoved_[items[i]] = !stays[i];
        }
    }

    void TellIfMoved(const Teller& teller, Difference about, uint32_t oldItem,
                     uint32_t newItem) const {
        if (!isMoved_[newItem]) {
            return;
        }
        about.change = Change::kMoved;
        const std::u16string inOld = TextOf(oldPlaces_[oldItem]);
        const std::u16string inNew = TextOf(newPlaces_[newItem]);
        teller.TellIfChanged(about, Aspect::kPosition, inOld.c_str(), inNew.c_str(),
                             [](Text, Text) { return false; });
    }

  private:
    // 0 for what has none.
    static std::vector<uint32_t> PlacesIn(const Project& project, const IdList& declarations) {
        std::vector<uint32_t> places;
        uint32_t last = 0;
        for (const ID id : declarations) {
            places.push_back(IsOrdered(*project.GetDeclaration(id)) ? ++last : 0);
        }
        return places;
    }

    static std::u16string TextOf(uint32_t number) {
        const std::string digits = std::to_string(number);
        return {digits.begin(), digits.end()};
    }

    std::vector<uint32_t> oldPlaces_;
    std::vector<uint32_t> newPlaces_;
    std::vector<bool> isMoved_;
};

}  // namespace

void CompareDeclaration(const Teller& teller, const Difference& about) {
    const Declaration* const inOld = teller.before.GetDeclaration(about.before.object);
    const Declaration* const inNew = teller.after.GetDeclaration(about.after.object);
    if (!inOld || !inNew) {
        teller.TellWhole(about, Written(inOld ? *inOld : *inNew));
        return;
    }
    if (inOld->section != inNew->section) {
        teller.TellIfChanged(about, Aspect::kSection, WrittenSection(inOld->section).c_str(),
                             WrittenSection(inNew->section).c_str());
    }
    teller.TellIfChanged(about, Aspect::kType, inOld->type, inNew->type);
    teller.TellIfChanged(about, Aspect::kAddress, inOld->address, inNew->address);
    teller.TellIfChanged(about, Aspect::kValue, inOld->initValue, inNew->initValue);
    teller.TellIfChanged(about, Aspect::kComment, inOld->comment, inNew->comment, IsSameProse);
    teller.TellIfChanged(about, Aspect::kSecondComment, inOld->comment2, inNew->comment2,
                         IsSameProse);
}

void CompareDeclarations(const Teller& teller, Subject subject, std::u16string_view path,
                         const IdList& inOld, const IdList& inNew) {
    const Pairs pairs(teller, inOld, inNew);
    const Order order(teller, pairs);
    pairs.pairing.Walk([&](uint32_t oldItem, uint32_t newItem) {
        const Difference about =
            teller.About(subject, path, Teller::At(inOld, oldItem), Teller::At(inNew, newItem));
        CompareDeclaration(teller, about);
        if (oldItem != kNone && newItem != kNone) {
            order.TellIfMoved(teller, about, oldItem, newItem);
        }
    });
}

}  // namespace lq::host::diff
