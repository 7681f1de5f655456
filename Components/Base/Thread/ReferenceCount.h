// kxThread::ReferenceCount, the thread-safe intrusive count, and the two
// atomic counters it is made of.
//
// An object derived from ReferenceCount starts with count 0; ref() and
// unref() may be called from any thread, and the unref() that brings the
// count to 0 deletes the object through its virtual destructor:
//
//     class Shared : public kxThread::ReferenceCount { ... };
//     Shared* s = new Shared;   // refs() == 0
//     s->ref();                 // 1
//     s->unref();               // 0: s is deleted
//
// Memory ordering: every operation is sequentially consistent, so all that
// a thread wrote before its unref() is visible to the destructor.
// Cost: one locked instruction per operation, no lock.
#pragma once

#include <Base/Utility/Api.h>

#include <atomic>

namespace kxThread {

/// Adds 1 to `value` atomically, fully ordered; returns the new value.
BASE_API int atomicIncrement(int& value);
/// Subtracts 1 from `value` atomically, fully ordered; returns the new
/// value.
BASE_API int atomicDecrement(int& value);

class BASE_API ReferenceCount {
public:
    void ref() const;
    /// Deletes the object when the count drops to 0. An unref() below 0
    /// deletes nothing.
    void unref() const;
    int refs() const;

protected:
    ReferenceCount();
    /// A copy is a new object: its count starts at 0.
    ReferenceCount(const ReferenceCount& other);
    /// Leaves this object's count as it is.
    ReferenceCount& operator=(const ReferenceCount& other);
    virtual ~ReferenceCount();

private:
    alignas(std::atomic_ref<int>::required_alignment) mutable int count_;
};

} // namespace kxThread
