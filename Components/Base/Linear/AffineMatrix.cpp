#include <Base/Linear/AffineMatrix.h>

#include <Base/Linear/ProjMatrix.h>

#include "Numeric.h"

#include <cmath>
#include <ostream>
#include <utility>

namespace kxLinear {

namespace {

template <class T, class U>
void copyAffineColumns(T* out, const U* proj) {
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 3; ++c)
            out[3 * r + c] = T(proj[4 * r + c]);
    }
}

} // namespace

AffineMatrix::AffineMatrix(const AffineMatrixFlt& m) {
    kx::detail::convertElements(m_, static_cast<const float*>(m), 12);
}

AffineMatrix::AffineMatrix(Promise, const ProjMatrix& m) {
    copyAffineColumns(m_, static_cast<const double*>(m));
}

AffineMatrix::AffineMatrix(Promise, const ProjMatrixFlt& m) {
    copyAffineColumns(m_, static_cast<const float*>(m));
}

AffineMatrixFlt::AffineMatrixFlt(const AffineMatrix& m) {
    kx::detail::convertElements(m_, static_cast<const double*>(m), 12);
}

AffineMatrixFlt::AffineMatrixFlt(Promise, const ProjMatrix& m) {
    copyAffineColumns(m_, static_cast<const double*>(m));
}

AffineMatrixFlt::AffineMatrixFlt(Promise, const ProjMatrixFlt& m) {
    copyAffineColumns(m_, static_cast<const float*>(m));
}

void AffineMatrix::preMult(HPoint& out, const HPoint& in) const {
    if (&out == &in)
        return;
    const double* v = in;
    for (int k = 0; k < 3; ++k)
        out[k] = v[0] * m_[k] + v[1] * m_[3 + k] + v[2] * m_[6 + k] + v[3] * m_[9 + k];
    out[3] = v[3];
}

void AffineMatrix::preMult(Line& out, const Line& in) const {
    if (&out != &in)
        out = Line(in.point() * *this, Vector(in.direction()) * *this);
}

void AffineMatrix::preMult(ParamLine& out, const ParamLine& in) const {
    if (&out != &in)
        out = ParamLine(in.origin() * *this, in.direction() * *this);
}

void AffineMatrix::preMult(Plane& out, const Plane& in) const {
    if (&out == &in)
        return;
    bool ok = false;
    const AffineMatrix normals = vectorMatrix(ok);
    out = Plane(in.point() * *this, ok ? Vector(in.normal()) * normals : Vector::zero);
}

void AffineMatrix::preMult(ParamPlane& out, const ParamPlane& in) const {
    if (&out != &in)
        out = ParamPlane(in.origin() * *this, in.u() * *this, in.v() * *this);
}

void AffineMatrix::preMult(Range3d& out, const Range3d& in) const {
    if (&out == &in)
        return;
    if (in.isEmpty()) {
        out = Range3d();
        return;
    }
    double low[3];
    double high[3];
    kx::detail::transformBox<3>(m_, in.low(), in.high(), low, high);
    out = Range3d(Point(low), Point(high));
}

AffineMatrix& AffineMatrix::translate(const Vector& t) {
    return translate(t[0], t[1], t[2]);
}

AffineMatrix& AffineMatrix::translate(double x, double y, double z) {
    for (int k = 0; k < 3; ++k)
        m_[9 + k] += x * m_[k] + y * m_[3 + k] + z * m_[6 + k];
    return *this;
}

AffineMatrix& AffineMatrix::scale(double s) {
    return scale(s, s, s);
}

AffineMatrix& AffineMatrix::scale(double sx, double sy, double sz) {
    const double s[3] = {sx, sy, sz};
    for (int r = 0; r < 3; ++r) {
        for (int k = 0; k < 3; ++k)
            m_[3 * r + k] *= s[r];
    }
    return *this;
}

