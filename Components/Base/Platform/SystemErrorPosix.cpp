// POSIX error text: errno values and the C library's messages.
#include <Base/Platform/SystemError.h>

#include <cerrno>
#include <cstring>

namespace kx::platform {

std::string errorDescription(int code) {
    // strerrordesc_np tells a known code from an unknown one (for which
    // strerror_r would make up "Unknown error N"); strerror_r gives the text
    // in the user's language and, unlike strerror, is safe on any thread.
    if (!strerrordesc_np(code))
        return {};
    char buffer[256];
    return strerror_r(code, buffer, sizeof buffer);
}

int lastError() {
    return errno;
}

int lastSocketError() {
    return errno;
}

} // namespace kx::platform
