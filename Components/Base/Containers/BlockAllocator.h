// kx::BlockAllocator: a pool of fixed-size elements for the nodes of the
// ordered trees and hash tables.
//
// Elements are carved from blocks of `elementsPerBlock`, each one malloc
// with a 16-byte header, so allocating costs one heap call per block; freed
// elements go on a free list and are reused last in, first out. Memory goes
// back to the heap only in freeEverything() (and the destructor).
//
// Elements are aligned to 16 bytes plus multiples of the element size; node
// types whose size is a multiple of their alignment are aligned. Not
// thread-safe.
#pragma once

#include <Base/Utility/Api.h>

#include <cstdint>

namespace kx {

class BASE_API BlockAllocator {
public:
    /// Elements smaller than 8 bytes take 8 (room for the free-list link);
    /// fewer than one element per block is taken as one.
    BlockAllocator(std::uint64_t elementSize, int elementsPerBlock);
    BlockAllocator(const BlockAllocator&) = delete;
    BlockAllocator& operator=(const BlockAllocator&) = delete;
    ~BlockAllocator();

    void* alloc();
    /// Returns `p` to the pool; null is ignored.
    void free(void* p);
    /// Frees every block: all elements handed out become invalid.
    void freeEverything();

    int numAllocated() const { return numAllocated_; }
    int numFreed() const { return numFreed_; }
    std::uint64_t elementSize() const { return elementSize_; }
    std::uint64_t blockBytes() const { return blockBytes_; }

    /// Marks the pool lazy; kept and exchanged, read by no operation here.
    void setLazy();
    bool isLazy() const { return lazy_; }
    /// Takes effect only while nothing is allocated or freed; ignored
    /// otherwise.
    void setNumElementsInBlock(int n);
    void swap(BlockAllocator& other);

private:
    void* blocks_ = nullptr;   // newest block; each links to the one before
    void* freeList_ = nullptr; // most recently freed element
    std::uint64_t elementSize_;
    int elementsPerBlock_;
    std::uint64_t blockBytes_;
    int numAllocated_ = 0;
    int numFreed_ = 0;
    bool lazy_ = false;
};

} // namespace kx
