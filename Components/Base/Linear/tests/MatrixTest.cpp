#include <Base/Linear/AffineMatrix.h>
#include <Base/Linear/AffineMatrix2.h>
#include <Base/Linear/ProjMatrix.h>

#include "Geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <sstream>
#include <type_traits>

using namespace kxLinear;
using namespace testing_linear;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A matrix must not read twelve values out of a three-component point.
static_assert(!std::is_constructible_v<AffineMatrix, Point>);
static_assert(!std::is_constructible_v<ProjMatrix, AffineMatrix2>);
static_assert(std::is_constructible_v<AffineMatrix, const double*>);
static_assert(std::is_constructible_v<AffineMatrixFlt, AffineMatrix>);
static_assert(!std::is_convertible_v<AffineMatrix, AffineMatrixFlt>);
static_assert(sizeof(AffineMatrix) == 12 * sizeof(double));
static_assert(sizeof(ProjMatrixFlt) == 16 * sizeof(float));

AffineMatrix diagonal(double a, double b, double c) {
    return AffineMatrix(1.0).scale(a, b, c);
}

// Orthonormal rows and determinant 1.
void expectRotation(const AffineMatrix& m) {
    Point origin;
    Vector x, y, z;
    m.getFrame(origin, x, y, z);
    EXPECT_NEAR(x.length(), 1, kTol);
    EXPECT_NEAR(y.length(), 1, kTol);
    EXPECT_NEAR(z.length(), 1, kTol);
    EXPECT_NEAR(dot(x, y), 0, kTol);
    EXPECT_NEAR(dot(y, z), 0, kTol);
    EXPECT_NEAR(dot(x, z), 0, kTol);
    EXPECT_NEAR(m.det3x3(), 1, kTol);
}

} // namespace

TEST(AffineMatrix, StorageIsByRowsWithTheTranslationLast) {
    double values[12];
    for (int i = 0; i < 12; ++i)
        values[i] = i + 1;
    AffineMatrix m(values);
    EXPECT_EQ(m(2, 1), 8);
    EXPECT_EQ(m(3, 0), 10);
    EXPECT_EQ(static_cast<double*>(m)[5], 6);
    EXPECT_EQ(m.getTranslate(), Vector(10, 11, 12));
    EXPECT_EQ(m(4, 0), 0); // outside: reads 0, a write is lost
    m(0, 3) = 99;
    EXPECT_EQ(m, AffineMatrix(values));

    double out[12] = {};
    m.get(out);
    EXPECT_EQ(AffineMatrix(out), m);
    m.set(static_cast<const double*>(nullptr));
    EXPECT_EQ(m, AffineMatrix(values));
    EXPECT_EQ(AffineMatrix(static_cast<const double*>(nullptr)), AffineMatrix(0.0));
    EXPECT_EQ(AffineMatrix(1.0), AffineMatrix::Identity);
    EXPECT_EQ(m.identity(), AffineMatrix::Identity);
    EXPECT_EQ(AffineMatrix(2.0).getTranslate(), Vector::zero);
    EXPECT_EQ(Point(1, 2, 3) * AffineMatrix(2.0), Point(2, 4, 6));
    EXPECT_EQ(m.zero(), AffineMatrix(0.0));
}

TEST(AffineMatrix, PointsTranslateAndVectorsDoNot) {
    const AffineMatrix m = AffineMatrix(1.0).translate(1, 2, 3);
    EXPECT_EQ(Point(1, 1, 1) * m, Point(2, 3, 4));
    EXPECT_EQ(Vector(1, 1, 1) * m, Vector(1, 1, 1));
    EXPECT_EQ(HPoint(1, 1, 1, 2) * m, HPoint(3, 5, 7, 2));
    EXPECT_EQ(HPoint(1, 1, 1, 0) * m, HPoint(1, 1, 1, 0));

    const AffineMatrix turn = AffineMatrix(1.0).rotateZ(kPi / 2);
    EXPECT_TRUE(equivalent(Point(1, 0, 0) * turn, Point(0, 1, 0), epsilonTol));

    // preMult into another object computes; into the same object nothing.
    Point p(1, 1, 1);
    Point q;
    m.preMult(q, p);
    EXPECT_EQ(q, Point(2, 3, 4));
    m.preMult(p, p);
    EXPECT_EQ(p, Point(1, 1, 1));
    Vector v(1, 0, 0);
    turn.preMult(v, v);
    EXPECT_EQ(v, Vector(1, 0, 0));
    HPoint h(1, 1, 1, 1);
    m.preMult(h, h);
    EXPECT_EQ(h, HPoint(1, 1, 1, 1));
}

