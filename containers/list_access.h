// The way to the private parts of lists, for the folder's own sources and for tests.
#pragma once

#include <cstdint>
#include <cstring>

#include "containers/element_format.h"
#include "lq_data/containers.h"

namespace lq::containers {

struct ListAccess {
    using INSERTION = FLIST::INSERTION;

    // Not null, and no fill pattern of a debugging allocator (0xCDCDCDCD, 0xDDDDDDDD, in either
    // pointer width): those are odd, as no list's address is.
    static bool IsHandle(const FLIST* list) {
        return list && reinterpret_cast<std::uintptr_t>(list) % alignof(FLIST) == 0;
    }
    // Whether it is a handle whose list has a body.
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

    // FLIST::InsertElement and FLIST::FindElement of a list with a body. Appends and walks, which
    // are most of all calls, are decided first and done inline.
    static uint32_t InsertElement(FLIST& list, const void* value, const void* key,
                                  LIST_CALLBACK code, int32_t param) {
        if (code != LC_LAST) [[unlikely]] {
            return list.Insert(value, key, code, param).index;
        }
        return Link(list, list.End(), value).index;
    }
    static uint32_t FindElement(FLIST& list, void* out, const void* key, LIST_CALLBACK code,
                                int32_t param) {
        if (code != LC_NEXT) [[unlikely]] {
            return list.FindAndCopy(out, key, code, param);
        }
        return CopyFound(list, list.Step(), out);
    }
    // FLIST::Find, likewise.
    static uint32_t Find(FLIST& list, void*& slot, const void* key, LIST_CALLBACK code,
                         int32_t param) {
        if (code != LC_NEXT) [[unlikely]] {
            return list.Find(slot, key, code, param);
        }
        return SetSlot(list.Step(), slot);
    }

    // A free node of the pool with zero data, counted; null when memory is short.
    static CGList::CNode* TakeNode(CGList& pool) { return TakeNodeAs<false>(pool); }
    // Puts a new element in front of the node at `place`, at its index.
    static INSERTION Link(FLIST& list, FLIST::PLACE place, const void* value) {
        const CGList& body = *list.body_;
        if (!body.free_ || body.elementSize_ != ElementFormat::kWord) [[unlikely]] {
            return LinkAny(list, place, value);
        }
        return LinkAs<true>(list, place, value);
    }
    // `slot` becomes where what was found lies, if something was, else null. Returns its index.
    static uint32_t SetSlot(FLIST::PLACE place, void*& slot) {
        slot = place.node ? place.node->Data() : nullptr;
        return place.index;
    }
    // Copies what was found, if something was, to `out` unless that is null. Returns its index.
    static uint32_t CopyFound(const FLIST& list, FLIST::PLACE place, void* out) {
        if (list.body_->elementSize_ != ElementFormat::kWord) [[unlikely]] {
            return CopyAny(list, place, out);
        }
        if (place.node && out) {
            FormatOf(*list.body_).CopyOut(place.node->Data(), out);
        }
        return place.index;
    }

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
    // The rule of an insertion is written once and compiled twice: `kIsPlain` is for elements of
    // four bytes while the pool has a free node, as in most appends. Nothing is then left to call.
    template <bool kIsPlain>
    static CGList::CNode* TakeNodeAs(CGList& pool);
    template <bool kIsPlain>
    static INSERTION LinkAs(FLIST& list, FLIST::PLACE place, const void* value);
    static INSERTION LinkAny(FLIST& list, FLIST::PLACE place, const void* value);
    static uint32_t CopyAny(const FLIST& list, FLIST::PLACE place, void* out);
};

template <bool kIsPlain>
CGList::CNode* ListAccess::TakeNodeAs(CGList& pool) {
    if (!kIsPlain && !pool.free_ && !pool.Reserve()) {
        return nullptr;
    }
    CGList::CNode* const node = pool.free_;
    pool.free_ = node->next;
    ++pool.nodeCount_;
    std::memset(node->Data(), 0, kIsPlain ? ElementFormat::kWord : pool.dataSize_);
    return node;
}

template <bool kIsPlain>
FLIST::INSERTION ListAccess::LinkAs(FLIST& list, FLIST::PLACE place, const void* value) {
    CGList& body = *list.body_;
    CGList::CNode* const node = TakeNodeAs<kIsPlain>(body);
    if (!node) {
        return {nullptr, 0, false};
    }
    list.Enter(node, place);
    const ElementFormat format{body.type_, kIsPlain ? ElementFormat::kWord : body.elementSize_};
    const bool written = format.size == 0 || format.Write(node->Data(), value);
    return {node, place.index, written};
}

}  // namespace lq::containers
