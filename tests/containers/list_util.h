// Lists in a test.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "containers/list_access.h"
#include "lq_data/containers.h"

namespace lq::test {

using lq::containers::ListAccess;
using Numbers = std::vector<int32_t>;

// A list for the time of a test, with what tests ask for again and again.
class TestList {
  public:
    explicit TestList(LIST_ELEMENT_TYPE type, uint32_t size = 0)
        : list_(CreateList(0, type, size, nullptr)) {}
    explicit TestList(const Numbers& numbers) : TestList(LET_SIGNED_8) {
        for (const int32_t number : numbers) {
            Add(number, LC_LAST);
        }
    }
    ~TestList() { DestroyList(list_); }
    TestList(const TestList&) = delete;
    TestList& operator=(const TestList&) = delete;

    operator FLIST*() const { return list_; }
    FLIST* operator->() const { return list_; }
    uint32_t Add(int32_t number, LIST_CALLBACK code, int32_t param = 0) const {
        return InsertElementOfList(list_, &number, code, param);
    }
    uint32_t Go(LIST_CALLBACK code, int32_t param = 0) const {
        void* slot;
        return ListGet(list_, slot, nullptr, code, param);
    }
    // By the nodes, so that the position stays.
    Numbers All() const {
        Numbers numbers;
        const CGList::CNode* const head = ListAccess::Head(*list_);
        for (CGList::CNode* node = head->next; node != head; node = node->next) {
            numbers.push_back(*static_cast<int32_t*>(node->Data()));
        }
        return numbers;
    }

  private:
    FLIST* list_;
};

inline std::u16string TextAt(FLIST* list, int32_t index) {
    void* slot;
    if (ListGet(list, slot, nullptr, LC_AT_INDEX, index) == 0) {
        return u"(none)";
    }
    const auto* text = *static_cast<const char16_t**>(slot);
    return text ? text : u"(null)";
}

}  // namespace lq::test