namespace {

// Rows i and j of the linear part become c·row i + s·row j and
// -s·row i + c·row j: a rotation in the plane of axes i and j, from i
// towards j.
void rotateRows(double* m, int i, int j, double angle) {
    const double s = std::sin(angle);
    const double c = std::cos(angle);
    for (int k = 0; k < 3; ++k) {
        const double a = m[3 * i + k];
        const double b = m[3 * j + k];
        m[3 * i + k] = c * a + s * b;
        m[3 * j + k] = -s * a + c * b;
    }
}

} // namespace

AffineMatrix& AffineMatrix::rotateX(double angle) {
    rotateRows(m_, 1, 2, angle);
    return *this;
}

AffineMatrix& AffineMatrix::rotateY(double angle) {
    rotateRows(m_, 2, 0, angle);
    return *this;
}

AffineMatrix& AffineMatrix::rotateZ(double angle) {
    rotateRows(m_, 0, 1, angle);
    return *this;
}

AffineMatrix& AffineMatrix::rotate(double angle, const Normal& axis) {
    if (!axis.isValid())
        return *this;
    const double s = std::sin(angle);
    const double c = std::cos(angle);
    AffineMatrix r;
    AffineMatrix k;
    r.outerProduct(axis, axis);
    k.crossMatrix(axis);
    for (int i = 0; i < 9; ++i)
        r.m_[i] = (1 - c) * r.m_[i] - s * k.m_[i];
    r.m_[0] += c;
    r.m_[4] += c;
    r.m_[8] += c;
    return preMult(r);
}

AffineMatrix& AffineMatrix::rotate(double angle, const Line& axis) {
    if (!axis.isValid())
        return *this;
    const Vector p = axis.point().asVector();
    return translate(p).rotate(angle, axis.direction()).translate(-p);
}

AffineMatrix& AffineMatrix::rotate(const Normal& from, const Normal& to) {
    Normal axis(cross(from, to));
    double a = angle(from, to);
    if (!axis.isValid()) {
        if (!(a > 1.5707963267948966))
            return *this;
        axis = Normal(Vector(from).orthogonalVector());
        a = toRadians(180);
    }
    return rotate(a, axis);
}

AffineMatrix& AffineMatrix::mirror(const Plane& plane) {
    if (!plane.isValid())
        return *this;
    // x ↦ x - 2((x - p)·n)n: linear part I - 2 n⊗n, translation 2(p·n)n.
    const Vector n(plane.normal());
    AffineMatrix r;
    r.outerProduct(n, n);
    for (int i = 0; i < 9; ++i)
        r.m_[i] *= -2;
    r.m_[0] += 1;
    r.m_[4] += 1;
    r.m_[8] += 1;
    const Vector t = n * (2 * dot(plane.point().asVector(), n));
    for (int k = 0; k < 3; ++k)
        r.m_[9 + k] = t[k];
    return preMult(r);
}

AffineMatrix& AffineMatrix::transpose() {
    std::swap(m_[1], m_[3]);
    std::swap(m_[2], m_[6]);
    std::swap(m_[5], m_[7]);
    m_[9] = m_[10] = m_[11] = 0;
    return *this;
}

AffineMatrix& AffineMatrix::crossMatrix(const Vector& v) {
    const double values[12] = {0, -v[2], v[1], v[2], 0, -v[0], -v[1], v[0], 0, 0, 0, 0};
    return set(values);
}

AffineMatrix& AffineMatrix::outerProduct(const Vector& u, const Vector& v) {
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j)
            m_[3 * i + j] = u[i] * v[j];
    }
    m_[9] = m_[10] = m_[11] = 0;
    return *this;
}

AffineMatrix& AffineMatrix::setFrame(const Point& origin, const Vector& x, const Vector& y,
                                     const Vector& z) {
    const double* rows[4] = {x, y, z, origin};
    for (int r = 0; r < 4; ++r) {
        for (int k = 0; k < 3; ++k)
            m_[3 * r + k] = rows[r][k];
    }
    return *this;
}

