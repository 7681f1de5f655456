// AffineMatrix2: affine transforms of the plane.
//
// The convention is AffineMatrix's: row vectors on the left, A * B applies
// A first. Six values stored by rows: rows 0 and 1 are the 2×2 linear part,
// the images of the x and y axes, and row 2 is the translation; the third
// column is implicitly (0, 0, 1). Element (r, c) is at index 2r + c.
//
// invert() is Gauss-Jordan with partial pivoting, failing like
// AffineMatrix::invert when a pivot is below epsilonTol; preMult(out, in)
// computes nothing when out and in are the same object.
//
// Cost: products and application to points and vectors are inline.
// Thread safety: plain values; the default constructor leaves the elements
// uninitialised.
#pragma once

#include <Base/Linear/MatrixCore.h>
#include <Base/Linear/Range.h>
#include <Base/Linear/Vector.h>

namespace kxLinear {

class BASE_API AffineMatrix2 : public MatrixCore<double, AffineMatrix2, 3, 2> {
    using Core = MatrixCore<double, AffineMatrix2, 3, 2>;

public:
    static const AffineMatrix2 Identity;

    AffineMatrix2() = default;
    /// AffineMatrix2(s): s on the diagonal of the linear part, zero
    /// elsewhere; AffineMatrix2(values): six values in storage order, a null
    /// pointer giving zeros.
    using Core::Core;

    using Core::preMult;
    void preMult(Point2& out, const Point2& in) const {
        if (&out != &in)
            out = in * *this;
    }
    void preMult(Vector2& out, const Vector2& in) const {
        if (&out != &in)
            out = in * *this;
    }
    /// The smallest range holding the images of the four corners.
    void preMult(Range2d& out, const Range2d& in) const;

    /// Gauss-Jordan; false, and unchanged, when a pivot is below epsilonTol.
    bool invert();
    /// An inverted copy, or an unchanged copy when singular.
    AffineMatrix2 inverse() const;

    /// Rows x, y, then origin.
    AffineMatrix2& setFrame(const Point2& origin, const Vector2& x, const Vector2& y);
    void getFrame(Point2& origin, Vector2& x, Vector2& y) const;
    Vector2 getTranslate() const { return Vector2(m_[4], m_[5]); }

    friend AffineMatrix2 operator*(const AffineMatrix2& a, const AffineMatrix2& b) {
        const double* x = a.m_;
        const double* y = b.m_;
        const double c[6] = {x[0] * y[0] + x[1] * y[2],        x[0] * y[1] + x[1] * y[3],
                             x[2] * y[0] + x[3] * y[2],        x[2] * y[1] + x[3] * y[3],
                             x[4] * y[0] + x[5] * y[2] + y[4], x[4] * y[1] + x[5] * y[3] + y[5]};
        return AffineMatrix2(c);
    }
    friend Point2 operator*(const Point2& p, const AffineMatrix2& m) {
        const double* e = m.m_;
        return Point2(p[0] * e[0] + p[1] * e[2] + e[4], p[0] * e[1] + p[1] * e[3] + e[5]);
    }
    friend Vector2 operator*(const Vector2& v, const AffineMatrix2& m) {
        const double* e = m.m_;
        return Vector2(v[0] * e[0] + v[1] * e[2], v[0] * e[1] + v[1] * e[3]);
    }
};

/// Every element differs by strictly less than tol; false for any NaN.
BASE_API bool equivalent(const AffineMatrix2& a, const AffineMatrix2& b, double tol);

extern template class MatrixCore<double, AffineMatrix2, 3, 2>;

} // namespace kxLinear
