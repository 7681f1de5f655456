#include <Base/Utility/ImplBase.h>

namespace kx {

// Defined here so that the class's type information lives in the library.
ImplBase::~ImplBase() = default;

} // namespace kx
