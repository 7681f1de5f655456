// kx::vector<T>: a contiguous growable array, a typed shell over
// kx::VectorImpl.
//
// It reads like std::vector (iterators are pointers, the usual member names),
// with the library's conventions: sizes and positions are int, growth is +8
// below 32 elements and doubling from there, and elements move as bytes
// (realloc, memmove) when the array grows or opens a gap. So T must be
// byte-relocatable: trivially copyable, a library value type, or marked
// with kx::is_relocatable (see <Base/Containers/Relocatable.h>); anything
// else is a compile-time error. Element copies must not throw.
//
// Appending and indexing are inline; growth, gaps and copies run in the
// shared core. Not thread-safe.
#pragma once

#include <Base/Containers/Relocatable.h>
#include <Base/Containers/VectorImpl.h>

#include <algorithm>
#include <compare>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace kx {

template <class T>
class vector : private VectorImpl {
    static_assert(is_relocatable_v<T>,
                  "kx::vector moves its elements as bytes: T must be trivially copyable, a "
                  "library value type, or marked with kx::is_relocatable");

public:
    using value_type = T;
    using size_type = int;
    using difference_type = std::ptrdiff_t;
    using reference = T&;
    using const_reference = const T&;
    using pointer = T*;
    using const_pointer = const T*;
    using iterator = T*;
    using const_iterator = const T*;
    using reverse_iterator = std::reverse_iterator<iterator>;
    using const_reverse_iterator = std::reverse_iterator<const_iterator>;

    vector() noexcept : VectorImpl(&kTypeUtil) {}
    /// `n` value-initialised elements.
    explicit vector(int n) : VectorImpl(n, &constructRange, &kTypeUtil) {}
    vector(int n, const T& value) : VectorImpl(n, &value, &kTypeUtil) {}
    vector(std::initializer_list<T> items) : vector() { assign(items.begin(), items.end()); }
    template <std::input_iterator It>
    vector(It first, It last) : vector() {
        assign(first, last);
    }
    vector(const vector& other) : VectorImpl(other) {}
    vector(vector&& other) noexcept : vector() { swap(other); }
    ~vector() = default;

    vector& operator=(const vector& other) {
        copy(other);
        return *this;
    }
    vector& operator=(vector&& other) noexcept {
        swap(other);
        return *this;
    }
    vector& operator=(std::initializer_list<T> items) {
        assign(items.begin(), items.end());
        return *this;
    }

    int size() const noexcept { return size_; }
    int capacity() const noexcept { return capacity_; }
    bool empty() const noexcept { return size_ == 0; }

    T* data() noexcept { return static_cast<T*>(data_); }
    const T* data() const noexcept { return static_cast<const T*>(data_); }
    iterator begin() noexcept { return data(); }
    iterator end() noexcept { return data() + size_; }
    const_iterator begin() const noexcept { return data(); }
    const_iterator end() const noexcept { return data() + size_; }
    const_iterator cbegin() const noexcept { return begin(); }
    const_iterator cend() const noexcept { return end(); }
    reverse_iterator rbegin() noexcept { return reverse_iterator(end()); }
    reverse_iterator rend() noexcept { return reverse_iterator(begin()); }
    const_reverse_iterator rbegin() const noexcept { return const_reverse_iterator(end()); }
    const_reverse_iterator rend() const noexcept { return const_reverse_iterator(begin()); }

    /// Unchecked, as the index is the caller's to keep.
    T& operator[](int i) noexcept { return data()[i]; }
    const T& operator[](int i) const noexcept { return data()[i]; }
    T& front() noexcept { return data()[0]; }
    const T& front() const noexcept { return data()[0]; }
    T& back() noexcept { return data()[size_ - 1]; }
    const T& back() const noexcept { return data()[size_ - 1]; }

    /// Room for exactly `n` elements when there is less; never shrinks.
    void reserve(int n) { VectorImpl::reserve(n); }
    /// Frees the room beyond the elements.
    void shrink_to_fit() {
        if (capacity_ > size_)
            setCapacity(size_);
    }
    void clear() noexcept { VectorImpl::clear(); }

    void push_back(const T& value) { emplace_back(value); }
    void push_back(T&& value) { emplace_back(std::move(value)); }
    template <class... Args>
    T& emplace_back(Args&&... args) {
        // The size is read once: an element store might alias it, which
        // would make the compiler read it again.
        const int n = size_;
        if (n == capacity_)
            return growAndEmplace(std::forward<Args>(args)...);
        T* slot = ::new (static_cast<void*>(data() + n)) T(std::forward<Args>(args)...);
        size_ = n + 1;
        return *slot;
    }
    /// Removes the last element; the vector must not be empty.
    void pop_back() noexcept {
        --size_;
        std::destroy_at(end());
    }

