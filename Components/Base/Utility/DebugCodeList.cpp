// The debug topics that the library knows of; a host's build replaces this
// file with its full list.
#include <Base/Utility/DebugCodeList.h>

namespace kx::detail {

const DebugCodeRow kDebugCodeList[] = {
    {"history", 50},
    {"help", 268},
    {"Heap Check", 800},
    {"Refresh Timing", 4000},
    {"HeronPreferences", 8505},
    {"Heron Viewing", 8506},
    {"Forge Packet File Read/Write:", 3333},
    {nullptr, -1},
};

} // namespace kx::detail
