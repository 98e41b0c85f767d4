// The containers: generic lists and paired lists, and by its header the hash table.
//
// Nothing here is locked; an object is used by one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>

#include "lq_data/env/lq_framework.h"
#include "lq_data/export.h"
#include "lq_data/hash_table.h"
#include "lq_data/memory.h"

class FLIST;

namespace lq::containers {

struct ListAccess;  // the library's and the tests' way to the private parts of lists

// The bytes that the owner of a list or of a paired list keeps with it; zero at first. Sizes up to
// a pointer's are held in place, larger ones in a block.
class LQ_DATA_API UserData {
  public:
    UserData() = default;
    ~UserData() { Resize(0); }
    UserData(const UserData&) = delete;
    UserData& operator=(const UserData&) = delete;

    // Zero bytes in the new number; false and size 0 when memory is short.
    bool Resize(uint32_t size);
    // The number of bytes.
    uint32_t Size() const { return size_; }
    // The bytes in place, valid until Resize.
    const unsigned char* Bytes() const { return IsInPlace() ? area_.bytes : area_.block; }
    // Copies Size() bytes in or out; false when there are bytes to copy and the other side is null.
    bool Set(const void* from);
    // Copies Size() bytes out; false when there are bytes to copy and `to` is null.
    bool Get(void* to) const;
    // Below, equal to or above zero, over Size() bytes; what `other` lacks counts as 0.
    int Compare(const UserData& other) const;

  private:
    static constexpr uint32_t kInPlace = sizeof(void*);

    bool IsInPlace() const { return size_ <= kInPlace; }
    unsigned char* Area() { return IsInPlace() ? area_.bytes : area_.block; }

    uint32_t size_ = 0;
    union {
        unsigned char bytes[kInPlace];
        unsigned char* block;
    } area_ = {};
};

}  // namespace lq::containers

// ---------------------------------------------------------------------------------------------
// Generic lists
// ---------------------------------------------------------------------------------------------

// How an element is stored, copied, compared and freed. Values beyond the last one have elements
// of size 0 that rank above any key.
enum LIST_ELEMENT_TYPE : uint32_t {
    LET_MEMORY = 0,      // bytes of the size given at creation; memcmp
    LET_UNSIGNED_1 = 1,  // 32-bit values
    LET_STRING = 2,      // an owned copy of a text; by 16-bit units
    LET_UNSIGNED_3 = 3,
    LET_UNSIGNED_4 = 4,
    LET_LIST = 5,       // an FLIST*, not owned; by the lists' user data
    LET_UNORDERED = 6,  // 4 bytes that rank above any key
    LET_UNSIGNED_7 = 7,
    LET_SIGNED_8 = 8,
    LET_UNSIGNED_9 = 9,
    LET_SIGNED_10 = 10,
    LET_SIGNED_11 = 11,
    LET_CHAR = 12,           // one signed byte
    LET_STRING_NOCASE = 13,  // an owned copy of a text; without regard to case
};

// Every operation that addresses an element takes one argument of this type: a position code
// (LC_...), or a function that is called element by element. `element` and `key` are the text
// itself for the text types, the address of the bytes otherwise; `param` is the operation's.
//
//   Call                             position       element    key      result
//   find, per element                index from 1   element    key      1: this is the element
//   insertion, per element           index from 1   element    key      1: insert before it
//   insertion, behind the last       0              null       null     1: append, else nothing
//   Foreach, per element             call from 1    element    null     0: stop
//   Foreach of an empty list         0              null       null     ignored
//   SortElementOfList                0              A          B        > 0: A belongs behind B
//
// A function may remove the element that Foreach hands it; beyond that it leaves the list alone.
using LIST_CALLBACK = int (*)(FLIST* list, uint32_t position, void* element, void* key,
                              int32_t param);

namespace lq::containers {

// The position codes as numbers.
enum class Code : std::uintptr_t {
    kRewind = 0,
    kAtIndex = 3,
    kPrev = 4,
    kNext = 5,
    kFirst = 6,
    kLast = 7,
    kNotLess = 8,
    kEqual = 9,
};

inline Code CodeOf(LIST_CALLBACK callback) {
    return static_cast<Code>(reinterpret_cast<std::uintptr_t>(callback));
}

// The one test that tells a function from a code. 1 and 2 are neither: they find nothing.
inline bool IsFunction(LIST_CALLBACK callback) {
    return CodeOf(callback) > Code::kEqual;
}

}  // namespace lq::containers

