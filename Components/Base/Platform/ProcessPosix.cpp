#include <Base/Platform/Process.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include <unistd.h>

namespace kx::platform {

kxString::IString executablePath() {
    // Linux names the executable through a link of the process's own entry;
    // file names are UTF-8 there.
    std::string path(256, '\0');
    for (;;) {
        const ssize_t n = readlink("/proc/self/exe", path.data(), path.size());
        if (n < 0)
            return kxString::IString();
        if (static_cast<std::size_t>(n) < path.size()) {
            path.resize(static_cast<std::size_t>(n));
            return kxString::IString(path.c_str(), kxString::Encoding::utf8);
        }
        path.resize(path.size() * 2);
    }
}

bool setEnvironmentVariable(const char* name, const char* value) {
    return setenv(name, value, 1) == 0;
}

bool writeStandardOutput(const char* text, std::size_t length) {
    while (length > 0) {
        const ssize_t n = write(STDOUT_FILENO, text, length);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        text += n;
        length -= static_cast<std::size_t>(n);
    }
    return true;
}

} // namespace kx::platform
