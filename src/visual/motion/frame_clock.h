#pragma once

namespace kelo {

/// Makes even steps of a clock that is read at uneven moments: what moves with it does not tremble
/// when a frame is prepared a little early or late, and keeps up when frames are left out.
class FrameClock {
public:
    /// The time to show in a frame that is prepared at `now`, on a screen that shows one each
    /// `period` seconds. Stays within a period of `now` and never goes back, except when `now`
    /// itself leaps.
    double step(double now, double period);

private:
    double shown_ = 0;
};

} // namespace kelo
