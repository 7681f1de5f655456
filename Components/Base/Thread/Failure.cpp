#include <Base/Thread/Failure.h>

#include <Base/Utility/Error.h>
#include <Base/Utility/SystemError.h>

#include <exception>

namespace kx::detail {

void throwCreationFailure(int code) {
    throw kxUtil::Error(1, kxUtil::systemErrorText(code));
}

void terminateOnFailure(int code) {
    if (code != 0)
        std::terminate();
}

} // namespace kx::detail
