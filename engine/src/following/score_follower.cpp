#include "following/score_follower.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace kelo::engine {

namespace {

/// How likely it is to go on by so many steps at a key: to the next one, or past some.
constexpr std::array<double, 4> onward{0, 0.92, 0.03, 0.008};
constexpr double added = 0.02; ///< a key too many
constexpr double leaving = 0.01; ///< skipping or repeating
constexpr double rightKey = 0.92;
constexpr double nearKey = 0.002; ///< beside the right one, or its octave
constexpr double anyKey = 0.001;
constexpr double barWeight = 60; ///< bars are gone to so much more often than other places
constexpr double paceSpread = 0.25; ///< of the logarithm of a step's length
constexpr double anyTime = 0.01;
constexpr double chordSpread = 0.08; ///< seconds
constexpr double learning = 0.35; ///< how much a step says of the pace
constexpr double learningAtFirst = 0.8;
constexpr double sureOfJump = 0.2;

} // namespace

ScoreFollower::ScoreFollower(std::vector<FollowedStep> steps, double pace)
    : steps_(std::move(steps))
    , arriving_(steps_.size())
    , belief_(steps_.size())
    , firstPace_(pace)
    , pace_(pace)
{
    double sum = 0;
    for (std::size_t i = 0; i < steps_.size(); ++i)
        sum += arriving_[i] = i == 0 || steps_[i].opensBar ? barWeight : 1;
    for (double &each : arriving_)
        each /= sum;
    restart();
}

void ScoreFollower::restart()
{
    begun_ = false;
    paceKnown_ = false;
    place_ = 0;
}

double ScoreFollower::emission(const FollowedStep &step, int pitch) const
{
    double best = anyKey;
    for (const int each : step.pitches) {
        const int off = std::abs(each - pitch);
        if (off == 0)
            return rightKey / static_cast<double>(step.pitches.size());
        if (off <= 2 || off == 12)
            best = nearKey;
    }
    return best;
}

/// How well a step of so many seconds agrees with the player's pace.
double ScoreFollower::timing(double seconds, double written) const
{
    const double expected = std::max(written * pace_, 0.02);
    const double off = std::log(std::max(seconds, 0.005) / expected) / paceSpread;
    return std::exp(-off * off / 2) + anyTime;
}

ScoreFollower::Match ScoreFollower::press(int pitch, double now)
{
    const double gap = now - last_;
    last_ = now;
    std::vector<double> next(steps_.size());
    const double together = std::exp(-gap / chordSpread);
    for (std::size_t j = 0; j < steps_.size(); ++j) {
        double sum = leaving * arriving_[j];
        if (!begun_) {
            sum += j == 0 ? 1 : 0;
        } else {
            const auto size = static_cast<double>(steps_[j].pitches.size());
            const double chord = (size - 1) / size * (together + 0.02);
            sum += belief_[j] * std::max(added, chord);
            for (std::size_t by = 1; by < onward.size() && by <= j; ++by) {
                const std::size_t i = j - by;
                // The time since the step before was begun is known only for where the player is.
                const double seconds = i == place_ ? now - since_ : gap;
                sum += belief_[i] * onward[by] * timing(seconds, steps_[j].at - steps_[i].at);
            }
        }
        next[j] = sum * emission(steps_[j], pitch);
    }
    double whole = 0;
    for (const double each : next)
        whole += each;
    for (double &each : next)
        each /= whole;
    belief_ = std::move(next);
    const auto best = static_cast<std::size_t>(std::ranges::max_element(belief_) - belief_.begin());
    const bool ahead = begun_ && best >= place_ && best < place_ + onward.size();
    const bool jumps = begun_ && !ahead && belief_[best] > sureOfJump;
    const std::size_t to = ahead || jumps || !begun_ ? best : place_;
    const bool right = std::ranges::find(steps_[to].pitches, pitch) != steps_[to].pitches.end();
    if (jumps || !begun_) {
        place_ = to;
        since_ = now;
    } else {
        follow(to, right, now);
    }
    begun_ = true;
    return {to, right, jumps};
}

/// Learns the player's pace from a step that was played.
void ScoreFollower::follow(std::size_t to, bool right, double now)
{
    if (to == place_)
        return;
    const double written = steps_[to].at - steps_[place_].at;
    const double ratio = (now - since_) / std::max(written, 1e-3);
    // Nobody knows beforehand how fast a player begins; later a long step is a pause.
    const double mostChange = paceKnown_ ? 1.8 : 4;
    if (right && ratio > pace_ / mostChange && ratio < pace_ * mostChange) {
        const double share = paceKnown_ ? learning : learningAtFirst;
        pace_ = std::clamp(pace_ * std::pow(ratio / pace_, share), firstPace_ / 4, firstPace_ * 4);
        paceKnown_ = true;
    }
    place_ = to;
    since_ = now;
}

} // namespace kelo::engine
