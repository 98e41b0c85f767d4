// Lists: insertion, removal, and taking another list's elements. An insertion first decides which
// node the new one precedes, and fails, if it must, before anything has changed.
#include <algorithm>

#include "containers/list_access.h"
#include "lq_data/containers.h"

using lq::containers::Code;
using lq::containers::CodeOf;
using lq::containers::ElementFormat;
using lq::containers::IsFunction;
using lq::containers::ListAccess;

uint32_t FLIST::InsertElement(const void* value, const void* key, LIST_CALLBACK code,
                              int32_t param) {
    return HasBody() ? ListAccess::InsertElement(*this, value, key, code, param) : 0;
}

FLIST::INSERTION FLIST::Insert(const void* value, const void* key, LIST_CALLBACK code,
                               int32_t param) {
    if (code == LC_EQUAL) {
        const PLACE found = Seek(key, code, param);
        if (found.node) {
            return {found.node, found.index, true};
        }
    }
    const PLACE place = PlaceOfNew(key, code, param);
    return place.node ? Link(place, value) : INSERTION{nullptr, 0, true};
}

FLIST::PLACE FLIST::PlaceOfNew(const void* key, LIST_CALLBACK code, int32_t param) {
    if (IsFunction(code)) {
        return PlaceByFunction(key, code, param);
    }
    CNode* const head = body_->head_;
    CNode* const current = body_->current_;
    const uint32_t index = body_->index_;
    const auto orEnd = [this](const PLACE& place) { return place.node ? place : End(); };
    switch (CodeOf(code)) {
        case Code::kAtIndex:
            return orEnd(LocateIndex(static_cast<uint32_t>(param)));
        case Code::kPrev:
            return index == 0 ? End() : PLACE{current, index};
        case Code::kNext: {
            CNode* const follower = current->next;
            return follower == head ? End() : PLACE{follower->next, index + 2};
        }
        case Code::kFirst:
            return {head->next, 1};
        case Code::kNotLess:
            return orEnd(LocateNotLess(key, static_cast<uint32_t>(param)));
        case Code::kLast:
        case Code::kEqual:
            return End();
        default:
            return {};
    }
}

FLIST::PLACE FLIST::PlaceByFunction(const void* key, LIST_CALLBACK function, int32_t param) {
    const ElementFormat format = ListAccess::FormatOf(*body_);
    void* const keyArgument = const_cast<void*>(key);
    uint32_t index = 0;
    for (CNode* node = body_->head_->next; node != body_->head_; node = node->next) {
        ++index;
        if (function(this, index, format.Argument(node->Data()), keyArgument, param) == 1) {
            return {node, index};
        }
    }
    return function(this, 0, nullptr, nullptr, param) == 1 ? End() : PLACE{};
}

FLIST::INSERTION FLIST::Link(const PLACE& place, const void* value) {
    return ListAccess::Link(*this, place, value);
}

uint32_t FLIST::RemoveElement(void* out, const void* key, LIST_CALLBACK code, int32_t param) {
    if (!HasBody()) {
        return 0;
    }
    Rewind();
    const PLACE place = Locate(key, code, param);
    if (!place.node) {
        return 0;
    }
    ListAccess::CopyFound(*this, place, out);
    CNode* const follower = place.node->next;
    Unlink(place.node);
    if (follower != body_->head_) {
        SetPosition({follower, place.index});
    }
    return place.index;
}

void FLIST::Unlink(CNode* node) {
    ListAccess::FormatOf(*body_).Free(node->Data());
    node->prev->next = node->next;
    node->next->prev = node->prev;
    body_->FreeNode(node);
    --body_->count_;
}

int FLIST::Clear() {
    if (!HasBody()) {
        return 0;
    }
    Rewind();
    while (body_->count_ > 0) {
        Unlink(body_->head_->next);
    }
    return 1;
}

void FLIST::TakeContent(FLIST& other) {
    CNode* const head = body_->head_;
    CNode* node = head;
    const CNode* const otherHead = other.body_->head_;
    for (CNode* from = otherHead->next; from != otherHead; from = from->next) {
        node = node->next;
        auto* slot = static_cast<unsigned char*>(node->Data());
        std::swap_ranges(slot, slot + body_->elementSize_,
                         static_cast<unsigned char*>(from->Data()));
    }
    const uint32_t taken = other.body_->count_;
    SetPosition({node, taken});
    if (body_->count_ > taken) {
        Rewind();
    }
    while (body_->count_ > taken) {
        Unlink(head->prev);
    }
}
