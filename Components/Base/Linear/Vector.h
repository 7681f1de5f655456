// Points, vectors and normals in 3D and 2D: Point, Vector, Normal, Point2,
// Vector2, and the single-precision PointFlt, VectorFlt, Point2Flt,
// Vector2Flt.
//
// Kinds of quantity are separate types: a Point is a position, a Vector a
// displacement, a Normal a unit direction that knows whether it is valid.
// A point minus a point is a vector and a point plus a vector a point; two
// points do not add, and a point does not scale. Conversions between classes
// are explicit, except that a Normal is accepted where a Vector is expected.
// Components are read and written through get, set, operator[] and the
// conversion to a pointer to the first component.
//
// Normalisation differs by class, on purpose:
//   Vector, VectorFlt, Vector2Flt: a squared length not above epsilon2Tol
//     (epsilon2TolFlt for the float classes) makes the vector zero and
//     normalize() false: Vector(1e-13, 0, 0) => (0, 0, 0), false.
//   Vector2: a length below epsilonTol leaves the vector as it is and
//     normalize() false: Vector2(1e-13, 0) => (1e-13, 0), false; a length
//     equal to epsilonTol normalises.
//   Normal: the rule of Vector; the normal is invalid where the vector
//     would be zero: Normal(0, 0, 1e-13) => (0, 0, 0), invalid.
//
// Division by a scalar multiplies by its reciprocal, computed once; a zero
// divisor gives the IEEE results, infinite or NaN components.
//
// Cost: the operators and members are inline; the free functions at the end
// are calls into the library. Default constructors leave the components
// uninitialised. Thread safety: plain values.
#pragma once

#include <Base/Linear/Components.h>
#include <Base/Linear/Forward.h>
#include <Base/Linear/Tolerance.h>

namespace kxLinear {

/// A position in 3D.
template <class T>
class BASE_API PointT : public kx::detail::Components<T, 3> {
    using Base = kx::detail::Components<T, 3>;

public:
    /// (0, 0, 0).
    static const PointT origin;

    PointT() = default;
    /// (x, y, z), or three values from an array.
    using Base::Base;
    /// The twin of the other precision, rounded or widened.
    explicit PointT(const PointT<kx::detail::OtherPrecision<T>>& p) : Base(p) {}
    /// (x, y, 0).
    explicit PointT(const Point2T<T>& p);

    /// The same components as a vector (a copy).
    VectorT<T> asVector() const { return VectorT<T>(this->c_); }

    PointT& operator+=(const VectorT<T>& v) {
        this->add(v);
        return *this;
    }
    PointT& operator-=(const VectorT<T>& v) {
        this->subtract(v);
        return *this;
    }

    friend bool operator==(const PointT& a, const PointT& b) { return a.equals(b.c_); }
    friend PointT operator+(PointT p, const VectorT<T>& v) { return p += v; }
    friend PointT operator+(const VectorT<T>& v, PointT p) { return p += v; }
    friend PointT operator-(PointT p, const VectorT<T>& v) { return p -= v; }
    friend VectorT<T> operator-(const PointT& p, const PointT& q) {
        return VectorT<T>(p.c_[0] - q.c_[0], p.c_[1] - q.c_[1], p.c_[2] - q.c_[2]);
    }
};

/// A displacement in 3D.
template <class T>
class BASE_API VectorT : public kx::detail::Components<T, 3> {
    using Base = kx::detail::Components<T, 3>;

public:
    /// The axes (1, 0, 0), (0, 1, 0), (0, 0, 1), and (0, 0, 0).
    static const VectorT x;
    static const VectorT y;
    static const VectorT z;
    static const VectorT zero;

    VectorT() = default;
    using Base::Base;
    explicit VectorT(const VectorT<kx::detail::OtherPrecision<T>>& v) : Base(v) {}
    /// (x, y, 0).
    explicit VectorT(const Vector2T<T>& v);
    /// A normal is a vector; an invalid one is (0, 0, 0). Implicit for
    /// Vector, explicit for VectorFlt, which rounds.
    explicit(!kx::detail::IsDouble<T>) VectorT(const Normal& n);

    PointT<T> asPoint() const { return PointT<T>(this->c_); }

