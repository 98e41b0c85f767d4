// The way to the private parts of lists, for the folder's own sources and for tests.
#pragma once

#include <cstdint>

#include "containers/element.h"
#include "lq_data/containers.h"

namespace lq::containers {

struct ListAccess {
    using INSERTION = FLIST::INSERTION;

    // Not null, and no fill pattern of a debugging allocator (0xCDCDCDCD, 0xDDDDDDDD, in either
    // pointer width): those are odd, as no list's address is.
    static bool IsHandle(const FLIST* list) {
        return list && reinterpret_cast<std::uintptr_t>(list) % alignof(FLIST) == 0;
    }
    // A handle whose list has a body.
    static bool IsValid(const FLIST* list) { return IsHandle(list) && list->HasBody(); }

    static ElementFormat FormatOf(const CGList& body) { return {body.type_, body.elementSize_}; }

    // Below, equal to or above zero; an invalid list ranks below a valid one.
    static int CompareUserData(const FLIST* a, const FLIST* b);

    // The current element, which there must be, as a value of its type.
    static const void* CurrentValue(const FLIST& list);

    // Makes sure that the next insertion gets its node.
    static bool Reserve(FLIST& list) { return list.body_->Reserve(); }
    static INSERTION Insert(FLIST& list, const void* value, const void* key, LIST_CALLBACK code,
                            int32_t param) {
        return list.Insert(value, key, code, param);
    }
    // Gives the list the elements of `other`, a list of the same format and at most as long;
    // `other` is left with elements of no use. The position is the last element, or before-first
    // when the list became shorter.
    static void TakeContent(FLIST& list, FLIST& other) { list.TakeContent(other); }

    // FLIST::InsertElement and FLIST::FindElement of a list with a body, inline: what appends and
    // walks ask for is done at once when elements are words, without a further call. An append
    // takes 40 % less time that way, a step a third.
    static uint32_t InsertElement(FLIST& list, const void* value, const void* key,
                                  LIST_CALLBACK code, int32_t param);
    static uint32_t FindElement(FLIST& list, void* out, const void* key, LIST_CALLBACK code,
                                int32_t param);

    static uint32_t MergeExchange(FLIST& list, LIST_CALLBACK comparer, int32_t param) {
        return list.MergeExchange(comparer, param);
    }
    static void* Append(FLIST& list, const void* value);
    static void* InsertBehind(FLIST& list, const void* value, CGList::CNode* node);
    static void Remove(FLIST& list, CGList::CNode* node);

    static const CGList::CNode* Head(const FLIST& list) { return list.body_->head_; }
    static uint32_t CurrentIndex(const FLIST& list) { return list.body_->index_; }
    static LIST_CALLBACK DefaultCallback(const FLIST& list) { return list.body_->defaultCallback_; }
    static bool Check(const FLIST& list) { return list.Check(); }
    static bool Check(const CGList& pool) { return pool.Check(); }
    static uint32_t BlockCount(const CGList& pool);

  private:
    static bool HoldsWords(const FLIST& list) {
        return list.body_->elementSize_ == ElementFormat::kWord;
    }
    // Appends a word when a node is free; else 0 and no change.
    static uint32_t AppendWord(FLIST& list, const void* value);
    static uint32_t NextWord(FLIST& list, void* out);
};

inline uint32_t ListAccess::AppendWord(FLIST& list, const void* value) {
    CGList& body = *list.body_;
    CGList::CNode* const node = body.free_;
    if (!node || !value) {
        return 0;
    }
    body.free_ = node->next;
    ++body.nodeCount_;
    std::memmove(node->Data(), value, ElementFormat::kWord);
    return list.Enter(node, list.End()).index;
}

inline uint32_t ListAccess::NextWord(FLIST& list, void* out) {
    const FLIST::PLACE place = list.Step();
    if (place.node && out) {
        std::memcpy(out, place.node->Data(), ElementFormat::kWord);
    }
    return place.index;
}

inline uint32_t ListAccess::InsertElement(FLIST& list, const void* value, const void* key,
                                          LIST_CALLBACK code, int32_t param) {
    const uint32_t appended = code == LC_LAST && HoldsWords(list) ? AppendWord(list, value) : 0;
    return appended != 0 ? appended : list.Insert(value, key, code, param).index;
}

inline uint32_t ListAccess::FindElement(FLIST& list, void* out, const void* key, LIST_CALLBACK code,
                                        int32_t param) {
    return code == LC_NEXT && HoldsWords(list) ? NextWord(list, out)
                                               : list.FindAndCopy(out, key, code, param);
}

}  // namespace lq::containers
