// kx::VectorImpl: the type-erased core of kx::vector<T>.
//
// A contiguous growable array that never knows its element type: the typed
// shell hands it a TypeUtil with the element's size and the functions that
// copy and destroy elements. Storage comes from malloc/realloc/free, and
// elements are relocated as bytes, so element types must tolerate that (see
// <Base/Containers/Relocatable.h>).
//
// Growth: a one-element append or insert on a full array raises the
// capacity by 8 while it is below 32 and doubles it from 32 on
// (0, 8, 16, 24, 32, 64, 128...). Operations on several elements size the
// array to exactly what they need.
//
// No operation reports errors; positions inside the array and non-emptiness
// for eraseBack are the caller's to keep. Not thread-safe.
#pragma once

#include <Base/Utility/Api.h>

#include <cstdint>

namespace kx {

class BASE_API VectorImpl {
public:
    /// What the core needs to know of the element type; one static instance
    /// per element type.
    struct TypeUtil {
        /// Copy-constructs one element into raw storage.
        void (*copy)(void* dst, const void* src);
        /// Copy-constructs `count` consecutive elements into raw storage.
        void (*copyRange)(void* dst, const void* src, int count);
        /// Destroys one element; null for trivially destructible types.
        void (*destruct)(void* element);
        /// Destroys `count` consecutive elements; null when trivial.
        void (*destructRange)(void* first, int count);
        /// Elements in the contiguous range [first, last): note the order.
        std::int64_t (*distance)(const void* last, const void* first);
        int elementSize;
    };

    ~VectorImpl();

    int size() const { return size_; }
    int capacity() const { return capacity_; }

    /// Grows by one and returns the new last slot, unconstructed.
    void* appendAndReturnPtr();
    /// Grows by one and constructs the new element with `ctor` (when not
    /// null); returns it.
    void* append(void (*ctor)(void*));
    /// Grows by one and copies `value` into the new element; returns it.
    void* append(const void* value);
    void* append(const void* value, void (*copy)(void*, const void*));
    /// For arrays of pointers: grows by one and stores `p` itself.
    void appendAndAssignPtr(const void* p);
    /// Appends copies of `other`'s elements; the array is then exactly as
    /// large as the new size, even if it had room already.
    void append(const VectorImpl& other);
    /// Makes this array a copy of `other` (nothing happens on self).
    void copy(const VectorImpl& other);
    /// Replaces the contents with copies of the contiguous range
    /// [first, last), which must not lie inside this array.
    void assign(const void* first, const void* last);
    void assign(const void* first, const void* last,
                std::int64_t (*distance)(const void*, const void*),
                void (*copyRange)(void*, const void*, int));
    /// Destroys all elements; the storage stays.
    void clear();
    /// Destroys the element at `pos` and closes the gap; returns `pos`.
    void* erase(void* pos);
    /// Destroys [first, last) and closes the gap; returns `first`.
    void* erase(void* first, void* last);
    /// Destroys the last element. The array must not be empty.
    void eraseBack();
    /// Opens a one-element gap at `pos` (growing if full) and returns it,
    /// unconstructed; `pos` is re-based when the array moves.
    void* insertAndReturnPtr(void* pos);
    void* insert(void* pos, void (*ctor)(void*));
    void* insert(void* pos, const void* value);
    void* insert(void* pos, const void* value, void (*copy)(void*, const void*));
    void* insertAndAssignPtr(void* pos, const void* p);
    /// Inserts `n` copies of `value` at `pos`; `value` must not lie inside
    /// this array.
    void insert(void* pos, int n, const void* value);
    /// Inserts copies of the contiguous range [first, last), which must not
    /// lie inside this array.
    void insert(void* pos, const void* first, const void* last);
    void insert(void* pos, const void* first, const void* last,
                std::int64_t (*distance)(const void*, const void*),
                void (*copyRange)(void*, const void*, int));
    /// Makes room for exactly `n` elements when the capacity is smaller;
    /// never shrinks.
    void reserve(int n);
    /// Grows with copies of `value`, or shrinks by destroying the tail. A
    /// negative size is taken as 0.
    void setSize(int n, const void* value);
    /// Grows with `ctor(first, count)` constructing the new elements (when
    /// not null), or shrinks by destroying the tail.
    void setSize(int n, void (*ctor)(void*, int));
    /// Exchanges the elements; each array keeps its own TypeUtil, so both
    /// must hold the same element type.
    void swap(VectorImpl& other);

protected:
    explicit VectorImpl(const TypeUtil* typeUtil);
    /// `n` copies of `value`.
    VectorImpl(int n, const void* value, const TypeUtil* typeUtil);
    /// `n` elements constructed by `ctor(data, n)` (when not null).
    VectorImpl(int n, void (*ctor)(void*, int), const TypeUtil* typeUtil);
    VectorImpl(const VectorImpl& other);
    VectorImpl& operator=(const VectorImpl&) = delete;

    void initialize(const TypeUtil* typeUtil);
    void initialize(const VectorImpl& other);

    /// Grows by one; the new last slot is unconstructed.
    void* append();
    /// Raises the capacity by one growth step; the size stays.
    void growByOne();
    /// growByOne(), then stores `p` in slot size - 1, which the caller has
    /// already counted.
    void growByOneAndAssignPtr(const void* p);
    void destruct(void* p);
    void destructRange(void* p, int n);
    void* insert(void* pos);
    /// Reallocates to exactly `n` elements (n >= size). 0 destroys the
    /// elements and frees the array; the size is left as it was.
    void setCapacity(int n);
    /// Destroys the elements and frees the array.
    void freeStorage();

    void* at(int index) const {
        return static_cast<char*>(data_) + std::int64_t{index} * elementSize();
    }
    int elementSize() const { return typeUtil_->elementSize; }

    void* data_;
    int size_;
    int capacity_;
    const TypeUtil* typeUtil_;
};

} // namespace kx
