// kxThread::Mutex, a recursive mutex, and kxThread::MutexOp, the scoped
// operator through which it is locked.
//
// The owning thread may lock a mutex again and must unlock it as often.
// Only MutexOp (and the classes of this library) lock and unlock; a MutexOp
// does not lock in its constructor, and its destructor unlocks only what it
// locked, and only when asked to:
//
//     kxThread::Mutex mutex;
//     {
//         kxThread::MutexOp op(mutex, true);
//         op.lock();
//         ...                      // unlocked when op goes out of scope
//     }
//
// Cost: a heap record per mutex. Uncontended, lock and unlock are one
// atomic instruction each, with no call into the system; a thread that finds
// the mutex held spins for a few microseconds, then sleeps until it is free.
// Memory ordering: an unlock happens before the next lock that takes the
// mutex, as for any mutex.
// Thread safety: a Mutex may be used from any thread; a MutexOp belongs to
// the thread that made it.
#pragma once

#include <Base/Utility/Api.h>

namespace kxThread {

class BASE_API Mutex {
public:
    /// A light mutex: Mutex(true).
    Mutex();
    /// true asks for a light, process-local mutex, false for a system mutex
    /// object. Both are recursive; on POSIX systems they are the same mutex.
    /// Throws kxUtil::Error code 1, with the system's text, when the system
    /// cannot create it.
    explicit Mutex(bool criticalSection);
    ~Mutex();

    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

private:
    friend class MutexOp;
    friend class Condition;

    void lock();
    /// Unlocking a mutex that the calling thread does not hold does nothing.
    void unlock();

    struct Impl;
    Impl* impl_;
};

class BASE_API MutexOp {
public:
    /// Locks nothing. With `autoUnlock` the destructor unlocks the mutex if
    /// this operator's last call was lock().
    explicit MutexOp(Mutex& mutex, bool autoUnlock = true)
        : mutex_(mutex), locked_(false), autoUnlock_(autoUnlock) {}
    ~MutexOp() {
        if (autoUnlock_ && locked_)
            mutex_.unlock();
    }

    MutexOp(const MutexOp&) = delete;
    MutexOp& operator=(const MutexOp&) = delete;

    /// Locks the mutex (again, if this thread holds it already).
    void lock() {
        mutex_.lock();
        locked_ = true;
    }
    /// Unlocks the mutex once, whoever locked it on this thread: an
    /// operator without auto-unlock may leave the mutex locked for another
    /// to release.
    void unlock() {
        mutex_.unlock();
        locked_ = false;
    }

private:
    Mutex& mutex_;
    bool locked_;
    bool autoUnlock_;
};

} // namespace kxThread
