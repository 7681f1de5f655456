#include <Base/Linear/Homogeneous.h>

#include "Numeric.h"

namespace kxLinear {

bool HPoint::insideView(bool checkFar) const {
    const double w = c_[3];
    return -w <= c_[0] && c_[0] <= w && -w <= c_[1] && c_[1] <= w && -w <= c_[2] &&
           (!checkFar || c_[2] <= w);
}

bool equivalent(const HPoint& a, const HPoint& b, double tol) {
    return kx::detail::withinTolerance<double>(a, b, 4, tol);
}

bool equivalent(const RPoint& a, const RPoint& b, double tol) {
    return kx::detail::withinTolerance<double>(a, b, 4, tol);
}

} // namespace kxLinear
