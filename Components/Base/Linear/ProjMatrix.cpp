#include <Base/Linear/ProjMatrix.h>

#include "Numeric.h"

#include <cmath>
#include <ostream>

namespace kxLinear {

namespace {

template <class T, class U>
void copyWithLastColumn(T* out, const U* affine) {
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 3; ++c)
            out[4 * r + c] = T(affine[3 * r + c]);
        out[4 * r + 3] = r == 3 ? T(1) : T(0);
    }
}

// out = in·M for a row of four; out must not be in.
void multiplyRow(double* out, const double* in, const double* m) {
    for (int k = 0; k < 4; ++k)
        out[k] = in[0] * m[k] + in[1] * m[4 + k] + in[2] * m[8 + k] + in[3] * m[12 + k];
}

// The 2×2 minors of rows 0-1 (s) and rows 2-3 (c) of a 4×4 matrix; the
// determinant and the adjugate are sums of their products (Laplace
// expansion along the first two rows).
struct Minors {
    explicit Minors(const double* a)
        : s{a[0] * a[5] - a[4] * a[1], a[0] * a[6] - a[4] * a[2], a[0] * a[7] - a[4] * a[3],
            a[1] * a[6] - a[5] * a[2], a[1] * a[7] - a[5] * a[3], a[2] * a[7] - a[6] * a[3]},
          c{a[8] * a[13] - a[12] * a[9],  a[8] * a[14] - a[12] * a[10],
            a[8] * a[15] - a[12] * a[11], a[9] * a[14] - a[13] * a[10],
            a[9] * a[15] - a[13] * a[11], a[10] * a[15] - a[14] * a[11]} {}

    double determinant() const {
        return s[0] * c[5] - s[1] * c[4] + s[2] * c[3] + s[3] * c[2] - s[4] * c[1] + s[5] * c[0];
    }

    double s[6];
    double c[6];
};

} // namespace

ProjMatrix::ProjMatrix(const AffineMatrix& m) {
    copyWithLastColumn(m_, static_cast<const double*>(m));
}

ProjMatrix::ProjMatrix(const AffineMatrixFlt& m) {
    copyWithLastColumn(m_, static_cast<const float*>(m));
}

ProjMatrix::ProjMatrix(const ProjMatrixFlt& m) {
    kx::detail::convertElements(m_, static_cast<const float*>(m), 16);
}

ProjMatrixFlt::ProjMatrixFlt(const AffineMatrix& m) {
    copyWithLastColumn(m_, static_cast<const double*>(m));
}

ProjMatrixFlt::ProjMatrixFlt(const AffineMatrixFlt& m) {
    copyWithLastColumn(m_, static_cast<const float*>(m));
}

ProjMatrixFlt::ProjMatrixFlt(const ProjMatrix& m) {
    kx::detail::convertElements(m_, static_cast<const double*>(m), 16);
}

template <class T, class M>
T ProjMatrixCore<T, M>::det3x3() const {
    const T* m = this->m_;
    return m[0] * (m[5] * m[10] - m[6] * m[9]) + m[1] * (m[6] * m[8] - m[4] * m[10]) +
           m[2] * (m[4] * m[9] - m[5] * m[8]);
}

void ProjMatrix::preMult(HPoint& out, const HPoint& in) const {
    if (&out != &in)
        multiplyRow(out, in, m_);
}

void ProjMatrix::preMult(Tuple4& out, const Tuple4& in) const {
    if (&out != &in)
        multiplyRow(out, in, m_);
}

void ProjMatrix::preMult(Vector& out, const Vector& in) const {
    if (&out == &in)
        return;
    const double* v = in;
    for (int k = 0; k < 3; ++k)
        out[k] = v[0] * m_[k] + v[1] * m_[4 + k] + v[2] * m_[8 + k];
}

bool ProjMatrix::invert() {
    double a[4][4];
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c)
            a[r][c] = m_[4 * r + c];
    }
    if (!kx::detail::gaussJordan<4>(a, epsilonTol))
        return false;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c)
            m_[4 * r + c] = a[r][c];
    }
    return true;
}

