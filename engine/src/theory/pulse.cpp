#include "theory/pulse.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace kelo::engine {

namespace {

constexpr double shortest = 60.0 / 180;
constexpr double longest = 60.0 / 50;
constexpr double periodStep = 0.004;
constexpr double usual = 0.6;
constexpr double width = 0.09; ///< of a beat; players are not machines
constexpr double together = 0.05; ///< seconds within which notes are one chord

/// How well a place within a beat can be notated: on the beat, on its half, on a quarter.
double clarity(double place)
{
    const auto near = [place](double grid, double worth) {
        const double phase = place / grid;
        const double off = (phase - std::round(phase)) * grid / width;
        return worth * std::exp(-off * off);
    };
    return std::max({near(1, 1.0), near(0.5, 0.75), near(0.25, 0.45)});
}

struct Onset {
    double at;
    double weight;
};

std::vector<Onset> onsetsOf(std::span<const Note> notes)
{
    std::vector<Onset> onsets;
    for (const Note &note : notes) {
        const double weight = note.velocity / 80.0 + std::min(note.duration, 1.5F);
        if (onsets.empty() || note.at - onsets.back().at > together)
            onsets.push_back({note.at, weight});
        else
            onsets.back().weight = std::max(onsets.back().weight, weight);
    }
    return onsets;
}

double merit(const std::vector<Onset> &onsets, double period)
{
    // From note to note: a tempo that drifts adds up to nothing.
    double sum = 0;
    for (std::size_t i = 1; i < onsets.size(); ++i)
        sum += clarity((onsets[i].at - onsets[i - 1].at) / period);
    const double octaves = std::log2(period / usual);
    return sum / static_cast<double>(onsets.size() - 1) - 0.12 * octaves * octaves;
}

int beatsOf(const std::vector<Onset> &onsets, double start, double period)
{
    const auto strength = [&](int beats) {
        double on = 0;
        double all = 0;
        int downbeats = 0;
        for (const Onset &onset : onsets) {
            const long beat = std::lround((onset.at - start) / period);
            const bool isBeat =
                std::abs((onset.at - start) / period - static_cast<double>(beat)) < 0.2;
            all += onset.weight;
            if (isBeat && beat % beats == 0) {
                on += onset.weight;
                ++downbeats;
            }
        }
        const double span = (onsets.back().at - onsets.front().at) / period + 1;
        const double expected = span / beats;
        return downbeats == 0 ? 0 : on / expected / (all / static_cast<double>(onsets.size()));
    };
    return strength(3) > 1.08 * strength(4) ? 3 : 4;
}

} // namespace

Pulse pulseOf(std::span<const Note> notes, double period)
{
    Pulse pulse;
    const auto onsets = onsetsOf(notes);
    if (onsets.empty())
        return pulse;
    pulse.start = onsets.front().at;
    if (period > 0) {
        pulse.period = period;
    } else if (onsets.size() > 1) {
        double best = -1;
        for (double each = shortest; each <= longest; each += periodStep) {
            if (const double value = merit(onsets, each); value > best + 1e-9) {
                best = value;
                pulse.period = each;
            }
        }
    }
    pulse.beats = beatsOf(onsets, pulse.start, pulse.period);
    return pulse;
}

} // namespace kelo::engine
