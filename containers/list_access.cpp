#include "containers/list_access.h"

namespace lq::containers {

int ListAccess::CompareUserData(const FLIST* a, const FLIST* b) {
    const bool isValidA = IsValid(a);
    const bool isValidB = IsValid(b);
    return isValidA && isValidB ? a->body_->userData_.Compare(b->body_->userData_)
                                : isValidA - isValidB;
}

uint32_t ListAccess::BlockCount(const CGList& pool) {
    uint32_t n = 0;
    for (const CGList::BLOCK* block = pool.blocks_; block; block = block->next) {
        ++n;
    }
    return n;
}

const void* ListAccess::CurrentValue(const FLIST& list) {
    const CGList& body = *list.body_;
    return FormatOf(body).Argument(body.current_->Data());
}

void* ListAccess::Append(FLIST& list, const void* value) {
    return list.Link(list.End(), value).node;
}

void* ListAccess::InsertBehind(FLIST& list, const void* value, CGList::CNode* node) {
    // The index is of no account: the position goes to before-first.
    CGList::CNode* added = list.Link({node->next, 0}, value).node;
    if (added) {
        list.Rewind();
    }
    return added;
}

void ListAccess::Remove(FLIST& list, CGList::CNode* node) {
    list.Rewind();
    if (node != list.body_->head_) {
        list.Unlink(node);
    }
}

}  // namespace lq::containers
