// kx::ReferenceCount: the intrusive, single-threaded reference count, and
// kx::Reference<T>, the handle that drives it.
//
// An object derived from ReferenceCount starts at count 0; each Reference
// that points at it adds one, and the last one to let go deletes it through
// the virtual destructor. Neither is atomic: share such objects within one
// thread only (kxThread::ReferenceCount is the thread-safe count).
//
//     struct Shape : kx::ReferenceCount { ... };
//     kx::Reference<Shape> a(new Shape);   // count 1
//     kx::Reference<Shape> b = a;          // count 2; deleted when both go
#pragma once

#include <Base/Utility/Api.h>

#include <utility>

namespace kx {

class BASE_API ReferenceCount {
public:
    ReferenceCount() = default;
    /// A copy is a new object: it starts at 0.
    ReferenceCount(const ReferenceCount&) {}
    /// The count belongs to the object, not to its value: it stays.
    ReferenceCount& operator=(const ReferenceCount&) { return *this; }
    virtual ~ReferenceCount();

    void ref() { ++count_; }
    /// Deletes the object when the count drops to 0.
    void unref() {
        if (--count_ == 0)
            delete this;
    }
    int refs() const { return count_; }

private:
    int count_ = 0;
};

/// A handle that holds one reference to a T derived from ReferenceCount.
template <class T>
class Reference {
public:
    Reference() = default;
    Reference(T* object) : object_(object) {
        if (object_)
            object_->ref();
    }
    Reference(const Reference& other) : Reference(other.object_) {}
    Reference(Reference&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ~Reference() {
        if (object_)
            object_->unref();
    }

    Reference& operator=(Reference other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    T* get() const { return object_; }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }

    friend bool operator==(const Reference& a, const Reference& b) {
        return a.object_ == b.object_;
    }

private:
    T* object_ = nullptr;
};

} // namespace kx
