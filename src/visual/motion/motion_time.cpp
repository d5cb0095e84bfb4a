#include "visual/motion/motion_time.h"

#include <algorithm>

namespace kelo {

namespace {

// Seconds.
constexpr double lively = 2; // after which nothing is left that answers an event
constexpr double lingering = 5; // in which nothing happens before the motion slows down
constexpr double slowing = 2;
constexpr double waking = 0.5;
constexpr double longestPaceStep = 0.1; // while the pace changes

} // namespace

void MotionTime::disturb(double now)
{
    disturbed_ = std::max(disturbed_, now);
}

void MotionTime::advance(double now, Drift drift)
{
    if (!last_) {
        last_ = now_ = disturbed_ = now;
        return;
    }
    const double gap = now - *last_;
    last_ = now;
    const bool rested = isAtRest();
    awake_ =
        drift == Drift::Always || (drift == Drift::WhileLively && now - disturbed_ < lingering);
    if (drift == Drift::Never)
        part_ = 0;
    if (awake_ && part_ >= 1) {
        now_ += gap;
        return;
    }
    // However long it rested, it begins where it stopped.
    const double step = rested ? 0 : std::clamp(gap, 0.0, longestPaceStep);
    const double paceBefore = pace();
    part_ = std::clamp(part_ + step / (awake_ ? waking : -slowing), 0.0, 1.0);
    now_ += step * (paceBefore + pace()) / 2;
}

bool MotionTime::isLively() const
{
    return !last_ || *last_ - disturbed_ < lively;
}

} // namespace kelo
