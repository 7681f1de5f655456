// AffineMatrix and AffineMatrixFlt: affine transforms of 3D space in double
// and single precision, and the decomposition forgeDecompose.
//
// Points and vectors are row vectors multiplied on the left: p' = p·M. The
// matrix is 4×3, twelve values stored by rows: rows 0 to 2 are the linear
// part L, the images of the x, y and z axes, and row 3 is the translation
// t; the fourth column is implicitly (0, 0, 0, 1). Element (r, c) is at
// index 3r + c.
//
//     p·M = p·L + t              v·M = v·L (a vector does not translate)
//
// A * B applies A first, then B. The builders (translate, scale, rotate,
// mirror) compose their transform before the existing one, M ← T·M, so the
// last call applies first:
//
//     AffineMatrix m(1.0);
//     m.translate(1, 0, 0).scale(2);
//     Point(0, 0, 0) * m => (1, 0, 0)     Point(1, 0, 0) * m => (3, 0, 0)
//
// preMult(out, in) computes nothing when out and in are the same object;
// transform in place with the operator instead: p = p * m.
//
// Inversion: invert() eliminates (Gauss-Jordan with partial pivoting) and
// fails when a pivot is below epsilonTol; invertFast() uses cofactors and
// fails when |det3x3| is below epsilonTol. Both leave a singular matrix as
// it was and return false; a NaN pivot or determinant counts as singular.
// The two can disagree near the threshold: diag(1e-5, 1e-4, 1e-4) has
// determinant 1e-13 but pivots well above epsilonTol.
//
// AffineMatrixFlt offers storage, conversion, products, application to
// PointFlt and VectorFlt, comparison and the finite tests; everything else
// is AffineMatrix's only. What they share is written once, in MatrixCore
// (storage, access, composition) and AffineMatrixCore (products and
// application).
//
// Cost: products and application to points and vectors are inline; the
// rest are calls into the library. Thread safety: plain values; the default
// constructor leaves the elements uninitialised.
#pragma once

#include <Base/Linear/Homogeneous.h>
#include <Base/Linear/Line.h>
#include <Base/Linear/MatrixCore.h>
#include <Base/Linear/Plane.h>
#include <Base/Linear/Range.h>
#include <Base/Linear/Vector.h>

#include <iosfwd>

namespace kxLinear {

/// The operations that AffineMatrix and AffineMatrixFlt share, compiled
/// once for each; M is the matrix class itself. Use the two classes, not
/// this one.
template <class T, class M>
class BASE_API AffineMatrixCore : public MatrixCore<T, M, 4, 3> {
    using Base = MatrixCore<T, M, 4, 3>;

public:
    AffineMatrixCore() = default;
    /// s on the diagonal of the linear part, zero elsewhere; or twelve
    /// values in storage order (a null pointer gives zeros).
    using Base::Base;

    using Base::preMult;
    /// out = in·M.
    void preMult(PointT<T>& out, const PointT<T>& in) const {
        if (&out != &in)
            out = in * this->self();
    }
    /// out = in·L.
    void preMult(VectorT<T>& out, const VectorT<T>& in) const {
        if (&out != &in)
            out = in * this->self();
    }

    friend M operator*(const M& a, const M& b) {
        // Written out: compilers unroll loops of three only at -O3.
        M c;
        T* z = c;
        const T* x = a;
        const T* y = b;
        const auto row = [z, y](int r, const T* v) {
            z[r] = v[0] * y[0] + v[1] * y[3] + v[2] * y[6];
            z[r + 1] = v[0] * y[1] + v[1] * y[4] + v[2] * y[7];
            z[r + 2] = v[0] * y[2] + v[1] * y[5] + v[2] * y[8];
        };
        row(0, x);
        row(3, x + 3);
        row(6, x + 6);
        row(9, x + 9);
        z[9] += y[9];
        z[10] += y[10];
        z[11] += y[11];
        return c;
    }
    friend PointT<T> operator*(const PointT<T>& p, const M& m) {
        const T* v = p;
        const T* e = m;
        return PointT<T>(v[0] * e[0] + v[1] * e[3] + v[2] * e[6] + e[9],
                         v[0] * e[1] + v[1] * e[4] + v[2] * e[7] + e[10],
                         v[0] * e[2] + v[1] * e[5] + v[2] * e[8] + e[11]);
    }
    friend VectorT<T> operator*(const VectorT<T>& u, const M& m) {
        const T* v = u;
        const T* e = m;
        return VectorT<T>(v[0] * e[0] + v[1] * e[3] + v[2] * e[6],
                          v[0] * e[1] + v[1] * e[4] + v[2] * e[7],
                          v[0] * e[2] + v[1] * e[5] + v[2] * e[8]);
    }
};

/// An affine transform in double precision.
class BASE_API AffineMatrix : public AffineMatrixCore<double, AffineMatrix> {
    using Core = AffineMatrixCore<double, AffineMatrix>;

public:
    /// Linear part I, translation zero.
    static const AffineMatrix Identity;

