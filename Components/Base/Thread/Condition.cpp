#include <Base/Thread/Condition.h>

#include <Base/Platform/Thread.h>
#include <Base/Thread/Failure.h>
#include <Base/Thread/ReferenceCount.h>

#include <atomic>
#include <cmath>
#include <cstdint>
#include <utility>

namespace kxThread {

using kx::detail::terminateOnFailure;

// The internal lock closes the gap between releasing the caller's mutex and
// starting to sleep: a notifier needs it too, so no notification can pass
// in between. It lets the caller's mutex be recursive. Notifiers count
// under it, so that a waiter can watch for a notification while it spins.
struct Condition::Impl final : ReferenceCount {
    Impl() : mutex(false) {
        if (const int code = internal.create())
            kx::detail::throwCreationFailure(code);
        if (const int code = variable.create()) {
            internal.destroy();
            kx::detail::throwCreationFailure(code);
        }
    }
    ~Impl() override {
        variable.destroy();
        internal.destroy();
    }

    // Counts the notification and wakes one waiter or all.
    void notify(int (kx::platform::ConditionVariable::*wake)()) {
        terminateOnFailure(internal.lock());
        notifications.fetch_add(1, std::memory_order_relaxed);
        terminateOnFailure((variable.*wake)());
        terminateOnFailure(internal.unlock());
    }

    Mutex mutex;
    kx::platform::Mutex internal;
    kx::platform::ConditionVariable variable;
    std::atomic<unsigned int> notifications{0};
};

namespace {

// The deadline on the platform's monotonic clock for a wait of `interval`.
std::int64_t deadlineOf(kxUtil::Interval interval) {
    const double n = interval.seconds() * 1000.0 - std::trunc(interval.microseconds() * -0.001);
    if (n == 0)
        return kx::platform::kNoDeadline;
    if (n < 0)
        return 0; // the clock's start: long past
    // The count of milliseconds is taken as microseconds, as it always was.
    return kx::platform::monotonicMicroseconds() + static_cast<std::int64_t>(n);
}

} // namespace

Condition::Condition() : impl_(new Impl) {
    impl_->ref();
}

Condition::Condition(const Condition& other) : impl_(other.impl_) {
    impl_->ref();
}

Condition& Condition::operator=(const Condition& other) {
    Condition copy(other);
    std::swap(impl_, copy.impl_);
    return *this;
}

Condition::~Condition() {
    impl_->unref();
}

Mutex& Condition::getMutex() {
    return impl_->mutex;
}

void Condition::wait(kxUtil::Interval interval) {
    Impl& impl = *impl_;
    const std::int64_t deadline = deadlineOf(interval);
    const auto notifiedSinceEntry = [&impl, seen = impl.notifications.load()] {
        return impl.notifications.load(std::memory_order_relaxed) != seen;
    };
    impl.mutex.unlock();
    // A notification often follows within microseconds: watch for it before
    // going to sleep. Timed waits go to sleep at once.
    if (deadline != kx::platform::kNoDeadline || !kx::platform::spinUntil(notifiedSinceEntry)) {
        terminateOnFailure(impl.internal.lock());
        if (!notifiedSinceEntry())
            terminateOnFailure(impl.variable.wait(impl.internal, deadline));
        terminateOnFailure(impl.internal.unlock());
    }
    impl.mutex.lock();
}

void Condition::signal() {
    impl_->notify(&kx::platform::ConditionVariable::signal);
}

void Condition::broadcast() {
    impl_->notify(&kx::platform::ConditionVariable::broadcast);
}

} // namespace kxThread
