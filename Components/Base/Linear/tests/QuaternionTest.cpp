#include <Base/Linear/AffineMatrix.h>
#include <Base/Linear/Quaternion.h>

#include "Geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace kxLinear;
using namespace testing_linear;

namespace {

AffineMatrix matrixOf(const Quaternion& q) {
    AffineMatrix m;
    q.getMatrix(m);
    return m;
}

double quaternionAngle(const Quaternion& a, const Quaternion& b) {
    const double* p = a;
    const double* q = b;
    return std::acos(std::fmin(1.0, p[0] * q[0] + p[1] * q[1] + p[2] * q[2] + p[3] * q[3]));
}

struct Parts {
    Vector translate;
    Vector scale;
    Vector rotate; // degrees
    Vector shear;
};

// The matrix that forgeDecompose splits into `parts`: S·H·Rx·Ry·Rz, then
// the translation.
AffineMatrix compose(const Parts& parts) {
    AffineMatrix h(1.0);
    h(1, 0) = parts.shear[0];
    h(2, 0) = parts.shear[1];
    h(2, 1) = parts.shear[2];
    h.scale(parts.scale[0], parts.scale[1], parts.scale[2]);
    AffineMatrix r(1.0);
    r.rotateZ(toRadians(parts.rotate[2]))
        .rotateY(toRadians(parts.rotate[1]))
        .rotateX(toRadians(parts.rotate[0]));
    AffineMatrix m = h * r;
    for (int k = 0; k < 3; ++k)
        m(3, k) = parts.translate[k];
    return m;
}

Parts decompose(const AffineMatrix& m, bool& ok) {
    Point translate;
    Parts parts;
    ok = forgeDecompose(m, translate, parts.scale, parts.rotate, parts.shear);
    parts.translate = translate.asVector();
    return parts;
}

} // namespace

TEST(Quaternion, AngleAndAxisGiveTheMatrixRotation) {
    Random random;
    for (int i = 0; i < 30; ++i) {
        const double a = random.uniform(0.1, 3);
        const Normal n = random.normal();
        const Quaternion q(a, n);
        EXPECT_TRUE(equivalent(matrixOf(q), AffineMatrix(1.0).rotate(a, n), kTol));

        double angle = 0;
        Normal axis;
        ASSERT_TRUE(q.getAngleAxis(angle, axis));
        EXPECT_NEAR(angle, a, 1e-7);
        EXPECT_TRUE(equivalent(axis, n, 1e-7));
        // The opposite turn comes back as the same angle about -n.
        ASSERT_TRUE(Quaternion(-a, n).getAngleAxis(angle, axis));
        EXPECT_NEAR(angle, a, 1e-7);
        EXPECT_TRUE(equivalent(axis, -n, 1e-7));

        Normal x, y, z;
        q.getFrame(x, y, z);
        Point origin;
        Vector rx, ry, rz;
        matrixOf(q).getFrame(origin, rx, ry, rz);
        EXPECT_TRUE(equivalent(Vector(x), rx, kTol));
        EXPECT_TRUE(equivalent(Vector(z), rz, kTol));
        EXPECT_TRUE(y.isValid());
    }
    double angle = 1;
    Normal axis = Normal::z;
    EXPECT_FALSE(Quaternion(0, 0, 0, 1).getAngleAxis(angle, axis));
    EXPECT_EQ(angle, 0);
    EXPECT_EQ(axis, Normal::x);
    EXPECT_EQ(matrixOf(Quaternion(0, 0, 0, 1)), AffineMatrix::Identity);
}

