#include <Base/Thread/Mutex.h>

#include <Base/Platform/Thread.h>
#include <Base/Thread/Failure.h>

namespace kxThread {

struct Mutex::Impl {
    kx::platform::RecursiveMutex native;
};

Mutex::Mutex() : Mutex(true) {}

// Both kinds are the platform's recursive mutex.
Mutex::Mutex(bool) : impl_(new Impl) {
    if (const int code = impl_->native.create()) {
        delete impl_;
        kx::detail::throwCreationFailure(code);
    }
}

Mutex::~Mutex() {
    impl_->native.destroy();
    delete impl_;
}

void Mutex::lock() {
    impl_->native.lock();
}

void Mutex::unlock() {
    impl_->native.unlock();
}

} // namespace kxThread
