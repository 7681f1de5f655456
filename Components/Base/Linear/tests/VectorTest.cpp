#include <Base/Linear/Homogeneous.h>
#include <Base/Linear/Tuple.h>
#include <Base/Linear/Vector.h>

#include "Geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <concepts>
#include <limits>
#include <type_traits>

using namespace kxLinear;
using namespace testing_linear;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

template <class A, class B>
concept Addable = requires(A a, B b) {
    a + b;
};
template <class A, class B>
concept Comparable = requires(A a, B b) {
    a == b;
};
template <class A>
concept Ordered = requires(A a, A b) {
    a < b;
};
template <class A>
concept Scalable = requires(A a) {
    a * 2.0;
};

// The compiler keeps kinds of quantity apart.
static_assert(requires(Point p, Point q) {
    { p - q } -> std::same_as<Vector>;
});
static_assert(requires(Point p, Vector v) {
    { p + v } -> std::same_as<Point>;
    { v + p } -> std::same_as<Point>;
});
static_assert(!Addable<Point, Point> && !Addable<Point2Flt, Point2Flt>);
static_assert(!Scalable<Point> && Scalable<Vector> && Scalable<Normal>);
static_assert(!Comparable<Point, Vector> && !Comparable<HPoint, RPoint>);
static_assert(Comparable<Normal, Normal> && !Ordered<Point>);
// Nothing converts into another class through the pointer conversion.
static_assert(!std::is_constructible_v<Point, Vector>);
static_assert(!std::is_constructible_v<Normal, Point>);
static_assert(!std::is_convertible_v<Point2, Point>);
static_assert(std::is_constructible_v<Point, Point2>);
static_assert(std::is_convertible_v<Normal, Vector>);
static_assert(!std::is_convertible_v<Vector, Normal>);
static_assert(!std::is_convertible_v<VectorFlt, Vector>);
static_assert(sizeof(Point) == 3 * sizeof(double) && sizeof(Vector2Flt) == 2 * sizeof(float));
static_assert(sizeof(HPoint) == 4 * sizeof(double) && std::is_trivially_copyable_v<Normal>);

} // namespace

TEST(Tolerance, LoadValuesAndTheDerivedAnglesComputedOnce) {
    EXPECT_EQ(epsilonTol, 1e-12);
    EXPECT_EQ(epsilon2Tol, 1e-24);
    EXPECT_EQ(epsilonTolFlt, 1e-6f);
    EXPECT_EQ(epsilon2TolFlt, 1e-12f);
    EXPECT_EQ(degreeTol, 1e-5);
    EXPECT_DOUBLE_EQ(perpendicularTol, 1.745329251994321e-07);
    EXPECT_DOUBLE_EQ(perpendicular2Tol, 3.046174197867056e-14);
    EXPECT_DOUBLE_EQ(parallelTol, 0.9999999999999848);
    EXPECT_DOUBLE_EQ(parallel2Tol, 0.9999999999999696);

    ToleranceGuard guard;
    degreeTol = 1;
    EXPECT_DOUBLE_EQ(parallelTol, 0.9999999999999848);
    EXPECT_DOUBLE_EQ(perpendicularTol, 1.745329251994321e-07);

    // Assigned tolerances take effect at the next call.
    epsilonTol = 0.75;
    Vector2 v(0.5, 0);
    EXPECT_FALSE(v.normalize());
    epsilonTol = 0.5;
    EXPECT_TRUE(v.normalize()); // a length equal to the tolerance normalises
    EXPECT_EQ(v, Vector2(1, 0));
    epsilon2Tol = 1;
    EXPECT_FALSE(Normal(0.5, 0.5, 0.5).isValid());
}

TEST(Tolerance, AngleUnitsAndScalarHelpers) {
    EXPECT_EQ(toDegrees(1), 57.29577951308232);
    EXPECT_EQ(toRadians(1), 0.017453292519943295);
    EXPECT_NEAR(toDegrees(toRadians(123.25)), 123.25, 1e-12);
    EXPECT_EQ(min(3, -1, 2), -1);
    EXPECT_EQ(min(3, 4, 5, -7), -7);
    EXPECT_EQ(max(3, -1, 2), 3);
    EXPECT_EQ(max(3, 4, 9, -7), 9);
    EXPECT_EQ(min(2, kNaN, 1), 1); // a NaN after the first is passed over
    EXPECT_EQ(max(2, 5, kNaN, 1), 5);
}

