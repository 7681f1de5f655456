#include <Base/Linear/Quaternion.h>

#include "Numeric.h"

#include <cmath>

namespace kxLinear {

using kx::detail::clampUnit;

namespace {

double dot4(const double* a, const double* b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3];
}

} // namespace

Quaternion& Quaternion::setAngleAxis(double angle, const Normal& axis) {
    const double s = std::sin(angle / 2);
    set(axis[0] * s, axis[1] * s, axis[2] * s, std::cos(angle / 2));
    return normalize();
}

bool Quaternion::getAngleAxis(double& angle, Normal& axis) const {
    const double w = c_[3];
    if (std::fabs(w - 1) < epsilonTol) {
        angle = 0;
        axis = Normal::x;
        return false;
    }
    angle = 2 * std::acos(clampUnit(w));
    axis = Normal(Vector(c_[0], c_[1], c_[2]) / std::sin(std::acos(w)));
    return true;
}

Quaternion& Quaternion::setFrame(const Normal& x, const Normal& y, const Normal& z) {
    // The largest of 4w², 4x², 4y², 4z² leads, found through the trace or
    // the largest diagonal element, so that nothing small is divided by.
    const double trace = x[0] + y[1] + z[2];
    int lead;
    double t;
    if (trace > 0) {
        lead = 3;
        t = trace + 1;
    } else if (x[0] > y[1] && x[0] > z[2]) {
        lead = 0;
        t = 1 + x[0] - y[1] - z[2];
    } else if (y[1] > z[2]) {
        lead = 1;
        t = 1 - x[0] + y[1] - z[2];
    } else {
        lead = 2;
        t = 1 - x[0] - y[1] + z[2];
    }
    const double s = 0.5 * kx::detail::reciprocal(std::sqrt(t));
    const double xy = (x[1] + y[0]) * s;
    const double xz = (x[2] + z[0]) * s;
    const double yz = (y[2] + z[1]) * s;
    const double wx = (y[2] - z[1]) * s;
    const double wy = (z[0] - x[2]) * s;
    const double wz = (x[1] - y[0]) * s;
    const double leading = s * t;
    switch (lead) {
    case 0: set(leading, xy, xz, wx); break;
    case 1: set(xy, leading, yz, wy); break;
    case 2: set(xz, yz, leading, wz); break;
    default: set(wx, wy, wz, leading); break;
    }
    return *this;
}

void Quaternion::getFrame(Normal& x, Normal& y, Normal& z) const {
    AffineMatrix m;
    getMatrix(m);
    const double* e = m;
    x = Normal(e);
    y = Normal(e + 3);
    z = Normal(e + 6);
}

void Quaternion::getMatrix(AffineMatrix& m) const {
    const double x = c_[0];
    const double y = c_[1];
    const double z = c_[2];
    const double w = c_[3];
    const double values[12] = {1 - 2 * (y * y + z * z),
                               2 * (x * y + w * z),
                               2 * (x * z - w * y),
                               2 * (x * y - w * z),
                               1 - 2 * (x * x + z * z),
                               2 * (y * z + w * x),
                               2 * (x * z + w * y),
                               2 * (y * z - w * x),
                               1 - 2 * (x * x + y * y),
                               0,
                               0,
                               0};
    m.set(values);
}

Quaternion& Quaternion::normalize() {
    multiply(kx::detail::reciprocal(std::sqrt(dot4(c_, c_))));
    return *this;
}

Quaternion slerp(const Quaternion& a, const Quaternion& b, double t) {
    Quaternion from(a);
    double d = dot4(a, b);
    if (d < 0) {
        from *= -1;
        d = -d;
    }
    const double* p = from;
    const double* q = b;
    if (d > parallelTol) {
        Quaternion r(p[0] + t * (q[0] - p[0]), p[1] + t * (q[1] - p[1]), p[2] + t * (q[2] - p[2]),
                     p[3] + t * (q[3] - p[3]));
        return r.normalize();
    }
    // The unit quaternion in the plane of a and b perpendicular to a.
    Quaternion perpendicular(q[0] - d * p[0], q[1] - d * p[1], q[2] - d * p[2], q[3] - d * p[3]);
    perpendicular.normalize();
    const double theta = std::acos(clampUnit(d)) * t;
    const double c = std::cos(theta);
    const double s = std::sin(theta);
    const double* u = perpendicular;
    return Quaternion(p[0] * c + u[0] * s, p[1] * c + u[1] * s, p[2] * c + u[2] * s,
                      p[3] * c + u[3] * s);
}

bool equivalent(const Quaternion& a, const Quaternion& b, double tol) {
    return kx::detail::withinTolerance<double>(a, b, 4, tol);
}

} // namespace kxLinear
