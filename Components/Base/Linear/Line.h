// Line and ParamLine: straight lines in 3D, as the matrices transform them.
//
// A Line is a point and a unit direction; a direction too short to
// normalise makes the line invalid. A ParamLine is an origin and a direction
// of any length that measures its parameter: at(t) = origin + t·direction,
// and transforming the line keeps that parameter, (at(t)) · M equals
// (line · M).at(t).
//
// Cost: inline. Thread safety: plain values. Default constructors leave the
// members uninitialised.
#pragma once

#include <Base/Linear/Vector.h>

namespace kxLinear {

class BASE_API Line {
public:
    Line() = default;
    /// Through `point` along `direction`, normalised.
    Line(const Point& point, const Vector& direction) : point_(point), direction_(direction) {}
    Line(const Point& point, const Normal& direction) : point_(point), direction_(direction) {}

    const Point& point() const { return point_; }
    const Normal& direction() const { return direction_; }
    /// The direction is valid.
    bool isValid() const { return direction_.isValid(); }

    friend bool operator==(const Line&, const Line&) = default;

private:
    Point point_;
    Normal direction_;
};

class BASE_API ParamLine {
public:
    ParamLine() = default;
    ParamLine(const Point& origin, const Vector& direction)
        : origin_(origin), direction_(direction) {}

    const Point& origin() const { return origin_; }
    const Vector& direction() const { return direction_; }
    /// origin + t·direction.
    Point at(double t) const { return origin_ + direction_ * t; }

    friend bool operator==(const ParamLine&, const ParamLine&) = default;

private:
    Point origin_;
    Vector direction_;
};

} // namespace kxLinear
