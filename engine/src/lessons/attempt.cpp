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
    return contains(expected().pitches, pitch) && !contains(pressed, pitch);
}

void Attempt::take(int pitch, double now)
{
    if (pressed.empty())
        times.push_back(now);
    pressed.push_back(pitch);
    if (pressed.size() < expected().pitches.size())
        return;
    pressed.clear();
    if (++step == steps.size())
        current = State::Passed;
}

Attempt::State Attempt::miss(int pitch)
{
    wrong = pitch;
    early.reset();
    return current = State::Missed;
}

Attempt::State Attempt::press(int pitch, double now)
{
    if (current != State::Going || expire(now) != State::Going)
        return current;
    if (!missing(pitch)) {
        const bool next = step + 1 < steps.size() && contains(steps[step + 1].pitches, pitch);
        if (!next || pressed.empty() || early)
            return miss(pitch);
        early = Early{pitch, now};
        return current;
    }
    take(pitch, now);
    if (early && pressed.empty()) {
        const Early held = *early;
        early.reset();
        take(held.pitch, held.at);
    }
    return current;
}

Attempt::State Attempt::expire(double now)
{
    if (current == State::Going && early && now >= early->at + together)
        return miss(early->pitch);
    return current;
}

std::optional<double> Attempt::deadline() const
{
    return early && current == State::Going ? std::optional(early->at + together) : std::nullopt;
}

std::string Attempt::next() const
{
    return current == State::Going ? wordsFor(expected(), spelling) : "";
}

std::string Attempt::fault() const
{
    if (current != State::Missed)
        return {};
    const auto &pitches = expected().pitches;
    const bool chord = pitches.size() > 1;
    const std::string place =
        ordinalInWords(static_cast<int>(step) + 1) + (chord ? " chord" : " note");
    if (!pressed.empty()) {
        std::vector<int> left;
        std::ranges::copy_if(
            pitches, std::back_inserter(left), [&](int pitch) { return missing(pitch); });
        const bool ahead = step + 1 < steps.size() && contains(steps[step + 1].pitches, wrong);
        if (ahead)
            return "You left out " + pitchNames(left, spelling) + " in the " + place + ".";
    }
    const auto octave = std::ranges::find_if(
        pitches, [&](int pitch) { return missing(pitch) && (pitch - wrong) % 12 == 0; });
    if (octave != pitches.end() && *octave != wrong) {
        const int octaves = std::abs(*octave - wrong) / 12;
        return "The " + place + ": " + pitchName(wrong, spelling) + " is right, but "
            + (octaves == 1 ? "an octave" : numberInWords(octaves) + " octaves")
            + (wrong < *octave ? " higher." : " lower.");
    }
    return "The " + place + " was " + wordsFor(expected(), spelling) + ", you played "
        + pitchName(wrong, spelling) + ".";
}

std::string Attempt::rhythm() const
{
    if (current != State::Passed || times.size() < enoughForRhythm)
        return {};
    const double written = steps.back().at - steps.front().at;
    const double played = times.back() - times.front();
    if (written <= 0 || played <= 0)
        return {};
    std::size_t worst = 0;
    double most = 0;
    bool late = false;
    for (std::size_t i = 1; i < times.size(); ++i) {
        const double should = (steps[i].at - steps[i - 1].at) / written;
        const double did = (times[i] - times[i - 1]) / played;
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
