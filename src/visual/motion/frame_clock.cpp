#include "visual/motion/frame_clock.h"

#include <cmath>

namespace kelo {

namespace {

constexpr double longestGap = 0.25; // seconds; after more than that there is no motion to keep
constexpr double correction = 0.1; // of what the even steps are off, taken back each frame

} // namespace

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
