// HPoint and RPoint: two ways of writing a 3D point with a fourth
// coordinate.
//
// An HPoint is homogeneous: its x, y, z are already multiplied by w, as
// clip-space coordinates are. An RPoint is rational: Cartesian x, y, z with
// a separate weight w, as the control points of rational curves are.
//
//     HPoint(RPoint(1, 2, 3, 2)) => (2, 4, 6, 2)
//     RPoint(HPoint(2, 4, 6, 2)) => (1, 2, 3, 2)
//     HPoint(Point(1, 2, 3))     => (1, 2, 3, 1)
//
// RPoint(HPoint) multiplies by 1 / w; w = 0 gives infinite or NaN
// coordinates, the IEEE quotients.
//
// Cost: inline, except equivalent and insideView. Thread safety: plain
// values.
#pragma once

#include <Base/Linear/Vector.h>

namespace kxLinear {

class BASE_API HPoint : public kx::detail::Components<double, 4> {
    using Base = kx::detail::Components<double, 4>;

public:
    HPoint() = default;
    /// (x, y, z, w) stored unchanged, or four values from an array.
    using Base::Base;
    /// (x, y, z, 1).
    explicit HPoint(const Point& p) : Base(p[0], p[1], p[2], 1.0) {}
    /// (x·w, y·w, z·w, w).
    explicit HPoint(const RPoint& r);

    /// Inside the clip-space view volume: -w <= x <= w, -w <= y <= w and
    /// -w <= z, and with checkFar also z <= w.
    bool insideView(bool checkFar) const;

    friend bool operator==(const HPoint& a, const HPoint& b) { return a.equals(b.c_); }
};

class BASE_API RPoint : public kx::detail::Components<double, 4> {
    using Base = kx::detail::Components<double, 4>;

public:
    RPoint() = default;
    /// (x, y, z, w) stored unchanged, or four values from an array.
    using Base::Base;
    /// (x, y, z, 1).
    explicit RPoint(const Point& p) : Base(p[0], p[1], p[2], 1.0) {}
    /// (x/w, y/w, z/w, w), multiplying by 1 / w.
    explicit RPoint(const HPoint& h) : Base(static_cast<const double*>(h)) {
        const double r = kx::detail::reciprocal(c_[3]);
        c_[0] *= r, c_[1] *= r, c_[2] *= r;
    }

    friend bool operator==(const RPoint& a, const RPoint& b) { return a.equals(b.c_); }
};

inline HPoint::HPoint(const RPoint& r) : Base(static_cast<const double*>(r)) {
    c_[0] *= c_[3], c_[1] *= c_[3], c_[2] *= c_[3];
}

/// Every component, w included, differs by strictly less than tol.
BASE_API bool equivalent(const HPoint& a, const HPoint& b, double tol);
BASE_API bool equivalent(const RPoint& a, const RPoint& b, double tol);

} // namespace kxLinear
