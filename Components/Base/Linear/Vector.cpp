#include <Base/Linear/Vector.h>

#include "Numeric.h"

#include <cmath>

namespace kxLinear {

using kx::detail::clampUnit;
using kx::detail::IsDouble;
using kx::detail::withinTolerance;

namespace {

template <class T>
T squaredTolerance() {
    if constexpr (IsDouble<T>)
        return epsilon2Tol;
    else
        return epsilon2TolFlt;
}

} // namespace

template <class T>
const PointT<T> PointT<T>::origin(0, 0, 0);
template <class T>
const VectorT<T> VectorT<T>::x(1, 0, 0);
template <class T>
const VectorT<T> VectorT<T>::y(0, 1, 0);
template <class T>
const VectorT<T> VectorT<T>::z(0, 0, 1);
template <class T>
const VectorT<T> VectorT<T>::zero(0, 0, 0);
template <class T>
const Point2T<T> Point2T<T>::origin(0, 0);
template <class T>
const Vector2T<T> Vector2T<T>::x(1, 0);
template <class T>
const Vector2T<T> Vector2T<T>::y(0, 1);
template <class T>
const Vector2T<T> Vector2T<T>::zero(0, 0);
const Normal Normal::x(Promise(), 1, 0, 0);
const Normal Normal::y(Promise(), 0, 1, 0);
const Normal Normal::z(Promise(), 0, 0, 1);

template <class T>
bool VectorT<T>::normalize() {
    return kx::detail::normalizeOrZero<T, 3>(this->c_, squaredTolerance<T>());
}

template <class T>
VectorT<T> VectorT<T>::orthogonalVector() const {
    const T* v = this->c_;
    // A cyclic permutation of v is parallel to v only when all components
    // are equal; the sign change covers that case.
    const VectorT w(v[0] * v[1] > 0 && v[2] * v[1] > 0 ? -v[2] : v[2], v[0], v[1]);
    return cross(w, *this);
}

template <class T>
bool Vector2T<T>::normalize() {
    if constexpr (IsDouble<T>) {
        const double length = this->length();
        if (epsilonTol > std::fabs(length))
            return false;
        this->multiply(kx::detail::reciprocal(length));
        return true;
    } else {
        return kx::detail::normalizeOrZero<float, 2>(this->c_, epsilon2TolFlt);
    }
}

void Normal::normalize() {
    valid_ = kx::detail::normalizeOrZero<double, 3>(c_, epsilon2Tol);
}

Point combine(double a, const Point& p, double b, const Point& q) {
    return Point(a * p[0] + b * q[0], a * p[1] + b * q[1], a * p[2] + b * q[2]);
}

Vector combine(double a, const Vector& u, double b, const Vector& v) {
    return Vector(a * u[0] + b * v[0], a * u[1] + b * v[1], a * u[2] + b * v[2]);
}

Point combine(const Point& p, const Point& q) {
    return Point((p[0] + q[0]) * 0.5, (p[1] + q[1]) * 0.5, (p[2] + q[2]) * 0.5);
}

namespace {

template <class T>
VectorT<T> crossProduct(const T* a, const T* b) {
    return VectorT<T>(a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                      a[0] * b[1] - a[1] * b[0]);
}

} // namespace

Vector cross(const Vector& u, const Vector& v) {
    return crossProduct<double>(u, v);
}

VectorFlt cross(const VectorFlt& u, const VectorFlt& v) {
    return crossProduct<float>(u, v);
}

Vector cross(const Vector& u, const Normal& v) {
    return cross(u, Vector(v));
}

Vector cross(const Normal& u, const Vector& v) {
    return cross(Vector(u), v);
}

Vector cross(const Normal& u, const Normal& v) {
    return cross(Vector(u), Vector(v));
}

double distance(const Point& p, const Point& q) {
    return (p - q).length();
}

double distance2(const Point& p, const Point& q) {
    return (p - q).length2();
}

float distance(const PointFlt& p, const PointFlt& q) {
    return (p - q).length();
}

float distance2(const PointFlt& p, const PointFlt& q) {
    return (p - q).length2();
}

double distance(const Point2& p, const Point2& q) {
    return (p - q).length();
}

double distance2(const Point2& p, const Point2& q) {
    return (p - q).length2();
}

float distance(const Point2Flt& p, const Point2Flt& q) {
    return (p - q).length();
}

float distance2(const Point2Flt& p, const Point2Flt& q) {
    return (p - q).length2();
}

double angle(const Normal& a, const Normal& b) {
    return std::acos(clampUnit(dot(a, b)));
}

bool angle(const Normal& a, const Normal& b, double& out) {
    if (a.isValid() && b.isValid()) {
        out = angle(a, b);
        return true;
    }
    out = 1.5707963267948966;
    return false;
}

double signedAngle(const Vector2& a, const Vector2& b) {
    Vector u(a);
    Vector v(b);
    if (!u.normalize() || !v.normalize())
        return 0;
    const double theta = std::acos(clampUnit(dot(u, v)));
    return cross(u, v)[2] < 0 ? -theta : theta;
}

bool areCollinear(const Point& p0, const Point& p1, const Point& p2, double tol) {
    if (equivalent(p0, p1, tol) || equivalent(p1, p2, tol) || equivalent(p2, p0, tol))
        return true;
    // The pair farthest apart is a, b; the first of equal pairs wins.
    const Point* a = &p0;
    const Point* b = &p1;
    const Point* c = &p2;
    double d2 = distance2(p0, p1);
    if (const double s = distance2(p0, p2); s > d2) {
        b = &p2;
        c = &p1;
        d2 = s;
    }
    if (const double s = distance2(p1, p2); s > d2) {
        a = &p1;
        b = &p2;
        c = &p0;
        d2 = s;
    }
    // The distance of c from the line through a and b is at most
    // tol × |b - a|, squared and multiplied out to avoid roots and division.
    const Vector w = *c - combine(*a, *b);
    const Vector d = *b - *a;
    const double wd = dot(w, d);
    const double t = tol * d2;
    return t * t + wd * wd >= w.length2() * d2;
}

int dominantDimension(const Vector& v) {
    const double x = std::fabs(v[0]);
    const double y = std::fabs(v[1]);
    const double z = std::fabs(v[2]);
    if (x > y)
        return x > z ? 0 : 2;
    return z > y ? 2 : 1;
}

double unitCircleRotation(const Normal& n, const Normal& a, const Normal& b, bool positive) {
    if (!n.isValid())
        return 0;
    const double r = std::atan2(dot(n, b), dot(n, a));
    return positive && r < 0 ? r + 6.283185307179586 : r;
}

bool equivalent(const Point& a, const Point& b, double tol) {
    return withinTolerance<double>(a, b, 3, tol);
}

bool equivalent(const Vector& a, const Vector& b, double tol) {
    return withinTolerance<double>(a, b, 3, tol);
}

bool equivalent(const Point2& a, const Point2& b, double tol) {
    return withinTolerance<double>(a, b, 2, tol);
}

bool equivalent(const Vector2& a, const Vector2& b, double tol) {
    return withinTolerance<double>(a, b, 2, tol);
}

bool equivalent(const PointFlt& a, const PointFlt& b, float tol) {
    return withinTolerance<float>(a, b, 3, tol);
}

bool equivalent(const VectorFlt& a, const VectorFlt& b, float tol) {
    return withinTolerance<float>(a, b, 3, tol);
}

bool equivalent(const Point2Flt& a, const Point2Flt& b, float tol) {
    return withinTolerance<float>(a, b, 2, tol);
}

bool equivalent(const Vector2Flt& a, const Vector2Flt& b, float tol) {
    return withinTolerance<float>(a, b, 2, tol);
}

bool equivalent(const Normal& a, const Normal& b, double tol) {
    return withinTolerance<double>(a, b, 3, tol);
}

Vector operator/(const Vector& v, double s) {
    return Vector(v) /= s;
}

VectorFlt operator/(const VectorFlt& v, float s) {
    return VectorFlt(v) /= s;
}

Vector2 operator/(const Vector2& v, double s) {
    return Vector2(v) /= s;
}

Vector2Flt operator/(const Vector2Flt& v, float s) {
    return Vector2Flt(v) /= s;
}

Normal operator-(const Normal& n) {
    return Normal(n).reverse();
}

template class PointT<double>;
template class PointT<float>;
template class VectorT<double>;
template class VectorT<float>;
template class Point2T<double>;
template class Point2T<float>;
template class Vector2T<double>;
template class Vector2T<float>;

} // namespace kxLinear