TEST(Components, AccessByIndexPairsAndPointer) {
    Point p(1, 2, 3);
    const double* c = p;
    EXPECT_EQ(c[0], 1);
    EXPECT_EQ(c[2], 3);
    EXPECT_EQ(p.get(1), 2);
    EXPECT_EQ(p[2u], 3);
    p[1] = 7;
    p.set(p[0], p[1], 9);
    double x, y, z;
    p.get(x, y, z);
    EXPECT_EQ(Point(x, y, z), Point(1, 7, 9));

    // Outside the components: reads 0, a write is lost.
    EXPECT_EQ(p[3], 0);
    EXPECT_EQ(p.get(-1), 0);
    p[5] = 42;
    EXPECT_EQ(p[5], 0);
    EXPECT_EQ(p, Point(1, 7, 9));

    const double values[4] = {4, 5, 6, 7};
    EXPECT_EQ(Tuple4(values), Tuple4(4, 5, 6, 7));
    EXPECT_EQ(Vector(static_cast<const double*>(nullptr)), Vector::zero);
    EXPECT_EQ(Vector::y, Vector(0, 1, 0)); // constants are ready at load
    EXPECT_EQ(Normal::z, Normal(Promise(), 0, 0, 1));
}

TEST(Tuple, ComponentArithmeticAndReinterpretation) {
    Tuple3 t(1, 2, 3);
    t *= Tuple3(2, 2, 0.5);
    EXPECT_EQ(t, Tuple3(2, 4, 1.5));
    t /= Tuple3(2, 4, 1.5);
    EXPECT_EQ(t, Tuple3(1, 1, 1));
    EXPECT_EQ((t + t) * 3 - t, Tuple3(5, 5, 5));
    EXPECT_EQ(Tuple2(3, 4) / 2, Tuple2(1.5, 2));

    const Tuple3 q = Tuple3(1, -2, 0) / Tuple3(0, 0, 0);
    EXPECT_EQ(q[0], kInf);
    EXPECT_EQ(q[1], -kInf);
    EXPECT_TRUE(std::isnan(q[2]));

    EXPECT_EQ(Tuple3(1, 2, 3).asPoint(), Point(1, 2, 3));
    EXPECT_EQ(Tuple3(1, 2, 3).asVector(), Vector(1, 2, 3));
    EXPECT_EQ(Tuple2(1, 2).asPoint2(), Point2(1, 2));
    EXPECT_EQ(Tuple2(1, 2).asVector2(), Vector2(1, 2));
    EXPECT_EQ(distance(Tuple2(0, 0), Tuple2(3, 4)), 5);
    EXPECT_EQ(distance2(Tuple3(1, 1, 1), Tuple3(2, 3, 4)), 14);
    EXPECT_EQ(distance(Tuple3(1, 1, 1), Tuple3(1, 1, 3)), 2);
}

TEST(Vector, ArithmeticFollowsTheKinds) {
    const Point p(1, 2, 3);
    const Vector v(0.5, -1, 2);
    EXPECT_EQ(p + v - v, p);
    EXPECT_EQ((p + v) - p, v);
    Point q = p;
    q += v;
    q -= 2.0 * v;
    EXPECT_EQ(q, p - v);
    EXPECT_EQ(-v + v, Vector::zero);
    EXPECT_EQ(v * 4 / 2, Vector(1, -2, 4));
    EXPECT_EQ(Vector(v).reverse(), -v);
    EXPECT_EQ(p.asVector().asPoint(), p);
    EXPECT_EQ(dot(v, Normal::z), 2);
    EXPECT_EQ(Normal::x * 3, Vector(3, 0, 0));

    const Vector d = v / 0.0;
    EXPECT_EQ(d[0], kInf);
    EXPECT_EQ(d[1], -kInf);
    Vector2 w(1, 0);
    w /= -0.0;
    EXPECT_EQ(w[0], -kInf);
    EXPECT_TRUE(std::isnan(w[1]));

    EXPECT_EQ(combine(2, Point(1, 0, 0), 3, Point(0, 1, 0)), Point(2, 3, 0));
    EXPECT_EQ(combine(0.5, Vector(2, 2, 2), -1, Vector(1, 0, 0)), Vector(0, 1, 1));
    EXPECT_EQ(combine(Point(0, 0, 0), Point(2, 4, -6)), Point(1, 2, -3));
}

