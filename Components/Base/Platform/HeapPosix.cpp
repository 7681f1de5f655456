// glibc's allocator has no low-fragmentation mode to switch on: its arenas
// and bins already keep small blocks apart from large ones.
#include <Base/Platform/Heap.h>

namespace kx::platform {

kxUtil::Error useLowFragmentationHeap() {
    return kxUtil::Error();
}

} // namespace kx::platform