TEST(Quaternion, SetFrameInvertsGetFrameOnEveryBranch) {
    Random random;
    // Half turns about the axes lead with x, y and z; small turns with w.
    const Quaternion special[] = {Quaternion(3.1, Normal::x), Quaternion(3.1, Normal::y),
                                  Quaternion(3.1, Normal::z), Quaternion(0.2, Normal(1, 2, 3)),
                                  Quaternion(kPi, Normal(1, 1, 0))};
    for (int i = 0; i < 40; ++i) {
        const Quaternion q = i < 5 ? special[i] : Quaternion(random.angle(), random.normal());
        Normal x, y, z;
        q.getFrame(x, y, z);
        Quaternion back;
        back.setFrame(x, y, z);
        // q and -q are the same rotation.
        EXPECT_TRUE(equivalent(back, q, 1e-9) || equivalent(back, q / -1, 1e-9))
            << i << ": " << testing::PrintToString(back) << " " << testing::PrintToString(q);
        EXPECT_TRUE(equivalent(matrixOf(back), matrixOf(q), kTol));
    }
}

TEST(Quaternion, NormalisationAndScalarOperators) {
    Quaternion q(1, 2, 2, 4);
    q.normalize();
    EXPECT_TRUE(equivalent(q, Quaternion(0.2, 0.4, 0.4, 0.8), 1e-15));
    Quaternion zero(0, 0, 0, 0);
    zero.normalize();
    EXPECT_TRUE(std::isnan(zero[0]) && std::isnan(zero[3]));
    EXPECT_FALSE(equivalent(zero, zero, 1));

    Quaternion s(1, -2, 3, 4);
    s *= 2;
    EXPECT_EQ(s / 4, Quaternion(0.5, -1, 1.5, 2));
    const Quaternion infinite = Quaternion(1, -1, 0, 1) / 0.0;
    EXPECT_EQ(infinite[0], std::numeric_limits<double>::infinity());
    EXPECT_EQ(infinite[1], -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(infinite[2]));
}

TEST(Quaternion, SlerpFollowsTheShorterArcAtConstantSpeed) {
    Random random;
    for (int i = 0; i < 30; ++i) {
        const Quaternion a(random.angle(), random.normal());
        Quaternion b(random.angle(), random.normal());
        const double* pa = a;
        const double* pb = b;
        if (pa[0] * pb[0] + pa[1] * pb[1] + pa[2] * pb[2] + pa[3] * pb[3] < 0)
            b *= -1;
        const double full = quaternionAngle(a, b);
        EXPECT_TRUE(equivalent(slerp(a, b, 0), a, kTol));
        EXPECT_TRUE(equivalent(slerp(a, b, 1), b, kTol));
        for (double t : {0.25, 0.5, 0.9}) {
            const Quaternion q = slerp(a, b, t);
            EXPECT_NEAR(quaternionAngle(q, q), 0, 1e-7); // unit length
            EXPECT_NEAR(quaternionAngle(a, q), t * full, 1e-7);
            EXPECT_NEAR(quaternionAngle(q, b), (1 - t) * full, 1e-7);
            // The negated end is the same rotation: the same path.
            EXPECT_TRUE(equivalent(matrixOf(slerp(a, b / -1, t)), matrixOf(q), kTol));
        }
    }
    const Quaternion q(0.8, Normal(1, -2, 0.5));
    EXPECT_TRUE(equivalent(slerp(q, q / -1, 0.5), q / -1, kTol)); // a is negated first
    EXPECT_TRUE(equivalent(matrixOf(slerp(q, q / -1, 0.5)), matrixOf(q), kTol));
    // Nearly parallel ends are interpolated linearly, still unit length.
    const Quaternion near(0.8 + 1e-9, Normal(1, -2, 0.5));
    const Quaternion mid = slerp(q, near, 0.5);
    EXPECT_TRUE(equivalent(mid, Quaternion(0.8 + 5e-10, Normal(1, -2, 0.5)), 1e-12));
}

