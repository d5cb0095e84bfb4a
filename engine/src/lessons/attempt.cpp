#include "lessons/attempt.h"

#include "listen/words.h"
#include "theory/pitch_names.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <string_view>

namespace kelo::engine {

namespace {

constexpr double together = 0.12; ///< seconds between hands that are meant to be together
constexpr double bounce = 0.08; ///< seconds in which no finger means a key twice
constexpr double closeSteps = 0.15; ///< written seconds between steps that may change places
constexpr double uneven = 1.6; ///< times too long or too short that one notices
constexpr double drift = 1.25; ///< of the tempo, from the first half to the second
constexpr std::size_t enoughForRhythm = 4;
constexpr std::size_t enoughForDrift = 8;

std::string wordsFor(const Step &step, Spelling spelling)
{
    return pitchNames(step.pitches, spelling) + (step.pitches.size() > 1 ? " together" : "");
}

bool contains(const std::vector<int> &pitches, int pitch)
{
    return std::ranges::find(pitches, pitch) != pitches.end();
}

} // namespace

bool Attempt::missing(int pitch) const
{
    return contains(expected().pitches, pitch) && !contains(pressed_, pitch);
}

/// It belongs to a grace note, or to a trill that has not ended yet.
bool Attempt::ornament(int pitch) const
{
    return contains(expected().ornaments, pitch)
        || (step_ > 0 && contains(steps_[step_ - 1].ornaments, pitch));
}

/// A key of the next step: the hands are not quite together, or changed places.
bool Attempt::mayComeEarly(int pitch) const
{
    if (early_ || step_ + 1 >= steps_.size() || !contains(steps_[step_ + 1].pitches, pitch))
        return false;
    return !pressed_.empty() || steps_[step_ + 1].at - expected().at < closeSteps;
}

void Attempt::take(int pitch, double now)
{
    if (pressed_.empty())
        times_.push_back(now);
    pressed_.push_back(pitch);
    if (pressed_.size() < expected().pitches.size())
        return;
    pressed_.clear();
    if (++step_ == steps_.size())
        current_ = State::Passed;
}

Attempt::State Attempt::miss(int pitch)
{
    wrong_ = pitch;
    ++wrongKeys_[expected().bar];
    early_.reset();
    return current_ = State::Missed;
}

Attempt::State Attempt::press(int pitch, double now)
{
    const std::optional<Key> before = std::exchange(last_, Key{pitch, now});
    if (current_ == State::Passed || (current_ == State::Going && expire(now) != State::Going))
        return current_;
    if (before && before->pitch == pitch && now - before->at < bounce && !missing(pitch))
        return current_;
    if (missing(pitch)) {
        current_ = State::Going; // it was put right, if anything was wrong
        take(pitch, now);
        if (early_ && pressed_.empty()) {
            const Key held = *early_;
            early_.reset();
            if (current_ == State::Going && missing(held.pitch))
                take(held.pitch, held.at);
        }
        return current_;
    }
    if (current_ == State::Missed || ornament(pitch))
        return current_;
    if (resumed_ && times_.empty() && contains(steps_[0].pitches, pitch)) {
        step_ = 0;
        take(pitch, now);
        return current_;
    }
    if (!mayComeEarly(pitch))
        return miss(pitch);
    early_ = Key{pitch, now};
    return current_;
}

Attempt::State Attempt::expire(double now)
{
    if (early_ && now >= early_->at + together)
        return miss(early_->pitch);
    return current_;
}

std::optional<double> Attempt::deadline() const
{
    return early_ ? std::optional(early_->at + together) : std::nullopt;
}

void Attempt::resume()
{
    if (current_ != State::Missed)
        return;
    const double here = expected().beatAt;
    const auto first = [&](double beat) {
        return static_cast<std::size_t>(
            std::ranges::find(steps_, beat, &Step::beatAt) - steps_.begin());
    };
    const std::size_t beat = first(here);
    step_ = beat == 0 ? 0 : first(steps_[beat - 1].beatAt);
    current_ = State::Going;
    pressed_.clear();
    times_.clear();
    resumed_ = true;
}

std::string Attempt::next() const
{
    return current_ == State::Going ? wordsFor(expected(), spelling_) : "";
}

std::string Attempt::fault() const
{
    if (current_ != State::Missed)
        return {};
    const auto &pitches = expected().pitches;
    std::vector<int> left;
    std::ranges::copy_if(
        pitches, std::back_inserter(left), [&](int pitch) { return missing(pitch); });
    // What was meant: the same name in another octave, or else the key that is nearest.
    const auto meant = *std::ranges::min_element(left, {}, [this](int pitch) {
        return std::pair((pitch - wrong_) % 12 != 0, std::abs(pitch - wrong_));
    });
    std::string place = placeOf(steps_, step_);
    const auto &hands = expected().hands;
    const bool bothPlay = std::ranges::any_of(steps_, [](const Step &step) {
        return std::ranges::find(step.hands, Hands::Left) != step.hands.end();
    }) && std::ranges::any_of(steps_, [](const Step &step) {
        return std::ranges::find(step.hands, Hands::Right) != step.hands.end();
    });
    if (!hands.empty() && bothPlay) {
        const auto index =
            static_cast<std::size_t>(std::ranges::find(pitches, meant) - pitches.begin());
        place += hands[index] == Hands::Left ? ", left hand" : ", right hand";
    }
    if (!pressed_.empty() && step_ + 1 < steps_.size()
        && contains(steps_[step_ + 1].pitches, wrong_))
        return place + ": you left out " + pitchNames(left, spelling_) + ".";
    const int off = wrong_ - meant;
    const std::string played = pitchName(wrong_, spelling_);
    const std::string_view where = off > 0 ? "above" : "below";
    if (off != 0 && off % 12 == 0) {
        const int octaves = std::abs(off) / 12;
        return place + ": " + played + " is right, but "
            + (octaves == 1 ? "an octave" : numberInWords(octaves) + " octaves")
            + (off < 0 ? " higher." : " lower.");
    }
    std::string text = place + ": " + wordsFor(expected(), spelling_) + ". You played ";
    if (off == 0)
        return text + played + " again.";
    text += std::abs(off) < 12 ? "the " + played + " " : played + ", far ";
    text += where;
    return text + (pitches.size() > 1 ? " " + pitchName(meant, spelling_) + "." : ".");
}

bool Attempt::atOneGo() const
{
    return current_ == State::Passed && !resumed_ && times_.size() == steps_.size();
}

int Attempt::tempo() const
{
    if (!atOneGo() || times_.size() < 2)
        return 0;
    const double took = std::max(times_.back() - times_.front(), 1e-3);
    const double written = steps_.back().at - steps_.front().at;
    return static_cast<int>(std::lround(std::clamp(100 * written / took, 1.0, 999.0)));
}

std::string Attempt::rhythm() const
{
    if (!atOneGo() || times_.size() < enoughForRhythm)
        return {};
    // How much longer or shorter each step was than the player's own pulse would have it.
    std::vector<double> ratios;
    for (std::size_t i = 1; i < times_.size(); ++i) {
        const double should = std::max(steps_[i].at - steps_[i - 1].at, 1e-3);
        ratios.push_back(std::log(std::max(times_[i] - times_[i - 1], 1e-3) / should));
    }
    const auto median = [](std::vector<double> values) {
        std::ranges::sort(values);
        return values[values.size() / 2];
    };
    const auto half = static_cast<std::ptrdiff_t>(ratios.size() / 2);
    const double pulse = median(ratios);
    if (times_.size() >= enoughForDrift) {
        const double change = median({ratios.begin() + half, ratios.end()})
            - median({ratios.begin(), ratios.begin() + half});
        if (std::abs(change) > std::log(drift))
            return change < 0 ? "You got faster." : "You got slower.";
    }
    const auto off = [&](std::size_t i) { return ratios[i] - pulse; };
    std::size_t worst = 0;
    std::size_t odd = 0;
    for (std::size_t i = 0; i < ratios.size(); ++i) {
        worst = std::abs(off(i)) > std::abs(off(worst)) ? i : worst;
        odd += std::abs(off(i)) > std::log(uneven) ? 1 : 0;
    }
    if (odd == 0)
        return std::string(inTime);
    if (odd > 2 && odd * 3 > ratios.size())
        return "The rhythm was uneven.";
    return placeOf(steps_, worst + 1)
        + (off(worst) > 0 ? " may come a little sooner." : " may wait a little longer.");
}

} // namespace kelo::engine
