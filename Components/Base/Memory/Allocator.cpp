#include <Base/Memory/Allocator.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr std::uint64_t kAlignment = 8;

// Rounded up to the alignment; 0 stays 0.
constexpr std::uint64_t roundUp(std::uint64_t size) {
    return (size + kAlignment - 1) / kAlignment * kAlignment;
}

// A block on a free list; its first word links to the next.
struct FreeBlock {
    FreeBlock* next;
};

struct SizeClass {
    unsigned int blockSize;
    FreeBlock* freeList; // nothing puts blocks here: the C heap serves all
};

// The block sizes, irregular ones included, as callers have sized their
// data by them.
const std::array<SizeClass, 52> sizeClasses = {{
    {8, nullptr},         {16, nullptr},        {24, nullptr},        {32, nullptr},
    {40, nullptr},        {56, nullptr},        {64, nullptr},        {80, nullptr},
    {88, nullptr},        {96, nullptr},        {128, nullptr},       {256, nullptr},
    {384, nullptr},       {448, nullptr},       {512, nullptr},       {768, nullptr},
    {1024, nullptr},      {2048, nullptr},      {4096, nullptr},      {8200, nullptr},
    {12000, nullptr},     {20000, nullptr},     {30000, nullptr},     {50000, nullptr},
    {110000, nullptr},    {150000, nullptr},    {200000, nullptr},    {262200, nullptr},
    {350000, nullptr},    {500000, nullptr},    {1400000, nullptr},   {2000000, nullptr},
    {3000000, nullptr},   {5600000, nullptr},   {10000000, nullptr},  {16777320, nullptr},
    {22369624, nullptr},  {40000000, nullptr},  {67108864, nullptr},  {80000000, nullptr},
    {100000000, nullptr}, {120000000, nullptr}, {140000000, nullptr}, {160000000, nullptr},
    {180000000, nullptr}, {200000000, nullptr}, {220000000, nullptr}, {240000000, nullptr},
    {268435460, nullptr}, {280000000, nullptr}, {290000000, nullptr}, {300000000, nullptr},
}};

int debugSetting = 0;
int chkallocSetting = 0;
int chkfreeSetting = 0;
int scatterSetting = 1;
FILE* output = nullptr;

// The first class whose blocks hold `size` bytes, rounded up; the end when
// none does.
const SizeClass* firstClassFor(std::uint64_t size) {
    const std::uint64_t rounded = roundUp(size);
    for (const SizeClass& c : sizeClasses) {
        if (c.blockSize >= rounded)
            return &c;
    }
    return sizeClasses.data() + sizeClasses.size();
}

} // namespace

void* MA_malloc(size_t size) {
    return std::malloc(size);
}

void* MA_calloc(size_t count, size_t size) {
    return std::calloc(count, size);
}

void* MA_realloc(void* block, size_t size) {
    return std::realloc(block, size);
}

void MA_free(void* block) {
    std::free(block);
}

void* MA_malloc_from_freelist(size_t size, size_t* actualSize) {
    if (actualSize)
        *actualSize = size;
    return std::malloc(size);
}

size_t MA_msize(...) {
    return 0;
}

size_t MA_get_memory_used(void) {
    return 0;
}

size_t MA_get_block_overhead(void) {
    const std::uint64_t header = debugSetting > 0 ? 80 : 16;
    return static_cast<size_t>(roundUp(header) + roundUp(1));
}

unsigned int MA_get_optimal_size(int maxCount, unsigned int elementSize, unsigned int maxBlock) {
    if (elementSize == 0)
        return 0;
    const SizeClass* end = sizeClasses.data() + sizeClasses.size();
    unsigned int bestSize = 0;
    auto bestWaste = static_cast<float>(elementSize);
    // The first class comes from the rounded size, the arithmetic from the
    // size itself.
    for (const SizeClass* c = firstClassFor(elementSize); c != end; ++c) {
        if (maxBlock != 0 && c->blockSize > maxBlock)
            return bestSize;
        const unsigned int count = c->blockSize / elementSize;
        const unsigned int rest = c->blockSize % elementSize;
        const float waste = static_cast<float>(rest) / static_cast<float>(count);
        if (waste < bestWaste) {
            bestSize = c->blockSize;
            if (rest == 0)
                return bestSize;
            bestWaste = waste;
        }
        if (count >= static_cast<unsigned int>(maxCount < 0 ? 0 : maxCount))
            return bestSize;
    }
    return bestSize;
}

int MA_check_freelist(int limit, size_t elementSize) {
    if (elementSize == 0)
        return 0;
    const SizeClass* end = sizeClasses.data() + sizeClasses.size();
    long long total = 0;
    for (const SizeClass* c = firstClassFor(elementSize); c != end; ++c) {
        for (const FreeBlock* block = c->freeList; block; block = block->next) {
            total += static_cast<long long>(c->blockSize / elementSize);
            if (total >= limit)
                return limit;
        }
    }
    return static_cast<int>(total);
}

void MA_dump_tally_directive(const char* directive) {
    if (debugSetting != 0 && output)
        std::fprintf(output, "tally  0x0 0 0 %s\n", directive ? directive : "(null)");
}

void MA_set_output(FILE* stream) {
    output = stream;
}

int MA_var_debug_get(void) {
    return debugSetting;
}

void MA_var_debug_set(int value) {
    debugSetting = value;
}

int MA_var_chkalloc_get(void) {
    return chkallocSetting;
}

void MA_var_chkalloc_set(int value) {
    chkallocSetting = value;
}

int MA_var_chkfree_get(void) {
    return chkfreeSetting;
}

void MA_var_chkfree_set(int value) {
    chkfreeSetting = value;
}

int MA_var_scatter_get(void) {
    return scatterSetting;
}

void MA_var_scatter_set(int value) {
    scatterSetting = value;
}

int MA_var_base_get(...) {
    return 0;
}

int MA_var_top_get(...) {
    return 0;
}

void MA_check(...) {}
void MA_comment(...) {}
void MA_dump_alloc_list(...) {}
void MA_exit(...) {}
void MA_init(...) {}
void MA_leak_report(...) {}
void MA_stats(...) {}
void MA_tag_allocated(...) {}
void MA_trace(...) {}
void malloc_check_action_function(...) {}
