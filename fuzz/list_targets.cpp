// Operation sequences on lists and paired lists of several element types, beside plain models.
#include <algorithm>
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

// In the same order where case does not count: an underscore comes before the letters.
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

// Rewind and the codes 3 to 9.
LIST_CALLBACK AnyCode(Input& input) {
    const uint32_t code = input.Below(8);
    return reinterpret_cast<LIST_CALLBACK>(std::uintptr_t{code == 0 ? 0 : code + 2});
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
                Require(SortElementOfList(list, LC_EQUAL, 0) == model.Count(), "sort in place");
                model.SortInPlace();
                break;
            default:
                if (code == LC_FIRST || code == LC_NOT_LESS || code == LC_EQUAL) {
                    model.Take(Resorted(model.Numbers(), code));
                    Require(list->Sort(code, 0) == model.Count(), "sort by insertion");
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
    ListModel models[2];
    while (!input.IsEmpty()) {
        const LIST_CALLBACK code = AnyCode(input);
        const bool byKey = code == LC_NOT_LESS || code == LC_EQUAL;
        const uint32_t column = byKey ? input.Below(2) + 1 : input.Below(20);
        const auto param = static_cast<int32_t>(column);
        const size_t lead = byKey ? column - 1 : 0;
        ListModel& leader = models[lead];
        ListModel& follower = models[1 - lead];
        const int numbers[2] = {AnyNumber(input), AnyNumber(input)};
        const int led = numbers[lead];
        const int following = numbers[1 - lead];
        const auto call = [&](auto operation, const void* first, const void* second) {
            return operation(assay, const_cast<void*>(first), const_cast<void*>(second), code,
                             param);
        };
        // What is no key is where the element goes; none is asked for.
        const void* const first = byKey && lead == 0 ? elements[0]->of(numbers[0]) : nullptr;
        const void* const second = byKey && lead == 1 ? elements[1]->of(numbers[1]) : nullptr;
        const uint32_t operation = input.Below(6);
        if (code == LC_EQUAL && operation != 5) {
            leader.GoTo(0);
        }
        switch (operation) {
            case 0:
            case 1: {
                const uint32_t before = leader.Count();
                const uint32_t index = leader.Insert(code, led, column);
                if (leader.Count() == before) {
                    follower.Find(LC_AT_INDEX, 0, index);
                } else {
                    follower.Insert(LC_AT_INDEX, following, index);
                }
                Require(call(InsertElementOfAssay, elements[0]->of(numbers[0]),
                             elements[1]->of(numbers[1])) == index,
                        "the index of a new pair");
                break;
            }
            case 2: {
                const uint32_t index = code == LC_REWIND ? 0 : leader.Remove(code, led, column);
                if (index != 0) {
                    follower.Remove(LC_AT_INDEX, 0, index);
                } else if (!byKey && code != LC_REWIND) {
                    follower.GoTo(0);
                }
                Require(call(RemoveElementOfAssay, first, second) == index,
                        "the index of a removed pair");
                break;
            }
            case 3: {
                const uint32_t index = leader.Find(code, led, column);
                if (code == LC_REWIND) {
                    follower.GoTo(0);
                }
                follower.Find(LC_AT_INDEX, 0, index);
                Require(call(FindElementOfAssay, first, second) == index,
                        "the index of a found pair");
                break;
            }
            case 4: {
                // Without a key any pair is not less: the first one.
                const uint32_t index = code == LC_REWIND     ? 0
                                       : code == LC_NOT_LESS ? leader.Find(LC_FIRST, 0, 0)
                                                             : leader.Find(code, led, column);
                if (index != 0) {
                    if (code != LC_EQUAL) {
                        leader.Write(LC_AT_INDEX, led, 0, index);
                    }
                    follower.Write(LC_AT_INDEX, following, 0, index);
                }
                Require(call(WriteElementOfAssay, elements[0]->of(numbers[0]),
                             elements[1]->of(numbers[1])) == index,
                        "the index of an overwritten pair");
                break;
            }
            default:
                if (code == LC_FIRST) {
                    for (ListModel& model : models) {
                        model.Take({model.Numbers().rbegin(), model.Numbers().rend()});
                    }
                    Require(SortElementOfAssay(assay, code, 0) == leader.Count(), "reverse");
                }
        }
        for (const size_t side : {0u, 1u}) {
            const FLIST& list = *GetListOfAssay(assay, static_cast<int32_t>(side) + 1);
            Require(ListAccess::Check(list), "the list is sound");
            Require(ContentOf(list, *elements[side]) == models[side].Numbers(), "the pairs");
            Require(ListAccess::CurrentIndex(list) == models[side].Position(), "the position");
        }
    }
    DestroyAssay(assay);
}

}  // namespace lq::fuzz
