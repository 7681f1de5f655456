#include <Base/Thread/Barrier.h>

#include <Base/Thread/Condition.h>
#include <Base/Thread/ReferenceCount.h>

#include <utility>

namespace kxThread {

struct Barrier::Impl final : ReferenceCount {
    explicit Impl(int threshold) : threshold(threshold) {}

    Condition condition;
    int threshold;
    int arrived = 0;  // threads inside the current round
    bool open = true; // false while a full round drains
};

Barrier::Barrier(int threshold) : impl_(new Impl(threshold < 1 ? 1 : threshold)) {
    impl_->ref();
}

Barrier::Barrier(const Barrier& other) : impl_(other.impl_) {
    impl_->ref();
}

Barrier& Barrier::operator=(const Barrier& other) {
    Barrier copy(other);
    std::swap(impl_, copy.impl_);
    return *this;
}

Barrier::~Barrier() {
    impl_->unref();
}

void Barrier::wait() {
    // The reference keeps the barrier for the whole call, even if every
    // Barrier object is destroyed while this thread sleeps.
    Impl* impl = impl_;
    impl->ref();
    {
        const kxUtil::Interval noLimit;
        MutexOp op(impl->condition.getMutex());
        op.lock();
        while (!impl->open)
            impl->condition.wait(noLimit);
        if (++impl->arrived == impl->threshold) {
            impl->open = false;
            impl->condition.broadcast();
        } else {
            while (impl->open && impl->arrived != impl->threshold)
                impl->condition.wait(noLimit);
        }
        if (impl->arrived-- == 1) {
            impl->open = true;
            impl->condition.broadcast();
        }
    }
    impl->unref();
}

} // namespace kxThread