// Position codes. LC_NOT_LESS and LC_EQUAL compare `param` bytes of LET_MEMORY elements; 0 or more
// than the element size means the whole element.
//
// Addresses no element; the position becomes before-first.
inline const LIST_CALLBACK LC_REWIND = nullptr;
// The element at the index `param`.
inline const LIST_CALLBACK LC_AT_INDEX =
    reinterpret_cast<LIST_CALLBACK>(lq::containers::Code::kAtIndex);
// LC_PREV: the element before the current one; at before-first, the last element. LC_NEXT: the
// element behind the current one; at before-first, the first element.
inline const LIST_CALLBACK LC_PREV = reinterpret_cast<LIST_CALLBACK>(lq::containers::Code::kPrev);
inline const LIST_CALLBACK LC_NEXT = reinterpret_cast<LIST_CALLBACK>(lq::containers::Code::kNext);
inline const LIST_CALLBACK LC_FIRST = reinterpret_cast<LIST_CALLBACK>(lq::containers::Code::kFirst);
inline const LIST_CALLBACK LC_LAST = reinterpret_cast<LIST_CALLBACK>(lq::containers::Code::kLast);
// The first element from the start that is not less than the key.
inline const LIST_CALLBACK LC_NOT_LESS =
    reinterpret_cast<LIST_CALLBACK>(lq::containers::Code::kNotLess);
// The next element behind the current one, round the ring, that equals the key; the current
// element itself is not compared.
inline const LIST_CALLBACK LC_EQUAL = reinterpret_cast<LIST_CALLBACK>(lq::containers::Code::kEqual);

// A pool of nodes, handed out of blocks; at the same time the body of an FLIST.
//
// Invariants (Check verifies them):
//  1. Every node of every block is either handed out or in the free chain.
//  2. GetCount() is the number of nodes handed out.
class LQ_DATA_API CGList : public CObject {
    LQ_DECLARE_DYNAMIC(CGList)
  public:
    struct CNode {
        CNode* next;
        CNode* prev;

        // The data area, aligned for any object of the data size.
        void* Data() { return this + 1; }
        const void* Data() const { return this + 1; }
    };

    // Nodes with 4 data bytes. `blockSize` is in nodes; below 1 it counts as 1.
    explicit CGList(int blockSize);
    // Nodes with `dataSize` data bytes, taken as unsigned. The pool makes no use of `type`.
    CGList(int dataSize, int type, int blockSize);
    ~CGList() override;
    CGList(const CGList&) = delete;
    CGList& operator=(const CGList&) = delete;

    // A pool with blocks of 20 nodes; null when memory is short.
    static CObject* CreateObject();

    // A node with these links and zero data; null and no change when memory is short. Valid until
    // it is freed or the pool forgets its nodes. The neighbours' links are the caller's.
    virtual CNode* NewNode(CNode* prev, CNode* next);
    // A node without neighbours, as NewNode.
    CNode* AllocListElement() { return NewNode(nullptr, nullptr); }
    // Takes a node back for reuse, last in, first out. Null is allowed.
    void FreeNode(CNode* node);
    // As FreeNode.
    void FreeListElement(CNode* node) { FreeNode(node); }
    // Forgets all nodes and frees every block, without a look at the data. A list's body is no
    // list any more afterwards.
    void RemoveAll();

    // The neighbour behind a node; null for none.
    static CNode* GetNextPosition(const CNode* node) { return node->next; }
    // The neighbour in front of a node; null for none.
    static CNode* GetPrevPosition(const CNode* node) { return node->prev; }
    // How many nodes are handed out.
    uint32_t GetCount() const { return nodeCount_; }
    // 1 when no node is handed out.
    int IsEmpty() const { return nodeCount_ == 0 ? 1 : 0; }
    // 1 when the pool is the body of a list.
    int IsListCreated() const { return magic_ == kMagic ? 1 : 0; }

  private:
    friend class FLIST;
    friend struct lq::containers::ListAccess;

    static constexpr uint32_t kMagic = 0x13DF4;

