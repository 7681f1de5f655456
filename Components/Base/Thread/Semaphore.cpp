#include <Base/Thread/Semaphore.h>

#include <Base/Platform/Thread.h>
#include <Base/Thread/Failure.h>

namespace kxThread {

struct Semaphore::Impl {
    kx::platform::Semaphore native;
};

Semaphore::Semaphore(unsigned int initial) : impl_(new Impl) {
    if (const int code = impl_->native.create(initial)) {
        delete impl_;
        kx::detail::throwCreationFailure(code);
    }
}

Semaphore::~Semaphore() {
    // Kept on purpose after a successful close: a late call through a
    // destroyed semaphore finds its record (whose system object is gone)
    // rather than freed memory.
    if (impl_->native.destroy() != 0)
        delete impl_;
}

unsigned int Semaphore::maxValue() {
    return 2147483647u;
}

void Semaphore::post() {
    impl_->native.post();
}

void Semaphore::wait() {
    impl_->native.wait();
}

bool Semaphore::tryWait() {
    return impl_->native.tryWait();
}

} // namespace kxThread