    iterator insert(const_iterator pos, const T& value) { return emplace(pos, value); }
    iterator insert(const_iterator pos, T&& value) { return emplace(pos, std::move(value)); }
    template <class... Args>
    iterator emplace(const_iterator pos, Args&&... args) {
        T value(std::forward<Args>(args)...); // first: the arguments may lie in this vector
        void* slot = insertAndReturnPtr(const_cast<T*>(pos));
        return ::new (slot) T(std::move(value));
    }
    iterator insert(const_iterator pos, int n, const T& value) {
        const T copy(value);
        const auto index = pos - begin();
        VectorImpl::insert(const_cast<T*>(pos), n, &copy);
        return begin() + index;
    }
    template <std::input_iterator It>
    iterator insert(const_iterator pos, It first, It last) {
        const auto index = pos - begin();
        const vector items(first, last); // a contiguous copy, outside this vector
        VectorImpl::insert(const_cast<T*>(pos), items.begin(), items.end());
        return begin() + index;
    }
    iterator insert(const_iterator pos, std::initializer_list<T> items) {
        return insert(pos, items.begin(), items.end());
    }

    iterator erase(const_iterator pos) {
        T* p = const_cast<T*>(pos);
        if constexpr (std::is_trivially_destructible_v<T>) {
            // Nothing to destroy: closing the gap inline saves the call.
            std::memmove(static_cast<void*>(p), p + 1,
                         static_cast<std::size_t>(end() - p - 1) * sizeof(T));
            --size_;
            return p;
        } else {
            return static_cast<T*>(VectorImpl::erase(p));
        }
    }
    iterator erase(const_iterator first, const_iterator last) {
        return static_cast<T*>(VectorImpl::erase(const_cast<T*>(first), const_cast<T*>(last)));
    }

    /// Grows with value-initialised elements, or shrinks.
    void resize(int n) { setSize(n, &constructRange); }
    void resize(int n, const T& value) {
        const T copy(value);
        setSize(n, &copy);
    }

    template <std::input_iterator It>
    void assign(It first, It last) {
        if constexpr (std::is_same_v<std::remove_cv_t<std::remove_pointer_t<It>>, T> &&
                      std::is_pointer_v<It>) {
            if (!overlaps(first, last)) {
                VectorImpl::assign(first, last);
                return;
            }
        }
        vector items;
        if constexpr (std::forward_iterator<It>)
            items.reserve(static_cast<int>(std::distance(first, last)));
        for (; first != last; ++first)
            items.emplace_back(*first);
        swap(items);
    }
    void assign(int n, const T& value) {
        const T copy(value);
        clear();
        setSize(n, &copy);
    }
    void assign(std::initializer_list<T> items) { assign(items.begin(), items.end()); }

    void swap(vector& other) noexcept { VectorImpl::swap(other); }

    friend bool operator==(const vector& a, const vector& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end());
    }
    friend auto operator<=>(const vector& a, const vector& b) {
        return std::lexicographical_compare_three_way(a.begin(), a.end(), b.begin(), b.end());
    }
    friend void swap(vector& a, vector& b) noexcept { a.swap(b); }

private:
    static void copyOne(void* dst, const void* src) { ::new (dst) T(*static_cast<const T*>(src)); }
    static void copyRange(void* dst, const void* src, int n) {
        std::uninitialized_copy_n(static_cast<const T*>(src), n, static_cast<T*>(dst));
    }
    static void destroyOne(void* p) { std::destroy_at(static_cast<T*>(p)); }
    static void destroyRange(void* p, int n) { std::destroy_n(static_cast<T*>(p), n); }
    static std::int64_t distance(const void* last, const void* first) {
        return static_cast<const T*>(last) - static_cast<const T*>(first);
    }
    static void constructRange(void* p, int n) {
        std::uninitialized_value_construct_n(static_cast<T*>(p), n);
    }

    static constexpr bool kTrivialDestructor = std::is_trivially_destructible_v<T>;
    static constexpr TypeUtil kTypeUtil = {
        &copyOne,
        &copyRange,
        kTrivialDestructor ? nullptr : &destroyOne,
        kTrivialDestructor ? nullptr : &destroyRange,
        &distance,
        static_cast<int>(sizeof(T)),
    };

    template <class... Args>
    T& growAndEmplace(Args&&... args) {
        T value(std::forward<Args>(args)...); // first: the arguments may lie in this vector
        growByOne();
        T* slot = ::new (static_cast<void*>(end())) T(std::move(value));
        ++size_;
        return *slot;
    }

    bool overlaps(const T* first, const T* last) const {
        const std::less<const T*> before;
        return before(first, end()) && before(begin(), last);
    }
};

template <class T>
struct is_relocatable<vector<T>> : std::true_type {};

} // namespace kx