    // The head of a block; its nodes follow.
    struct BLOCK {
        BLOCK* next;
        uint32_t count;
        uint32_t zero;
    };

    std::size_t NodeBytes() const;
    // Whether a node is free, after taking a block if need be.
    bool Reserve();
    bool Check() const;

    uint32_t magic_ = 0;
    CNode* head_ = nullptr;  // the sentinel of the ring; its index is 0
    uint32_t count_ = 0;     // elements
    LIST_ELEMENT_TYPE type_ = LET_MEMORY;
    uint32_t elementSize_ = 0;
    uint32_t index_ = 0;  // of the current element; 0: before the first
    CNode* current_ = nullptr;
    LIST_CALLBACK defaultCallback_ = nullptr;
    lq::containers::UserData userData_;
    uint32_t nodeCount_ = 0;
    CNode* free_ = nullptr;
    BLOCK* blocks_ = nullptr;
    uint32_t blockSize_;
    uint32_t dataSize_;
};

// A list: a doubly linked ring of typed elements with a cursor (the current position).
//
// A value or key is the text itself (const char16_t*) for the text types, otherwise the address of
// the element's bytes: a list of pointers takes the address of a variable that holds the pointer.
// A slot is where the element's data lies in its node: the text pointer for the text types,
// otherwise the bytes. It stays valid until the element is removed; a text until it is overwritten.
//
// The list owns its nodes and its texts, never what a LET_MEMORY or LET_LIST element points to.
//
// Operations return the 1-based index of the element they acted on, 0 for none; every successful
// find and insertion makes that element the current one. A list without a body is invalid: every
// operation on it gives 0. Finding nothing leaves the position as it was.
//
// Memory: an insertion that gets no node gives 0 and changes nothing. One that cannot copy its text
// still counts: the element holds no text. A write that cannot copy its text gives 0, and the
// element holds no text.
//
// Invariants (Check verifies them):
//  1. The ring from the head through all elements is linked alike in both directions.
//  2. The ring holds the counted number of elements; the pool has handed out one node more.
//  3. The current node is the one at the current index, the head at index 0.
class LQ_DATA_API FLIST : public CObject {
    LQ_DECLARE_DYNAMIC(FLIST)
  public:
    FLIST() = default;
    // Releases what Destroy releases.
    ~FLIST() override;
    FLIST(const FLIST&) = delete;
    FLIST& operator=(const FLIST&) = delete;

    // Makes a list without a body; null when memory is short.
    static CObject* CreateObject();

    // Destroys the body if there is one and builds another. There is none afterwards when the
    // element size does not fit the type, or when memory is short. LET_MEMORY takes any size; the
    // other types take 0 or their own size, those that hold a pointer also 4. User data may have
    // any size. Always 0.
    virtual int Create(uint32_t userDataSize, LIST_ELEMENT_TYPE type, uint32_t elementSize,
                       LIST_CALLBACK defaultCallback);
    // Empties the list and deletes its body. The result is always 0.
    virtual int Destroy();
    // Deletes the body without a look at the elements: texts become the caller's.
    void FreeList();

    // The list's body; null when it has none.
    CGList* GetList() const { return body_; }
    // The number of elements.
    uint32_t Cardinality() const;
    // Copy the user data in and out. The result is 1, or 0 for an invalid list, or when there is
    // user data and the other side is null.
    int SetUserData(const void* from);
    // Copies the user data out.
    int GetUserData(void* to) const;

