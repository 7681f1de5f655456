// Internal header of libBase: not installed.
//
// Threads, locks, semaphores, thread-local keys and a monotonic clock, as
// the thread primitives need them. Each lock is a small object whose native
// state lives in opaque storage, sized for every platform and checked by the
// implementation, so that no system type appears here. A lock is made with
// create(), which returns 0 or the system's error code, and ends with
// destroy(); in between it must not be copied or moved, since native locks
// may not change address. Operations that can fail return the system's
// error code (0 for success); callers decide what a failure means.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace kx::platform {

/// Bytes that hold one native object.
template <std::size_t Size>
struct alignas(16) NativeStorage {
    unsigned char bytes[Size];
};

/// A thread started by start(), until join() or detach() closes the handle.
class ThreadHandle {
public:
    /// Starts a thread that calls `entry(argument)` with the default stack
    /// size. The handle must be closed.
    int start(void (*entry)(void*), void* argument);
    /// Waits for the thread to end and closes the handle. A closed handle
    /// gives the system's "invalid handle" error.
    int join();
    /// Closes the handle; the thread runs on. Nothing for a closed handle.
    void detach();

private:
    NativeStorage<16> native_;
    bool open_ = false;
};

/// Lets the processor run its other hardware thread for a moment: one round
/// of a busy wait.
inline void pauseProcessor() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#endif
}

/// Gives the processor to another ready thread, if there is one.
void yieldProcessor();

/// Polls `done` for a few microseconds (a busy phase, then a few yields),
/// about as long as the standard library's atomic waits spin: a lock or a
/// notification passed between two running threads then costs no sleep.
/// Whether `done` came true.
template <class Done>
bool spinUntil(Done done) {
    for (int i = 0; i < 64; ++i) {
        if (done())
            return true;
        pauseProcessor();
    }
    for (int i = 0; i < 4; ++i) {
        if (done())
            return true;
        yieldProcessor();
    }
    return done();
}

/// A plain mutex, the one that ConditionVariable works with.
class Mutex {
public:
    int create();
    void destroy();
    int lock();
    int unlock();

private:
    friend class ConditionVariable;
    NativeStorage<64> native_;
};

/// A recursive mutex: the owner may lock again and must unlock as often.
/// The owner is one atomic word, so an uncontended lock or unlock is a few
/// instructions inline; a thread that finds the mutex held spins briefly,
/// then sleeps until an unlock wakes it.
class RecursiveMutex {
public:
    int create();
    void destroy();

    void lock() {
        void* const self = currentThread();
        void* owner = nullptr;
        if (!owner_.compare_exchange_strong(owner, self, std::memory_order_acquire,
                                            std::memory_order_relaxed) &&
            owner != self)
            lockContended(self);
        ++depth_;
    }
    /// Nothing when the calling thread does not hold the mutex.
    void unlock() {
        if (owner_.load(std::memory_order_relaxed) != currentThread() || --depth_ != 0)
            return;
        // Both orders are sequentially consistent, as in lockContended: either
        // this unlock sees a sleeper registered, or the sleeper sees the
        // mutex free.
        owner_.store(nullptr, std::memory_order_seq_cst);
        if (waiters_.load(std::memory_order_seq_cst) != 0)
            wakeOne();
    }

private:
    // A value unique to the calling thread among running threads, read
    // without a call.
    static void* currentThread() { return __builtin_thread_pointer(); }
    void lockContended(void* self);
    void wakeOne();

    std::atomic<void*> owner_{nullptr};
    unsigned int depth_ = 0; // touched by the owner only
    std::atomic<int> waiters_{0};
    NativeStorage<96> parking_; // where contending threads sleep
};

/// No time limit, for ConditionVariable::wait.
inline constexpr std::int64_t kNoDeadline = INT64_MAX;

/// Microseconds on a clock that never goes back, from an unspecified start.
std::int64_t monotonicMicroseconds();

/// A condition variable used with a plain Mutex.
class ConditionVariable {
public:
    int create();
    void destroy();
    /// With `mutex` locked by the caller: releases it, sleeps until notified
    /// or until monotonicMicroseconds() reaches `deadline` (at once for a
    /// deadline that has passed), and locks it again. A time-out is not an
    /// error; wake-ups without a notification may happen.
    int wait(Mutex& mutex, std::int64_t deadline);
    /// Wakes one waiter.
    int signal();
    /// Wakes all waiters.
    int broadcast();

private:
    NativeStorage<64> native_;
};

/// A counting semaphore that holds values up to at least 2147483647.
class Semaphore {
public:
    int create(unsigned int initial);
    int destroy();
    /// Adds 1; the system's error when the value is at its maximum.
    int post();
    /// Waits without limit until the value is above 0, then takes 1. Spins
    /// briefly before it sleeps.
    int wait();
    /// Takes 1 when the value is above 0, without waiting.
    bool tryWait();

private:
    NativeStorage<32> native_;
};

/// createThreadKey's result when no key is left.
inline constexpr unsigned int kNoThreadKey = 0xFFFFFFFFu;

/// A new thread-local slot, null on every thread, or kNoThreadKey.
unsigned int createThreadKey();
/// Frees a key; nothing for a key that is not in use.
void freeThreadKey(unsigned int key);
/// The calling thread's value of `key`; null for a key that is not in use.
void* threadValue(unsigned int key);
/// Sets the calling thread's value of `key`; nothing for a key not in use.
void setThreadValue(unsigned int key, void* value);

} // namespace kx::platform
