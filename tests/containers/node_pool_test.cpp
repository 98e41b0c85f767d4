#include <cstring>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "containers/list_access.h"
#include "lq_data/containers.h"
#include "tests/support/memory_jobs.h"

namespace {

using lq::containers::ListAccess;
using lq::test::kShort;
using lq::test::RunWithFailures;

TEST(NodePool, DataIsZeroAndAlignedAndTheBlocksFirstNodeComesFirst) {
    for (const int dataSize : {0, 1, 4, 8, 12, 16, 24, 48, 100}) {
        const std::size_t size = static_cast<std::size_t>(dataSize);
        const std::size_t alignment = size % 16 == 0 ? 16 : size % 8 == 0 ? 8 : 4;
        CGList pool(dataSize, LET_MEMORY, 3);
        CGList::CNode* before = nullptr;
        for (int i = 0; i < 7; ++i) {
            CGList::CNode* node = pool.NewNode(before, nullptr);
            ASSERT_NE(node, nullptr);
            EXPECT_EQ(reinterpret_cast<uintptr_t>(node->Data()) % alignment, 0u) << dataSize;
            const std::vector<unsigned char> zeros(size + 1);
            EXPECT_EQ(std::memcmp(node->Data(), zeros.data(), size), 0) << dataSize;
            std::memset(node->Data(), 0xFF, size);
            EXPECT_EQ(CGList::GetPrevPosition(node), before);
            EXPECT_EQ(CGList::GetNextPosition(node), nullptr);
            if (i % 3 != 0) {
                EXPECT_LT(before, node);
            }
            EXPECT_EQ(ListAccess::BlockCount(pool), static_cast<uint32_t>(i / 3 + 1));
            before = node;
        }
    }
}

TEST(NodePool, NodesComeBackLastInFirstOut) {
    CGList pool(2);
    CGList::CNode* a = pool.AllocListElement();
    CGList::CNode* b = pool.AllocListElement();
    std::memset(a->Data(), 0xFF, 4);
    pool.FreeListElement(b);
    pool.FreeNode(a);
    pool.FreeNode(nullptr);
    EXPECT_EQ(pool.IsEmpty(), 1);
    EXPECT_EQ(pool.AllocListElement(), a);
    EXPECT_EQ(*static_cast<uint32_t*>(a->Data()), 0u);
    EXPECT_EQ(pool.AllocListElement(), b);
    EXPECT_EQ(pool.GetCount(), 2u);
    EXPECT_TRUE(ListAccess::Check(pool));
    pool.RemoveAll();
    EXPECT_EQ(pool.GetCount(), 0u);
    EXPECT_EQ(ListAccess::BlockCount(pool), 0u);
    EXPECT_EQ(pool.IsListCreated(), 0);
    EXPECT_TRUE(ListAccess::Check(pool));
}

TEST(MemBlock, BlocksAreRefusedOrPointerAligned) {
    struct Blocks : CMemBlock {
        using CMemBlock::GetNewBlock;
    } memory;
    EXPECT_EQ(memory.GetNewBlock(-1), nullptr);
    void* const block = memory.GetNewBlock(0);
    EXPECT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(memory.GetNewBlock(3)) % alignof(void*), 0u);
}

TEST(NodePool, WithoutMemoryNothingChanges) {
    const auto make = [] { return std::make_shared<CGList>(0); };  // blocks of one node
    RunWithFailures("node", make, [](CGList& pool) {
        const uint32_t before = pool.GetCount();
        const CGList::CNode* node = pool.AllocListElement();
        EXPECT_EQ(ListAccess::BlockCount(pool), pool.GetCount());
        EXPECT_EQ(pool.GetCount(), before + (node ? 1 : 0));
        EXPECT_TRUE(ListAccess::Check(pool));
        return node ? std::to_string(pool.GetCount()) : kShort;
    });
}

}  // namespace
