// Operation sequences on lists and paired lists of several element types, beside plain models.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "containers/list_access.h"
#include "fuzz/list_model.h"
#include "fuzz/targets.h"
#include "lq_data/containers.h"

namespace lq::fuzz {

namespace {

using containers::ListAccess;

constexpr int kNumbers = 16;

// A small number as an element of a list's type, and back.
struct Element {
    const char* what;
    LIST_ELEMENT_TYPE type;
    const void* (*of)(int number);
    int (*from)(const void* slot);
};

constexpr const char16_t* kTexts[kNumbers] = {u"",   u"A",  u"AB", u"B",     u"BA", u"C",
                                              u"CC", u"D0", u"DD", u"E",     u"E1", u"E2",
                                              u"F",  u"FF", u"G",  u"\u00C4"};

// Texts in the same order when case does not count, in which an underscore comes before the
// letters.
constexpr const char16_t* kMixed[kNumbers] = {u"",   u"a",  u"AB", u"b",     u"BA", u"c",
                                              u"CC", u"d_", u"DD", u"e",     u"E1", u"e2",
                                              u"F",  u"ff", u"G",  u"\u00E4"};

const void* Number(int number) {
    static int32_t slot[2];
    static int turn = 0;
    turn ^= 1;
    slot[turn] = number;
    return &slot[turn];
}

int FromText(const void* slot) {
    const std::u16string_view text = *static_cast<const char16_t* const*>(slot);
    const auto at = [text](const char16_t* const(&texts)[kNumbers]) {
        return static_cast<int>(std::find(texts, texts + kNumbers, text) - texts);
    };
    return at(kTexts) < kNumbers ? at(kTexts) : at(kMixed);
}

int FromNumber(const void* slot) {
    return *static_cast<const int32_t*>(slot);
}

constexpr Element kElements[] = {
    {"signed", LET_SIGNED_8, Number, FromNumber},
    {"unsigned", LET_UNSIGNED_1, Number, FromNumber},
    {"char", LET_CHAR, Number, [](const void* s) { return int{*static_cast<const int8_t*>(s)}; }},
    {"text", LET_STRING, [](int n) -> const void* { return kTexts[n]; }, FromText},
    {"text without case", LET_STRING_NOCASE, [](int n) -> const void* { return kMixed[n]; },
     FromText},
};

const Element& AnyElement(Input& input) {
    return kElements[input.Below(std::size(kElements))];
}

// Any way to address an element: LC_REWIND, the codes 3 to 9, or a function.
LIST_CALLBACK AnyCode(Input& input) {
    const uint32_t code = input.Below(9);
    return code == 8 ? IsSecond
                     : reinterpret_cast<LIST_CALLBACK>(std::uintptr_t{code == 0 ? 0 : code + 2});
}

int AnyNumber(Input& input) {
    return static_cast<int>(input.Below(kNumbers));
}

std::vector<int> ContentOf(const FLIST& list, const Element& element) {
    std::vector<int> numbers;
    const CGList::CNode* const head = ListAccess::Head(list);
    for (const auto* node = head->next; node != head; node = node->next) {
        numbers.push_back(element.from(node->Data()));
    }
    return numbers;
}

std::vector<int> Resorted(const std::vector<int>& numbers, LIST_CALLBACK code) {
    ListModel sorted;
    for (const int number : numbers) {
        sorted.Insert(code, number, 0);
    }
    return sorted.Numbers();
}

// Room for an element that is copied out. At first it holds the element of a number.
class Room {
  public:
    Room(const Element& element, int number) : element_(element) {
        const void* const value = element.of(number);
        std::memcpy(bytes_, value,
                    IsText() ? 2 * std::char_traits<char16_t>::length(kTexts[number]) + 2 : 4);
    }
    void* Bytes() { return bytes_; }
    int Number() const {
        const void* const text = bytes_;
        return element_.from(IsText() ? static_cast<const void*>(&text) : bytes_);
    }

  private:
    bool IsText() const {
        return element_.type == LET_STRING || element_.type == LET_STRING_NOCASE;
    }

    const Element& element_;
    char16_t bytes_[4] = {};
};

// The model of a paired list. `lead` is the list that the operation's code and column choose.
struct PairModel {
    ListModel lists[2];
    size_t lead = 0;

