// kxThread::Semaphore: a counting semaphore.
//
// post() adds 1, up to maxValue() (a post beyond it is ignored); wait()
// takes 1 as soon as the value is above 0, spinning for a few microseconds
// before it sleeps; tryWait() takes 1 only if it can at once.
//
// The destructor closes the system semaphore but deliberately leaves this
// object's small record allocated (it frees it only when the close fails),
// so every semaphore leaks a few dozen bytes: create semaphores for long
// lived objects, not in tight loops.
//
// Thread safety: any thread may post and wait. Destroy a semaphore only when
// no thread waits on it.
#pragma once

#include <Base/Utility/Api.h>

namespace kxThread {

class BASE_API Semaphore {
public:
    /// Starts at `initial`. Throws kxUtil::Error code 1, with the system's
    /// text, when the system cannot create it (or `initial` is above
    /// maxValue()).
    explicit Semaphore(unsigned int initial = 0);
    ~Semaphore();

    Semaphore(const Semaphore&) = delete;
    Semaphore& operator=(const Semaphore&) = delete;

    /// 2147483647.
    static unsigned int maxValue();

    void post();
    /// Waits without limit.
    void wait();
    /// Takes 1 and returns true when the value is above 0; false otherwise.
    bool tryWait();

private:
    struct Impl;
    Impl* impl_;
};

} // namespace kxThread