    // Where the new element goes:
    //   LC_REWIND    nowhere; 0
    //   LC_AT_INDEX  before the element at index `param`; behind the last when there is none
    //   LC_PREV      before the current element; behind the last when the position is before-first
    //   LC_NEXT      behind the element that follows the current one (behind the first when the
    //                position is before-first); behind the last when there is none
    //   LC_FIRST     to the front
    //   LC_LAST      behind the last
    //   LC_NOT_LESS  before the first element not less than the key, else behind the last
    //   LC_EQUAL     nowhere when an equal element is found: that one becomes current, and its
    //                index is the result; else behind the last
    //   a function   where it says (see LIST_CALLBACK)
    // The result is the new element's index. A null value writes nothing: the element is zero.
    uint32_t InsertElement(const void* value, const void* key, LIST_CALLBACK code, int32_t param);
    // Copies the found element to `out` unless that is null. A null key means the key is `out`.
    uint32_t FindElement(void* out, const void* key, LIST_CALLBACK code, int32_t param);
    // Finds an element without copying it: `slot` becomes where it lies, or null when none is
    // found.
    uint32_t Find(void*& slot, const void* key, LIST_CALLBACK code, int32_t param);
    // Walks without moving the position, so that any number of walks may be under way: the slot
    // behind `slot`, the first one for null; null behind the last, and in an invalid list.
    void* SlotBehind(void* slot) const;
    // `*size` becomes the size of the found element; for a text the number of its characters with
    // the terminator, 0 for no text. It stays when nothing is found or elements have no size.
    uint32_t SizeOfElement(uint32_t* size, const void* key, LIST_CALLBACK code, int32_t param);
    // Overwrites the found element. A null value writes nothing; a null key equals any element.
    uint32_t WriteElement(const void* value, const void* key, LIST_CALLBACK code, int32_t param);
    // Removes the found element, copying it to `out` unless that is null. The search begins at
    // before-first; the follower becomes current, or before-first when there is none.
    uint32_t RemoveElement(void* out, const void* key, LIST_CALLBACK code, int32_t param);
    // Removes all elements. 1, or 0 for an invalid list.
    int Clear();
    // Walks from first to last (LC_NEXT) or back (LC_PREV) without moving the position; returns the
    // number of calls.
    uint32_t Foreach(LIST_CALLBACK direction, LIST_CALLBACK callback, int32_t param);
    // Inserts all elements by `code` into a second list and takes that one's content: LC_FIRST
    // reverses, LC_NOT_LESS sorts, LC_EQUAL drops elements that are there already. The result is
    // the count; 0 and no change for other codes or when memory is short. The position is the last
    // element, or before-first when elements were dropped.
    uint32_t Sort(LIST_CALLBACK code, int32_t param);

  private:
    friend struct lq::containers::ListAccess;

    using CNode = CGList::CNode;

    struct PLACE {
        CNode* node;  // null for none
        uint32_t index;
    };
    // Result of an insertion: the element, new or found; null for none. Not complete when memory
    // ran out for the node or for the text.
    struct INSERTION {
        CNode* node;
        uint32_t index;
        bool complete;
    };

    bool HasBody() const { return body_ && body_->IsListCreated(); }

    void SetPosition(const PLACE& place) const {
        body_->current_ = place.node;
        body_->index_ = place.index;
    }
    void Rewind() const { SetPosition({body_->head_, 0}); }
    PLACE Locate(const void* key, LIST_CALLBACK code, int32_t param);
    PLACE Follower() const {
        CNode* const next = body_->current_->next;
        return next == body_->head_ ? PLACE{} : PLACE{next, body_->index_ + 1};
    }
    // The follower becomes current, if there is one.
    PLACE Step() const {
        const PLACE place = Follower();
        if (place.node) {
            SetPosition(place);
        }
        return place;
    }
    PLACE LocateIndex(uint32_t index) const;
    static PLACE Walk(CNode* node, uint32_t index, uint32_t steps, CNode* CNode::*link);
    PLACE LocateNotLess(const void* key, uint32_t length) const;
    PLACE LocateEqual(const void* key, uint32_t length) const;
    PLACE LocateByFunction(const void* key, LIST_CALLBACK function, int32_t param);
    PLACE Behind(const PLACE& place) const;
    PLACE Seek(const void* key, LIST_CALLBACK code, int32_t param);
    uint32_t FindAndCopy(void* out, const void* key, LIST_CALLBACK code, int32_t param);

    // Where a new element goes: the node that it precedes, and its own index.
    PLACE PlaceOfNew(const void* key, LIST_CALLBACK code, int32_t param);
    PLACE PlaceByFunction(const void* key, LIST_CALLBACK function, int32_t param);
    PLACE End() const { return {body_->head_, body_->count_ + 1}; }
    // These, too, are for a list with a body only.
    INSERTION Insert(const void* value, const void* key, LIST_CALLBACK code, int32_t param);
    INSERTION Link(const PLACE& place, const void* value);
    // Links a node of the pool in at that place; it becomes current.
    PLACE Enter(CNode* node, const PLACE& place) const {
        CNode* const before = place.node->prev;
        node->prev = before;
        before->next = node;
        node->next = place.node;
        place.node->prev = node;
        ++body_->count_;
        SetPosition({node, place.index});
        return {node, place.index};
    }
    void Unlink(CNode* node);