TEST(AffineMatrix, TheLeftFactorOfAProductAppliesFirst) {
    Random random;
    for (int i = 0; i < 20; ++i) {
        const AffineMatrix a = random.affine();
        const AffineMatrix b = random.affine();
        const AffineMatrix c = random.affine();
        const Point p = random.point();
        const Vector v = random.vector();
        EXPECT_TRUE(equivalent(p * (a * b), (p * a) * b, kTol));
        EXPECT_TRUE(equivalent(v * (a * b), (v * a) * b, kTol));
        EXPECT_TRUE(equivalent((a * b) * c, a * (b * c), kTol));

        AffineMatrix m = a;
        m *= b;
        EXPECT_EQ(m, a * b);
        m = b;
        m.preMult(a);
        EXPECT_EQ(m, a * b);
        b.preMult(m, c);
        EXPECT_EQ(m, c * b);
        m.preMult(m, a); // out may be the matrix itself
        EXPECT_TRUE(equivalent(m, a * c * b, kTol));

        // Sums and scalings act on every element, so on every vector.
        EXPECT_TRUE(equivalent(v * (a + b), v * a + v * b, kTol));
        EXPECT_TRUE(equivalent(v * (a - b), v * a - v * b, kTol));
        EXPECT_EQ(2.0 * a, a + a);
        EXPECT_EQ(a * 0.5 + a * 0.5, a);
        EXPECT_EQ(a - a, AffineMatrix(0.0));
    }
}

TEST(AffineMatrix, BuildersComposeBeforeTheExistingTransform) {
    AffineMatrix m(1.0);
    m.translate(1, 0, 0).scale(2);
    EXPECT_EQ(Point(0, 0, 0) * m, Point(1, 0, 0));
    EXPECT_EQ(Point(1, 0, 0) * m, Point(3, 0, 0));

    Random random;
    const Vector t = random.vector();
    const Normal n = random.normal();
    const Normal other = random.normal();
    const Line line(random.point(), random.normal());
    const Plane plane(random.point(), random.normal());
    const std::function<void(AffineMatrix&)> builders[] = {
        [&](AffineMatrix& b) { b.translate(t); },
        [&](AffineMatrix& b) { b.translate(-1, 2, 0.5); },
        [&](AffineMatrix& b) { b.scale(1.5); },
        [&](AffineMatrix& b) { b.scale(2, -1, 0.25); },
        [&](AffineMatrix& b) { b.rotateX(0.3); },
        [&](AffineMatrix& b) { b.rotateY(-1.2); },
        [&](AffineMatrix& b) { b.rotateZ(2.5); },
        [&](AffineMatrix& b) { b.rotate(0.7, n); },
        [&](AffineMatrix& b) { b.rotate(-2, line); },
        [&](AffineMatrix& b) { b.rotate(n, other); },
        [&](AffineMatrix& b) { b.mirror(plane); },
    };
    for (const auto& build : builders) {
        const AffineMatrix before = random.affine();
        AffineMatrix built = before;
        build(built);
        AffineMatrix alone(1.0);
        build(alone);
        EXPECT_TRUE(equivalent(built, alone * before, kTol)) << built << "\n" << alone * before;
    }
}

