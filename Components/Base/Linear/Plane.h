// Plane and ParamPlane: planes in 3D, as the matrices transform them.
//
// A Plane is a point on it and a unit normal; a normal too short to
// normalise makes the plane invalid. signedDistance is positive on the
// normal's side, and a transformed plane keeps the images of the points on
// that side on its own normal's side. A ParamPlane is an origin and two
// direction vectors of any length: at(s, t) = origin + s·u + t·v, kept by
// transforms as ParamLine keeps its parameter.
//
// Cost: inline. Thread safety: plain values. Default constructors leave the
// members uninitialised.
#pragma once

#include <Base/Linear/Vector.h>

namespace kxLinear {

class BASE_API Plane {
public:
    Plane() = default;
    /// Through `point` with `normal`, normalised.
    Plane(const Point& point, const Vector& normal) : point_(point), normal_(normal) {}
    Plane(const Point& point, const Normal& normal) : point_(point), normal_(normal) {}

    const Point& point() const { return point_; }
    const Normal& normal() const { return normal_; }
    /// The normal is valid.
    bool isValid() const { return normal_.isValid(); }
    /// (p - point) · normal: positive on the normal's side, 0 for an invalid
    /// plane.
    double signedDistance(const Point& p) const { return dot(p - point_, Vector(normal_)); }

    friend bool operator==(const Plane&, const Plane&) = default;

private:
    Point point_;
    Normal normal_;
};

class BASE_API ParamPlane {
public:
    ParamPlane() = default;
    ParamPlane(const Point& origin, const Vector& u, const Vector& v)
        : origin_(origin), u_(u), v_(v) {}

    const Point& origin() const { return origin_; }
    const Vector& u() const { return u_; }
    const Vector& v() const { return v_; }
    /// origin + s·u + t·v.
    Point at(double s, double t) const { return origin_ + u_ * s + v_ * t; }

    friend bool operator==(const ParamPlane&, const ParamPlane&) = default;

private:
    Point origin_;
    Vector u_;
    Vector v_;
};

} // namespace kxLinear
