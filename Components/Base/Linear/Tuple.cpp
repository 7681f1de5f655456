#include <Base/Linear/Tuple.h>

#include "Numeric.h"

#include <cmath>

namespace kxLinear {

using kx::detail::withinTolerance;

template <int N>
const Tuple<N> Tuple<N>::zero(static_cast<const double*>(nullptr));

namespace {

template <int N>
double squaredDistance(const double* a, const double* b) {
    double s = 0;
    for (int i = 0; i < N; ++i)
        s += (a[i] - b[i]) * (a[i] - b[i]);
    return s;
}

} // namespace

double distance(const Tuple2& a, const Tuple2& b) {
    return std::sqrt(squaredDistance<2>(a, b));
}

double distance2(const Tuple2& a, const Tuple2& b) {
    return squaredDistance<2>(a, b);
}

double distance(const Tuple3& a, const Tuple3& b) {
    return std::sqrt(squaredDistance<3>(a, b));
}

double distance2(const Tuple3& a, const Tuple3& b) {
    return squaredDistance<3>(a, b);
}

bool equivalent(const Tuple2& a, const Tuple2& b, double tol) {
    return withinTolerance<double>(a, b, 2, tol);
}

bool equivalent(const Tuple3& a, const Tuple3& b, double tol) {
    return withinTolerance<double>(a, b, 3, tol);
}

bool equivalent(const Tuple4& a, const Tuple4& b, double tol) {
    return withinTolerance<double>(a, b, 4, tol);
}

template class Tuple<2>;
template class Tuple<3>;
template class Tuple<4>;

} // namespace kxLinear
