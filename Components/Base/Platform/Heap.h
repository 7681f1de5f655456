// Internal header of libBase: not installed.
//
// The heap's low-fragmentation mode, where the system has one.
#pragma once

#include <Base/Utility/Error.h>

namespace kx::platform {

/// Switches the C runtime's heap and the process's default heap to their
/// low-fragmentation mode. Succeeds and does nothing where the system's
/// allocator has no such mode.
kxUtil::Error useLowFragmentationHeap();

} // namespace kx::platform