    AffineMatrix() = default;
    /// AffineMatrix(s): s on the diagonal of the linear part, zero
    /// elsewhere (AffineMatrix(1.0) is the identity); AffineMatrix(values):
    /// twelve values in storage order, a null pointer giving zeros.
    using Core::Core;
    explicit AffineMatrix(const AffineMatrixFlt& m);
    /// The first three columns of each row of a projective matrix whose last
    /// column the caller promises to be (0, 0, 0, 1).
    AffineMatrix(Promise, const ProjMatrix& m);
    AffineMatrix(Promise, const ProjMatrixFlt& m);

    using Core::preMult;
    /// (x, y, z, w) times the 4×4 matrix with the implicit last column:
    /// w stays.
    void preMult(HPoint& out, const HPoint& in) const;
    /// The point through M, the direction through L, normalised again.
    void preMult(Line& out, const Line& in) const;
    /// The origin through M, the direction through L: parameters keep.
    void preMult(ParamLine& out, const ParamLine& in) const;
    /// The point through M, the normal through vectorMatrix() and
    /// normalised; a singular L gives an invalid plane.
    void preMult(Plane& out, const Plane& in) const;
    void preMult(ParamPlane& out, const ParamPlane& in) const;
    /// The smallest range holding the images of the eight corners.
    void preMult(Range3d& out, const Range3d& in) const;

    /// Element by element.
    AffineMatrix& operator+=(const AffineMatrix& b) {
        for (int i = 0; i < kSize; ++i)
            m_[i] += b.m_[i];
        return *this;
    }
    AffineMatrix& operator-=(const AffineMatrix& b) {
        for (int i = 0; i < kSize; ++i)
            m_[i] -= b.m_[i];
        return *this;
    }
    friend AffineMatrix operator+(AffineMatrix a, const AffineMatrix& b) { return a += b; }
    friend AffineMatrix operator-(AffineMatrix a, const AffineMatrix& b) { return a -= b; }
    /// All twelve elements times s.
    friend AffineMatrix operator*(AffineMatrix a, double s) {
        for (double& e : a.m_)
            e *= s;
        return a;
    }
    friend AffineMatrix operator*(double s, const AffineMatrix& a) { return a * s; }

    // Builders: each composes its transform T before this one, M ← T·M, and
    // returns the matrix. Angles are in radians; rotations are right-handed.

    /// Translation row += t·L.
    AffineMatrix& translate(const Vector& t);
    AffineMatrix& translate(double x, double y, double z);
    /// Multiplies rows 0, 1, 2 by s (sx, sy, sz); the translation stays.
    AffineMatrix& scale(double s);
    AffineMatrix& scale(double sx, double sy, double sz);
    AffineMatrix& rotateX(double angle);
    AffineMatrix& rotateY(double angle);
    AffineMatrix& rotateZ(double angle);
    /// R = cos a·I + (1 - cos a)·(axis ⊗ axis) - sin a·crossMatrix(axis).
    /// An invalid axis leaves the matrix as it is.
    AffineMatrix& rotate(double angle, const Normal& axis);
    /// About a line that need not pass through the origin; an invalid line
    /// leaves the matrix as it is.
    AffineMatrix& rotate(double angle, const Line& axis);
    /// The rotation that turns `from` into `to` about their common normal.
    /// Parallel directions leave the matrix as it is; opposite ones turn by
    /// 180 degrees about Normal(from.orthogonalVector()).
    AffineMatrix& rotate(const Normal& from, const Normal& to);
    /// The reflection in the plane; an invalid plane leaves the matrix as it
    /// is.
    AffineMatrix& mirror(const Plane& plane);

