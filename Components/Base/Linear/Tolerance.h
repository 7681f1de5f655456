// The library-wide tolerances of the linear-algebra classes, the angle
// unit conversions, small scalar helpers, and the Promise tag.
//
// The tolerances are exported variables, set when the library is loaded
// and changed by assigning to them; every comparison that is not exact reads
// them at the time of the call. The four that derive from degreeTol are
// computed once, at load: assigning degreeTol later leaves them as they are.
//
//     epsilonTol        1e-12    two coordinates closer than this are equal
//     epsilon2Tol       1e-24    its square, for squared lengths
//     epsilonTolFlt     1e-6     the same in single precision
//     epsilon2TolFlt    1e-12
//     degreeTol         1e-5     angle tolerance in degrees
//     perpendicularTol  sin(degreeTol degrees): a dot product of unit
//                       vectors below it means perpendicular
//     perpendicular2Tol perpendicularTol squared
//     parallelTol       cos(degreeTol degrees): a dot product of unit
//                       vectors above it means parallel
//     parallel2Tol      parallelTol squared
//
// Thread safety: reading the tolerances from many threads is safe;
// assigning one while another thread computes is a data race, so hosts set
// them at start-up.
#pragma once

#include <Base/Utility/Api.h>

namespace kxLinear {

/// Passed to a constructor, promises that the data already satisfies the
/// class's invariant, so the constructor skips its check:
/// Normal(Promise(), 0, 0, 5) is valid and keeps length 5.
struct Promise {
    explicit Promise() = default;
};

BASE_API extern double epsilonTol;
BASE_API extern double epsilon2Tol;
BASE_API extern float epsilonTolFlt;
BASE_API extern float epsilon2TolFlt;
BASE_API extern double degreeTol;
BASE_API extern double perpendicularTol;
BASE_API extern double perpendicular2Tol;
BASE_API extern double parallelTol;
BASE_API extern double parallel2Tol;

/// radians × 57.29577951308232.
BASE_API double toDegrees(double radians) noexcept;
/// degrees × 0.017453292519943295.
BASE_API double toRadians(double degrees) noexcept;

/// The smallest and largest of three or four doubles; a NaN is passed over
/// unless it comes first.
BASE_API double min(double a, double b, double c);
BASE_API double min(double a, double b, double c, double d);
BASE_API double max(double a, double b, double c);
BASE_API double max(double a, double b, double c, double d);

} // namespace kxLinear
