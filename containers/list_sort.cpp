// The two sorts of lists: by insertion into a second list, and in place by merge exchange.
//
// Merge exchange (Batcher: Sorting Networks and their Applications, AFIPS Spring Joint Computing
// Conference, 1968; Knuth, The Art of Computer Programming, volume 3, algorithm 5.2.2 M) is a
// network: which pairs of places it compares depends on the number of elements alone. It goes over
// the list in passes. A pass has a distance d, compares the places i and i + d for ascending i, and
// exchanges the elements that are not in order; after all passes the list is sorted. Equal elements
// may change places.
//
// So the nodes need no random access: they are gathered in a chain of pages, and two cursors that
// only move forward, d apart, serve each pass. No single allocation grows with the list.
#include <algorithm>
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

// A node, and its element's rank where it has one, so that numbers are compared where the items
// lie, without following two nodes to their data.
struct Item {
    CNode* node;
    int64_t rank;
};

struct Page {
    static constexpr uint32_t kItems = (kPageBytes - sizeof(void*)) / sizeof(Item);

    Page* next;
    Item items[kItems];
};
static_assert(sizeof(Page) <= kPageBytes);

class Cursor {
  public:
    explicit Cursor(Page* page) : page_(page) {}

    // Items from the cursor to the end of its page; 0 behind the last page.
    uint32_t Room() const { return page_ ? Page::kItems - offset_ : 0; }
    Item* operator->() const { return page_->items + offset_; }
    Item& operator[](uint32_t i) const { return page_->items[offset_ + i]; }
    Cursor& operator+=(uint32_t n) {
        offset_ += n;
        while (page_ && offset_ >= Page::kItems) {
            page_ = page_->next;
            offset_ -= Page::kItems;
        }
        return *this;
    }

  private:
    Page* page_;
    uint32_t offset_ = 0;
};

// The element nodes of a ring in pages.
class NodeArray {
  public:
    NodeArray() = default;
    ~NodeArray() {
        while (first_) {
            Page* page = first_;
            first_ = page->next;
            lq::Release(page);
        }
    }
    NodeArray(const NodeArray&) = delete;
    NodeArray& operator=(const NodeArray&) = delete;

    // False when memory is short.
    bool Gather(const CNode* head, const ElementFormat& format) {
        Page** link = &first_;
        uint32_t used = Page::kItems;
        Page* page = nullptr;
        for (CNode* node = head->next; node != head; node = node->next) {
            if (used == Page::kItems) {
                page = lq::AllocateArray<Page>(1);
                if (!page) {
                    return false;
                }
                page->next = nullptr;
                *link = page;
                link = &page->next;
                used = 0;
            }
            page->items[used++] = {node, format.Rank(node->Data())};
        }
        return true;
    }

    void Relink(CNode* head, uint32_t count) const {
        CNode* last = head;
        Cursor cursor = Begin();
        for (uint32_t i = 0; i < count; ++i, cursor += 1) {
            last->next = cursor->node;
            last->next->prev = last;
            last = last->next;
        }
        last->next = head;
        head->prev = last;
    }

    Cursor Begin() const { return Cursor(first_); }

  private:
    Page* first_ = nullptr;
};

// A pass: the pairs (i, i + d) with (i AND p) = r of `n` items, which are runs of p neighbours.
// `order(a, b)` puts two items in order.
template <typename Order>
void ComparePairs(const NodeArray& nodes, uint32_t n, uint32_t d, uint32_t p, uint32_t r,
                  const Order& order) {
    const uint64_t count = n - d;
    Cursor low = nodes.Begin();
    Cursor high = nodes.Begin();
    high += d;
    for (uint64_t first = 0; first < count;) {
        const uint64_t end = std::min(count, first + std::min(low.Room(), high.Room()));
        for (uint64_t i = first; i < end;) {
            const uint64_t runEnd = std::min(end, (i | (p - 1)) + 1);
            for (; (i & p) == r && i < runEnd; ++i) {
                const auto k = static_cast<uint32_t>(i - first);
                order(low[k], high[k]);
            }
            i = runEnd;
        }
        const auto done = static_cast<uint32_t>(end - first);
        low += done;
        high += done;
        first = end;
    }
}

// Merge exchange over `n` > 1 items, with the names p, q, r and d that Knuth uses.
template <typename Order>
void SortNodes(const NodeArray& nodes, uint32_t n, const Order& order) {
    const uint32_t top = std::bit_floor(n - 1);
    for (uint32_t p = top; p > 0; p /= 2) {
        uint32_t q = top;
        uint32_t r = 0;
        uint32_t d = p;
        for (;;) {
            ComparePairs(nodes, n, d, p, r, order);
            if (q == p) {
                break;
            }
            d = q - p;
            q /= 2;
            r = p;
        }
    }
}

// Without a branch: whether two numbers are in order cannot be predicted.
void OrderByRank(Item& low, Item& high) {
    const Item a = low;
    const Item b = high;
    const bool swap = a.rank > b.rank;
    low = {swap ? b.node : a.node, swap ? b.rank : a.rank};
    high = {swap ? a.node : b.node, swap ? a.rank : b.rank};
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
    const ElementFormat format = ListAccess::FormatOf(*body_);
    NodeArray nodes;
    if (!nodes.Gather(body_->head_, format)) {
        return 0;
    }
    // `compare`: above zero when the element of the second node belongs before that of the first.
    const auto sortBy = [&](const auto& compare) {
        SortNodes(nodes, count, [&](Item& low, Item& high) {
            if (compare(low.node->Data(), format.Argument(high.node->Data())) > 0) {
                std::swap(low, high);
            }
        });
    };
    if (comparer != LC_EQUAL) {
        sortBy([&](void* slot, void* key) {
            return comparer(this, 0, format.Argument(slot), key, param);
        });
    } else if (format.HasRank()) {
        SortNodes(nodes, count, OrderByRank);
    } else {
        sortBy([&](void* slot, void* key) { return format.Compare(slot, key, 0); });
    }
    nodes.Relink(body_->head_, count);

    // The position is a place in the list: it now names the element that has come there.
    const uint32_t index = body_->index_;
    Rewind();
    if (index != 0) {
        SetPosition(LocateIndex(index));
    }
    return count;
}
