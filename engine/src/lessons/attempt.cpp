#include "lessons/attempt.h"

#include "listen/words.h"
#include "theory/pitch_names.h"

#include <algorithm>
#include <cmath>

namespace kelo::engine {

namespace {

constexpr double together = 0.12; ///< seconds between hands that are meant to be together
constexpr double uneven = 1.6; ///< times too long or too short that one notices
constexpr std::size_t enoughForRhythm = 4;

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
    early_.reset();
    return current_ = State::Missed;
}

Attempt::State Attempt::press(int pitch, double now)
{
    if (current_ != State::Going || expire(now) != State::Going)
        return current_;
    if (!missing(pitch)) {
        const bool next = step_ + 1 < steps_.size() && contains(steps_[step_ + 1].pitches, pitch);
        if (!next || pressed_.empty() || early_)
            return miss(pitch);
        early_ = Early{pitch, now};
        return current_;
    }
    take(pitch, now);
    if (early_ && pressed_.empty()) {
        const Early held = *early_;
        early_.reset();
        take(held.pitch, held.at);
    }
    return current_;
}

Attempt::State Attempt::expire(double now)
{
    if (current_ == State::Going && early_ && now >= early_->at + together)
        return miss(early_->pitch);
    return current_;
}

std::optional<double> Attempt::deadline() const
{
    return early_ && current_ == State::Going ? std::optional(early_->at + together) : std::nullopt;
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
    const bool chord = pitches.size() > 1;
    const std::string place =
        ordinalInWords(static_cast<int>(step_) + 1) + (chord ? " chord" : " note");
    if (!pressed_.empty()) {
        std::vector<int> left;
        std::ranges::copy_if(
            pitches, std::back_inserter(left), [&](int pitch) { return missing(pitch); });
        const bool ahead = step_ + 1 < steps_.size() && contains(steps_[step_ + 1].pitches, wrong_);
        if (ahead)
            return "You left out " + pitchNames(left, spelling_) + " in the " + place + ".";
    }
    const auto octave = std::ranges::find_if(
        pitches, [&](int pitch) { return missing(pitch) && (pitch - wrong_) % 12 == 0; });
    if (octave != pitches.end() && *octave != wrong_) {
        const int octaves = std::abs(*octave - wrong_) / 12;
        return "The " + place + ": " + pitchName(wrong_, spelling_) + " is right, but "
            + (octaves == 1 ? "an octave" : numberInWords(octaves) + " octaves")
            + (wrong_ < *octave ? " higher." : " lower.");
    }
    return "The " + place + " was " + wordsFor(expected(), spelling_) + ", you played "
        + pitchName(wrong_, spelling_) + ".";
}

std::string Attempt::rhythm() const
{
    if (current_ != State::Passed || times_.size() < enoughForRhythm)
        return {};
    const double written = steps_.back().at - steps_.front().at;
    const double played = times_.back() - times_.front();
    if (written <= 0 || played <= 0)
        return {};
    std::size_t worst = 0;
    double most = 0;
    bool late = false;
    for (std::size_t i = 1; i < times_.size(); ++i) {
        const double should = (steps_[i].at - steps_[i - 1].at) / written;
        const double did = (times_[i] - times_[i - 1]) / played;
        const double off = std::log(std::max(did, 1e-6) / std::max(should, 1e-6));
        if (std::abs(off) <= most)
            continue;
        most = std::abs(off);
        worst = i;
        late = off > 0;
    }
    if (most < std::log(uneven))
        return "And in good time.";
    return "The " + ordinalInWords(static_cast<int>(worst) + 1)
        + (late ? " note may come a little sooner." : " note may wait a little longer.");
}

} // namespace kelo::engine