TEST(AffineMatrix, RotationsKeepLengthsAndTurnRightHanded) {
    const auto turn = [](Vector v, const AffineMatrix& m) { return v * m; };
    EXPECT_TRUE(equivalent(turn(Vector::y, AffineMatrix(1.0).rotateX(kPi / 2)), Vector::z, kTol));
    EXPECT_TRUE(equivalent(turn(Vector::z, AffineMatrix(1.0).rotateY(kPi / 2)), Vector::x, kTol));
    EXPECT_TRUE(equivalent(turn(Vector::x, AffineMatrix(1.0).rotateZ(kPi / 2)), Vector::y, kTol));

    Random random;
    for (int i = 0; i < 30; ++i) {
        const double a = random.uniform(0.1, 3);
        const Normal n = random.normal();
        const AffineMatrix r = AffineMatrix(1.0).rotate(a, n);
        expectRotation(r);
        EXPECT_TRUE(equivalent(Vector(n) * r, Vector(n), kTol)); // the axis stays
        const Vector v = random.vector();
        const Vector w = v * r;
        EXPECT_NEAR(w.length(), v.length(), kTol);
        // The parts perpendicular to the axis turn by a, counter-clockwise
        // seen from the axis's tip.
        const Vector vp = v - Vector(n) * dot(v, n);
        const Vector wp = w - Vector(n) * dot(w, n);
        EXPECT_NEAR(std::acos(dot(vp, wp) / vp.length2()), a, 1e-7);
        EXPECT_GT(dot(cross(vp, wp), n), 0);
    }
    EXPECT_TRUE(
        equivalent(AffineMatrix(1.0).rotate(0.4, Normal::x), AffineMatrix(1.0).rotateX(0.4), kTol));
    EXPECT_TRUE(
        equivalent(AffineMatrix(1.0).rotate(0.4, Normal::y), AffineMatrix(1.0).rotateY(0.4), kTol));
    EXPECT_TRUE(
        equivalent(AffineMatrix(1.0).rotate(0.4, Normal::z), AffineMatrix(1.0).rotateZ(0.4), kTol));

    const AffineMatrix before = random.affine();
    AffineMatrix m = before;
    EXPECT_EQ(m.rotate(1, Normal(0, 0, 0)), before);
    EXPECT_EQ(m.rotate(1, Line(Point::origin, Vector::zero)), before);
}

TEST(AffineMatrix, RotationAboutALineFixesTheLine) {
    Random random;
    for (int i = 0; i < 20; ++i) {
        const Line line(random.point(), random.vector());
        const AffineMatrix r = AffineMatrix(1.0).rotate(random.angle(), line);
        for (double t : {-3.0, 0.0, 2.5}) {
            const Point on = line.point() + line.direction() * t;
            EXPECT_TRUE(equivalent(on * r, on, kTol));
        }
        const Point p = random.point();
        EXPECT_NEAR(distance(p * r, line.point()), distance(p, line.point()), kTol);
        const Point q = random.point();
        EXPECT_NEAR(distance(p * r, q * r), distance(p, q), kTol);
    }
}

TEST(AffineMatrix, RotateFromToTurnsOneDirectionIntoTheOther) {
    Random random;
    for (int i = 0; i < 30; ++i) {
        const Normal from = random.normal();
        const Normal to = random.normal();
        const AffineMatrix r = AffineMatrix(1.0).rotate(from, to);
        expectRotation(r);
        EXPECT_TRUE(equivalent(Vector(from) * r, Vector(to), kTol));
        const Vector axis = cross(from, to);
        EXPECT_TRUE(equivalent(axis * r, axis, kTol));
    }
    const Normal from = random.normal();
    const AffineMatrix before = random.affine();
    AffineMatrix same = before;
    EXPECT_EQ(same.rotate(from, from), before);

    const AffineMatrix half = AffineMatrix(1.0).rotate(from, -from);
    expectRotation(half);
    EXPECT_TRUE(equivalent(Vector(from) * half, -Vector(from), kTol));
    EXPECT_TRUE(equivalent(half * half, AffineMatrix::Identity, kTol));
    const Vector axis = Vector(from).orthogonalVector();
    EXPECT_TRUE(equivalent(axis * half, axis, kTol));
}

