#include <Base/Containers/BlockAllocator.h>

#include <cstdlib>
#include <cstring>
#include <utility>

namespace kx {
namespace {

// The 16 bytes in front of a block's elements.
struct BlockHeader {
    int used;       // elements handed out from this block
    void* previous; // the block allocated before
};
static_assert(sizeof(BlockHeader) == 16);

BlockHeader* header(void* block) {
    return static_cast<BlockHeader*>(block);
}

char* elements(void* block) {
    return static_cast<char*>(block) + sizeof(BlockHeader);
}

} // namespace

BlockAllocator::BlockAllocator(std::uint64_t elementSize, int elementsPerBlock)
    : elementSize_(elementSize < 8 ? 8 : elementSize),
      elementsPerBlock_(elementsPerBlock < 1 ? 1 : elementsPerBlock),
      blockBytes_(elementSize_ * static_cast<std::uint64_t>(elementsPerBlock_) +
                  sizeof(BlockHeader)) {}

BlockAllocator::~BlockAllocator() {
    freeEverything();
}

void* BlockAllocator::alloc() {
    if (freeList_) {
        void* p = freeList_;
        std::memcpy(&freeList_, p, sizeof freeList_);
        ++numAllocated_;
        --numFreed_;
        return p;
    }
    if (!blocks_ || header(blocks_)->used == elementsPerBlock_) {
        void* block = std::malloc(blockBytes_);
        *header(block) = BlockHeader{0, blocks_};
        blocks_ = block;
    }
    BlockHeader* h = header(blocks_);
    void* p = elements(blocks_) + elementSize_ * static_cast<std::uint64_t>(h->used);
    ++h->used;
    ++numAllocated_;
    return p;
}

void BlockAllocator::free(void* p) {
    if (!p)
        return;
    std::memcpy(p, &freeList_, sizeof freeList_);
    freeList_ = p;
    --numAllocated_;
    ++numFreed_;
}

void BlockAllocator::freeEverything() {
    while (blocks_) {
        void* previous = header(blocks_)->previous;
        std::free(blocks_);
        blocks_ = previous;
    }
    freeList_ = nullptr;
    numAllocated_ = 0;
    numFreed_ = 0;
}

void BlockAllocator::setLazy() {
    lazy_ = true;
}

void BlockAllocator::setNumElementsInBlock(int n) {
    if (numAllocated_ != 0 || numFreed_ != 0)
        return;
    elementsPerBlock_ = n < 1 ? 1 : n;
    blockBytes_ =
        elementSize_ * static_cast<std::uint64_t>(elementsPerBlock_) + sizeof(BlockHeader);
}

void BlockAllocator::swap(BlockAllocator& other) {
    std::swap(blocks_, other.blocks_);
    std::swap(freeList_, other.freeList_);
    std::swap(elementSize_, other.elementSize_);
    std::swap(elementsPerBlock_, other.elementsPerBlock_);
    std::swap(blockBytes_, other.blockBytes_);
    std::swap(numAllocated_, other.numAllocated_);
    std::swap(numFreed_, other.numFreed_);
    std::swap(lazy_, other.lazy_);
}

} // namespace kx
