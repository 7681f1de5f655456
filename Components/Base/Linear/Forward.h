// Declarations of the linear-algebra classes, for headers that only pass
// them by reference.
//
// Each double-precision point or vector class and its single-precision
// twin are one class template, compiled once inside the library for double
// and for float: Point is PointT<double> and PointFlt is PointT<float>.
// Tuple2, Tuple3 and Tuple4 are Tuple<2>, Tuple<3> and Tuple<4>. The
// matrix twins are classes of their own over one shared core.
#pragma once

namespace kxLinear {

struct Promise;

template <int N>
class Tuple;
template <class T>
class PointT;
template <class T>
class VectorT;
template <class T>
class Point2T;
template <class T>
class Vector2T;

class Normal;
class HPoint;
class RPoint;
class Line;
class ParamLine;
class Plane;
class ParamPlane;
class Range2d;
class Range3d;
class AffineMatrix;
class AffineMatrixFlt;
class AffineMatrix2;
class ProjMatrix;
class ProjMatrixFlt;
class Quaternion;

using Tuple2 = Tuple<2>;
using Tuple3 = Tuple<3>;
using Tuple4 = Tuple<4>;
using Point = PointT<double>;
using PointFlt = PointT<float>;
using Vector = VectorT<double>;
using VectorFlt = VectorT<float>;
using Point2 = Point2T<double>;
using Point2Flt = Point2T<float>;
using Vector2 = Vector2T<double>;
using Vector2Flt = Vector2T<float>;

} // namespace kxLinear
