// kxThread::Barrier: a reusable barrier for a fixed number of threads.
//
// Each round lets `threshold` threads through together: wait() returns when
// the threshold-th thread of the round arrives. The barrier has two phases,
// so it can be reused at once: a thread that arrives while the previous
// round is still leaving waits for that round to empty, then joins the next
// one.
//
// Copies share one barrier, which lives until the last copy is gone and
// the last waiter has left.
//
// Cost: a mutex and a condition variable; each waiter spins briefly, then
// sleeps until the round is full. A thread that comes back at once for the
// next round waits twice: for the round it left to drain, then for the next
// one to fill.
// Thread safety: any thread may wait.
#pragma once

#include <Base/Utility/Api.h>

namespace kxThread {

class BASE_API Barrier {
public:
    /// A threshold below 1 is taken as 1 (wait() then never blocks).
    explicit Barrier(int threshold);
    Barrier(const Barrier& other);
    Barrier& operator=(const Barrier& other);
    ~Barrier();

    void wait();

private:
    struct Impl;
    Impl* impl_;
};

} // namespace kxThread