TEST(AffineMatrix, MirrorReflectsInThePlane) {
    Random random;
    for (int i = 0; i < 20; ++i) {
        const Plane plane(random.point(), random.normal());
        const AffineMatrix m = AffineMatrix(1.0).mirror(plane);
        const Vector n(plane.normal());
        const Vector along = cross(n, random.vector());
        const Point on = plane.point() + along;
        EXPECT_TRUE(equivalent(on * m, on, kTol));
        EXPECT_TRUE(equivalent((on + n * 2) * m, on - n * 2, kTol));
        EXPECT_TRUE(equivalent(m * m, AffineMatrix::Identity, kTol));
        EXPECT_NEAR(m.det3x3(), -1, kTol);
    }
    const AffineMatrix before = random.affine();
    AffineMatrix m = before;
    EXPECT_EQ(m.mirror(Plane(Point::origin, Vector::zero)), before);
}

TEST(AffineMatrix, CrossOuterTransposeAndFrames) {
    Random random;
    const Vector u = random.vector();
    const Vector v = random.vector();
    const Vector p = random.vector();
    AffineMatrix k;
    k.crossMatrix(v);
    EXPECT_TRUE(equivalent(p * k, cross(p, v), kTol));
    EXPECT_EQ(AffineMatrix(k).transpose(), -1.0 * k);
    AffineMatrix o;
    o.outerProduct(u, v);
    EXPECT_TRUE(equivalent(p * o, v * dot(p, u), 1e-8));
    EXPECT_EQ(o.getTranslate(), Vector::zero);

    const AffineMatrix m = random.affine();
    AffineMatrix t = m;
    t.transpose();
    EXPECT_EQ(t.getTranslate(), Vector::zero);
    EXPECT_EQ(t(0, 1), m(1, 0));
    EXPECT_EQ(t(2, 1), m(1, 2));
    AffineMatrix linear = m;
    linear(3, 0) = linear(3, 1) = linear(3, 2) = 0;
    EXPECT_EQ(AffineMatrix(t).transpose(), linear);

    Point origin;
    Vector x, y, z;
    m.getFrame(origin, x, y, z);
    EXPECT_EQ(AffineMatrix().setFrame(origin, x, y, z), m);
    EXPECT_EQ(origin.asVector(), m.getTranslate());
    EXPECT_EQ(x, Vector::x * m);
}

TEST(AffineMatrix, InversesComposeToTheIdentity) {
    Random random;
    for (int i = 0; i < 30; ++i) {
        const AffineMatrix m = random.affine();
        AffineMatrix slow = m;
        AffineMatrix fast = m;
        ASSERT_TRUE(m.isInvertible());
        ASSERT_TRUE(slow.invert());
        ASSERT_TRUE(fast.invertFast());
        EXPECT_TRUE(equivalent(m * slow, AffineMatrix::Identity, kTol));
        EXPECT_TRUE(equivalent(slow * m, AffineMatrix::Identity, kTol));
        EXPECT_TRUE(equivalent(fast, slow, kTol));
        EXPECT_EQ(m.inverse(), slow);
        const Point p = random.point();
        EXPECT_TRUE(equivalent(p * m * slow, p, kTol));

        const AffineMatrix n = random.affine();
        EXPECT_TRUE(equivalent((m * n).inverse(), n.inverse() * m.inverse(), kTol));
        EXPECT_NEAR(m.det4x4(), m.det3x3(), kTol);
        EXPECT_NEAR((m * n).det3x3(), m.det3x3() * n.det3x3(), kTol);
    }
    EXPECT_EQ(AffineMatrix::Identity.inverse(), AffineMatrix::Identity);
    EXPECT_EQ(diagonal(2, 4, -8).inverse(), diagonal(0.5, 0.25, -0.125));
}

