#include <Base/Thread/ThreadKey.h>

#include <Base/Platform/Thread.h>

namespace kxThread {

static_assert(kInvalidThreadKey == kx::platform::kNoThreadKey);

unsigned int createThreadKey() {
    return kx::platform::createThreadKey();
}

void freeThreadKey(unsigned int key) {
    kx::platform::freeThreadKey(key);
}

void* getThreadSpecificValue(unsigned int key) {
    return kx::platform::threadValue(key);
}

void setThreadSpecificValue(unsigned int key, void* value) {
    kx::platform::setThreadValue(key, value);
}

} // namespace kxThread
