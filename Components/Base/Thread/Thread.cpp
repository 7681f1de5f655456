#include <Base/Thread/Thread.h>

#include <Base/Platform/Thread.h>
#include <Base/Signal/Signal.h>
#include <Base/String/IString.h>
#include <Base/Utility/ImplBase.h>
#include <Base/Utility/SystemError.h>

#include <memory>
#include <utility>

namespace kxThread {

struct ThreadImpl final : kx::ImplBase {
    ThreadImpl(void (*function)(void*), void* argument, bool signalMode)
        : function(function), argument(argument),
          signal(signalMode ? std::make_unique<kxRTB::SignalVoid>() : nullptr) {}

    void (*function)(void*);
    void* argument;
    std::unique_ptr<kxRTB::SignalVoid> signal; // until start() hands it over
    bool started = false;                      // launched and not waited for
    kx::platform::ThreadHandle handle;
    std::unique_ptr<kxRTB::SignalVoid> idleSignal; // getSignal() without a signal
};

namespace {

// What the new thread needs; it owns the start signal from start() on.
struct Launch {
    void (*function)(void*);
    void* argument;
    std::unique_ptr<kxRTB::SignalVoid> signal;
};

void run(void* launch) {
    const std::unique_ptr<Launch> owned(static_cast<Launch*>(launch));
    if (owned->function)
        owned->function(owned->argument);
    else if (owned->signal)
        owned->signal->emit();
}

} // namespace

Thread::Thread() : impl_(new ThreadImpl(nullptr, nullptr, true)), owns_(true) {}

Thread::Thread(void (*func)(void*), void* arg)
    : impl_(new ThreadImpl(func, arg, false)), owns_(true) {}

Thread::Thread(const Thread& other) : impl_(other.impl_), owns_(false) {}

Thread::~Thread() {
    // The thread runs on; the started flag stays as it is.
    impl_->handle.detach();
    if (owns_)
        delete impl_;
}

kxRTB::SignalVoid& Thread::getSignal() {
    ThreadImpl& impl = *impl_;
    if (impl.signal)
        return *impl.signal;
    if (!impl.idleSignal)
        impl.idleSignal = std::make_unique<kxRTB::SignalVoid>();
    return *impl.idleSignal;
}

void Thread::setArg(void* arg) {
    impl_->argument = arg;
}

kxUtil::Error Thread::start() {
    ThreadImpl& impl = *impl_;
    auto* launch = new Launch{impl.function, impl.argument, std::move(impl.signal)};
    kx::platform::ThreadHandle handle;
    if (const int code = handle.start(run, launch)) {
        delete launch; // and with it the signal
        return kxUtil::Error(1, "_beginthread() failed: %S",
                             kxUtil::systemErrorText(code).asWChar());
    }
    impl.handle.detach();
    impl.handle = handle;
    impl.started = true;
    return {};
}

kxUtil::Error Thread::wait() {
    ThreadImpl& impl = *impl_;
    if (!impl.started)
        return kxUtil::Error(2, "cannot wait for a stopped thread");
    kxUtil::Error result;
    if (const int code = impl.handle.join())
        result = kxUtil::Error(1, "WaitForSingleObject() failed: %S\n",
                               kxUtil::systemErrorText(code).asWChar());
    impl.started = false;
    impl.handle.detach();
    return result;
}

} // namespace kxThread

int kxThread_CreateThread(void (*func)(void*), void* arg) {
    // No exception may cross into a C caller.
    try {
        kxThread::Thread thread(func, arg);
        return thread.start() ? 0 : 1;
    } catch (...) {
        return 0;
    }
}