TEST(AffineMatrix, SingularMatricesFailAndStayUnchanged) {
    const AffineMatrix tiny = diagonal(1, 1, 1e-13).translate(1, 2, 3);
    AffineMatrix m = tiny;
    EXPECT_FALSE(m.isInvertible());
    EXPECT_FALSE(m.invert());
    EXPECT_EQ(m, tiny);
    EXPECT_FALSE(m.invertFast());
    EXPECT_EQ(m, tiny);
    EXPECT_EQ(m.inverse(), tiny);

    // Rows that depend on each other, NaN and zero fail both ways.
    Random random;
    AffineMatrix dependent = random.affine();
    for (int c = 0; c < 3; ++c)
        dependent(2, c) = dependent(0, c) - 2 * dependent(1, c);
    AffineMatrix withNaN = random.affine();
    withNaN(1, 1) = kNaN;
    for (const AffineMatrix& bad : {dependent, withNaN, AffineMatrix(0.0)}) {
        m = bad;
        EXPECT_FALSE(m.invert()) << bad;
        EXPECT_FALSE(m.invertFast()) << bad;
        EXPECT_FALSE(m.isInvertible()) << bad;
        EXPECT_TRUE(m == bad || isNaN(bad));
    }

    // The two thresholds differ: the determinant is 1e-13, the pivots are
    // not small.
    const AffineMatrix small = diagonal(1e-5, 1e-4, 1e-4);
    m = small;
    EXPECT_FALSE(m.invertFast());
    EXPECT_EQ(m, small);
    EXPECT_TRUE(m.invert());
    EXPECT_TRUE(equivalent(m * small, AffineMatrix::Identity, kTol));
}

TEST(AffineMatrix, VectorMatricesKeepPerpendicularity) {
    Random random;
    for (int i = 0; i < 20; ++i) {
        const AffineMatrix m = random.affine();
        bool ok = false;
        const AffineMatrix normals = m.vectorMatrix(ok);
        ASSERT_TRUE(ok);
        EXPECT_EQ(normals.getTranslate(), Vector::zero);
        const Vector n = random.vector();
        const Vector tangent = cross(n, random.vector());
        EXPECT_NEAR(dot(tangent * m, n * normals), 0, 1e-8);

        const AffineMatrix normal = m.normalMatrix(ok);
        EXPECT_TRUE(ok);
        EXPECT_EQ(normal, m.det3x3() < 0 ? -1.0 * normals : normals);
        const AffineMatrix mirrored = m * AffineMatrix(1.0).scale(1, -1, 1);
        EXPECT_EQ(mirrored.normalMatrix(ok), -1.0 * mirrored.vectorMatrix(ok));
    }
    const AffineMatrix singular = diagonal(1, 0, 1).translate(1, 1, 1);
    bool ok = true;
    EXPECT_EQ(singular.vectorMatrix(ok), singular);
    EXPECT_FALSE(ok);
    EXPECT_EQ(singular.normalMatrix(ok), singular);
    EXPECT_FALSE(ok);
}

TEST(AffineMatrix, ComparisonFiniteTestsAndPrinting) {
    const AffineMatrix m = diagonal(1, 2, 3).translate(1, 0, 0);
    AffineMatrix n = m;
    n(3, 2) += 0.5;
    EXPECT_NE(m, n);
    EXPECT_TRUE(equivalent(m, n, 0.6));
    EXPECT_FALSE(equivalent(m, n, 0.5));
    EXPECT_TRUE(isFinite(m));
    EXPECT_FALSE(isNaN(m));
    n(0, 0) = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(isFinite(n));
    EXPECT_FALSE(isNaN(n));
    n(1, 2) = kNaN;
    EXPECT_TRUE(isNaN(n));
    EXPECT_FALSE(equivalent(n, n, 1));

    std::ostringstream text;
    text << m << ' ' << AffineMatrixFlt(0.5f);
    EXPECT_EQ(text.str(), "[[1, 0, 0], [0, 2, 0], [0, 0, 3], [1, 0, 0]] "
                          "[[0.5, 0, 0], [0, 0.5, 0], [0, 0, 0.5], [0, 0, 0]]");
}

