// kxUtil::Interval: a time span of whole seconds and microseconds.
//
// Both parts are signed 32-bit numbers, kept as given: nothing normalises
// 1500000 microseconds into seconds. A wait that takes an interval reads a
// zero interval as "no time limit".
//
// Thread safety: a plain value.
#pragma once

namespace kxUtil {

class Interval {
public:
    /// Zero: no time limit for a wait.
    constexpr Interval() = default;
    constexpr Interval(int seconds, int microseconds = 0)
        : seconds_(seconds), microseconds_(microseconds) {}

    constexpr int seconds() const { return seconds_; }
    constexpr int microseconds() const { return microseconds_; }

    friend constexpr bool operator==(const Interval&, const Interval&) = default;

private:
    int seconds_ = 0;
    int microseconds_ = 0;
};

} // namespace kxUtil