    T length2() const { return dot(*this, *this); }
    T length() const { return std::sqrt(length2()); }
    /// Scales to unit length and returns true, or, when the squared length
    /// is not above epsilon2Tol (epsilon2TolFlt), becomes (0, 0, 0) and
    /// returns false.
    bool normalize();
    /// Vector: Normal(*this). VectorFlt: a copy, normalised as normalize()
    /// does.
    auto normalized() const;
    /// A vector perpendicular to this one, not normalised; zero only for a
    /// zero vector: (0, 0, 1) => (0, -1, 0).
    VectorT orthogonalVector() const;
    VectorT& reverse() {
        this->negate();
        return *this;
    }

    VectorT& operator+=(const VectorT& v) {
        this->add(v.c_);
        return *this;
    }
    VectorT& operator-=(const VectorT& v) {
        this->subtract(v.c_);
        return *this;
    }
    VectorT& operator*=(T s) {
        this->multiply(s);
        return *this;
    }
    VectorT& operator/=(T s) {
        this->multiply(kx::detail::reciprocal(s));
        return *this;
    }

    friend bool operator==(const VectorT& a, const VectorT& b) { return a.equals(b.c_); }
    friend VectorT operator+(VectorT u, const VectorT& v) { return u += v; }
    friend VectorT operator-(VectorT u, const VectorT& v) { return u -= v; }
    friend VectorT operator-(VectorT v) { return v.reverse(); }
    friend VectorT operator*(VectorT v, T s) { return v *= s; }
    friend VectorT operator*(T s, VectorT v) { return v *= s; }
    friend T dot(const VectorT& u, const VectorT& v) {
        return u.c_[0] * v.c_[0] + u.c_[1] * v.c_[1] + u.c_[2] * v.c_[2];
    }
};

/// A unit direction in 3D, or an invalid one: the components, then a
/// validity flag. Construction normalises, except with Promise. Writing a
/// component through operator[] or the pointer bypasses normalisation, as
/// Promise does: the caller keeps the invariant.
class BASE_API Normal : public kx::detail::Components<double, 3> {
    using Base = kx::detail::Components<double, 3>;

public:
    /// The axes, valid.
    static const Normal x;
    static const Normal y;
    static const Normal z;

    /// Uninitialised, the flag too.
    Normal() = default;
    /// Normalised: valid when x² + y² + z² > epsilon2Tol, else (0, 0, 0)
    /// and invalid.
    Normal(double x, double y, double z) : Base(x, y, z) { normalize(); }
    template <kx::detail::PointerTo<double> P>
    explicit Normal(P values) : Base(values) {
        normalize();
    }
    explicit Normal(const Vector& v) : Normal(v[0], v[1], v[2]) {}
    /// Stored unchanged and valid: the caller promises unit length.
    constexpr Normal(Promise, double x, double y, double z) noexcept
        : Base(x, y, z), valid_(true) {}
    template <kx::detail::PointerTo<double> P>
    Normal(Promise, P values) : Base(values), valid_(true) {}

    bool isValid() const { return valid_; }
    /// (0, 0, 0) and invalid.
    void setInvalid() {
        c_[0] = c_[1] = c_[2] = 0;
        valid_ = false;
    }
    /// Negates the components; validity stays.
    Normal& reverse() {
        negate();
        return *this;
    }
    Point asPoint() const { return Point(c_); }

    /// Normalises as the constructor does.
    void set(double x, double y, double z) {
        Base::set(x, y, z);
        normalize();
    }
    void set(Promise, double x, double y, double z) {
        Base::set(x, y, z);
        valid_ = true;
    }

    /// Components and flag.
    friend bool operator==(const Normal& a, const Normal& b) {
        return a.valid_ == b.valid_ && a.equals(b.c_);
    }
    friend Vector operator*(const Normal& n, double s) { return Vector(n) *= s; }
    friend Vector operator*(double s, const Normal& n) { return Vector(n) *= s; }
    friend double dot(const Normal& a, const Normal& b) {
        return a.c_[0] * b.c_[0] + a.c_[1] * b.c_[1] + a.c_[2] * b.c_[2];
    }

private:
    void normalize();

    bool valid_;
};

/// A position in 2D.
template <class T>
class BASE_API Point2T : public kx::detail::Components<T, 2> {
    using Base = kx::detail::Components<T, 2>;

public:
    static const Point2T origin;

