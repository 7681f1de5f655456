// kxThread::RWLock, a reader/writer lock, and kxThread::RWLockOp, the
// scoped operator through which it is taken.
//
// Any number of readers, or one writer, hold the lock at a time. There is
// no preference for writers: new readers enter while a writer waits, as
// long as no writer holds the lock, so a steady stream of readers can keep
// a writer waiting.
//
//     kxThread::RWLockOp op(lock, true);
//     op.read();       // or op.write()
//     ...              // released when op goes out of scope
//
// The lock is built on a Condition. Copying or assigning a lock copies its
// reader count and writer flag as they stand and makes both objects share
// one condition; copy only a lock that nobody holds.
//
// Thread safety: an RWLock may be used from any thread; an RWLockOp belongs
// to the thread that made it. Neither lock is recursive: a thread that
// holds the lock and asks for it again through another operator may wait
// forever.
#pragma once

#include <Base/Thread/Condition.h>
#include <Base/Utility/Api.h>

namespace kxThread {

class BASE_API RWLock {
public:
    RWLock();
    RWLock(const RWLock& other);
    RWLock& operator=(const RWLock& other);
    ~RWLock();

    /// Whether a writer holds the lock.
    bool hasWriter() const;
    /// How many readers hold the lock.
    int numberOfReaders() const;

private:
    friend class RWLockOp;

    void readLock();
    void readUnlock();
    void writeLock();
    void writeUnlock();

    mutable Condition condition_;
    int readers_;
    bool writer_;
};

class BASE_API RWLockOp {
public:
    /// Holds nothing. `flag` is kept for code that passes it; the destructor
    /// releases what is held whatever it says.
    explicit RWLockOp(RWLock& lock, bool flag = true);
    /// Releases what is held.
    ~RWLockOp();

    RWLockOp(const RWLockOp&) = delete;
    RWLockOp& operator=(const RWLockOp&) = delete;

    /// Waits for a read lock. An operator holds one lock at most: whatever
    /// it held is released first.
    void read();
    /// Waits for the write lock, releasing first whatever was held (so
    /// read() then write() is not an atomic upgrade).
    void write();
    /// Releases the lock held, if any.
    void unlock();

private:
    RWLock& lock_;
    bool reading_;
    bool writing_;
    [[maybe_unused]] bool flag_; // stored, read by nothing
};

} // namespace kxThread
