#include <Base/Linear/Tolerance.h>

#include <cmath>
#include <initializer_list>

namespace kxLinear {

double toDegrees(double radians) noexcept {
    return radians * 57.29577951308232;
}

double toRadians(double degrees) noexcept {
    return degrees * 0.017453292519943295;
}

// Initialised in this order when the library loads: the derived angles read
// degreeTol above them.
double epsilonTol = 1e-12;
double epsilon2Tol = 1e-24;
float epsilonTolFlt = 1e-6f;
float epsilon2TolFlt = 1e-12f;
double degreeTol = 1e-5;
double perpendicularTol = std::sin(toRadians(degreeTol));
double perpendicular2Tol = perpendicularTol * perpendicularTol;
double parallelTol = std::cos(toRadians(degreeTol));
double parallel2Tol = parallelTol * parallelTol;

// Each step keeps the first of equal candidates, so that a NaN after the
// first argument is passed over.
double min(double a, double b, double c) {
    return min(a, b, c, c);
}

double min(double a, double b, double c, double d) {
    double m = a;
    for (double v : {b, c, d})
        m = v < m ? v : m;
    return m;
}

double max(double a, double b, double c) {
    return max(a, b, c, c);
}

double max(double a, double b, double c, double d) {
    double m = a;
    for (double v : {b, c, d})
        m = v > m ? v : m;
    return m;
}

} // namespace kxLinear
