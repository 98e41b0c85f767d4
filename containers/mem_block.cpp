#include "lq_data/hash_table.h"

LQ_IMPLEMENT_DYNAMIC(CMemBlock, CObject, &CMemBlock::CreateObject)

CMemBlock::~CMemBlock() {
    DeleteBlocks();
}

CObject* CMemBlock::CreateObject() {
    return new CMemBlock;
}

void* CMemBlock::GetNewBlock(int size) {
    if (size < 0) {
        return nullptr;
    }
    auto* block = static_cast<BLOCK*>(lq::Allocate(sizeof(BLOCK) + static_cast<std::size_t>(size)));
    if (!block) {
        return nullptr;
    }
    block->next = blocks_;
    blocks_ = block;
    return block + 1;
}

void CMemBlock::DeleteBlocks() {
    while (blocks_) {
        BLOCK* block = blocks_;
        blocks_ = block->next;
        lq::Release(block);
    }
}