TEST(AffineMatrixFlt, SharesTheRulesInSinglePrecision) {
    Random random;
    const AffineMatrix m = random.affine();
    const AffineMatrixFlt f(m);
    EXPECT_TRUE(equivalent(AffineMatrix(f), m, 1e-5));
    const PointFlt p(1, -2, 3);
    EXPECT_TRUE(equivalent(p * f, PointFlt(Point(p) * m), 1e-4f));
    EXPECT_TRUE(equivalent(VectorFlt::x * f, VectorFlt(Vector::x * m), 1e-5f));
    PointFlt q = p;
    f.preMult(q, q);
    EXPECT_EQ(q, p);

    const AffineMatrixFlt g(AffineMatrix(1.0).rotateZ(0.5));
    EXPECT_TRUE(equivalent(f * g, AffineMatrixFlt(m * AffineMatrix(g)), 1e-4f));
    EXPECT_FALSE(isNaN(f));
    EXPECT_TRUE(isFinite(f));
    EXPECT_EQ(AffineMatrixFlt(2.0f), AffineMatrixFlt(AffineMatrix(2.0)));
    EXPECT_EQ(AffineMatrixFlt(Promise(), ProjMatrix(m)), f);
    EXPECT_EQ(AffineMatrixFlt(Promise(), ProjMatrixFlt(f)), f);
}

TEST(ProjMatrix, ConvertsFromAffineWithTheLastColumn) {
    Random random;
    const AffineMatrix a = random.affine();
    const AffineMatrix b = random.affine();
    const ProjMatrix p(a);
    for (int r = 0; r < 4; ++r)
        EXPECT_EQ(p(r, 3), r == 3 ? 1 : 0);
    EXPECT_EQ(p(2, 1), a(2, 1));
    EXPECT_TRUE(p.isAffine());
    EXPECT_EQ(AffineMatrix(Promise(), p), a);
    EXPECT_TRUE(equivalent(ProjMatrix(a) * ProjMatrix(b), ProjMatrix(a * b), kTol));
    EXPECT_TRUE(equivalent(HPoint(Point(1, 2, 3)) * p, HPoint(Point(1, 2, 3) * a), kTol));
    EXPECT_NEAR(p.det4x4(), a.det3x3(), kTol);
    EXPECT_NEAR(p.det3x3(), a.det3x3(), kTol);

    const ProjMatrixFlt fromAffine(a);
    EXPECT_EQ(ProjMatrixFlt(AffineMatrixFlt(a)), fromAffine);
    EXPECT_EQ(ProjMatrixFlt(p), fromAffine);
    EXPECT_EQ(ProjMatrix(fromAffine), ProjMatrix(AffineMatrixFlt(a)));
    EXPECT_NEAR(fromAffine.det3x3(), a.det3x3(), 1e-4);
}