    ListModel& Leader() { return lists[lead]; }
    ListModel& Follower() { return lists[1 - lead]; }
    uint32_t Insert(LIST_CALLBACK code, const int (&numbers)[2], uint32_t column) {
        if (code == LC_EQUAL) {
            Leader().GoTo(0);
        }
        const uint32_t before = Leader().Count();
        const uint32_t index = Leader().Insert(code, numbers[lead], column);
        if (Leader().Count() == before) {
            Follower().Find(LC_AT_INDEX, 0, code == LC_REWIND ? 0 : index);
        } else {
            Follower().Insert(LC_AT_INDEX, numbers[1 - lead], index);
        }
        return index;
    }
    uint32_t Remove(LIST_CALLBACK code, int led, uint32_t column, bool byPlace) {
        if (code == LC_REWIND) {
            return 0;
        }
        const uint32_t index = Leader().Remove(code, led, column);
        if (index != 0) {
            Follower().Remove(LC_AT_INDEX, 0, index);
        } else if (byPlace) {
            Follower().GoTo(0);
        }
        return index;
    }
    uint32_t Find(LIST_CALLBACK code, int led, uint32_t column) {
        if (code == LC_EQUAL) {
            Leader().GoTo(0);
        }
        const uint32_t index = Leader().Find(code, led, column);
        if (code == LC_REWIND) {
            Follower().GoTo(0);
        }
        Follower().Find(LC_AT_INDEX, 0, index);
        return index;
    }
    uint32_t Write(LIST_CALLBACK code, const int (&numbers)[2], uint32_t column) {
        if (code == LC_REWIND) {
            return 0;
        }
        if (code == LC_EQUAL) {
            Leader().GoTo(0);
        }
        // There is no key, and every element is not less than none: the first pair is found.
        const uint32_t index = code == LC_NOT_LESS ? Leader().Find(LC_FIRST, 0, 0)
                                                   : Leader().Find(code, numbers[lead], column);
        if (index != 0) {
            if (code != LC_EQUAL) {
                Leader().Write(LC_AT_INDEX, numbers[lead], 0, index);
            }
            Follower().Write(LC_AT_INDEX, numbers[1 - lead], 0, index);
        }
        return index;
    }
    uint32_t Sort(LIST_CALLBACK code) {
        PairModel sorted{{}, lead};
        for (uint32_t index = 1; index <= lists[0].Count(); ++index) {
            sorted.Insert(code, {lists[0].At(index), lists[1].At(index)}, 0);
        }
        for (const size_t side : {0u, 1u}) {
            lists[side].Take(sorted.lists[side].Numbers());
        }
        return lists[0].Count();
    }
};

}  // namespace

void List(const uint8_t* data, size_t size) {
    Input input(data, size);
    const Element& element = AnyElement(input);
    FLIST* list = CreateList(0, element.type, 0, nullptr);
    ListModel model;
    while (!input.IsEmpty()) {
        const LIST_CALLBACK code = AnyCode(input);
        const int number = AnyNumber(input);
        const uint32_t index = input.Below(20);
        const auto param = static_cast<int32_t>(index);
        switch (input.Below(7)) {
            case 0:
            case 1:
                Require(InsertElementOfList(list, element.of(number), code, param) ==
                            model.Insert(code, number, index),
                        "the index of an insertion");
                break;
            case 2:
                Require(RemoveElementOfList(list, nullptr, element.of(number), code, param) ==
                            model.Remove(code, number, index),
                        "the index of a removal");
                break;
            case 3: {
                void* slot = nullptr;
                const uint32_t found = ListGet(list, slot, element.of(number), code, param);
                Require(found == model.Find(code, number, index), "the index of what is found");
                Require(found == 0 ? !slot : element.from(slot) == model.At(found),
                        "what is found is what was inserted");
                break;
            }
            case 4: {
                const int key = AnyNumber(input);
                Require(WriteElementOfList(list, element.of(number), element.of(key), code,
                                           param) == model.Write(code, number, key, index),
                        "the index of what is overwritten");
                break;
            }
            case 5:
                Require(SortElementOfList(list, code, 0) == model.Count(), "sort in place");
                if (code == LC_EQUAL) {
                    model.SortInPlace();
                }
                break;
            default:
                if (code == LC_FIRST || code == LC_NOT_LESS || code == LC_EQUAL) {
                    model.Take(Resorted(model.Numbers(), code));
                    Require(list->Sort(code, 0) == model.Count(), "sort by insertion");
                } else {
                    Require(list->Sort(code, 0) == 0, "no other code sorts");
                }
        }
        Require(ListAccess::Check(*list), "the list is sound");
        Require(CardinalityOfList(list) == model.Count(), "the count");
        Require(ListAccess::CurrentIndex(*list) == model.Position(), "the position");
        Require(ContentOf(*list, element) == model.Numbers(), "the content");
    }
    DestroyList(list);
}

void PairedList(const uint8_t* data, size_t size) {
    Input input(data, size);
    const Element* const elements[2] = {&AnyElement(input), &AnyElement(input)};
    _ASSAY* assay = CreateAssay(0, elements[0]->type, 0, elements[1]->type, 0, nullptr);
    PairModel model;
    while (!input.IsEmpty()) {
        const LIST_CALLBACK code = AnyCode(input);
        const bool bySearch = code == LC_NOT_LESS || code == LC_EQUAL || code == IsSecond;
        const uint32_t column = input.Below(bySearch ? 4 : 20);
        const auto param = static_cast<int32_t>(column);
        const bool hasLeader = !bySearch || column == 1 || column == 2;
        model.lead = bySearch && column == 2 ? 1 : 0;
        const int numbers[2] = {AnyNumber(input), AnyNumber(input)};
        const int led = numbers[model.lead];
        const void* const first = elements[0]->of(numbers[0]);
        const void* const second = elements[1]->of(numbers[1]);
        Room rooms[2] = {{*elements[0], numbers[0]}, {*elements[1], numbers[1]}};
        const auto handOut = [&](auto operation, uint32_t index, const int(&pair)[2]) {
            Require(operation(assay, rooms[0].Bytes(), rooms[1].Bytes(), code, param) == index,
                    "the index of a found or removed pair");
            // A pair that is addressed by its place has both elements copied out; one that is
            // searched for has only the element of the other list copied out.
            for (const size_t side : {0u, 1u}) {
                const bool isKept = index == 0 || (bySearch && side == model.lead);
                Require(rooms[side].Number() == (isKept ? numbers[side] : pair[side]),
                        "the elements that are handed out");
            }
        };
        switch (input.Below(6)) {
            case 0:
            case 1:
                Require(InsertElementOfAssay(assay, first, second, code, param) ==
                            (hasLeader ? model.Insert(code, numbers, column) : 0),
                        "the index of a new pair");
                break;
            case 2: {
                const PairModel before = model;
                const uint32_t index = hasLeader ? model.Remove(code, led, column, !bySearch) : 0;
                handOut(
                    RemoveElementOfAssay, index,
                    {index ? before.lists[0].At(index) : 0, index ? before.lists[1].At(index) : 0});
                break;
            }
            case 3: {
                const uint32_t index = hasLeader ? model.Find(code, led, column) : 0;
                handOut(
                    FindElementOfAssay, index,
                    {index ? model.lists[0].At(index) : 0, index ? model.lists[1].At(index) : 0});
                break;
            }
            case 4:
                Require(WriteElementOfAssay(assay, first, second, code, param) ==
                            (hasLeader ? model.Write(code, numbers, column) : 0),
                        "the index of an overwritten pair");
                break;
            default: {
                const bool sorts = code == LC_FIRST || (bySearch && hasLeader);
                Require(SortElementOfAssay(assay, code, param) == (sorts ? model.Sort(code) : 0),
                        "sort");
            }
        }
        for (const size_t side : {0u, 1u}) {
            const FLIST& list = *GetListOfAssay(assay, static_cast<int32_t>(side) + 1);
            Require(ListAccess::Check(list), "the list is sound");
            Require(ContentOf(list, *elements[side]) == model.lists[side].Numbers(), "the pairs");
            Require(ListAccess::CurrentIndex(list) == model.lists[side].Position(), "the position");
        }
    }
    DestroyAssay(assay);
}

}  // namespace lq::fuzz
