// Lists: body, finding, and what is done to a found element. A find is split in two: Locate tells
// where the element is and leaves the list as it was, Seek then moves the position there.
#include "containers/list_access.h"
#include "lq_data/containers.h"

LQ_IMPLEMENT_DYNAMIC(FLIST, CObject, &FLIST::CreateObject)

using lq::containers::Code;
using lq::containers::CodeOf;
using lq::containers::ElementFormat;
using lq::containers::IsFunction;
using lq::containers::ListAccess;

namespace {

constexpr int kBlockSize = 20;  // nodes

}  // namespace

FLIST::~FLIST() {
    FLIST::Destroy();
}

CObject* FLIST::CreateObject() {
    return new FLIST;
}

int FLIST::Create(uint32_t userDataSize, LIST_ELEMENT_TYPE type, uint32_t elementSize,
                  LIST_CALLBACK defaultCallback) {
    Destroy();
    ElementFormat format;
    if (!ElementFormat::Make(type, elementSize, format)) {
        return 0;
    }
    CGList* body =
        new CGList(static_cast<int>(format.size), static_cast<int>(format.type), kBlockSize);
    CGList::CNode* head = body ? body->AllocListElement() : nullptr;
    if (!head || !body->userData_.Resize(userDataSize)) {
        delete body;
        return 0;
    }
    head->next = head->prev = head;
    body->magic_ = CGList::kMagic;
    body->head_ = body->current_ = head;
    body->type_ = format.type;
    body->elementSize_ = format.size;
    body->defaultCallback_ = defaultCallback;
    body_ = body;
    return 0;
}

int FLIST::Destroy() {
    Clear();
    FreeList();
    return 0;
}

void FLIST::FreeList() {
    delete body_;
    body_ = nullptr;
}

uint32_t FLIST::Cardinality() const {
    return HasBody() ? body_->count_ : 0;
}

int FLIST::SetUserData(const void* from) {
    return HasBody() && body_->userData_.Set(from) ? 1 : 0;
}

int FLIST::GetUserData(void* to) const {
    return HasBody() && body_->userData_.Get(to) ? 1 : 0;
}

FLIST::PLACE FLIST::Seek(const void* key, LIST_CALLBACK code, int32_t param) {
    if (!HasBody()) {
        return {};
    }
    if (code == LC_REWIND) {
        Rewind();
        return {};
    }
    const PLACE place = Locate(key, code, param);
    if (place.node) {
        SetPosition(place);
    }
    return place;
}

FLIST::PLACE FLIST::Locate(const void* key, LIST_CALLBACK code, int32_t param) {
    CNode* const head = body_->head_;
    CNode* const current = body_->current_;
    const uint32_t index = body_->index_;
    const uint32_t count = body_->count_;
    if (count == 0) {
        return {};
    }
    if (IsFunction(code)) {
        return LocateByFunction(key, code, param);
    }
    switch (CodeOf(code)) {
        case Code::kAtIndex:
            return LocateIndex(static_cast<uint32_t>(param));
        case Code::kPrev:
            return current->prev == head ? PLACE{}
                                         : PLACE{current->prev, index == 0 ? count : index - 1};
        case Code::kNext:
            return Follower();
        case Code::kFirst:
            return {head->next, 1};
        case Code::kLast:
            return {head->prev, count};
        case Code::kNotLess:
            return LocateNotLess(key, static_cast<uint32_t>(param));
        case Code::kEqual:
            return LocateEqual(key, static_cast<uint32_t>(param));
        default:
            return {};
    }
}

// The current element, its follower and both ends are at hand. Any other index is reached by the
// shortest walk: from the current element, from the front or from the back.
FLIST::PLACE FLIST::LocateIndex(uint32_t index) const {
    CNode* const head = body_->head_;
    CNode* const current = body_->current_;
    const uint32_t at = body_->index_;
    const uint32_t count = body_->count_;
    if (index == 0 || index > count) {
        return {};
    }
    if (index == at) {
        return {current, index};
    }
    if (index == at + 1) {
        return {current->next, index};
    }
    if (index == 1) {
        return {head->next, index};
    }
    if (index == count) {
        return {head->prev, index};
    }
    if (at != 0 && index > (at + 1) / 2 && index <= at / 2 + count / 2) {
        return index > at ? Walk(current, index, index - at, &CNode::next)
                          : Walk(current, index, at - index, &CNode::prev);
    }
    return index <= count / 2 ? Walk(head, index, index, &CNode::next)
                              : Walk(head, index, count + 1 - index, &CNode::prev);
}

FLIST::PLACE FLIST::Walk(CNode* node, uint32_t index, uint32_t steps, CNode* CNode::*link) {
    while (steps-- > 0) {
        node = node->*link;
    }
    return {node, index};
}

