#include "visual/motion/frame_timing.h"

#include <algorithm>
#include <cmath>

namespace kelo {

namespace {

constexpr double slack = 0.1; // of the screen's rate, by which it may exceed the one asked for
constexpr double longestGap = 0.25; // seconds; after more than that there is no motion to keep
constexpr double correction = 0.1; // of what the even steps are off, taken back each frame

} // namespace

bool FrameCadence::isDue(double now, double period, double rate)
{
    // Counted in frames of the screen, not in seconds: their callbacks come unevenly.
    const double frames = std::max(std::round((now - last_) / period), 1.0);
    last_ = now;
    if (period * rate * (1 + slack) >= 1)
        return true;
    owed_ = std::min(owed_ + frames * period * rate, 2.0);
    if (owed_ < 1 - 1e-6)
        return false;
    owed_ -= 1;
    return true;
}

double FrameClock::step(double now, double period)
{
    const double gap = now - shown_;
    if (!(gap > -period && gap < longestGap)) {
        shown_ = now;
        return shown_;
    }
    const double frames = std::round(gap / period);
    const double even = shown_ + frames * period;
    const double corrected = even + correction * (now - even);
    if (corrected > shown_)
        shown_ = corrected;
    return shown_;
}

} // namespace kelo
