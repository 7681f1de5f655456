// Tuple2, Tuple3, Tuple4: untyped tuples of 2, 3 and 4 doubles, for
// component-by-component arithmetic that is neither a position nor a
// displacement, and for the rows of projective products.
//
//     Tuple3(1, 2, 3) *= Tuple3(2, 2, 0.5) => (2, 4, 1.5)
//     Tuple3(1, 2, 3) /= Tuple3(0, 1, 1)   => (inf, 2, 3): a zero divisor
//                                             gives the IEEE quotient
//
// asPoint, asVector (Tuple3) and asPoint2, asVector2 (Tuple2) return copies
// of the components as the typed classes.
//
// Cost: inline arithmetic; distance and equivalent are calls into the
// library. The default constructor leaves the components uninitialised.
// Thread safety: plain values.
#pragma once

#include <Base/Linear/Vector.h>

namespace kxLinear {

template <int N>
class BASE_API Tuple : public kx::detail::Components<double, N> {
    static_assert(N >= 2 && N <= 4, "tuples have 2, 3 or 4 components");
    using Base = kx::detail::Components<double, N>;

public:
    /// All components 0.
    static const Tuple zero;

    Tuple() = default;
    /// The N components, or N values from an array.
    using Base::Base;

    Point asPoint() const requires(N == 3) { return Point(this->c_); }
    Vector asVector() const requires(N == 3) { return Vector(this->c_); }
    Point2 asPoint2() const requires(N == 2) { return Point2(this->c_); }
    Vector2 asVector2() const requires(N == 2) { return Vector2(this->c_); }

    Tuple& operator+=(const Tuple& t) {
        this->add(t.c_);
        return *this;
    }
    Tuple& operator-=(const Tuple& t) {
        this->subtract(t.c_);
        return *this;
    }
    /// Component by component.
    Tuple& operator*=(const Tuple& t) {
        for (int i = 0; i < N; ++i)
            this->c_[i] *= t.c_[i];
        return *this;
    }
    /// Component by component.
    Tuple& operator/=(const Tuple& t) {
        for (int i = 0; i < N; ++i)
            this->c_[i] = kx::detail::quotient(this->c_[i], t.c_[i]);
        return *this;
    }
    Tuple& operator*=(double s) {
        this->multiply(s);
        return *this;
    }
    Tuple& operator/=(double s) {
        this->multiply(kx::detail::reciprocal(s));
        return *this;
    }

    friend bool operator==(const Tuple& a, const Tuple& b) { return a.equals(b.c_); }
    friend Tuple operator+(Tuple a, const Tuple& b) { return a += b; }
    friend Tuple operator-(Tuple a, const Tuple& b) { return a -= b; }
    friend Tuple operator*(Tuple a, const Tuple& b) { return a *= b; }
    friend Tuple operator/(Tuple a, const Tuple& b) { return a /= b; }
    friend Tuple operator*(Tuple a, double s) { return a *= s; }
    friend Tuple operator*(double s, Tuple a) { return a *= s; }
    friend Tuple operator/(Tuple a, double s) { return a /= s; }
};

/// Euclidean distance and its square.
BASE_API double distance(const Tuple2& a, const Tuple2& b);
BASE_API double distance2(const Tuple2& a, const Tuple2& b);
BASE_API double distance(const Tuple3& a, const Tuple3& b);
BASE_API double distance2(const Tuple3& a, const Tuple3& b);

/// Every component differs by strictly less than tol; false for any NaN.
BASE_API bool equivalent(const Tuple2& a, const Tuple2& b, double tol);
BASE_API bool equivalent(const Tuple3& a, const Tuple3& b, double tol);
BASE_API bool equivalent(const Tuple4& a, const Tuple4& b, double tol);

extern template class Tuple<2>;
extern template class Tuple<3>;
extern template class Tuple<4>;

} // namespace kxLinear
