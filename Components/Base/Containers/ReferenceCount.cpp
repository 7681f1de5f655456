#include <Base/Containers/ReferenceCount.h>

namespace kx {

// Out of line, so that the table of virtual functions lives in the library.
ReferenceCount::~ReferenceCount() = default;

} // namespace kx
