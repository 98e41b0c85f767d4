// The way to the private parts of lists, for the folder's own sources and for tests.
#pragma once

#include <cstdint>

#include "containers/element.h"
#include "lq_data/containers.h"

namespace lq::containers {

struct ListAccess {
    using INSERTION = FLIST::INSERTION;

    // Not null and no fill pattern of a debugging allocator, in either pointer width.
    static bool IsHandle(const FLIST* list) {
        const auto address = reinterpret_cast<std::uintptr_t>(list);
        return address != 0 && address != 0xCDCDCDCD && address != 0xDDDDDDDD &&
               address != 0xCDCDCDCDCDCDCDCD && address != 0xDDDDDDDDDDDDDDDD;
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
};

}  // namespace lq::containers