TEST(Vector, NormalisationRulesDifferByClass) {
    Vector v(1e-13, 0, 0);
    EXPECT_FALSE(v.normalize());
    EXPECT_EQ(v, Vector::zero);
    Vector2 v2(1e-13, 0);
    EXPECT_FALSE(v2.normalize());
    EXPECT_EQ(v2, Vector2(1e-13, 0));
    VectorFlt f(1e-7f, 0, 0);
    EXPECT_FALSE(f.normalize());
    EXPECT_EQ(f, VectorFlt::zero);
    Vector2Flt f2(0, 5e-7f);
    EXPECT_FALSE(f2.normalize());
    EXPECT_EQ(f2, Vector2Flt::zero);

    Vector u(3, 0, 4);
    EXPECT_TRUE(u.normalize());
    EXPECT_TRUE(equivalent(u, Vector(0.6, 0, 0.8), kTol));
    Vector2 s(0, -2);
    EXPECT_TRUE(s.normalize());
    EXPECT_EQ(s, Vector2(0, -1));
    VectorFlt g(0, 3, 4);
    EXPECT_TRUE(g.normalize());
    EXPECT_NEAR(g.length(), 1, 1e-6);
    Vector2Flt g2(3, 4);
    EXPECT_TRUE(g2.normalize());
    EXPECT_NEAR(g2.length(), 1, 1e-6);

    const Normal n = Vector(0, 0, -7).normalized();
    EXPECT_TRUE(n.isValid());
    EXPECT_EQ(n, Normal(Promise(), 0, 0, -1));
    EXPECT_FALSE(Vector(0, 1e-13, 0).normalized().isValid());
}

TEST(Vector, OrthogonalVectorIsPerpendicularAndZeroOnlyForZero) {
    EXPECT_EQ(Vector(0, 0, 1).orthogonalVector(), Vector(0, -1, 0));
    EXPECT_EQ(Vector::zero.orthogonalVector(), Vector::zero);
    Random random;
    const Vector special[] = {Vector(1, 1, 1), Vector(-2, -2, -2), Vector(1, 0, 0),
                              Vector(0, 3, 0), Vector(1, -1, 1),   Vector(5, 5, 0)};
    for (int i = 0; i < 200; ++i) {
        const Vector v = i < 6 ? special[i] : random.vector();
        const Vector w = v.orthogonalVector();
        EXPECT_NEAR(dot(v, w), 0, kTol * v.length2());
        EXPECT_GT(w.length(), 0.01 * v.length2()) << i;
    }
    EXPECT_EQ(Vector2(2, 3).orthogonalVector(), Vector2(-3, 2));
}

TEST(Normal, ConstructionNormalisesOrMarksInvalid) {
    const Normal tiny(0, 0, 1e-13); // 1e-26 is not above 1e-24
    EXPECT_FALSE(tiny.isValid());
    EXPECT_EQ(Vector(tiny), Vector::zero);
    const Normal promised(Promise(), 0, 0, 5);
    EXPECT_TRUE(promised.isValid());
    EXPECT_EQ(Vector(promised).length(), 5);

    const double values[3] = {0, 3, 4};
    const Normal n(values);
    EXPECT_TRUE(n.isValid());
    EXPECT_TRUE(equivalent(n, Normal(Promise(), 0, 0.6, 0.8), kTol));
    EXPECT_EQ(Normal(Promise(), values), Normal(Promise(), 0, 3, 4));
    EXPECT_FALSE(Normal(kNaN, 0, 1).isValid());

    Normal m = n;
    m.reverse();
    EXPECT_TRUE(m.isValid());
    EXPECT_EQ(m, -n);
    EXPECT_EQ(-tiny, tiny); // reversal keeps the flag: still invalid
    m.setInvalid();
    EXPECT_FALSE(m.isValid());
    EXPECT_EQ(m.asPoint(), Point::origin);
    m.set(0, 0, 2);
    EXPECT_EQ(m, Normal::z);
    m.set(Promise(), 0, 0, 2);
    EXPECT_EQ(m.asPoint(), Point(0, 0, 2));

    // Equality sees the flag, equivalence only the components.
    const Normal zero(Promise(), 0, 0, 0);
    EXPECT_NE(zero, tiny);
    EXPECT_TRUE(equivalent(zero, tiny, epsilonTol));
}

TEST(Vector, CrossProductIsRightHandedAndPerpendicular) {
    EXPECT_EQ(cross(Vector::x, Vector::y), Vector::z);
    EXPECT_EQ(cross(VectorFlt::y, VectorFlt::z), VectorFlt::x);
    Random random;
    for (int i = 0; i < 50; ++i) {
        const Vector u = random.vector();
        const Vector v = random.vector();
        const Vector w = cross(u, v);
        EXPECT_TRUE(equivalent(w, -cross(v, u), kTol));
        EXPECT_NEAR(dot(w, u), 0, kTol * 100);
        EXPECT_NEAR(dot(w, v), 0, kTol * 100);
        // |u × v|² = |u|²|v|² - (u·v)²
        EXPECT_NEAR(w.length2(), u.length2() * v.length2() - dot(u, v) * dot(u, v), 1e-8);
    }
    const Normal a(1, 2, 3);
    const Normal b(-1, 0, 2);
    const Vector expected = cross(Vector(a), Vector(b));
    EXPECT_EQ(cross(a, b), expected);
    EXPECT_EQ(cross(Vector(a), b), expected);
    EXPECT_EQ(cross(a, Vector(b)), expected);
}