    void TakeContent(FLIST& other);
    uint32_t MergeExchange(LIST_CALLBACK comparer, int32_t param);
    bool Check() const;

    CGList* body_ = nullptr;
};

// The list behind a handle. Each call does what the member function of the same purpose does; a
// handle that is null or without a body gives 0 and nothing happens.

// Makes a list, even when Create refuses the arguments and it gets no body. Null when memory is
// short.
LQ_DATA_API FLIST* CreateList(uint32_t userDataSize, LIST_ELEMENT_TYPE type, uint32_t elementSize,
                              LIST_CALLBACK defaultCallback);
// Destroys a list of CreateList, with or without a body. The result is 1, or 0 for null.
LQ_DATA_API int DestroyList(FLIST* list);
// The result is always 1.
LQ_DATA_API int ClearList(FLIST* list);
// As FLIST::Cardinality.
LQ_DATA_API uint32_t CardinalityOfList(FLIST* list);
// As FLIST::SetUserData.
LQ_DATA_API int SetUserDataOfList(FLIST* list, const void* from);
// As FLIST::GetUserData.
LQ_DATA_API int GetUserDataOfList(FLIST* list, void* to);
// As FLIST::InsertElement.
LQ_DATA_API uint32_t NewElementOfList(FLIST* list, const void* value, const void* key,
                                      LIST_CALLBACK code, int32_t param);
// The same with the value as the key.
LQ_DATA_API uint32_t InsertElementOfList(FLIST* list, const void* value, LIST_CALLBACK code,
                                         int32_t param);
// As FLIST::FindElement.
LQ_DATA_API uint32_t FindElementOfList(FLIST* list, void* out, const void* key, LIST_CALLBACK code,
                                       int32_t param);
// Iteration: LC_FIRST, then LC_NEXT until the result is 0.
LQ_DATA_API uint32_t ListGet(FLIST* list, void*& slot, const void* key, LIST_CALLBACK code,
                             int32_t param);
// As FLIST::SizeOfElement.
LQ_DATA_API uint32_t SizeOfElementOfList(FLIST* list, uint32_t* size, const void* key,
                                         LIST_CALLBACK code, int32_t param);
// As FLIST::WriteElement.
LQ_DATA_API uint32_t WriteElementOfList(FLIST* list, const void* value, const void* key,
                                        LIST_CALLBACK code, int32_t param);
// As FLIST::RemoveElement.
LQ_DATA_API uint32_t RemoveElementOfList(FLIST* list, void* out, const void* key,
                                         LIST_CALLBACK code, int32_t param);
// As FLIST::Foreach.
LQ_DATA_API uint32_t ForeachElementOfList(FLIST* list, LIST_CALLBACK direction,
                                          LIST_CALLBACK callback, int32_t param);
// Sorts in place by `comparer`, or with LC_EQUAL by the comparison of the element type; not stable.
// The position keeps its index. Returns the count; the other codes change nothing. 0 and no change
// when memory is short.
LQ_DATA_API uint32_t SortElementOfList(FLIST* list, LIST_CALLBACK comparer, int32_t param);

// These address elements by node (CGList::CNode*), which stays the same until its element is
// removed. `list` must hold the node.

// Appends an element, which becomes current, and returns its node. Null for an invalid list or when
// memory is short.
LQ_DATA_API void* AddListElement(FLIST* list, const void* value);
// Inserts directly behind `afterNode` and returns the new node; the position is before-first. With
// a null `afterNode` it is AddListElement.
LQ_DATA_API void* AddListElementAt(FLIST* list, const void* value, void* afterNode);
// Removes the node's element; the position is before-first.
LQ_DATA_API void RemoveElementAt(FLIST* list, void* node);

// ---------------------------------------------------------------------------------------------
// Paired lists
// ---------------------------------------------------------------------------------------------

