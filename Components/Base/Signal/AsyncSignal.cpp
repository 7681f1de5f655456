#include <Base/Signal/AsyncSignal.h>

namespace kxRTB {

// Defined here so that the class's type information lives in the library.
AsyncSignal::~AsyncSignal() = default;

} // namespace kxRTB
