// kxThread::Thread, a thread of this process, and kxThread_CreateThread,
// which starts a detached one.
//
// A thread runs a function with one argument (function mode), or emits a
// signal once (signal mode): its work is whatever is connected to
// getSignal() before start(). start() hands the signal over to the new
// thread, which emits it and deletes it there, so a signal-mode thread
// starts only once. A function-mode thread may be started again after
// wait().
//
//     kxThread::Thread thread(work, &data);
//     if (kxUtil::Error e = thread.start()) ...   // code 1: not started
//     thread.wait();                               // joins it
//
// A Thread object that is destroyed without wait() leaves its thread
// running, detached. A copy shares the original's record without owning
// it; destroying any object of a started thread, a copy included, detaches
// the thread, and a later wait() on it fails with code 1.
//
// Thread safety: a Thread object is not synchronised: start it, wait for it
// and destroy it on one thread. The start signal is emitted on the new
// thread: while it runs, the clients connected to it belong to that thread
// (their connections end there when the signal is deleted).
#pragma once

#include <Base/Utility/Api.h>
#include <Base/Utility/Error.h>

namespace kxRTB {
class SignalVoid;
}

namespace kxThread {

struct ThreadImpl;

class BASE_API Thread {
public:
    /// Signal mode, with an empty signal.
    Thread();
    /// Function mode: the thread calls func(arg). A null function gives a
    /// thread that does nothing.
    Thread(void (*func)(void*), void* arg);
    /// Shares `other`'s thread without owning it.
    Thread(const Thread& other);
    /// Detaches a started thread, and frees the record if this object owns
    /// it.
    virtual ~Thread();

    Thread(Thread&&) = delete;
    Thread& operator=(const Thread&) = delete;
    Thread& operator=(Thread&&) = delete;

    /// The start signal. Once start() has taken it, and on a function-mode
    /// thread, this is a signal that no thread emits.
    kxRTB::SignalVoid& getSignal();
    /// The argument of the next start().
    void setArg(void* arg);

    /// Starts the thread. Code 1, "_beginthread() failed: <system text>",
    /// when the system cannot; the start signal is then lost. Starting a
    /// thread that was started and not waited for detaches the earlier one.
    kxUtil::Error start();
    /// Waits without limit for the thread to end. Code 2, "cannot wait for
    /// a stopped thread", when it was not started or has been waited for;
    /// code 1, "WaitForSingleObject() failed: <system text>\n", when the
    /// system cannot (the thread waits for itself, or was detached). The
    /// thread counts as stopped afterwards in both cases.
    kxUtil::Error wait();

private:
    ThreadImpl* impl_;
    bool owns_;
};

} // namespace kxThread

BASE_BEGIN_C

/// Starts func(arg) on a detached thread; 1 when it started, else 0.
BASE_API int kxThread_CreateThread(void (*func)(void*), void* arg);

BASE_END_C