FLIST::PLACE FLIST::LocateNotLess(const void* key, uint32_t length) const {
    const ElementFormat format = ListAccess::FormatOf(*body_);
    PLACE place = Behind({body_->head_, 0});
    for (uint32_t left = body_->count_; left > 0; --left, place = Behind(place)) {
        if (format.Compare(place.node->Data(), key, length) >= 0) {
            return place;
        }
    }
    return {};
}

FLIST::PLACE FLIST::LocateEqual(const void* key, uint32_t length) const {
    const ElementFormat format = ListAccess::FormatOf(*body_);
    const uint32_t others = body_->index_ == 0 ? body_->count_ : body_->count_ - 1;
    PLACE place = Behind({body_->current_, body_->index_});
    for (uint32_t left = others; left > 0; --left, place = Behind(place)) {
        if (format.Compare(place.node->Data(), key, length) == 0) {
            return place;
        }
    }
    return {};
}

FLIST::PLACE FLIST::LocateByFunction(const void* key, LIST_CALLBACK function, int32_t param) {
    const ElementFormat format = ListAccess::FormatOf(*body_);
    PLACE place = Behind({body_->current_, body_->index_});
    for (uint32_t left = body_->count_; left > 0; --left, place = Behind(place)) {
        void* element = format.Argument(place.node->Data());
        if (function(this, place.index, element, const_cast<void*>(key), param) == 1) {
            return place;
        }
    }
    return {};
}

// The next element round the ring. The head is no element.
FLIST::PLACE FLIST::Behind(const PLACE& place) const {
    CNode* const next = place.node->next;
    return next == body_->head_ ? PLACE{next->next, 1} : PLACE{next, place.index + 1};
}

void* FLIST::SlotBehind(void* slot) const {
    if (!HasBody()) {
        return nullptr;
    }
    CNode* const node = (slot ? static_cast<CNode*>(slot) - 1 : body_->head_)->next;
    return node != body_->head_ ? node->Data() : nullptr;
}

uint32_t FLIST::Find(void*& slot, const void* key, LIST_CALLBACK code, int32_t param) {
    return ListAccess::SetSlot(Seek(key, code, param), slot);
}

uint32_t FLIST::FindElement(void* out, const void* key, LIST_CALLBACK code, int32_t param) {
    return HasBody() ? ListAccess::FindElement(*this, out, key, code, param) : 0;
}

uint32_t FLIST::FindAndCopy(void* out, const void* key, LIST_CALLBACK code, int32_t param) {
    return ListAccess::CopyFound(*this, Seek(key ? key : out, code, param), out);
}

uint32_t FLIST::SizeOfElement(uint32_t* size, const void* key, LIST_CALLBACK code, int32_t param) {
    const PLACE place = Seek(key, code, param);
    if (place.node && size && body_->elementSize_ != 0) {
        *size = ListAccess::FormatOf(*body_).Measure(place.node->Data());
    }
    return place.index;
}

uint32_t FLIST::WriteElement(const void* value, const void* key, LIST_CALLBACK code,
                             int32_t param) {
    const PLACE place = Seek(key, code, param);
    if (!place.node || body_->elementSize_ == 0) {
        return place.index;
    }
    return ListAccess::FormatOf(*body_).Write(place.node->Data(), value) ? place.index : 0;
}

uint32_t FLIST::Foreach(LIST_CALLBACK direction, LIST_CALLBACK callback, int32_t param) {
    if (!HasBody() || !IsFunction(callback)) {
        return 0;
    }
    if (body_->count_ == 0) {
        callback(this, 0, nullptr, nullptr, param);
        return 0;
    }
    if (direction != LC_NEXT && direction != LC_PREV) {
        return 0;
    }
    const auto link = direction == LC_NEXT ? &CNode::next : &CNode::prev;
    const ElementFormat format = ListAccess::FormatOf(*body_);
    uint32_t calls = 0;
    CNode* following;
    for (CNode* node = body_->head_->*link; node != body_->head_; node = following) {
        following = node->*link;
        ++calls;
        if (callback(this, calls, format.Argument(node->Data()), nullptr, param) == 0) {
            break;
        }
    }
    return calls;
}

bool FLIST::Check() const {
    if (!HasBody()) {
        return body_ == nullptr || body_->Check();
    }
    const CNode* node = body_->head_;
    bool positionFound = false;
    for (uint32_t index = 0; index <= body_->count_; ++index, node = node->next) {
        if (!node->next || node->next->prev != node || (index > 0 && node == body_->head_)) {
            return false;
        }
        positionFound |= index == body_->index_ && node == body_->current_;
    }
    return node == body_->head_ && positionFound && body_->nodeCount_ == body_->count_ + 1 &&
           body_->Check();
}
