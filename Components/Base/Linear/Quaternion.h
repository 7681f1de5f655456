// Quaternion: rotations of 3D space as unit quaternions (x, y, z, w), the
// vector part first and the scalar last.
//
// The rotation by angle a about the unit axis n is (n·sin(a/2), cos(a/2)),
// right-handed like AffineMatrix::rotate: Quaternion(a, n).getMatrix(m)
// gives the same linear part as AffineMatrix(1.0).rotate(a, n). A
// quaternion and its negation are the same rotation.
//
// normalize() divides by the length without a guard: the zero quaternion
// becomes NaN in every component (0 times the infinite reciprocal).
//
// Cost: small; the operations are calls into the library. Thread safety:
// plain values; the default constructor leaves the components
// uninitialised.
#pragma once

#include <Base/Linear/AffineMatrix.h>
#include <Base/Linear/Vector.h>

namespace kxLinear {

class BASE_API Quaternion : public kx::detail::Components<double, 4> {
    using Base = kx::detail::Components<double, 4>;

public:
    Quaternion() = default;
    /// (x, y, z, w) stored unchanged, or four values from an array.
    using Base::Base;
    /// setAngleAxis(angle, axis).
    Quaternion(double angle, const Normal& axis) { setAngleAxis(angle, axis); }

    /// (axis·sin(angle/2), cos(angle/2)), then normalize(); angle in radians.
    Quaternion& setAngleAxis(double angle, const Normal& axis);
    /// For w within epsilonTol of 1 (no rotation): axis (1, 0, 0), angle 0
    /// and false. Otherwise angle = 2·acos(w) in [0, 2π] and axis =
    /// Normal((x, y, z) / sin(acos(w))), and true.
    bool getAngleAxis(double& angle, Normal& axis) const;
    /// The rotation whose matrix has rows x, y, z (an orthonormal,
    /// right-handed frame).
    Quaternion& setFrame(const Normal& x, const Normal& y, const Normal& z);
    /// The three rows of getMatrix, as normals.
    void getFrame(Normal& x, Normal& y, Normal& z) const;
    /// The rotation matrix: rows (1 - 2(y² + z²), 2(xy + wz), 2(xz - wy)),
    /// (2(xy - wz), 1 - 2(x² + z²), 2(yz + wx)),
    /// (2(xz + wy), 2(yz - wx), 1 - 2(x² + y²)); translation zero.
    void getMatrix(AffineMatrix& m) const;
    /// Divides all four components by the length.
    Quaternion& normalize();

    Quaternion& operator*=(double s) {
        multiply(s);
        return *this;
    }
    /// Multiplies by 1 / s; s = 0 gives the IEEE results.
    Quaternion& operator/=(double s) {
        multiply(kx::detail::reciprocal(s));
        return *this;
    }

    friend Quaternion operator/(Quaternion q, double s) { return q /= s; }
    friend bool operator==(const Quaternion& a, const Quaternion& b) { return a.equals(b.c_); }
};

/// Spherical interpolation from a (t = 0) to b (t = 1) along the shorter
/// arc: when a·b < 0, a is negated first, so the result may be the negation
/// of the quaternion expected (the same rotation): slerp(q, -q, 0.5) => -q.
/// Nearly parallel inputs (a·b > parallelTol) are interpolated linearly and
/// normalised.
BASE_API Quaternion slerp(const Quaternion& a, const Quaternion& b, double t);
/// Every component differs by strictly less than tol; false for any NaN.
BASE_API bool equivalent(const Quaternion& a, const Quaternion& b, double tol);

} // namespace kxLinear
