// The functions on list handles: the validity check, then the member function. And what other
// sources need of a list's private parts.
#include "containers/list_access.h"
#include "lq_data/containers.h"

using lq::containers::ListAccess;

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

ListAccess::INSERTION ListAccess::LinkAny(FLIST& list, FLIST::PLACE place, const void* value) {
    return LinkAs<false>(list, place, value);
}

uint32_t ListAccess::CopyAny(const FLIST& list, FLIST::PLACE place, void* out) {
    const CGList& body = *list.body_;
    if (place.node && out && body.elementSize_ != 0) {
        FormatOf(body).CopyOut(place.node->Data(), out);
    }
    return place.index;
}

void* ListAccess::Append(FLIST& list, const void* value) {
    return list.Link(list.End(), value).node;
}

void* ListAccess::InsertBehind(FLIST& list, const void* value, CGList::CNode* node) {
    // The index given to Link does not matter: the position is set to before-first below.
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

FLIST* CreateList(uint32_t userDataSize, LIST_ELEMENT_TYPE type, uint32_t elementSize,
                  LIST_CALLBACK defaultCallback) {
    auto* list = new FLIST;
    if (list) {
        list->Create(userDataSize, type, elementSize, defaultCallback);
    }
    return list;
}

int DestroyList(FLIST* list) {
    if (!ListAccess::IsHandle(list)) {
        return 0;
    }
    list->Destroy();
    delete list;
    return 1;
}

int ClearList(FLIST* list) {
    if (ListAccess::IsValid(list)) {
        list->Clear();
    }
    return 1;
}

uint32_t CardinalityOfList(FLIST* list) {
    return ListAccess::IsValid(list) ? list->Cardinality() : 0;
}

int SetUserDataOfList(FLIST* list, const void* from) {
    return ListAccess::IsValid(list) ? list->SetUserData(from) : 0;
}

int GetUserDataOfList(FLIST* list, void* to) {
    return ListAccess::IsValid(list) ? list->GetUserData(to) : 0;
}

uint32_t NewElementOfList(FLIST* list, const void* value, const void* key, LIST_CALLBACK code,
                          int32_t param) {
    return ListAccess::IsValid(list) ? ListAccess::InsertElement(*list, value, key, code, param)
                                     : 0;
}

uint32_t InsertElementOfList(FLIST* list, const void* value, LIST_CALLBACK code, int32_t param) {
    return NewElementOfList(list, value, value, code, param);
}

// The steps of a walk begin a line of the cache: how long they take then does not depend on where
// the linker has put them.
[[gnu::aligned(64)]] uint32_t FindElementOfList(FLIST* list, void* out, const void* key,
                                                LIST_CALLBACK code, int32_t param) {
    return ListAccess::IsValid(list) ? ListAccess::FindElement(*list, out, key, code, param) : 0;
}

[[gnu::aligned(64)]] uint32_t ListGet(FLIST* list, void*& slot, const void* key, LIST_CALLBACK code,
                                      int32_t param) {
    slot = nullptr;
    return ListAccess::IsValid(list) ? ListAccess::Find(*list, slot, key, code, param) : 0;
}

uint32_t SizeOfElementOfList(FLIST* list, uint32_t* size, const void* key, LIST_CALLBACK code,
                             int32_t param) {
    return ListAccess::IsValid(list) ? list->SizeOfElement(size, key, code, param) : 0;
}

uint32_t WriteElementOfList(FLIST* list, const void* value, const void* key, LIST_CALLBACK code,
                            int32_t param) {
    return ListAccess::IsValid(list) ? list->WriteElement(value, key, code, param) : 0;
}

uint32_t RemoveElementOfList(FLIST* list, void* out, const void* key, LIST_CALLBACK code,
                             int32_t param) {
    return ListAccess::IsValid(list) ? list->RemoveElement(out, key, code, param) : 0;
}

uint32_t ForeachElementOfList(FLIST* list, LIST_CALLBACK direction, LIST_CALLBACK callback,
                              int32_t param) {
    return ListAccess::IsValid(list) ? list->Foreach(direction, callback, param) : 0;
}

uint32_t SortElementOfList(FLIST* list, LIST_CALLBACK comparer, int32_t param) {
    return ListAccess::IsValid(list) ? ListAccess::MergeExchange(*list, comparer, param) : 0;
}

void* AddListElement(FLIST* list, const void* value) {
    return ListAccess::IsValid(list) ? ListAccess::Append(*list, value) : nullptr;
}

void* AddListElementAt(FLIST* list, const void* value, void* afterNode) {
    if (!afterNode) {
        return AddListElement(list, value);
    }
    return ListAccess::IsValid(list)
               ? ListAccess::InsertBehind(*list, value, static_cast<CGList::CNode*>(afterNode))
               : nullptr;
}

void RemoveElementAt(FLIST* list, void* node) {
    if (node && ListAccess::IsValid(list)) {
        ListAccess::Remove(*list, static_cast<CGList::CNode*>(node));
    }
}