void AffineMatrix::getFrame(Point& origin, Vector& x, Vector& y, Vector& z) const {
    x = Vector(m_);
    y = Vector(m_ + 3);
    z = Vector(m_ + 6);
    origin = Point(m_ + 9);
}

bool AffineMatrix::invert() {
    double a[3][3] = {{m_[0], m_[1], m_[2]}, {m_[3], m_[4], m_[5]}, {m_[6], m_[7], m_[8]}};
    if (!kx::detail::gaussJordan<3>(a, epsilonTol))
        return false;
    // L⁻¹, and the translation -t·L⁻¹.
    const double t[3] = {m_[9], m_[10], m_[11]};
    for (int r = 0; r < 3; ++r) {
        for (int k = 0; k < 3; ++k)
            m_[3 * r + k] = a[r][k];
    }
    for (int k = 0; k < 3; ++k)
        m_[9 + k] = -(t[0] * a[0][k] + t[1] * a[1][k] + t[2] * a[2][k]);
    return true;
}

bool AffineMatrix::invertFast() {
    const double* m = m_;
    // The adjugate by rows; its first column gives the determinant by
    // expansion along row 0.
    const double adj[9] = {
        m[4] * m[8] - m[5] * m[7], m[2] * m[7] - m[1] * m[8], m[1] * m[5] - m[2] * m[4],
        m[5] * m[6] - m[3] * m[8], m[0] * m[8] - m[2] * m[6], m[2] * m[3] - m[0] * m[5],
        m[3] * m[7] - m[4] * m[6], m[1] * m[6] - m[0] * m[7], m[0] * m[4] - m[1] * m[3]};
    const double det = m[0] * adj[0] + m[1] * adj[3] + m[2] * adj[6];
    if (!(std::fabs(det) >= epsilonTol))
        return false;
    // -t·adj does not wait for the division; only the scaling does.
    const double t[3] = {-(m[9] * adj[0] + m[10] * adj[3] + m[11] * adj[6]),
                         -(m[9] * adj[1] + m[10] * adj[4] + m[11] * adj[7]),
                         -(m[9] * adj[2] + m[10] * adj[5] + m[11] * adj[8])};
    const double s = kx::detail::reciprocal(det);
    for (int i = 0; i < 9; ++i)
        m_[i] = adj[i] * s;
    m_[9] = t[0] * s;
    m_[10] = t[1] * s;
    m_[11] = t[2] * s;
    return true;
}

AffineMatrix AffineMatrix::inverse() const {
    AffineMatrix m(*this);
    m.invert();
    return m;
}

bool AffineMatrix::isInvertible() const {
    return std::fabs(det3x3()) >= epsilonTol;
}

double AffineMatrix::det3x3() const {
    const double* m = m_;
    return m[0] * (m[4] * m[8] - m[5] * m[7]) + m[1] * (m[5] * m[6] - m[3] * m[8]) +
           m[2] * (m[3] * m[7] - m[4] * m[6]);
}

double AffineMatrix::det4x4() const {
    return ProjMatrix(*this).det4x4();
}

AffineMatrix AffineMatrix::vectorMatrix(bool& ok) const {
    AffineMatrix m(*this);
    ok = m.invert();
    if (ok)
        m.transpose();
    return m;
}

AffineMatrix AffineMatrix::normalMatrix(bool& ok) const {
    const AffineMatrix m = vectorMatrix(ok);
    return ok && det3x3() < 0 ? m * AffineMatrix(-1.0) : m;
}

bool equivalent(const AffineMatrix& a, const AffineMatrix& b, double tol) {
    return kx::detail::withinTolerance<double>(a, b, 12, tol);
}

bool equivalent(const AffineMatrixFlt& a, const AffineMatrixFlt& b, float tol) {
    return kx::detail::withinTolerance<float>(a, b, 12, tol);
}

bool isFinite(const AffineMatrix& m) {
    return kx::detail::allFinite<double>(m, 12);
}

