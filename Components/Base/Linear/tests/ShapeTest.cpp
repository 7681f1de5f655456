#include <Base/Linear/AffineMatrix.h>
#include <Base/Linear/AffineMatrix2.h>
#include <Base/Linear/Line.h>
#include <Base/Linear/Plane.h>
#include <Base/Linear/Range.h>

#include "Geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace kxLinear;
using namespace testing_linear;

namespace {

// Distance of p from the line.
double offLine(const Line& line, const Point& p) {
    return cross(p - line.point(), line.direction()).length();
}

// Random transforms, every third one mirroring.
AffineMatrix transform(Random& random, int i) {
    const AffineMatrix m = random.affine();
    return i % 3 == 2 ? m * AffineMatrix(1.0).scale(-1, 1, 1) : m;
}

} // namespace

TEST(Line, TransformedLinesCarryTheImagesOfTheirPoints) {
    const Line line(Point(1, 2, 3), Vector(0, 0, -4));
    EXPECT_EQ(line.direction(), Normal(Promise(), 0, 0, -1));
    EXPECT_TRUE(line.isValid());
    EXPECT_FALSE(Line(Point::origin, Vector(1e-13, 0, 0)).isValid());

    Random random;
    for (int i = 0; i < 20; ++i) {
        const Line l(random.point(), random.vector());
        const AffineMatrix m = transform(random, i);
        const Line image = l * m;
        ASSERT_TRUE(image.isValid());
        EXPECT_NEAR(Vector(image.direction()).length(), 1, kTol);
        for (double t : {-5.0, 0.0, 3.0})
            EXPECT_NEAR(offLine(image, (l.point() + l.direction() * t) * m), 0, kTol);
        Line out;
        m.preMult(out, l);
        EXPECT_EQ(out, image);
        m.preMult(out, out);
        EXPECT_EQ(out, image);

        const ParamLine p(random.point(), random.vector());
        for (double t : {-2.0, 0.5, 7.0})
            EXPECT_TRUE(equivalent(p.at(t) * m, (p * m).at(t), kTol));
    }
    const Line collapsed = line * AffineMatrix(1.0).scale(1, 1, 0);
    EXPECT_FALSE(collapsed.isValid());
    EXPECT_EQ(collapsed.point(), Point(1, 2, 0));
}

TEST(Plane, TransformedPlanesKeepTheirPointsAndSides) {
    const Plane plane(Point(0, 0, 1), Vector(0, 0, 2));
    EXPECT_EQ(plane.signedDistance(Point(5, 5, 4)), 3);
    EXPECT_EQ(plane.signedDistance(Point(5, 5, -1)), -2);
    EXPECT_FALSE(Plane(Point::origin, Vector::zero).isValid());

    Random random;
    for (int i = 0; i < 30; ++i) {
        const Plane p(random.point(), random.normal());
        const AffineMatrix m = transform(random, i);
        const Plane image = p * m;
        ASSERT_TRUE(image.isValid());
        const Vector n(p.normal());
        for (int k = 0; k < 3; ++k) {
            const Point on = p.point() + cross(n, random.vector());
            EXPECT_NEAR(image.signedDistance(on * m), 0, 1e-8);
        }
        EXPECT_GT(image.signedDistance((p.point() + n) * m), 0);
        EXPECT_LT(image.signedDistance((p.point() - n) * m), 0);

        const ParamPlane q(random.point(), random.vector(), random.vector());
        EXPECT_TRUE(equivalent(q.at(0.5, -2) * m, (q * m).at(0.5, -2), kTol));
        ParamPlane out;
        m.preMult(out, q);
        EXPECT_EQ(out, q * m);
    }
    EXPECT_FALSE((plane * AffineMatrix(1.0).scale(0, 1, 1)).isValid());
}

TEST(Range, ConstructionExtensionAndEmptiness) {
    const Range3d r(Point(1, 5, 0), Point(3, 2, 1));
    EXPECT_EQ(r.low(), Point(1, 2, 0));
    EXPECT_EQ(r.high(), Point(3, 5, 1));
    EXPECT_FALSE(r.isEmpty());
    EXPECT_FALSE(Range3d(Point(1, 1, 1), Point(1, 1, 1)).isEmpty()); // a single point

    Range3d grown;
    EXPECT_TRUE(grown.isEmpty());
    grown.extend(Point(0, 0, 0)).extend(Point(-1, 2, std::nan("")));
    EXPECT_EQ(grown, Range3d(Point(-1, 0, 0), Point(0, 2, 0)));

    Range2d flat;
    EXPECT_TRUE(flat.isEmpty());
    flat.extend(Point2(3, -1));
    EXPECT_EQ(flat, Range2d(Point2(3, -1), Point2(3, -1)));
    EXPECT_EQ(Range2d(Point2(2, 0), Point2(0, 2)).low(), Point2(0, 0));
}

TEST(Range, TransformedRangeIsTheBoxOfTheTransformedCorners) {
    Random random;
    for (int i = 0; i < 20; ++i) {
        const Range3d r(random.point(), random.point());
        const AffineMatrix m = transform(random, i);
        Range3d corners;
        for (int c = 0; c < 8; ++c) {
            const Point corner(c & 1 ? r.high()[0] : r.low()[0], c & 2 ? r.high()[1] : r.low()[1],
                               c & 4 ? r.high()[2] : r.low()[2]);
            corners.extend(corner * m);
        }
        const Range3d image = r * m;
        EXPECT_TRUE(equivalent(image.low(), corners.low(), kTol));
        EXPECT_TRUE(equivalent(image.high(), corners.high(), kTol));
        Range3d same = r;
        m.preMult(same, same);
        EXPECT_EQ(same, r);

        const double values[6] = {random.uniform(-2, 2), random.uniform(-2, 2),
                                  random.uniform(-2, 2), random.uniform(-2, 2),
                                  random.uniform(-5, 5), random.uniform(-5, 5)};
        const AffineMatrix2 m2(values);
        const Range2d r2(Point2(random.uniform(-5, 5), random.uniform(-5, 5)),
                         Point2(random.uniform(-5, 5), random.uniform(-5, 5)));
        Range2d corners2;
        for (int c = 0; c < 4; ++c)
            corners2.extend(
                Point2(c & 1 ? r2.high()[0] : r2.low()[0], c & 2 ? r2.high()[1] : r2.low()[1]) *
                m2);
        const Range2d image2 = r2 * m2;
        EXPECT_TRUE(equivalent(image2.low(), corners2.low(), kTol));
        EXPECT_TRUE(equivalent(image2.high(), corners2.high(), kTol));
    }
    EXPECT_TRUE((Range3d() * AffineMatrix(2.0)).isEmpty());
    EXPECT_TRUE((Range2d() * AffineMatrix2(2.0)).isEmpty());
    Range3d out(Point(9, 9, 9), Point(9, 9, 9));
    AffineMatrix(1.0).preMult(out, Range3d());
    EXPECT_TRUE(out.isEmpty());
}
