#include "following/score_follower.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <numbers>
#include <utility>

namespace kelo::engine {

namespace {

/// How likely it is to go on by so many steps at a key: to the next one, or past some.
constexpr std::array<double, 4> onward{0, 0.93, 0.022, 0.003};
constexpr double added = 0.02; ///< a key too many
constexpr double leaving = 0.01; ///< skipping or repeating, within a bar
constexpr double leavingBar = 0.08; ///< the same at its end
constexpr double rightKey = 0.95;
constexpr double nearKey = 0.011; ///< beside the right one
constexpr double anyKey = 0.0003;
constexpr double strayKey = 0.008; ///< the same of a key too many
constexpr double leftOut = 0.08; ///< of a chord
constexpr double barWeight = 70; ///< bars are gone to so much more often than other places
constexpr int nearBars = 2; ///< one bar back or two make no difference
constexpr int nearBeginning = 3; ///< the beginning is never further off than so many bars
constexpr double repeating = 1.2; ///< who goes elsewhere rather goes back
constexpr double chordSpread = 0.03; ///< seconds
constexpr double rolled = 0.05; ///< chords that take their time
constexpr double unsteady = 0.03; ///< of a step's length, besides what the filter allows for
constexpr double unexpected = 0.05; ///< that a step comes at no foreseeable time
constexpr double hesitating = 0.6; ///< of the logarithm of such a step's length
constexpr double inTime = 0.2; ///< that a jump is made without a break
constexpr double unbelievable = 1e-6;
constexpr int jumped = -1; ///< where a number of steps onward could stand
constexpr double rather = 0.1; ///< sooner than late, of the uncertainty of what is due

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
    , places_(steps_.size())
    , time_(pace)
{
    int bar = 0;
    for (std::size_t i = 0; i < steps_.size(); ++i) {
        bars_.push_back(bar += steps_[i].opensBar ? 1 : 0);
        weights_.resize(static_cast<std::size_t>(bar) + 1);
        weights_.back() += i == 0 || steps_[i].opensBar ? barWeight : 1;
        for (const int each : steps_[i].pitches) {
            for (const int off : {0, 1, -1, 2, -2, 12, -12})
                soundingLike_[each + off].push_back(i);
        }
    }
    restart();
}

void ScoreFollower::restart()
{
    begun_ = false;
    place_ = likeliest_ = 0;
    time_ = PlayerTime(time_.pace());
    for (const std::size_t each : believed_)
        places_[each] = {};
    believed_.clear();
    weighJumps();
}

double ScoreFollower::dueAt(double written) const
{
    const double after = written - steps_[place_].at;
    return time_.expected(after) - rather * time_.uncertain(after);
}

/// How likely it is to leave a step with what has sounded of it.
double ScoreFollower::left(std::size_t place) const
{
    const auto missing =
        static_cast<int>(steps_[place].pitches.size()) - std::popcount(places_[place].sounded);
    return missing > 0 ? std::pow(leftOut, std::min(missing, 3)) : 1;
}

/// How often a jump goes to a bar that is the first one or not.
double ScoreFollower::nearness(int bar, bool first) const
{
    const int far = std::max(nearBars, std::abs(bar - expectedBar_));
    return (bar < expectedBar_ ? repeating : 1) / (first ? std::min(far, nearBeginning) : far);
}

/// A jump goes to the beginning of a bar, rather to a near one, or to the beginning of it all. What
/// is near is near to the bar that would have come.
double ScoreFollower::arriving(std::size_t place) const
{
    const double weight = place == 0 || steps_[place].opensBar ? barWeight : 1;
    return weight * nearness(bars_[place], place == 0) / jumpWeights_;
}

void ScoreFollower::weighJumps()
{
    if (steps_.empty())
        return;
    expectedBar_ = bars_[std::min(likeliest_ + 1, steps_.size() - 1)];
    jumpWeights_ = barWeight * (nearness(bars_[0], true) - nearness(bars_[0], false));
    for (std::size_t bar = 0; bar < weights_.size(); ++bar)
        jumpWeights_ += weights_[bar] * nearness(static_cast<int>(bar), false);
}

double ScoreFollower::leaves(std::size_t place) const
{
    const bool ends = place + 1 == steps_.size() || steps_[place + 1].opensBar;
    return places_[place].belief * (ends ? leavingBar : leaving);
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

/// How likely a step is reached by a key, and by which way most likely.
ScoreFollower::Way ScoreFollower::wayTo(std::size_t to, int pitch, double now) const
{
    const FollowedStep &step = steps_[to];
    const double first = arrival(step, pitch);
    if (!begun_)
        return {to, jumped, (to == 0 ? 1 : leaving * arriving(to)) * first};
    Way way{to, jumped, jump_ * arriving(to) * first};
    double best = way.chance;
    const auto add = [&](int by, double chance) {
        way.chance += chance;
        if (chance > best) {
            best = chance;
            way.by = by;
        }
    };
    for (std::size_t by = 1; by < onward.size() && by <= to; ++by) {
        const Place &before = places_[to - by];
        if (before.belief > 0)
            add(static_cast<int>(by),
                before.belief * onward[by] * left(to - by) * first
                    * stepTime(before.time, before.since, step.at - steps_[to - by].at, now));
    }
    const Place &here = places_[to];
    if (here.belief > 0) {
        const bool fresh = (bitOf(step, pitch) & ~here.sounded) != 0;
        const auto missing = static_cast<int>(step.pitches.size()) - std::popcount(here.sounded);
        double chance =
            added * anyTime(std::max(now - last_, 0.0)) * (first > anyKey ? nearKey : strayKey);
        if (missing > 0)
            chance += chordTime(now - here.since)
                * (fresh ? rightKey / missing : std::min(first, nearKey));
        add(0, here.belief * chance);
    }
    return way;
}

/// What is known at a step that was reached that way. Whoever jumps keeps their pace, more or less.
ScoreFollower::Place ScoreFollower::reached(
    const Way &way, int pitch, double now, const PlayerTime &likely) const
{
    const FollowedStep &step = steps_[way.to];
    const std::uint64_t bit = bitOf(step, pitch);
    if (way.by > 0) {
        const std::size_t from = way.to - static_cast<std::size_t>(way.by);
        Place place{0, now, bit, places_[from].time};
        place.time.step(step.at - steps_[from].at, now);
        return place;
    }
    if (way.by == jumped) {
        Place place{0, now, bit, likely};
        if (begun_)
            place.time.resume(now);
        else
            place.time.begin(now);
        return place;
    }
    Place place = places_[way.to];
    if (place.sounded == 0 && bit != 0) { // a wrong key was put right
        place.since = now;
        place.time.begin(now);
    } else if ((bit & ~place.sounded) != 0) {
        place.time.again(now);
    }
    place.sounded |= bit;
    return place;
}

/// Where the player may be with this key, the last place first: a step onward from where they may
/// have been, or wherever it sounds like this.
std::vector<std::size_t> ScoreFollower::candidates(int pitch) const
{
    std::vector<std::size_t> places{0};
    for (const std::size_t each : believed_) {
        for (std::size_t by = 0; by < onward.size() && each + by < steps_.size(); ++by)
            places.push_back(each + by);
    }
    if (const auto like = soundingLike_.find(pitch); like != soundingLike_.end())
        places.insert(places.end(), like->second.begin(), like->second.end());
    std::ranges::sort(places, std::greater());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    return places;
}

ScoreFollower::Match ScoreFollower::press(int pitch, double now)
{
    jump_ = 0;
    for (const std::size_t each : believed_)
        jump_ += leaves(each);
    jump_ *= timeOfJump(now);
    std::vector<Way> ways;
    double whole = 0;
    for (const std::size_t each : candidates(pitch))
        whole += ways.emplace_back(wayTo(each, pitch, now)).chance;
    const PlayerTime likely = begun_ ? places_[likeliest_].time : time_;
    believed_.clear();
    // The last one first: each is reached from those before it, as they were.
    for (const Way &way : ways) {
        Place place{};
        if (way.chance >= unbelievable * whole) {
            place = reached(way, pitch, now, likely);
            place.belief = way.chance / whole;
            believed_.push_back(way.to);
        }
        places_[way.to] = place;
    }
    likeliest_ = *std::ranges::max_element(believed_.rbegin(), believed_.rend(), {},
        [this](std::size_t place) { return places_[place].belief; });
    weighJumps();
    last_ = now;
    const bool ahead = likeliest_ >= place_ && likeliest_ < place_ + onward.size();
    const bool jumps = begun_ && !ahead;
    place_ = likeliest_;
    since_ = places_[place_].since;
    time_ = places_[place_].time;
    begun_ = true;
    return {place_, bitOf(steps_[place_], pitch) != 0, jumps};
}

} // namespace kelo::engine