bool ProjMatrix::invertFast() {
    const double* a = m_;
    const Minors minors(a);
    const double det = minors.determinant();
    if (!(std::fabs(det) >= epsilonTol))
        return false;
    const double r = kx::detail::reciprocal(det);
    const double* s = minors.s;
    const double* c = minors.c;
    const double inv[16] = {
        (a[5] * c[5] - a[6] * c[4] + a[7] * c[3]) * r,
        (-a[1] * c[5] + a[2] * c[4] - a[3] * c[3]) * r,
        (a[13] * s[5] - a[14] * s[4] + a[15] * s[3]) * r,
        (-a[9] * s[5] + a[10] * s[4] - a[11] * s[3]) * r,
        (-a[4] * c[5] + a[6] * c[2] - a[7] * c[1]) * r,
        (a[0] * c[5] - a[2] * c[2] + a[3] * c[1]) * r,
        (-a[12] * s[5] + a[14] * s[2] - a[15] * s[1]) * r,
        (a[8] * s[5] - a[10] * s[2] + a[11] * s[1]) * r,
        (a[4] * c[4] - a[5] * c[2] + a[7] * c[0]) * r,
        (-a[0] * c[4] + a[1] * c[2] - a[3] * c[0]) * r,
        (a[12] * s[4] - a[13] * s[2] + a[15] * s[0]) * r,
        (-a[8] * s[4] + a[9] * s[2] - a[11] * s[0]) * r,
        (-a[4] * c[3] + a[5] * c[1] - a[6] * c[0]) * r,
        (a[0] * c[3] - a[1] * c[1] + a[2] * c[0]) * r,
        (-a[12] * s[3] + a[13] * s[1] - a[14] * s[0]) * r,
        (a[8] * s[3] - a[9] * s[1] + a[10] * s[0]) * r,
    };
    set(inv);
    return true;
}

ProjMatrix ProjMatrix::inverse() const {
    ProjMatrix m(*this);
    m.invert();
    return m;
}

double ProjMatrix::det4x4() const {
    return Minors(m_).determinant();
}

bool ProjMatrix::isInvertible() const {
    return std::fabs(det4x4()) >= epsilonTol;
}

bool ProjMatrix::isAffine() const {
    return std::fabs(m_[3]) < epsilonTol && std::fabs(m_[7]) < epsilonTol &&
           std::fabs(m_[11]) < epsilonTol && std::fabs(m_[15] - 1) < epsilonTol;
}

bool equivalent(const ProjMatrix& a, const ProjMatrix& b, double tol) {
    return kx::detail::withinTolerance<double>(a, b, 16, tol);
}

bool equivalent(const ProjMatrixFlt& a, const ProjMatrixFlt& b, float tol) {
    return kx::detail::withinTolerance<float>(a, b, 16, tol);
}

bool isFinite(const ProjMatrix& m) {
    return kx::detail::allFinite<double>(m, 16);
}

bool isFinite(const ProjMatrixFlt& m) {
    return kx::detail::allFinite<float>(m, 16);
}

bool isNaN(const ProjMatrix& m) {
    return kx::detail::anyNaN<double>(m, 16);
}

bool isNaN(const ProjMatrixFlt& m) {
    return kx::detail::anyNaN<float>(m, 16);
}

std::ostream& operator<<(std::ostream& out, const ProjMatrix& m) {
    return kx::detail::printRows<double>(out, m, 4, 4);
}

std::ostream& operator<<(std::ostream& out, const ProjMatrixFlt& m) {
    return kx::detail::printRows<float>(out, m, 4, 4);
}

template class MatrixCore<double, ProjMatrix, 4, 4>;
template class MatrixCore<float, ProjMatrixFlt, 4, 4>;
template class ProjMatrixCore<double, ProjMatrix>;
template class ProjMatrixCore<float, ProjMatrixFlt>;

// After the cores: a constant-evaluated use of their constexpr constructor
// before the explicit instantiation would keep the compiler from emitting
// that constructor.
const ProjMatrix ProjMatrix::Identity(1.0);
const ProjMatrixFlt ProjMatrixFlt::Identity(1.0f);

} // namespace kxLinear
