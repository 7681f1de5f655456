#include <Base/Linear/AffineMatrix2.h>

#include "Numeric.h"

namespace kxLinear {

void AffineMatrix2::preMult(Range2d& out, const Range2d& in) const {
    if (&out == &in)
        return;
    if (in.isEmpty()) {
        out = Range2d();
        return;
    }
    double low[2];
    double high[2];
    kx::detail::transformBox<2>(m_, in.low(), in.high(), low, high);
    out = Range2d(Point2(low), Point2(high));
}

bool AffineMatrix2::invert() {
    double a[2][2] = {{m_[0], m_[1]}, {m_[2], m_[3]}};
    if (!kx::detail::gaussJordan<2>(a, epsilonTol))
        return false;
    const double tx = m_[4];
    const double ty = m_[5];
    m_[0] = a[0][0];
    m_[1] = a[0][1];
    m_[2] = a[1][0];
    m_[3] = a[1][1];
    m_[4] = -(tx * a[0][0] + ty * a[1][0]);
    m_[5] = -(tx * a[0][1] + ty * a[1][1]);
    return true;
}

AffineMatrix2 AffineMatrix2::inverse() const {
    AffineMatrix2 m(*this);
    m.invert();
    return m;
}

AffineMatrix2& AffineMatrix2::setFrame(const Point2& origin, const Vector2& x, const Vector2& y) {
    const double values[6] = {x[0], x[1], y[0], y[1], origin[0], origin[1]};
    return *this = AffineMatrix2(values);
}

void AffineMatrix2::getFrame(Point2& origin, Vector2& x, Vector2& y) const {
    x = Vector2(m_);
    y = Vector2(m_ + 2);
    origin = Point2(m_ + 4);
}

bool equivalent(const AffineMatrix2& a, const AffineMatrix2& b, double tol) {
    return kx::detail::withinTolerance<double>(a, b, 6, tol);
}

template class MatrixCore<double, AffineMatrix2, 3, 2>;

// After the core: a constant-evaluated use of its constexpr constructor
// before the explicit instantiation would keep the compiler from emitting
// that constructor.
const AffineMatrix2 AffineMatrix2::Identity(1.0);

} // namespace kxLinear
