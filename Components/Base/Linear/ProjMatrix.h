// ProjMatrix and ProjMatrixFlt: projective 4×4 matrices for viewing, in
// double and single precision.
//
// The convention is AffineMatrix's: row vectors on the left, A * B applies
// A first. Sixteen values stored by rows; element (r, c) is at index
// 4r + c. An affine matrix converts with the last column (0, 0, 0, 1).
//
// invert() eliminates (Gauss-Jordan with partial pivoting over all sixteen
// elements) and fails when a pivot is below epsilonTol; invertFast() uses
// cofactors and fails when |det4x4| is below epsilonTol. Both leave a
// singular matrix as it was and return false.
//
// ProjMatrixFlt offers storage, conversions from the other three matrix
// classes, products, det3x3, comparison and the finite tests; everything
// else is ProjMatrix's only. What they share is written once, in MatrixCore
// (storage, access, composition) and ProjMatrixCore (product, det3x3).
//
// Cost: products are inline; the rest are calls into the library. Thread
// safety: plain values; the default constructor leaves the elements
// uninitialised.
#pragma once

#include <Base/Linear/AffineMatrix.h>
#include <Base/Linear/Homogeneous.h>
#include <Base/Linear/Tuple.h>

#include <iosfwd>

namespace kxLinear {

/// The operations that ProjMatrix and ProjMatrixFlt share, compiled once
/// for each; M is the matrix class itself. Use the two classes, not this
/// one.
template <class T, class M>
class BASE_API ProjMatrixCore : public MatrixCore<T, M, 4, 4> {
    using Base = MatrixCore<T, M, 4, 4>;

public:
    ProjMatrixCore() = default;
    /// s on the diagonal, zero elsewhere; or sixteen values in storage
    /// order (a null pointer gives zeros).
    using Base::Base;

    /// The determinant of the upper-left 3×3 block.
    T det3x3() const;

    friend M operator*(const M& a, const M& b) {
        M c;
        T* z = c;
        const T* x = a;
        const T* y = b;
        for (int r = 0; r < 16; r += 4) {
            for (int k = 0; k < 4; ++k)
                z[r + k] =
                    x[r] * y[k] + x[r + 1] * y[4 + k] + x[r + 2] * y[8 + k] + x[r + 3] * y[12 + k];
        }
        return c;
    }
};

/// A projective transform in double precision.
class BASE_API ProjMatrix : public ProjMatrixCore<double, ProjMatrix> {
    using Core = ProjMatrixCore<double, ProjMatrix>;

public:
    static const ProjMatrix Identity;

    ProjMatrix() = default;
    using Core::Core;
    /// The affine matrix with its implicit last column (0, 0, 0, 1).
    explicit ProjMatrix(const AffineMatrix& m);
    explicit ProjMatrix(const AffineMatrixFlt& m);
    explicit ProjMatrix(const ProjMatrixFlt& m);

    using Core::preMult;
    /// out = in·M over all four coordinates; nothing when out is in.
    void preMult(HPoint& out, const HPoint& in) const;
    void preMult(Tuple4& out, const Tuple4& in) const;
    /// A direction, w = 0: out = in times the upper-left 3×3 block.
    void preMult(Vector& out, const Vector& in) const;

    /// Gauss-Jordan; false, and unchanged, when a pivot is below epsilonTol.
    bool invert();
    /// Cofactors; false, and unchanged, when |det4x4| is below epsilonTol.
    bool invertFast();
    /// An inverted copy by invert(), or an unchanged copy when singular.
    ProjMatrix inverse() const;
    double det4x4() const;
    /// |det4x4| >= epsilonTol.
    bool isInvertible() const;
    /// Elements 3, 7 and 11 below epsilonTol in magnitude and element 15
    /// within epsilonTol of 1: the matrix converts to an AffineMatrix with
    /// Promise.
    bool isAffine() const;
};

/// A projective transform in single precision.
class BASE_API ProjMatrixFlt : public ProjMatrixCore<float, ProjMatrixFlt> {
    using Core = ProjMatrixCore<float, ProjMatrixFlt>;

public:
    static const ProjMatrixFlt Identity;

    ProjMatrixFlt() = default;
    using Core::Core;
    /// Each element rounded to float; an affine matrix gets its last column.
    explicit ProjMatrixFlt(const AffineMatrix& m);
    explicit ProjMatrixFlt(const AffineMatrixFlt& m);
    explicit ProjMatrixFlt(const ProjMatrix& m);
};

/// Every element differs by strictly less than tol; false for any NaN.
BASE_API bool equivalent(const ProjMatrix& a, const ProjMatrix& b, double tol);
BASE_API bool equivalent(const ProjMatrixFlt& a, const ProjMatrixFlt& b, float tol);
/// Every element is finite.
BASE_API bool isFinite(const ProjMatrix& m);
BASE_API bool isFinite(const ProjMatrixFlt& m);
/// Some element is NaN.
BASE_API bool isNaN(const ProjMatrix& m);
BASE_API bool isNaN(const ProjMatrixFlt& m);
/// The four rows, as the affine matrices print.
BASE_API std::ostream& operator<<(std::ostream& out, const ProjMatrix& m);
BASE_API std::ostream& operator<<(std::ostream& out, const ProjMatrixFlt& m);

extern template class MatrixCore<double, ProjMatrix, 4, 4>;
extern template class MatrixCore<float, ProjMatrixFlt, 4, 4>;
extern template class ProjMatrixCore<double, ProjMatrix>;
extern template class ProjMatrixCore<float, ProjMatrixFlt>;

} // namespace kxLinear
