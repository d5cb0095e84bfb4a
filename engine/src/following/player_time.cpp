#include "following/player_time.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelo::engine {

namespace {

constexpr double fingers = 0.03; ///< seconds, one standard deviation
constexpr double wandering = 0.034; ///< of the pace, in a second
constexpr double firstSpread = 0.3; ///< of the pace, where nothing is known of it
constexpr double anew = 0.1; ///< the same after a break
constexpr double gate = 4; ///< standard deviations; more is a pause or a slip
constexpr double mostAtFirst = 4; ///< times faster or slower than foretold

double square(double x)
{
    return x * x;
}

} // namespace

PlayerTime::PlayerTime(double pace)
    : first_(pace)
    , pace_(pace)
    , atSpread_(square(fingers))
    , paceSpread_(square(firstSpread * pace))
{
}

void PlayerTime::begin(double now)
{
    at_ = now;
    atSpread_ = square(fingers);
    common_ = 0;
}

void PlayerTime::resume(double now)
{
    begin(now);
    paceSpread_ = std::max(paceSpread_, square(anew * pace_));
}

double PlayerTime::uncertain(double written) const
{
    const double wander = square(wandering * pace_) * written;
    return std::sqrt(atSpread_ + 2 * written * common_
        + square(written) * (paceSpread_ + wander / 3) + square(fingers));
}

/// Once is a pause, twice in a row is another tempo.
bool PlayerTime::surprised(double written, double now)
{
    const double ratio = (now - at_) / (written * pace_);
    const bool surprise = known_ ? std::abs(now - expected(written)) > gate * uncertain(written)
                                 : ratio > mostAtFirst || ratio < 1 / mostAtFirst;
    known_ = true;
    const bool before = std::exchange(surprised_, surprise && !surprised_);
    if (surprise && before)
        paceSpread_ = square(firstSpread * pace_);
    return surprised_;
}

void PlayerTime::step(double written, double now)
{
    if (surprised(written, now)) {
        resume(now);
        return;
    }
    const double wander = square(wandering * pace_) * written;
    const double atAhead = square(uncertain(written)) - square(fingers);
    const double ahead = common_ + written * (paceSpread_ + wander / 2);
    at_ = expected(written);
    atSpread_ = atAhead;
    common_ = ahead;
    paceSpread_ += wander;
    correct(now);
}

void PlayerTime::again(double now)
{
    if (std::abs(now - at_) < gate * uncertain(0))
        correct(now);
}

void PlayerTime::correct(double now)
{
    const double off = now - at_;
    const double spread = atSpread_ + square(fingers);
    const double place = atSpread_ / spread;
    const double faster = common_ / spread;
    at_ += place * off;
    pace_ = std::clamp(pace_ + faster * off, first_ / 4, first_ * 4);
    paceSpread_ -= faster * common_;
    atSpread_ *= 1 - place;
    common_ *= 1 - place;
}

} // namespace kelo::engine