    // Setters that overwrite the matrix.

    /// Transposes the linear part and zeroes the translation.
    AffineMatrix& transpose();
    /// Rows (0, -z, y), (z, 0, -x), (-y, x, 0): p·K = p × v. No translation.
    AffineMatrix& crossMatrix(const Vector& v);
    /// Element (i, j) = uᵢ·vⱼ. No translation.
    AffineMatrix& outerProduct(const Vector& u, const Vector& v);
    /// Rows x, y, z, then origin.
    AffineMatrix& setFrame(const Point& origin, const Vector& x, const Vector& y, const Vector& z);
    void getFrame(Point& origin, Vector& x, Vector& y, Vector& z) const;
    /// Row 3.
    Vector getTranslate() const { return Vector(m_ + 9); }

    /// Gauss-Jordan; false, and unchanged, when a pivot is below epsilonTol.
    bool invert();
    /// Cofactors; false, and unchanged, when |det3x3| is below epsilonTol.
    bool invertFast();
    /// An inverted copy by invert(), or an unchanged copy when singular.
    AffineMatrix inverse() const;
    /// |det3x3| >= epsilonTol.
    bool isInvertible() const;
    /// The determinant of the linear part.
    double det3x3() const;
    /// The determinant of the 4×4 matrix with the implicit last column:
    /// det3x3 in exact arithmetic.
    double det4x4() const;
    /// A copy inverted and transposed (no translation), for directions
    /// that must stay perpendicular to transformed vectors; ok tells whether
    /// the inversion succeeded, and when not the copy is returned unchanged.
    AffineMatrix vectorMatrix(bool& ok) const;
    /// vectorMatrix, times the diagonal matrix -1 when det3x3 < 0, so that
    /// surface normals keep their side under mirroring transforms.
    AffineMatrix normalMatrix(bool& ok) const;
};

/// An affine transform in single precision.
class BASE_API AffineMatrixFlt : public AffineMatrixCore<float, AffineMatrixFlt> {
    using Core = AffineMatrixCore<float, AffineMatrixFlt>;

public:
    static const AffineMatrixFlt Identity;

    AffineMatrixFlt() = default;
    using Core::Core;
    /// Each element rounded to float.
    explicit AffineMatrixFlt(const AffineMatrix& m);
    AffineMatrixFlt(Promise, const ProjMatrix& m);
    AffineMatrixFlt(Promise, const ProjMatrixFlt& m);
};

/// Every element differs by strictly less than tol; false for any NaN.
BASE_API bool equivalent(const AffineMatrix& a, const AffineMatrix& b, double tol);
BASE_API bool equivalent(const AffineMatrixFlt& a, const AffineMatrixFlt& b, float tol);
/// Every element is finite.
BASE_API bool isFinite(const AffineMatrix& m);
BASE_API bool isFinite(const AffineMatrixFlt& m);
/// Some element is NaN.
BASE_API bool isNaN(const AffineMatrix& m);
BASE_API bool isNaN(const AffineMatrixFlt& m);
/// The four rows: "[[1, 0, 0], [0, 1, 0], [0, 0, 1], [0, 0, 0]]", with
/// the stream's number format.
BASE_API std::ostream& operator<<(std::ostream& out, const AffineMatrix& m);
BASE_API std::ostream& operator<<(std::ostream& out, const AffineMatrixFlt& m);

/// Splits m into translation, scale, rotation angles and shear, so that its
/// linear part is S·H·Rx·Ry·Rz: S the diagonal scale, H the unit lower
/// triangle with (hxy), (hxz, hyz) below the diagonal, and the rotations by
/// rotate's x, y, z angles in degrees (Rx applied first). A mirroring
/// matrix gets a negated scale. Returns false, with rotate (0, 0, 0), when
/// the scaled frame is singular (determinant below 1e-9 in magnitude, or
/// NaN); translate, scale and shear are set in any case.
BASE_API bool forgeDecompose(const AffineMatrix& m, Point& translate, Vector& scale, Vector& rotate,
                             Vector& shear);

extern template class MatrixCore<double, AffineMatrix, 4, 3>;
extern template class MatrixCore<float, AffineMatrixFlt, 4, 3>;
extern template class AffineMatrixCore<double, AffineMatrix>;
extern template class AffineMatrixCore<float, AffineMatrixFlt>;

} // namespace kxLinear