bool isFinite(const AffineMatrixFlt& m) {
    return kx::detail::allFinite<float>(m, 12);
}

bool isNaN(const AffineMatrix& m) {
    return kx::detail::anyNaN<double>(m, 12);
}

bool isNaN(const AffineMatrixFlt& m) {
    return kx::detail::anyNaN<float>(m, 12);
}

std::ostream& operator<<(std::ostream& out, const AffineMatrix& m) {
    return kx::detail::printRows<double>(out, m, 4, 3);
}

std::ostream& operator<<(std::ostream& out, const AffineMatrixFlt& m) {
    return kx::detail::printRows<float>(out, m, 4, 3);
}

namespace {

constexpr double kSmall = 1e-9;

// atan2, taken as 0 when both arguments are tiny: the angle is then
// undetermined and 0 is the tidy answer.
double angleOf(double y, double x) {
    return std::fabs(y) < kSmall && std::fabs(x) < kSmall ? 0.0 : std::atan2(y, x);
}

// Euler angles in degrees of the rotation whose rows are R = Rx·Ry·Rz.
Vector eulerAngles(const double* r) {
    using kx::detail::clampUnit;
    const double sy = clampUnit(-r[2]);
    const double ry = std::asin(sy);
    const double c = std::sqrt(1 - sy * sy);
    double rx;
    double rz = 0;
    if (std::fabs(c) >= kSmall && std::fabs(std::fabs(sy) - 1) >= kSmall) {
        rx = angleOf(clampUnit(r[5] / c), clampUnit(r[8] / c));
        rz = angleOf(clampUnit(r[1] / c), clampUnit(r[0] / c));
    } else {
        // Gimbal lock: only rx + rz (or rx - rz) is determined; rx takes it.
        rx = angleOf(clampUnit(r[3] / sy), clampUnit(r[4]));
    }
    return Vector(toDegrees(rx), toDegrees(ry), toDegrees(rz));
}

} // namespace

bool forgeDecompose(const AffineMatrix& m, Point& translate, Vector& scale, Vector& rotate,
                    Vector& shear) {
    Vector x;
    Vector y;
    Vector z;
    m.getFrame(translate, x, y, z);

    const double sx = x.length();
    if (!(std::fabs(sx) < kSmall))
        x = x / sx;
    double hxy = dot(x, y);
    y -= hxy * x;
    const double sy = y.length();
    if (!(std::fabs(sy) < kSmall)) {
        y = y / sy;
        hxy /= sy;
    }
    double hxz = dot(x, z);
    z -= hxz * x;
    double hyz = dot(y, z);
    z -= hyz * y;
    const double sz = z.length();
    if (!(std::fabs(sz) < kSmall)) {
        z = z / sz;
        hxz /= sz;
        hyz /= sz;
    }
    scale = Vector(sx, sy, sz);
    shear = Vector(hxy, hxz, hyz);

    AffineMatrix r;
    r.setFrame(Point::origin, x, y, z);
    const double d = r.det3x3();
    if (d > -1.000001 && d < -0.999999) {
        // A product with the diagonal matrix -1, not a negation of each
        // element: zeros stay +0, so a half turn comes out as +180 degrees.
        scale = -scale;
        r *= AffineMatrix(-1.0);
    }
    if (!(std::fabs(d) >= kSmall)) {
        rotate = Vector::zero;
        return false;
    }
    rotate = eulerAngles(r);
    return true;
}

template class MatrixCore<double, AffineMatrix, 4, 3>;
template class MatrixCore<float, AffineMatrixFlt, 4, 3>;
template class AffineMatrixCore<double, AffineMatrix>;
template class AffineMatrixCore<float, AffineMatrixFlt>;

// After the cores: a constant-evaluated use of their constexpr constructor
// before the explicit instantiation would keep the compiler from emitting
// that constructor.
const AffineMatrix AffineMatrix::Identity(1.0);
const AffineMatrixFlt AffineMatrixFlt::Identity(1.0f);

} // namespace kxLinear