    Point2T() = default;
    using Base::Base;
    explicit Point2T(const Point2T<kx::detail::OtherPrecision<T>>& p) : Base(p) {}

    Vector2T<T> asVector() const { return Vector2T<T>(this->c_); }

    Point2T& operator+=(const Vector2T<T>& v) {
        this->add(v);
        return *this;
    }
    Point2T& operator-=(const Vector2T<T>& v) {
        this->subtract(v);
        return *this;
    }

    friend bool operator==(const Point2T& a, const Point2T& b) { return a.equals(b.c_); }
    friend Point2T operator+(Point2T p, const Vector2T<T>& v) { return p += v; }
    friend Point2T operator+(const Vector2T<T>& v, Point2T p) { return p += v; }
    friend Point2T operator-(Point2T p, const Vector2T<T>& v) { return p -= v; }
    friend Vector2T<T> operator-(const Point2T& p, const Point2T& q) {
        return Vector2T<T>(p.c_[0] - q.c_[0], p.c_[1] - q.c_[1]);
    }
};

/// A displacement in 2D.
template <class T>
class BASE_API Vector2T : public kx::detail::Components<T, 2> {
    using Base = kx::detail::Components<T, 2>;

public:
    static const Vector2T x;
    static const Vector2T y;
    static const Vector2T zero;

    Vector2T() = default;
    using Base::Base;
    explicit Vector2T(const Vector2T<kx::detail::OtherPrecision<T>>& v) : Base(v) {}

    Point2T<T> asPoint() const { return Point2T<T>(this->c_); }

    T length2() const { return dot(*this, *this); }
    T length() const { return std::sqrt(length2()); }
    /// Vector2: false and unchanged when the length is below epsilonTol,
    /// else scaled by 1 / length and true. Vector2Flt: false and (0, 0)
    /// when the squared length is not above epsilon2TolFlt.
    bool normalize();
    /// (-y, x): the vector turned a quarter counter-clockwise.
    Vector2T orthogonalVector() const { return Vector2T(-this->c_[1], this->c_[0]); }
    Vector2T& reverse() {
        this->negate();
        return *this;
    }

    Vector2T& operator+=(const Vector2T& v) {
        this->add(v.c_);
        return *this;
    }
    Vector2T& operator-=(const Vector2T& v) {
        this->subtract(v.c_);
        return *this;
    }
    Vector2T& operator*=(T s) {
        this->multiply(s);
        return *this;
    }
    Vector2T& operator/=(T s) {
        this->multiply(kx::detail::reciprocal(s));
        return *this;
    }