TEST(ProjMatrix, ProjectiveApplicationAndInversion) {
    // A perspective: w' = -z, then something affine.
    const double values[16] = {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, -1.25, -1, 0, 0, -0.25, 0};
    const ProjMatrix perspective(values);
    EXPECT_FALSE(perspective.isAffine());
    EXPECT_EQ(HPoint(1, 1, -2, 1) * perspective, HPoint(2, 3, 2.25, 2));
    Tuple4 t(1, 1, -2, 1);
    Tuple4 u;
    perspective.preMult(u, t);
    EXPECT_EQ(u, Tuple4(2, 3, 2.25, 2));
    Vector v;
    perspective.preMult(v, Vector(1, 1, 1));
    EXPECT_EQ(v, Vector(2, 3, -1.25));

    Random random;
    for (int i = 0; i < 20; ++i) {
        const ProjMatrix m =
            ProjMatrix(random.affine()) * perspective * ProjMatrix(random.affine());
        ProjMatrix slow = m;
        ProjMatrix fast = m;
        ASSERT_TRUE(m.isInvertible());
        ASSERT_TRUE(slow.invert());
        ASSERT_TRUE(fast.invertFast());
        EXPECT_TRUE(equivalent(m * slow, ProjMatrix::Identity, kTol)) << m * slow;
        EXPECT_TRUE(equivalent(fast, slow, kTol));
        EXPECT_EQ(m.inverse(), slow);
        const HPoint h(random.point());
        EXPECT_TRUE(equivalent(h * m * slow, h, kTol));
        EXPECT_NEAR((m * perspective).det4x4(), m.det4x4() * perspective.det4x4(), 1e-8);
    }

    // A row that depends on the others fails both ways, unchanged.
    ProjMatrix singular = perspective;
    for (int c = 0; c < 4; ++c)
        singular(3, c) = singular(0, c) + singular(2, c);
    ProjMatrix m = singular;
    EXPECT_FALSE(m.isInvertible());
    EXPECT_FALSE(m.invert());
    EXPECT_FALSE(m.invertFast());
    EXPECT_EQ(m, singular);
    EXPECT_EQ(m.inverse(), singular);

    std::ostringstream text;
    text << ProjMatrix::Identity;
    EXPECT_EQ(text.str(), "[[1, 0, 0, 0], [0, 1, 0, 0], [0, 0, 1, 0], [0, 0, 0, 1]]");
    ProjMatrixFlt f(ProjMatrix::Identity);
    f(0, 3) = std::numeric_limits<float>::quiet_NaN();
    EXPECT_TRUE(isNaN(f) && !isFinite(f) && !isNaN(ProjMatrixFlt::Identity));
    EXPECT_TRUE(equivalent(ProjMatrixFlt(2.0f), ProjMatrixFlt(2.5f), 0.6f));
    EXPECT_TRUE(isFinite(perspective) && !isNaN(perspective));
    EXPECT_FALSE(equivalent(perspective, ProjMatrix(0.0), 2.0));
}

TEST(AffineMatrix2, AffineTransformsOfThePlane) {
    const double values[6] = {0, 1, -1, 0, 5, 6}; // a quarter turn, then (5, 6)
    const AffineMatrix2 m(values);
    EXPECT_EQ(m(2, 1), 6);
    EXPECT_EQ(m(3, 0), 0);
    EXPECT_EQ(Point2(1, 0) * m, Point2(5, 7));
    EXPECT_EQ(Vector2(1, 0) * m, Vector2(0, 1));
    EXPECT_EQ(m.getTranslate(), Vector2(5, 6));
    Point2 p(1, 0);
    m.preMult(p, p);
    EXPECT_EQ(p, Point2(1, 0));

    const AffineMatrix2 s = AffineMatrix2(2.0);
    EXPECT_EQ(Point2(1, 0) * (m * s), Point2(10, 14)); // m first, then s
    AffineMatrix2 n = s;
    n.preMult(m);
    EXPECT_EQ(n, m * s);

    AffineMatrix2 inverse = m * s;
    ASSERT_TRUE(inverse.invert());
    EXPECT_TRUE(equivalent(m * s * inverse, AffineMatrix2::Identity, kTol));
    EXPECT_EQ((m * s).inverse(), inverse);

    const double flat[6] = {1, 2, 2, 4, 1, 1};
    AffineMatrix2 singular(flat);
    EXPECT_FALSE(singular.invert());
    EXPECT_EQ(singular, AffineMatrix2(flat));

    Point2 origin;
    Vector2 x, y;
    m.getFrame(origin, x, y);
    EXPECT_EQ(AffineMatrix2().setFrame(origin, x, y), m);
    EXPECT_EQ(origin, Point2(5, 6));
    EXPECT_FALSE(equivalent(m, AffineMatrix2::Identity, 1));
}
