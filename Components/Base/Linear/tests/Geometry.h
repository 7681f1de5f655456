// Helpers of the linear-algebra tests: seeded random geometry, readable
// failure output, and a guard that restores the tolerance variables.
#pragma once

#include <Base/Linear/AffineMatrix.h>
#include <Base/Linear/Tolerance.h>

#include <gtest/gtest.h>

#include <ostream>
#include <random>
#include <type_traits>

namespace kxLinear {

// GoogleTest prints through this instead of the pointer conversion.
template <Componentwise A>
void PrintTo(const A& a, std::ostream* out) {
    const auto* c = static_cast<const std::remove_reference_t<decltype(a[0])>*>(a);
    *out << '(';
    // A normal's validity flag follows its three components.
    constexpr int n = std::is_same_v<A, Normal> ? 3 : int(sizeof(A) / sizeof(c[0]));
    for (int i = 0; i < n; ++i)
        *out << (i ? ", " : "") << c[i];
    *out << ')';
}

} // namespace kxLinear

namespace testing_linear {

using namespace kxLinear;

class Random {
public:
    double uniform(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(engine_);
    }
    Point point() { return Point(uniform(-10, 10), uniform(-10, 10), uniform(-10, 10)); }
    Vector vector() { return point().asVector(); }
    Normal normal() {
        for (;;) {
            const Normal n(uniform(-1, 1), uniform(-1, 1), uniform(-1, 1));
            if (n.isValid())
                return n;
        }
    }
    double angle() { return uniform(-3.1, 3.1); }
    /// A well-conditioned affine matrix: rotation, scales in [0.5, 2],
    /// some shear and a translation.
    AffineMatrix affine() {
        AffineMatrix m(1.0);
        m.translate(vector())
            .rotate(angle(), normal())
            .scale(uniform(0.5, 2), uniform(0.5, 2), uniform(0.5, 2));
        AffineMatrix shear(1.0);
        shear(1, 0) = uniform(-0.5, 0.5);
        return m.preMult(shear);
    }

private:
    std::mt19937 engine_{20261121};
};

/// Saves every tolerance variable and restores it when the test ends.
class ToleranceGuard {
public:
    ~ToleranceGuard() {
        epsilonTol = epsilon_;
        epsilon2Tol = epsilon2_;
        epsilonTolFlt = epsilonFlt_;
        epsilon2TolFlt = epsilon2Flt_;
        degreeTol = degree_;
        perpendicularTol = perpendicular_;
        perpendicular2Tol = perpendicular2_;
        parallelTol = parallel_;
        parallel2Tol = parallel2_;
    }

private:
    double epsilon_ = epsilonTol;
    double epsilon2_ = epsilon2Tol;
    float epsilonFlt_ = epsilonTolFlt;
    float epsilon2Flt_ = epsilon2TolFlt;
    double degree_ = degreeTol;
    double perpendicular_ = perpendicularTol;
    double perpendicular2_ = perpendicular2Tol;
    double parallel_ = parallelTol;
    double parallel2_ = parallel2Tol;
};

inline constexpr double kPi = 3.141592653589793;
/// Round-off allowed after a few dozen operations on values near 10.
inline constexpr double kTol = 1e-9;

} // namespace testing_linear
