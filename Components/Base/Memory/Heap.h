// The process heap's low-fragmentation mode, switched on at start-up.
//
// On Windows the mode keeps long sessions with many small allocations from
// fragmenting the heap. Other systems' allocators manage fragmentation by
// themselves: there the switch succeeds and changes nothing.
#pragma once

#include <Base/Utility/Api.h>
#include <Base/Utility/Error.h>

namespace kxOS {

/// Turns on the low-fragmentation mode of the C runtime's heap and of the
/// process's default heap. Error 1 when the system library cannot be
/// loaded, 2 when it lacks the switch.
BASE_API kxUtil::Error useWindowsLowFragmentationHeap();

} // namespace kxOS

BASE_BEGIN_C

/// Calls kxOS::useWindowsLowFragmentationHeap() unless the environment
/// variable HERON_DISABLE_LFH is present (read once per process), and tells
/// standard output when it is disabled or fails, with the program's name:
///
///     "<program>: Explicitly disabling Windows Low Fragmentation Heap\n"
///     "<program>: Unable to use Windows Low Fragmentation Heap: <message>\n"
BASE_API void setupLowFragmentationHeap(void);

BASE_END_C