// A table of pairs in two parallel lists: pair i is element i of the first list with element i of
// the second. As long as the lists are changed through the table only, the pairs stay aligned,
// whatever fails.
//
// `first` and `second` are values or keys of their list's element type. `column` selects the list
// that LC_NOT_LESS, LC_EQUAL and functions search, 1 or 2, any other giving 0; functions are called
// with param 0. For LC_AT_INDEX to LC_LAST it is the `param` (the index). An operation that finds
// its pair in one list goes to the same index of the other. LC_EQUAL searches from the start.
//
// Every operation on an invalid table, or on one with a list that could not be built, gives 0 and
// does nothing, the release and the user data aside.
struct _ASSAY {
    static constexpr uint32_t kMagic = 0x3690;

    uint32_t magic = kMagic;
    FLIST* list1 = nullptr;
    FLIST* list2 = nullptr;
    LIST_ELEMENT_TYPE type1 = LET_MEMORY;
    uint32_t size1 = 0;  // as given at creation
    LIST_ELEMENT_TYPE type2 = LET_MEMORY;
    uint32_t size2 = 0;
    LIST_CALLBACK callback = nullptr;
    lq::containers::UserData userData;
};

// Makes a table of pairs; null when memory is short for the table itself. Its lists may be invalid
// (see CreateList). User data may have any size.
LQ_DATA_API _ASSAY* CreateAssay(uint32_t userDataSize, LIST_ELEMENT_TYPE type1, uint32_t size1,
                                LIST_ELEMENT_TYPE type2, uint32_t size2, LIST_CALLBACK callback);
// Destroys a table with its lists and user data. The result is 1, or 0 for null.
LQ_DATA_API int DestroyAssay(_ASSAY* assay);
// Copy the user data in and out. The result is its size, or 0 when there is user data and the other
// side is null.
LQ_DATA_API uint32_t SetUserDataOfAssay(_ASSAY* assay, const void* from);
// Copies the user data out. The result is its size, or 0 when there is some and `to` is null.
LQ_DATA_API uint32_t GetUserDataOfAssay(_ASSAY* assay, void* to);
// The result is the number of pairs.
LQ_DATA_API uint32_t CardinalityOfAssay(_ASSAY* assay);
// The first list for `which` 1, the second for 2, null otherwise. It stays the table's.
LQ_DATA_API FLIST* GetListOfAssay(_ASSAY* assay, int32_t which);
// The result is the index of the new pair. When memory is short for a text, its element holds none;
// when it is short for the pair, the result is 0 and nothing changes. LC_EQUAL inserts nothing when
// the searched list holds an equal element; the result is then the index of that pair.
LQ_DATA_API uint32_t InsertElementOfAssay(_ASSAY* assay, const void* first, const void* second,
                                          LIST_CALLBACK code, int32_t column);
// LC_NOT_LESS overwrites the first pair. LC_EQUAL finds the pair by the searched column and
// overwrites the other element only. LC_AT_INDEX to LC_LAST write both whatever the first write
// gives, and return what the second one does; the others stop at a text that cannot be copied, with
// 0.
LQ_DATA_API uint32_t WriteElementOfAssay(_ASSAY* assay, const void* first, const void* second,
                                         LIST_CALLBACK code, int32_t column);
// Both elements are copied out with LC_AT_INDEX to LC_LAST; else the searched column's argument is
// the key and only the other element is copied. Null copies nothing.
LQ_DATA_API uint32_t RemoveElementOfAssay(_ASSAY* assay, void* first, void* second,
                                          LIST_CALLBACK code, int32_t column);
// Finds a pair and copies of it what RemoveElementOfAssay would; the pair stays.
LQ_DATA_API uint32_t FindElementOfAssay(_ASSAY* assay, void* first, void* second,
                                        LIST_CALLBACK code, int32_t column);
// `size1` and `size2` are uint32_t* or null. LC_FIRST, then LC_NEXT, walks the pairs. A function is
// asked for each list.
LQ_DATA_API uint32_t SizeOfElementOfAssay(_ASSAY* assay, void* size1, void* size2,
                                          LIST_CALLBACK code, int32_t param);
// Inserts all pairs into a second table by `code` (LC_FIRST; LC_NOT_LESS, LC_EQUAL or a function
// with `param` as column) and takes that one's content. The result is the number of pairs;
// it is 0, and the pairs are as they were, for other codes or columns and when memory is short.
LQ_DATA_API uint32_t SortElementOfAssay(_ASSAY* assay, LIST_CALLBACK code, int32_t param);
