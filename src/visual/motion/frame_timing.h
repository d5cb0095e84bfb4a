#pragma once

namespace kelo {

/// Chooses the frames of a screen that an item prepares, so that on any screen they come as often
/// as asked for: all of them, or as evenly as can be some.
class FrameCadence {
public:
    /// Whether to prepare the frame at uptime `now`, on a screen that shows one each `period`
    /// seconds, for `rate` frames a second. Ask once a frame.
    bool isDue(double now, double period, double rate);

private:
    double last_ = 0; // uptime of the latest frame of the screen
    double owed_ = 0; // frames
};

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
