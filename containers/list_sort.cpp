// The two sorts of lists: by insertion into a second list, and in place by merge exchange.
//
// Merge exchange compares pairs (i, i + d) for ascending i, whatever the data. So the node pointers
// need no random access: they lie in a chain of pages, and two cursors that only move forward, d
// apart, serve each pass. No allocation grows with the list.
#include <bit>
#include <utility>

#include "containers/list_access.h"
#include "lq_data/containers.h"

using lq::containers::ElementFormat;
using lq::containers::IsFunction;
using lq::containers::ListAccess;

namespace {

using CNode = CGList::CNode;

constexpr std::size_t kPageBytes = 4096;

struct Page {
    static constexpr uint32_t kNodes = (kPageBytes - sizeof(void*)) / sizeof(void*);

    Page* next;
    CNode* nodes[kNodes];
};
static_assert(sizeof(Page) == kPageBytes);

class Cursor {
  public:
    explicit Cursor(Page* page, uint32_t index = 0) : page_(page), offset_(index) { Normalize(); }

    CNode*& operator*() const { return page_->nodes[offset_]; }  // NOLINT: never at its end
    Cursor& operator++() {
        ++offset_;
        Normalize();
        return *this;
    }

  private:
    void Normalize() {
        while (page_ && offset_ >= Page::kNodes) {
            page_ = page_->next;
            offset_ -= Page::kNodes;
        }
    }

    Page* page_;
    uint32_t offset_;
};

// The element nodes of a ring in pages.
class NodeArray {
  public:
    ~NodeArray() {
        while (first_) {
            Page* page = first_;
            first_ = page->next;
            lq::Release(page);
        }
    }

    // False when memory is short.
    bool Gather(const CNode* head) {
        Page** link = &first_;
        uint32_t used = Page::kNodes;
        Page* page = nullptr;
        for (CNode* node = head->next; node != head; node = node->next) {
            if (used == Page::kNodes) {
                page = lq::AllocateArray<Page>(1);
                if (!page) {
                    return false;
                }
                page->next = nullptr;
                *link = page;
                link = &page->next;
                used = 0;
            }
            page->nodes[used++] = node;
        }
        return true;
    }

    void Relink(CNode* head, uint32_t count) const {
        CNode* last = head;
        Cursor cursor(first_);
        for (uint32_t i = 0; i < count; ++i, ++cursor) {
            last->next = *cursor;
            (*cursor)->prev = last;
            last = *cursor;
        }
        last->next = head;
        head->prev = last;
    }

    Cursor At(uint32_t index) const { return Cursor(first_, index); }

  private:
    Page* first_ = nullptr;
};

// Batcher's merge exchange (Knuth, Algorithm 5.2.2 M) over `n` > 1 nodes. `belongsBehind(a, b)`:
// whether a is to follow b, which stands behind it.
template <typename Predicate>
void SortNodes(const NodeArray& nodes, uint32_t n, Predicate belongsBehind) {
    const uint32_t top = std::bit_floor(n - 1);
    for (uint32_t p = top; p > 0; p /= 2) {
        uint32_t q = top;
        uint32_t r = 0;
        uint32_t d = p;
        for (;;) {
            Cursor low = nodes.At(0);
            Cursor high = nodes.At(d);
            for (uint32_t i = 0; i < n - d; ++i, ++low, ++high) {
                if ((i & p) == r && belongsBehind(*low, *high)) {
                    std::swap(*low, *high);
                }
            }
            if (q == p) {
                break;
            }
            d = q - p;
            q /= 2;
            r = p;
        }
    }
}

}  // namespace

uint32_t FLIST::Sort(LIST_CALLBACK code, int32_t param) {
    if (!HasBody() || (code != LC_FIRST && code != LC_NOT_LESS && code != LC_EQUAL)) {
        return 0;
    }
    FLIST sorted;
    sorted.Create(body_->userData_.Size(), body_->type_, body_->elementSize_,
                  body_->defaultCallback_);
    if (!sorted.HasBody()) {
        return 0;
    }
    const ElementFormat format = ListAccess::FormatOf(*body_);
    for (CNode* node = body_->head_->next; node != body_->head_; node = node->next) {
        const void* value = format.Argument(node->Data());
        if (!sorted.Insert(value, value, code, param).complete) {
            return 0;
        }
    }
    TakeContent(sorted);
    return body_->count_;
}

uint32_t FLIST::MergeExchange(LIST_CALLBACK comparer, int32_t param) {
    const uint32_t count = body_->count_;
    if (count < 2 || (comparer != LC_EQUAL && !IsFunction(comparer))) {
        return count;
    }
    NodeArray nodes;
    if (!nodes.Gather(body_->head_)) {
        return 0;
    }
    const ElementFormat format = ListAccess::FormatOf(*body_);
    SortNodes(nodes, count, [&](CNode* a, CNode* b) {
        void* const key = format.Argument(b->Data());
        return comparer == LC_EQUAL ? format.Compare(a->Data(), key, 0) > 0
                                    : comparer(this, 0, format.Argument(a->Data()), key, param) > 0;
    });
    nodes.Relink(body_->head_, count);

    // The position is a place in the list: it now names the element that has come there.
    const uint32_t index = body_->index_;
    Rewind();
    if (index != 0) {
        SetPosition(LocateIndex(index));
    }
    return count;
}