TEST(Vector, DistancesInEachPrecision) {
    EXPECT_EQ(distance(Point(0, 0, 0), Point(2, 3, 6)), 7);
    EXPECT_EQ(distance2(Point(0, 0, 0), Point(2, 3, 6)), 49);
    EXPECT_EQ(distance(Point2(1, 1), Point2(4, 5)), 5);
    EXPECT_EQ(distance2(Point2Flt(0, 0), Point2Flt(3, 4)), 25.0f);
    static_assert(std::same_as<decltype(distance(PointFlt(), PointFlt())), float>);
}

TEST(Vector, AnglesBetweenNormalsAndSignedAnglesIn2D) {
    EXPECT_NEAR(angle(Normal::x, Normal::y), kPi / 2, 1e-15);
    EXPECT_EQ(angle(Normal::x, -Normal::x), kPi);
    const Normal over(Promise(), 1, 2e-8, 0); // n·n = 1 + 4e-16, clamped to 1
    EXPECT_EQ(angle(over, over), 0);
    double out = 0;
    EXPECT_TRUE(angle(Normal::x, Normal(1, 1, 0), out));
    EXPECT_NEAR(out, kPi / 4, 1e-15);
    EXPECT_FALSE(angle(Normal::x, Normal(0, 0, 0), out));
    EXPECT_EQ(out, 1.5707963267948966);

    EXPECT_EQ(signedAngle(Vector2(1, 0), Vector2(0, 1)), kPi / 2);
    EXPECT_EQ(signedAngle(Vector2(0, 1), Vector2(1, 0)), -kPi / 2);
    EXPECT_EQ(signedAngle(Vector2(0, 0), Vector2(1, 0)), 0);
    EXPECT_EQ(signedAngle(Vector2(1, 0), Vector2(1e-13, 0)), 0);
    Random random;
    for (int i = 0; i < 50; ++i) {
        const double a = random.uniform(-3, 3);
        const double b = random.uniform(-3, 3);
        // The angle from a to b, brought into (-π, π].
        double expected = std::remainder(b - a, 2 * kPi);
        EXPECT_NEAR(signedAngle(Vector2(std::cos(a), std::sin(a)) * 3,
                                Vector2(std::cos(b), std::sin(b)) * 0.5),
                    expected, 1e-7);
    }
}

TEST(Vector, DominantDimensionTieRules) {
    EXPECT_EQ(dominantDimension(Vector(-5, 1, 2)), 0);
    EXPECT_EQ(dominantDimension(Vector(0, -3, 1)), 1);
    EXPECT_EQ(dominantDimension(Vector(1, 2, -3)), 2);
    EXPECT_EQ(dominantDimension(Vector(1, 1, 0)), 1);
    EXPECT_EQ(dominantDimension(Vector(2, 1, 2)), 2);
    EXPECT_EQ(dominantDimension(Vector(0, 1, 1)), 1);
    EXPECT_EQ(dominantDimension(Vector(0, 0, 0)), 1);
}

TEST(Vector, CollinearityIsAbsoluteForCoincidentPointsAndRelativeOtherwise) {
    const Point a(0, 0, 0);
    EXPECT_TRUE(areCollinear(a, Point(1e-13, 0, 0), Point(5, 7, 1), epsilonTol));
    EXPECT_TRUE(areCollinear(Point(5, 7, 1), a, Point(0, 0, 1e-13), epsilonTol));
    EXPECT_TRUE(areCollinear(a, Point(1, 1, 1), Point(3, 3, 3), epsilonTol));
    EXPECT_TRUE(areCollinear(Point(3, 3, 3), a, Point(1, 1, 1), epsilonTol)); // any order
    EXPECT_FALSE(areCollinear(a, Point(1, 0, 0), Point(0.5, 0.1, 0), 0.01));

    // The third point 0.01 off a line of length 2: inside tol = 0.006 (0.012
    // allowed), outside tol = 0.004; scaling everything keeps the answer,
    // until the points come within the tolerance of each other.
    for (double scale : {1.0, 1e3, 1e6}) {
        const Point p0(-scale, 0, 0);
        const Point p1(scale, 0, 0);
        const Point c(0.3 * scale, 0.01 * scale, 0);
        EXPECT_TRUE(areCollinear(p0, c, p1, 0.006)) << scale;
        EXPECT_FALSE(areCollinear(c, p1, p0, 0.004)) << scale;
    }
    EXPECT_TRUE(areCollinear(Point(-1e-3, 0, 0), Point(1e-3, 0, 0), Point(0, 1e-5, 0), 0.004));
}

