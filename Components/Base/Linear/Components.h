// The storage and element access that the tuple, point, vector, normal and
// quaternion classes share, and the helpers that keep their arithmetic
// defined on every input. Include the classes' own headers, not this one.
//
// Every class keeps its components in one array, so that the conversion to
// a pointer gives them in order: Point(1, 2, 3) => {1, 2, 3}. An index
// outside the components reads 0 and a write through it is lost, the rule of
// the string classes; the pointer itself is unchecked.
//
// Comparing objects of two different classes is rejected at compile time:
// the conversion to a pointer would otherwise compare addresses.
//
// Thread safety: plain values; distinct objects may be used on distinct
// threads.
#pragma once

#include <cmath>
#include <concepts>
#include <limits>
#include <type_traits>

namespace kx::detail {

/// 1 / s; for s = 0 the infinity of s's sign, the IEEE quotient, so that a
/// division by zero is defined: the components become infinite or NaN.
template <std::floating_point T>
T reciprocal(T s) {
    return s != 0 ? T(1) / s : std::copysign(std::numeric_limits<T>::infinity(), s);
}

/// a / b, with the IEEE result for b = 0 (infinite, or NaN for 0 / 0).
template <std::floating_point T>
T quotient(T a, T b) {
    return b != 0 ? a / b : a * reciprocal(b);
}

/// v clamped to [-1, 1], the domain of acos and asin; NaN stays NaN.
template <std::floating_point T>
T clampUnit(T v) {
    return v < -1 ? T(-1) : v > 1 ? T(1) : v;
}

/// Exactly a pointer to T's, so that no other class converts into it
/// through its own pointer conversion: AffineMatrix(point) must not read
/// twelve values from three.
template <class P, class T>
concept PointerTo = std::same_as<P, T*> || std::same_as<P, const T*>;

template <class T>
concept IsDouble = std::same_as<T, double>;

/// The precision a twin converts from: float for double and back.
template <class T>
using OtherPrecision = std::conditional_t<IsDouble<T>, float, double>;

/// What an index outside the components refers to: it reads 0 and keeps no
/// write past the next access.
template <class T>
T& lostComponent() {
    thread_local T scratch;
    scratch = T(0);
    return scratch;
}

struct ComponentsTag {};

template <class T, int N>
class Components : public ComponentsTag {
public:
    Components() = default;
    constexpr Components(T a, T b) noexcept requires(N == 2) : c_{a, b} {}
    constexpr Components(T a, T b, T c) noexcept requires(N == 3) : c_{a, b, c} {}
    constexpr Components(T a, T b, T c, T d) noexcept requires(N == 4) : c_{a, b, c, d} {}
    /// N values in order; a null pointer gives zeros.
    template <PointerTo<T> P>
    explicit Components(P values) noexcept {
        for (int i = 0; i < N; ++i)
            c_[i] = values ? values[i] : T(0);
    }

    /// The same components in the other precision, rounded or widened.
    template <std::floating_point U>
    explicit Components(const Components<U, N>& other) noexcept {
        for (int i = 0; i < N; ++i)
            c_[i] = T(static_cast<const U*>(other)[i]);
    }

    template <std::integral I>
    T& operator[](I i) {
        return inRange(i) ? c_[i] : lostComponent<T>();
    }
    template <std::integral I>
    const T& operator[](I i) const {
        return inRange(i) ? c_[i] : lostComponent<T>();
    }
    template <std::integral I>
    T get(I i) const {
        return (*this)[i];
    }

    void get(T& a, T& b) const requires(N == 2) { a = c_[0], b = c_[1]; }
    void get(T& a, T& b, T& c) const requires(N == 3) { a = c_[0], b = c_[1], c = c_[2]; }
    void get(T& a, T& b, T& c, T& d) const requires(N == 4) {
        a = c_[0], b = c_[1], c = c_[2], d = c_[3];
    }
    void set(T a, T b) requires(N == 2) { c_[0] = a, c_[1] = b; }
    void set(T a, T b, T c) requires(N == 3) { c_[0] = a, c_[1] = b, c_[2] = c; }
    void set(T a, T b, T c, T d) requires(N == 4) { c_[0] = a, c_[1] = b, c_[2] = c, c_[3] = d; }

    operator T*() { return c_; }
    operator const T*() const { return c_; }

protected:
    template <std::integral I>
    static constexpr bool inRange(I i) {
        // A negative index wraps to a huge unsigned one.
        return static_cast<unsigned long long>(i) < static_cast<unsigned long long>(N);
    }

    void add(const T* o) {
        for (int i = 0; i < N; ++i)
            c_[i] += o[i];
    }
    void subtract(const T* o) {
        for (int i = 0; i < N; ++i)
            c_[i] -= o[i];
    }
    void multiply(T s) {
        for (int i = 0; i < N; ++i)
            c_[i] *= s;
    }
    void negate() {
        for (int i = 0; i < N; ++i)
            c_[i] = -c_[i];
    }
    bool equals(const T* o) const {
        for (int i = 0; i < N; ++i) {
            if (c_[i] != o[i])
                return false;
        }
        return true;
    }

    T c_[N];
};

} // namespace kx::detail

namespace kxLinear {

/// The classes built on kx::detail::Components.
template <class A>
concept Componentwise = std::is_base_of_v<kx::detail::ComponentsTag, A>;

/// A point is not a vector, nor a tuple a normal: no equality between
/// different classes, and no ordering at all.
template <Componentwise A, Componentwise B>
requires(!std::same_as<A, B>) bool operator==(const A&, const B&) = delete;
template <Componentwise A, Componentwise B>
void operator<=>(const A&, const B&) = delete;

} // namespace kxLinear
