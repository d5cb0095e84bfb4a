#include "following/score_follower.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <utility>

namespace kelo::engine {

namespace {

/// How likely it is to go on by so many steps at a key: to the next one, or past some.
constexpr std::array<double, 4> onward{0, 0.93, 0.022, 0.003};
constexpr double added = 0.02; ///< a key too many
constexpr double leaving = 0.02; ///< skipping or repeating
constexpr double rightKey = 0.95;
constexpr double nearKey = 0.011; ///< beside the right one
constexpr double anyKey = 0.0003;
constexpr double strayKey = 0.008; ///< the same of a key too many
constexpr double leftOut = 0.08; ///< of a chord
constexpr double barWeight = 70; ///< bars are gone to so much more often than other places
constexpr double chordSpread = 0.03; ///< seconds
constexpr double rolled = 0.05; ///< chords that take their time
constexpr double unsteady = 0.03; ///< of a step's length, besides what the filter allows for
constexpr double unexpected = 0.08; ///< that a step comes at no foreseeable time
constexpr double hesitating = 0.6; ///< of the logarithm of such a step's length
constexpr double inTime = 0.2; ///< that a jump is made without a break
constexpr double sureOfJump = 0.25;
constexpr double unbelievable = 1e-12;

double normal(double off, double spread)
{
    const double z = off / spread;
    return std::exp(-z * z / 2) / spread * std::numbers::inv_sqrtpi / std::numbers::sqrt2;
}

// How likely times are, per second.

double anyTime(double gap)
{
    return 1 / ((1 + gap) * (1 + gap));
}

/// Of a step that was begun so long after the one before.
double stepTime(const PlayerTime &time, double since, double written, double now)
{
    const double length = std::max(written * time.pace(), 0.02);
    const double gap = std::max(now - since, 0.005);
    const double spread = std::hypot(time.uncertain(written), unsteady * length);
    const double loose = normal(std::log(gap / length), hesitating) / gap;
    return (1 - unexpected) * normal(now - time.expected(written), spread)
        + unexpected * (0.8 * loose + 0.2 * anyTime(gap));
}

/// Of another key of a chord, so long after the first one.
double chordTime(double gap)
{
    return (1 - rolled) * std::exp(-gap / chordSpread) / chordSpread + rolled * anyTime(gap);
}

/// Its bit among the keys of a step; 0 where it is none of them.
std::uint64_t bitOf(const FollowedStep &step, int pitch)
{
    const auto place = std::ranges::find(step.pitches, pitch);
    return place == step.pitches.end()
        ? 0
        : std::uint64_t{1} << std::min<std::ptrdiff_t>(63, place - step.pitches.begin());
}

/// How likely this is the first key of a step.
double arrival(const FollowedStep &step, int pitch)
{
    double best = anyKey;
    for (const int each : step.pitches) {
        const int off = std::abs(each - pitch);
        if (off == 0)
            return rightKey / static_cast<double>(step.pitches.size());
        if (off <= 2 || off == 12)
            best = nearKey / static_cast<double>(step.pitches.size());
    }
    return best;
}

} // namespace

ScoreFollower::ScoreFollower(std::vector<FollowedStep> steps, double pace)
    : steps_(std::move(steps))
    , arriving_(steps_.size())
    , time_(pace)
{
    int bar = 0;
    for (const FollowedStep &step : steps_)
        bars_.push_back(bar += step.opensBar ? 1 : 0);
    restart();
}

void ScoreFollower::restart()
{
    begun_ = false;
    place_ = likeliest_ = 0;
    time_ = PlayerTime(time_.pace());
    places_.assign(steps_.size(), {});
    weighJumps();
}

double ScoreFollower::dueAt(double written) const
{
    return time_.expected(written - steps_[place_].at);
}

/// How likely it is to leave a step with what has sounded of it.
double ScoreFollower::left(std::size_t place) const
{
    const auto missing =
        static_cast<int>(steps_[place].pitches.size()) - std::popcount(places_[place].sounded);
    return missing > 0 ? std::pow(leftOut, std::min(missing, 3)) : 1;
}

/// A jump goes to the beginning of a bar, rather to a near one, or to the beginning of it all.
void ScoreFollower::weighJumps()
{
    double sum = 0;
    for (std::size_t i = 0; i < steps_.size(); ++i) {
        const int far = std::max(1, std::abs(bars_[i] - bars_[likeliest_]));
        const double weight = i == 0 || steps_[i].opensBar ? barWeight : 1;
        sum += arriving_[i] = weight / (i == 0 ? std::min(far, 2) : far);
    }
    for (double &each : arriving_)
        each /= sum;
}

/// How likely a jump is just now: after a break, or when the next step would have been due.
double ScoreFollower::timeOfJump(double now) const
{
    const double any = anyTime(std::max(now - last_, 0.0));
    if (!begun_ || likeliest_ + 1 == steps_.size())
        return any;
    const Place &from = places_[likeliest_];
    const double written = steps_[likeliest_ + 1].at - steps_[likeliest_].at;
    return inTime * stepTime(from.time, from.since, written, now) + (1 - inTime) * any;
}

/// What is believed of a step when a key has come, by all ways that lead there.
ScoreFollower::Place ScoreFollower::reached(std::size_t to, int pitch, double now) const
{
    const FollowedStep &step = steps_[to];
    const std::uint64_t bit = bitOf(step, pitch);
    const double gap = std::max(now - last_, 0.0);
    const double first = arrival(step, pitch);
    // Whoever jumps keeps their pace, more or less.
    Place place{0, now, bit, places_[likeliest_].time};
    place.time.resume(now);
    double best = leaving * arriving_[to] * jumpTime_ * first;
    double sum = best;
    for (std::size_t by = 1; by < onward.size() && by <= to; ++by) {
        const Place &before = places_[to - by];
        if (before.belief < unbelievable)
            continue;
        const double written = step.at - steps_[to - by].at;
        const double chance = before.belief * onward[by] * left(to - by)
            * stepTime(before.time, before.since, written, now) * first;
        sum += chance;
        if (chance > best) {
            best = chance;
            place = {0, now, bit, before.time};
            place.time.step(written, now);
        }
    }
    const Place &here = places_[to];
    const auto missing = static_cast<int>(step.pitches.size()) - std::popcount(here.sounded);
    double chance = here.belief * added * anyTime(gap) * (first > anyKey ? nearKey : strayKey);
    if (missing > 0)
        chance += here.belief * chordTime(now - here.since)
            * ((bit & ~here.sounded) != 0 ? rightKey / missing : std::min(first, nearKey));
    sum += chance;
    if (chance > best) {
        place = here;
        if (here.sounded == 0 && bit != 0) { // a wrong key was put right
            place.since = now;
            place.time.begin(now);
        } else if ((bit & ~here.sounded) != 0) {
            place.time.again(now);
        }
        place.sounded |= bit;
    }
    place.belief = sum;
    return place;
}

ScoreFollower::Match ScoreFollower::press(int pitch, double now)
{
    std::vector<Place> next(steps_.size());
    jumpTime_ = timeOfJump(now);
    if (begun_) {
        for (std::size_t j = 0; j < steps_.size(); ++j)
            next[j] = reached(j, pitch, now);
    } else {
        for (std::size_t j = 0; j < steps_.size(); ++j) {
            next[j] = {(leaving * arriving_[j] + (j == 0 ? 1 : 0)) * arrival(steps_[j], pitch), now,
                bitOf(steps_[j], pitch), time_};
            next[j].time.begin(now);
        }
    }
    double whole = 0;
    for (const Place &each : next)
        whole += each.belief;
    for (Place &each : next)
        each.belief /= whole;
    places_ = std::move(next);
    likeliest_ = static_cast<std::size_t>(
        std::ranges::max_element(places_, {}, &Place::belief) - places_.begin());
    weighJumps();
    last_ = now;
    const bool ahead = begun_ && likeliest_ >= place_ && likeliest_ < place_ + onward.size();
    const bool jumps = begun_ && !ahead && places_[likeliest_].belief > sureOfJump;
    if (ahead || jumps || !begun_)
        place_ = likeliest_;
    since_ = places_[place_].since;
    time_ = places_[place_].time;
    begun_ = true;
    return {place_, bitOf(steps_[place_], pitch) != 0, jumps};
}

} // namespace kelo::engine
