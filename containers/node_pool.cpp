// The node pool. A block is a head with its nodes behind it, back to back; a node is its two links
// with the data area behind them.
#include "containers/list_access.h"
#include "lq_data/containers.h"

LQ_IMPLEMENT_DYNAMIC(CGList, CObject, &CGList::CreateObject)

namespace {

constexpr int kDefaultBlockSize = 20;
constexpr uint32_t kDefaultDataSize = 4;

constexpr std::size_t RoundUp(std::size_t n, std::size_t unit) {
    return (n + unit - 1) / unit * unit;
}

}  // namespace

CGList::CGList(int blockSize) : CGList(kDefaultDataSize, LET_MEMORY, blockSize) {}

CGList::CGList(int dataSize, int, int blockSize)
    : blockSize_(blockSize < 1 ? 1 : static_cast<uint32_t>(blockSize)),
      dataSize_(static_cast<uint32_t>(dataSize)) {
    static_assert(sizeof(BLOCK) % alignof(std::max_align_t) == 0);
    static_assert(sizeof(CNode) % alignof(std::max_align_t) == 0);
}

CGList::~CGList() {
    RemoveAll();
}

CObject* CGList::CreateObject() {
    return new CGList(kDefaultBlockSize);
}

// The size of an object is a multiple of its alignment, so only data of such a size can need more
// than the alignment of the links.
std::size_t CGList::NodeBytes() const {
    constexpr std::size_t kWidest = alignof(std::max_align_t);
    const std::size_t alignment = dataSize_ % kWidest == 0 ? kWidest : alignof(CNode);
    return RoundUp(sizeof(CNode) + dataSize_, alignment);
}

bool CGList::Reserve() {
    if (free_) {
        return true;
    }
    const std::size_t nodeBytes = NodeBytes();
    static_assert(sizeof(std::size_t) > sizeof(dataSize_));  // so that the product below fits
    auto* block = static_cast<BLOCK*>(lq::Allocate(sizeof(BLOCK) + nodeBytes * blockSize_));
    if (!block) {
        return false;
    }
    *block = {blocks_, blockSize_, 0};
    blocks_ = block;

    // From the last node to the first, so that the first is handed out first.
    auto* nodes = reinterpret_cast<unsigned char*>(block + 1);
    for (uint32_t i = blockSize_; i-- > 0;) {
        free_ = ::new (nodes + i * nodeBytes) CNode{free_, nullptr};
    }
    return free_ != nullptr;
}

CGList::CNode* CGList::NewNode(CNode* prev, CNode* next) {
    CNode* const node = lq::containers::ListAccess::TakeNode(*this);
    if (node) {
        node->prev = prev;
        node->next = next;
    }
    return node;
}

void CGList::FreeNode(CNode* node) {
    if (node) {
        node->next = free_;
        free_ = node;
        --nodeCount_;
    }
}

void CGList::RemoveAll() {
    while (blocks_) {
        BLOCK* block = blocks_;
        blocks_ = block->next;
        lq::Release(block);
    }
    free_ = nullptr;
    nodeCount_ = 0;

    magic_ = 0;
    head_ = current_ = nullptr;
    count_ = index_ = 0;
}

bool CGList::Check() const {
    std::size_t total = 0;
    for (const BLOCK* block = blocks_; block; block = block->next) {
        total += block->count;
    }
    std::size_t free = 0;
    for (const CNode* node = free_; node && free <= total; node = node->next) {
        ++free;
    }
    return free + nodeCount_ == total;
}
