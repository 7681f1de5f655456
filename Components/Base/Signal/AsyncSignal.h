// kxRTB::AsyncSignal: one emission, bound to its arguments, to be carried
// out later, usually on another thread.
//
// The sender allocates an AsyncSignal that binds a signal and the arguments
// of one emission and hands it over; the receiver calls emit() once on its
// own thread and deletes the object. The signal is bound by reference and
// must outlive the AsyncSignal; it is emitted, and its callbacks run, on the
// thread that calls emit().
//
//     auto* pending = new kxRTB::AsyncSignalArg<kxRTB::SignalArg<int>>(changed, 7);
//     // ... on the receiving thread:
//     pending->emit();    // changed.emit(7)
//     delete pending;
//
// Thread safety: an AsyncSignal is used by one thread at a time. The
// emission follows the signal's rule: no other thread may use the signal,
// or the clients of its connections, while it runs.
#pragma once

#include <Base/Signal/Signal.h>

#include <type_traits>

namespace kxRTB {

class BASE_API AsyncSignal {
public:
    virtual ~AsyncSignal();
    /// Emits the bound signal with the bound arguments.
    virtual void emit() = 0;

protected:
    AsyncSignal() = default;
    AsyncSignal(const AsyncSignal&) = default;
    AsyncSignal& operator=(const AsyncSignal&) = default;
};

/// Binds a SignalArg<T> and a copy of its argument.
template <class S>
class AsyncSignalArg final : public AsyncSignal {
public:
    AsyncSignalArg(S& signal, const std::remove_cvref_t<typename S::argument_type>& argument)
        : signal_(signal), argument_(argument) {}

    void emit() override { signal_.emit(argument_); }

private:
    S& signal_;
    std::remove_cvref_t<typename S::argument_type> argument_;
};

} // namespace kxRTB