    friend bool operator==(const Vector2T& a, const Vector2T& b) { return a.equals(b.c_); }
    friend Vector2T operator+(Vector2T u, const Vector2T& v) { return u += v; }
    friend Vector2T operator-(Vector2T u, const Vector2T& v) { return u -= v; }
    friend Vector2T operator-(Vector2T v) { return v.reverse(); }
    friend Vector2T operator*(Vector2T v, T s) { return v *= s; }
    friend Vector2T operator*(T s, Vector2T v) { return v *= s; }
    friend T dot(const Vector2T& u, const Vector2T& v) {
        return u.c_[0] * v.c_[0] + u.c_[1] * v.c_[1];
    }
};

template <class T>
PointT<T>::PointT(const Point2T<T>& p) : Base(p[0], p[1], T(0)) {}

template <class T>
VectorT<T>::VectorT(const Vector2T<T>& v) : Base(v[0], v[1], T(0)) {}

template <class T>
VectorT<T>::VectorT(const Normal& n) : Base(T(n[0]), T(n[1]), T(n[2])) {}

template <class T>
auto VectorT<T>::normalized() const {
    if constexpr (kx::detail::IsDouble<T>) {
        return Normal(*this);
    } else {
        VectorT v(*this);
        v.normalize();
        return v;
    }
}

/// a·p + b·q component by component; a + b need not be 1.
BASE_API Point combine(double a, const Point& p, double b, const Point& q);
BASE_API Vector combine(double a, const Vector& u, double b, const Vector& v);
/// The midpoint (p + q) × 0.5.
BASE_API Point combine(const Point& p, const Point& q);

/// u × v, right-handed: cross(Vector::x, Vector::y) => Vector::z.
BASE_API Vector cross(const Vector& u, const Vector& v);
BASE_API VectorFlt cross(const VectorFlt& u, const VectorFlt& v);
BASE_API Vector cross(const Vector& u, const Normal& v);
BASE_API Vector cross(const Normal& u, const Vector& v);
BASE_API Vector cross(const Normal& u, const Normal& v);

/// Euclidean distance and its square, in the points' precision.
BASE_API double distance(const Point& p, const Point& q);
BASE_API double distance2(const Point& p, const Point& q);
BASE_API float distance(const PointFlt& p, const PointFlt& q);
BASE_API float distance2(const PointFlt& p, const PointFlt& q);
BASE_API double distance(const Point2& p, const Point2& q);
BASE_API double distance2(const Point2& p, const Point2& q);
BASE_API float distance(const Point2Flt& p, const Point2Flt& q);
BASE_API float distance2(const Point2Flt& p, const Point2Flt& q);

/// The angle between two normals in radians, from the dot product clamped
/// to [-1, 1]; an invalid normal counts as zero, giving π/2.
BASE_API double angle(const Normal& a, const Normal& b);
/// When both are valid, out = angle(a, b) and true; otherwise out = π/2
/// and false.
BASE_API bool angle(const Normal& a, const Normal& b, double& out);
/// The angle from a to b in radians, counter-clockwise positive:
/// ((1, 0), (0, 1)) => π/2, ((0, 1), (1, 0)) => -π/2. 0 when either
/// vector is too short to normalise as a Vector.
BASE_API double signedAngle(const Vector2& a, const Vector2& b);
/// True when two of the points are equivalent within tol (absolute), or
/// when the third lies within tol × |b - a| of the line through the two
/// farthest apart, a and b (relative to their spread).
BASE_API bool areCollinear(const Point& p0, const Point& p1, const Point& p2, double tol);
/// 0, 1 or 2: the component of largest magnitude. Ties go to the later of
/// x and y, or of x and z, and to y between y and z: (1, 1, 0) => 1,
/// (2, 1, 2) => 2, (0, 1, 1) => 1.
BASE_API int dominantDimension(const Vector& v);
/// The angle of n in the plane whose axes are a and b, atan2(n·b, n·a):
/// in (-π, π], or with positive true in [0, 2π). 0 for an invalid n.
BASE_API double unitCircleRotation(const Normal& n, const Normal& a, const Normal& b,
                                   bool positive);

/// Every component differs by strictly less than tol: |aᵢ - bᵢ| < tol. A
/// NaN anywhere gives false. Callers pass epsilonTol (epsilonTolFlt)
/// unless they need another.
BASE_API bool equivalent(const Point& a, const Point& b, double tol);
BASE_API bool equivalent(const Vector& a, const Vector& b, double tol);
BASE_API bool equivalent(const Point2& a, const Point2& b, double tol);
BASE_API bool equivalent(const Vector2& a, const Vector2& b, double tol);
BASE_API bool equivalent(const PointFlt& a, const PointFlt& b, float tol);
BASE_API bool equivalent(const VectorFlt& a, const VectorFlt& b, float tol);
BASE_API bool equivalent(const Point2Flt& a, const Point2Flt& b, float tol);
BASE_API bool equivalent(const Vector2Flt& a, const Vector2Flt& b, float tol);
/// The components only, not the validity.
BASE_API bool equivalent(const Normal& a, const Normal& b, double tol);

/// v × (1 / s).
BASE_API Vector operator/(const Vector& v, double s);
BASE_API VectorFlt operator/(const VectorFlt& v, float s);
BASE_API Vector2 operator/(const Vector2& v, double s);
BASE_API Vector2Flt operator/(const Vector2Flt& v, float s);
/// The reversed normal, with the same validity.
BASE_API Normal operator-(const Normal& n);

extern template class PointT<double>;
extern template class PointT<float>;
extern template class VectorT<double>;
extern template class VectorT<float>;
extern template class Point2T<double>;
extern template class Point2T<float>;
extern template class Vector2T<double>;
extern template class Vector2T<float>;

} // namespace kxLinear
