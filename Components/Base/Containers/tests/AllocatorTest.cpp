#include <Base/Containers/BlockAllocator.h>
#include <Base/Containers/ReferenceCount.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <set>

TEST(BlockAllocator, SmallElementsTakeEightBytesAndBlocksHoldTheHeader) {
    kx::BlockAllocator pool(4, 5);
    EXPECT_EQ(pool.elementSize(), 8u);
    EXPECT_EQ(pool.blockBytes(), 56u);
    auto* first = static_cast<char*>(pool.alloc());
    auto* second = static_cast<char*>(pool.alloc());
    EXPECT_EQ(second - first, 8);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(first) % 16, 0u);
    std::set<void*> distinct = {first, second};
    for (int i = 0; i < 20; ++i)
        distinct.insert(pool.alloc());
    EXPECT_EQ(distinct.size(), 22u);
    EXPECT_EQ(pool.numAllocated(), 22);
}

TEST(BlockAllocator, FreedElementsComeBackLastInFirstOut) {
    kx::BlockAllocator pool(24, 10);
    void* a = pool.alloc();
    void* b = pool.alloc();
    pool.free(nullptr);
    EXPECT_EQ(pool.numFreed(), 0);
    pool.free(a);
    pool.free(b);
    EXPECT_EQ(pool.numAllocated(), 0);
    EXPECT_EQ(pool.numFreed(), 2);
    EXPECT_EQ(pool.alloc(), b);
    EXPECT_EQ(pool.alloc(), a);
    EXPECT_EQ(pool.numFreed(), 0);
}

TEST(BlockAllocator, BlockSizeChangesOnlyWhileUnused) {
    kx::BlockAllocator pool(16, 10);
    pool.free(pool.alloc());
    pool.setNumElementsInBlock(3);
    EXPECT_EQ(pool.blockBytes(), 16u * 10 + 16);
    pool.freeEverything();
    EXPECT_EQ(pool.numFreed(), 0);
    pool.setNumElementsInBlock(3);
    EXPECT_EQ(pool.blockBytes(), 16u * 3 + 16);

    kx::BlockAllocator other(8, 2);
    other.setLazy();
    void* kept = other.alloc();
    pool.swap(other);
    EXPECT_TRUE(pool.isLazy());
    EXPECT_EQ(pool.numAllocated(), 1);
    pool.free(kept);
    EXPECT_EQ(pool.alloc(), kept);
}

namespace {

struct Counted : kx::ReferenceCount {
    static inline int destroyed = 0;
    ~Counted() override { ++destroyed; }
};

} // namespace

TEST(ReferenceCount, CopiesStartAtZeroAndTheLastUnrefDeletes) {
    auto* object = new Counted;
    for (int i = 0; i < 5; ++i)
        object->ref();
    const Counted copy(*object); // a new object: count 0
    EXPECT_EQ(copy.refs(), 0);
    Counted assigned;
    assigned = *object; // the count stays with its object
    EXPECT_EQ(assigned.refs(), 0);
    for (int i = 0; i < 4; ++i)
        object->unref();
    EXPECT_EQ(object->refs(), 1);
    const int before = Counted::destroyed;
    object->unref();
    EXPECT_EQ(Counted::destroyed, before + 1);
}

TEST(ReferenceCount, ReferencesShareOwnership) {
    const int before = Counted::destroyed;
    {
        kx::Reference<Counted> a(new Counted);
        EXPECT_EQ(a->refs(), 1);
        kx::Reference<Counted> b = a;
        EXPECT_EQ(a->refs(), 2);
        kx::Reference<Counted> c(std::move(b));
        EXPECT_FALSE(b); // NOLINT(bugprone-use-after-move): moved-from is null
        EXPECT_TRUE(a == c);
        a = kx::Reference<Counted>();
        EXPECT_EQ(c->refs(), 1);
    }
    EXPECT_EQ(Counted::destroyed, before + 1);
}