TEST(ForgeDecompose, SplitsAndRecomposesTheMatrix) {
    Random random;
    for (int i = 0; i < 40; ++i) {
        const Parts parts{
            random.vector(),
            Vector(random.uniform(0.5, 2), random.uniform(0.5, 2), random.uniform(0.5, 2)),
            Vector(random.uniform(-170, 170), random.uniform(-80, 80), random.uniform(-170, 170)),
            Vector(random.uniform(-0.5, 0.5), random.uniform(-0.5, 0.5),
                   random.uniform(-0.5, 0.5))};
        const AffineMatrix m = compose(parts);
        bool ok = false;
        const Parts found = decompose(m, ok);
        ASSERT_TRUE(ok);
        EXPECT_TRUE(equivalent(found.translate, parts.translate, kTol));
        EXPECT_TRUE(equivalent(found.scale, parts.scale, kTol));
        EXPECT_TRUE(equivalent(found.rotate, parts.rotate, 1e-7));
        EXPECT_TRUE(equivalent(found.shear, parts.shear, kTol));
        EXPECT_TRUE(equivalent(compose(found), m, kTol));

        // A mirror comes back with a negated scale and still recomposes.
        const AffineMatrix mirrored = AffineMatrix(1.0).scale(1, 1, -1) * m;
        const Parts flipped = decompose(mirrored, ok);
        ASSERT_TRUE(ok);
        EXPECT_LT(flipped.scale[0], 0);
        EXPECT_TRUE(equivalent(compose(flipped), mirrored, kTol));
    }
}

TEST(ForgeDecompose, EdgeCases) {
    bool ok = false;
    Parts parts = decompose(AffineMatrix(1.0).scale(-1, 1, 1), ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(parts.scale, Vector(-1, -1, -1));
    EXPECT_TRUE(equivalent(parts.rotate, Vector(180, 0, 0), kTol));
    EXPECT_EQ(parts.shear, Vector::zero);

    parts = decompose(AffineMatrix(1.0), ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(parts.scale, Vector(1, 1, 1));
    EXPECT_EQ(parts.rotate, Vector::zero);

    AffineMatrix zero(0.0);
    zero(3, 1) = 7;
    parts = decompose(zero, ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(parts.rotate, Vector::zero);
    EXPECT_EQ(parts.translate, Vector(0, 7, 0));
    EXPECT_EQ(parts.scale, Vector::zero);

    AffineMatrix flat = AffineMatrix(1.0).rotateZ(0.3);
    for (int k = 0; k < 3; ++k)
        flat(2, k) = flat(0, k) + flat(1, k);
    decompose(flat, ok);
    EXPECT_FALSE(ok);
    AffineMatrix broken(1.0);
    broken(1, 1) = std::numeric_limits<double>::quiet_NaN();
    parts = decompose(broken, ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(parts.rotate, Vector::zero);

    // Gimbal lock: at ry = 90 degrees only rx - rz is determined; rz is 0.
    const AffineMatrix locked =
        compose({Vector::zero, Vector(1, 2, 3), Vector(30, 90, 20), Vector::zero});
    parts = decompose(locked, ok);
    EXPECT_TRUE(ok);
    EXPECT_TRUE(equivalent(parts.rotate, Vector(10, 90, 0), 1e-5));
    EXPECT_TRUE(equivalent(compose(parts), locked, 1e-7));
}

TEST(UnitCircleRotation, AngleOfANormalInAPlane) {
    for (double degrees : {0.0, 45.0, 135.0, 180.0, -30.0, -179.0}) {
        const double a = toRadians(degrees);
        const Normal n(std::cos(a), std::sin(a), 0.5); // the out-of-plane part plays no part
        EXPECT_NEAR(unitCircleRotation(n, Normal::x, Normal::y, false), a, 1e-12);
        const double positive = unitCircleRotation(n, Normal::x, Normal::y, true);
        EXPECT_NEAR(positive, a < 0 ? a + 2 * kPi : a, 1e-12);
        EXPECT_GE(positive, 0);
    }
    EXPECT_NEAR(unitCircleRotation(Normal::x, Normal::y, Normal::x, false), kPi / 2, 1e-15);
    EXPECT_EQ(unitCircleRotation(Normal(0, 0, 0), Normal::x, Normal::y, true), 0);
}
