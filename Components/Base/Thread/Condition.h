// kxThread::Condition: a condition variable with its own mutex.
//
// Waiters lock getMutex() through a MutexOp, test their predicate and wait;
// notifiers change the state under the same mutex and then signal or
// broadcast (holding the mutex or not):
//
//     kxThread::MutexOp op(condition.getMutex());
//     op.lock();
//     while (!ready)
//         condition.wait(kxUtil::Interval());   // zero: no time limit
//
// wait() returns nothing: a time-out, a notification and a spurious wake-up
// look alike, so callers loop on their own predicate. Its time limit keeps
// an old rule of this library: the interval is read as a count of
// milliseconds, n = seconds * 1000 + microseconds / 1000 (truncated), and
// the wait ends after n MICROseconds. So Interval(1) waits about 1 ms,
// anything that truncates to n = 0 waits without limit, and a negative n
// releases and re-takes the mutex and returns.
//
// A waiter without a time limit watches for a notification for a few
// microseconds before it sleeps. Copies name the same condition and mutex;
// the last copy to go frees them.
//
// Thread safety: any thread may wait or notify. Lock order: the condition's
// mutex comes before the internal lock that signal() and broadcast() take.
#pragma once

#include <Base/Thread/Mutex.h>
#include <Base/Utility/Api.h>
#include <Base/Utility/Interval.h>

namespace kxThread {

class BASE_API Condition {
public:
    /// Throws kxUtil::Error code 1, with the system's text, when the system
    /// cannot create the condition.
    Condition();
    Condition(const Condition& other);
    Condition& operator=(const Condition& other);
    ~Condition();

    /// The mutex that guards the waiters' state; a system mutex object.
    Mutex& getMutex();

    /// With getMutex() locked once by the caller: releases it, sleeps until
    /// notified or until the time limit above, and locks it again.
    void wait(kxUtil::Interval interval);
    /// Wakes one waiter.
    void signal();
    /// Wakes every waiter.
    void broadcast();

private:
    struct Impl;
    Impl* impl_;
};

} // namespace kxThread