TEST(Vector, EquivalenceIsStrictAndFailsOnNaN) {
    EXPECT_TRUE(equivalent(Point(1, 2, 3), Point(1.5, 2, 3), 0.6));
    EXPECT_FALSE(equivalent(Point(1, 2, 3), Point(1.5, 2, 3), 0.5)); // exactly tol
    EXPECT_FALSE(equivalent(Point(kNaN, 2, 3), Point(kNaN, 2, 3), 1));
    EXPECT_FALSE(equivalent(Vector(kInf, 0, 0), Vector(kInf, 0, 0), 1));
    EXPECT_TRUE(equivalent(Vector2(1, 1), Vector2(1, 1 + 1e-13), epsilonTol));
    EXPECT_FALSE(equivalent(Tuple4(0, 0, 0, 0), Tuple4(0, 0, 0, kNaN), 1));
    EXPECT_TRUE(equivalent(PointFlt(1, 2, 3), PointFlt(1, 2, 3.0000005f), epsilonTolFlt));
    EXPECT_FALSE(equivalent(Vector2Flt(1, 2), Vector2Flt(1, 2.25f), 0.25f));
    EXPECT_FALSE(equivalent(RPoint(1, 2, 3, 4), RPoint(1, 2, 3, 4.5), 0.5)); // w counts
}

TEST(Vector, TwinsConvertBetweenPrecisionsAndTo3D) {
    EXPECT_EQ(PointFlt(Point(1.5, 2, 1e-50)), PointFlt(1.5f, 2, 0)); // rounds to float
    EXPECT_EQ(Point(PointFlt(0.1f, 0, 0))[0], double(0.1f));
    EXPECT_EQ(Vector2Flt(Vector2(1, 2)), Vector2Flt(1, 2));
    EXPECT_EQ(Point(Point2(1, 2)), Point(1, 2, 0));
    EXPECT_EQ(Vector(Vector2(1, 2)), Vector(1, 2, 0));
    EXPECT_EQ(VectorFlt(Normal::y), VectorFlt::y);
    EXPECT_EQ(VectorFlt(0, 0, 3).normalized(), VectorFlt::z);
    EXPECT_EQ(Point2(1, 1) - Point2(1, 2), Vector2(0, -1));
}

TEST(Homogeneous, RationalAndHomogeneousFormsConvert) {
    EXPECT_EQ(HPoint(RPoint(1, 2, 3, 2)), HPoint(2, 4, 6, 2));
    EXPECT_EQ(RPoint(HPoint(2, 4, 6, 2)), RPoint(1, 2, 3, 2));
    EXPECT_EQ(HPoint(Point(1, 2, 3)), HPoint(1, 2, 3, 1));
    EXPECT_EQ(RPoint(Point(1, 2, 3)), RPoint(1, 2, 3, 1));
    Random random;
    for (int i = 0; i < 20; ++i) {
        const RPoint r(random.uniform(-5, 5), random.uniform(-5, 5), random.uniform(-5, 5),
                       random.uniform(0.1, 3));
        EXPECT_TRUE(equivalent(RPoint(HPoint(r)), r, kTol));
    }
    const RPoint atInfinity{HPoint(1, 0, 0, 0)};
    EXPECT_EQ(atInfinity[0], kInf);
    EXPECT_TRUE(std::isnan(atInfinity[1]));
    EXPECT_EQ(atInfinity[3], 0);
}

TEST(Homogeneous, InsideViewChecksTheFarSideOnlyWhenAsked) {
    EXPECT_TRUE(HPoint(0, 0, 0, 1).insideView(true));
    EXPECT_TRUE(HPoint(-2, 2, -2, 2).insideView(true)); // on the boundary
    EXPECT_FALSE(HPoint(2.1, 0, 0, 2).insideView(false));
    EXPECT_FALSE(HPoint(0, -2.1, 0, 2).insideView(false));
    EXPECT_FALSE(HPoint(0, 0, -2.1, 2).insideView(false));
    EXPECT_FALSE(HPoint(0, 0, 3, 2).insideView(true));
    EXPECT_TRUE(HPoint(0, 0, 3, 2).insideView(false));
    EXPECT_FALSE(HPoint(0, 0, 0, -1).insideView(false));
}
