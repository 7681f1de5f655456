#include <Base/Memory/Heap.h>

#include <Base/OS/AppPaths.h>
#include <Base/Platform/Heap.h>

#include <cstdio>
#include <cstdlib>

namespace kxOS {

kxUtil::Error useWindowsLowFragmentationHeap() {
    return kx::platform::useLowFragmentationHeap();
}

} // namespace kxOS

void setupLowFragmentationHeap(void) {
    static const bool disabled = std::getenv("HERON_DISABLE_LFH") != nullptr;
    if (disabled) {
        std::printf("%s: Explicitly disabling Windows Low Fragmentation Heap\n",
                    APP_getProgramName());
        return;
    }
    const kxUtil::Error error = kxOS::useWindowsLowFragmentationHeap();
    if (error)
        std::printf("%s: Unable to use Windows Low Fragmentation Heap: %s\n", APP_getProgramName(),
                    error.message());
}
