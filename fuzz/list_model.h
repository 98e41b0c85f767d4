// A plain model of a list of small numbers with its position, for the fuzz targets.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "lq_data/containers.h"

namespace lq::fuzz {

// A function for lists. A search with it finds the second element; an insertion puts the new
// element there, and when there is no second one, behind the last of an even number of elements or
// nowhere.
inline int IsSecond(FLIST* list, uint32_t position, void* element, void*, int32_t) {
    return element ? position == 2 : CardinalityOfList(list) % 2 == 0;
}

class ListModel {
  public:
    const std::vector<int>& Numbers() const { return numbers_; }
    uint32_t Count() const { return static_cast<uint32_t>(numbers_.size()); }
    uint32_t Position() const { return position_; }
    int At(uint32_t index) const { return numbers_[index - 1]; }
    void GoTo(uint32_t index) { position_ = index; }

    // The index that `code` finds, 0 for none. LC_REWIND finds none and moves the position.
    uint32_t Find(LIST_CALLBACK code, int key, uint32_t param) {
        const uint32_t found = Locate(code, key, param);
        if (found != 0 || code == LC_REWIND) {
            position_ = found;
        }
        return found;
    }

    uint32_t Insert(LIST_CALLBACK code, int number, uint32_t param) {
        const uint32_t found = code == LC_EQUAL ? Find(code, number, param) : 0;
        if (found != 0 || code == LC_REWIND) {
            return found;
        }
        const uint32_t place = PlaceOfNew(code, number, param);
        if (place == 0) {
            return 0;
        }
        numbers_.insert(Iterator(place), number);
        position_ = place;
        return place;
    }

    uint32_t Remove(LIST_CALLBACK code, int key, uint32_t param) {
        position_ = 0;
        const uint32_t found = Locate(code, key, param);
        if (found != 0) {
            numbers_.erase(Iterator(found));
            position_ = found <= Count() ? found : 0;
        }
        return found;
    }

    uint32_t Write(LIST_CALLBACK code, int number, int key, uint32_t param) {
        const uint32_t found = Find(code, key, param);
        if (found != 0) {
            numbers_[found - 1] = number;
        }
        return found;
    }

    // Takes the numbers that a sort has left: in another order, or fewer of them.
    void Take(std::vector<int> numbers) {
        position_ = numbers.size() < numbers_.size() ? 0 : static_cast<uint32_t>(numbers.size());
        numbers_ = std::move(numbers);
    }
    void SortInPlace() { std::sort(numbers_.begin(), numbers_.end()); }

  private:
    std::vector<int>::iterator Iterator(uint32_t index) {
        return numbers_.begin() + static_cast<std::ptrdiff_t>(index - 1);
    }

    uint32_t FirstNotLess(int key) const {
        const auto first =
            std::find_if(numbers_.begin(), numbers_.end(), [key](int n) { return n >= key; });
        return first == numbers_.end() ? 0 : static_cast<uint32_t>(first - numbers_.begin() + 1);
    }

    // Looks round the ring, from the element behind the position on. The element at the position is
    // not looked at.
    uint32_t NextEqual(int key) const {
        for (uint32_t step = 1; step < Count() + (position_ == 0 ? 1u : 0u); ++step) {
            const uint32_t index = (position_ + step - 1) % Count() + 1;
            if (At(index) == key) {
                return index;
            }
        }
        return 0;
    }

    uint32_t Locate(LIST_CALLBACK code, int key, uint32_t param) const {
        const uint32_t count = Count();
        const auto ifThere = [count](uint32_t index) { return index <= count ? index : 0; };
        return code == LC_AT_INDEX   ? ifThere(param)
               : code == LC_PREV     ? (position_ == 0 ? count : position_ - 1)
               : code == LC_NEXT     ? ifThere(position_ + 1)
               : code == LC_FIRST    ? ifThere(1)
               : code == LC_LAST     ? count
               : code == LC_NOT_LESS ? FirstNotLess(key)
               : code == LC_EQUAL    ? NextEqual(key)
               : code == IsSecond    ? ifThere(2)
                                     : 0;
    }

    uint32_t PlaceOfNew(LIST_CALLBACK code, int number, uint32_t param) const {
        const uint32_t end = Count() + 1;
        const auto orEnd = [end](uint32_t index) { return index == 0 ? end : index; };
        return code == LC_AT_INDEX   ? orEnd(Locate(code, number, param))
               : code == LC_PREV     ? orEnd(position_)
               : code == LC_NEXT     ? std::min(position_ + 2, end)
               : code == LC_FIRST    ? 1
               : code == LC_NOT_LESS ? orEnd(FirstNotLess(number))
               : code == IsSecond    ? (Count() >= 2 ? 2 : 1 - Count())
                                     : end;
    }

    std::vector<int> numbers_;
    uint32_t position_ = 0;
};

}  // namespace lq::fuzz
