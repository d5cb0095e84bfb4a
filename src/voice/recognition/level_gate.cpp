#include "voice/recognition/level_gate.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace kelo {

namespace {

constexpr std::size_t runIn = 16000 / 2; // samples
constexpr std::size_t hangover = 16000; // an utterance ends after half a second of silence

/// About -54 dB of full scale: below what a voice across a room makes of a microphone, above a
/// quiet room.
constexpr int loud = 64;

/// A voice that a microphone is meant to hear rises above the room by more than 4 dB; the level of
/// steady noise changes by less from one buffer to the next.
constexpr double aboveFloor = 1.6;
constexpr double floorGrowth = 1.25; // a second; a fan that starts is known after some
constexpr double lowestFloor = 16;

} // namespace

bool isQuiet(const Samples &samples)
{
    return std::none_of(samples.begin(), samples.end(),
        [](qint16 sample) { return std::abs(int{sample}) >= loud; });
}

bool LevelGate::staysQuiet(const Samples &samples)
{
    const double level = levelOf(samples);
    const double grown = std::max(floor_, lowestFloor) * std::pow(floorGrowth, secondsOf(samples));
    floor_ = std::min(level, grown);
    return isQuiet(samples) || level < aboveFloor * grown;
}

Samples LevelGate::pass(Samples samples)
{
    const bool wasOpen = quietFor_ < hangover;
    quietFor_ = staysQuiet(samples) ? quietFor_ + samples.size() : 0;
    if (wasOpen)
        return samples;
    if (quietFor_ > 0) {
        runInSize_ += samples.size();
        runIn_.push_back(std::move(samples));
        while (runInSize_ > runIn) {
            runInSize_ -= runIn_.front().size();
            runIn_.pop_front();
        }
        return {};
    }
    Samples all;
    for (const Samples &before : runIn_)
        all.insert(all.end(), before.begin(), before.end());
    all.insert(all.end(), samples.begin(), samples.end());
    runIn_.clear();
    runInSize_ = 0;
    return all;
}

} // namespace kelo
