// Range2d and Range3d: axis-aligned boxes, as the matrices transform them.
//
// A range is its lowest and highest corner. The default range is empty
// (lowest +inf, highest -inf) and stays empty under transforms; extending
// it by a point makes the box of that point. A transformed range is the
// smallest box holding the images of all its corners.
//
//     Range3d(Point(1, 5, 0), Point(3, 2, 1)) => low (1, 2, 0), high (3, 5, 1)
//
// Cost: inline. Thread safety: plain values.
#pragma once

#include <Base/Linear/Vector.h>

#include <limits>

namespace kxLinear {

class BASE_API Range3d {
public:
    /// Empty.
    Range3d() : low_(kHuge, kHuge, kHuge), high_(-kHuge, -kHuge, -kHuge) {}
    /// The smallest range holding both corners, given in any order.
    Range3d(const Point& a, const Point& b) : Range3d() { extend(a).extend(b); }

    const Point& low() const { return low_; }
    const Point& high() const { return high_; }
    /// No point is inside: some low component is above its high one (or
    /// NaN).
    bool isEmpty() const {
        return !(low_[0] <= high_[0] && low_[1] <= high_[1] && low_[2] <= high_[2]);
    }
    /// Grows to hold p; NaN components of p are passed over.
    Range3d& extend(const Point& p) {
        for (int i = 0; i < 3; ++i) {
            low_[i] = p[i] < low_[i] ? p[i] : low_[i];
            high_[i] = p[i] > high_[i] ? p[i] : high_[i];
        }
        return *this;
    }

    friend bool operator==(const Range3d&, const Range3d&) = default;

private:
    static constexpr double kHuge = std::numeric_limits<double>::infinity();

    Point low_;
    Point high_;
};

class BASE_API Range2d {
public:
    /// Empty.
    Range2d() : low_(kHuge, kHuge), high_(-kHuge, -kHuge) {}
    /// The smallest range holding both corners, given in any order.
    Range2d(const Point2& a, const Point2& b) : Range2d() { extend(a).extend(b); }

    const Point2& low() const { return low_; }
    const Point2& high() const { return high_; }
    bool isEmpty() const { return !(low_[0] <= high_[0] && low_[1] <= high_[1]); }
    Range2d& extend(const Point2& p) {
        for (int i = 0; i < 2; ++i) {
            low_[i] = p[i] < low_[i] ? p[i] : low_[i];
            high_[i] = p[i] > high_[i] ? p[i] : high_[i];
        }
        return *this;
    }

    friend bool operator==(const Range2d&, const Range2d&) = default;

private:
    static constexpr double kHuge = std::numeric_limits<double>::infinity();

    Point2 low_;
    Point2 high_;
};

} // namespace kxLinear
