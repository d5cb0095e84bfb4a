#include "voice/sound_queue.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace kelo {

namespace {

constexpr std::size_t second = 16000; // samples

constexpr std::size_t mayWait = 2 * second;
constexpr std::size_t speechMayWait = 6 * second;

constexpr std::size_t runIn = second / 2;
constexpr std::size_t hangover = second; // an utterance ends after half a second of silence

/// About -54 dB of full scale: below what a voice across a room makes of a microphone, above a
/// quiet room.
constexpr int loud = 64;

/// A voice that a microphone is meant to hear rises above the room by more than 4 dB; the level of
/// steady noise changes by less from one buffer to the next.
constexpr double aboveFloor = 1.6;
constexpr double floorGrowth = 1.25; // a second; a fan that starts is known after some
constexpr double lowestFloor = 16;

bool isQuiet(const Samples &samples)
{
    return std::none_of(samples.begin(), samples.end(),
        [](qint16 sample) { return std::abs(int{sample}) >= loud; });
}

} // namespace

double levelOf(const Samples &samples)
{
    double sum = 0;
    double squares = 0;
    for (const qint16 sample : samples) {
        sum += sample;
        squares += static_cast<double>(sample) * sample;
    }
    const auto count = static_cast<double>(std::max<std::size_t>(samples.size(), 1));
    const double mean = sum / count;
    return std::sqrt(std::max(0.0, squares / count - mean * mean));
}

SoundQueue::SoundQueue(bool bounded)
    : bounded_(bounded)
{
}

double SoundQueue::push(Samples samples)
{
    const bool quiet = isQuiet(samples);
    samples_ += samples.size();
    chunks_.push_back({std::move(samples), quiet});

    std::size_t dropped = 0;
    while (bounded_ && samples_ > mayWait) {
        const auto silence = std::find_if(
            chunks_.begin(), chunks_.end(), [](const Chunk &chunk) { return chunk.quiet; });
        if (silence != chunks_.end())
            dropped += drop(silence);
        else if (samples_ > speechMayWait)
            dropped += drop(chunks_.begin());
        else
            break;
    }
    return static_cast<double>(dropped) / sampleRate;
}

std::size_t SoundQueue::drop(const std::deque<Chunk>::iterator &chunk)
{
    const std::size_t size = chunk->samples.size();
    samples_ -= size;
    chunks_.erase(chunk);
    return size;
}

std::optional<Samples> SoundQueue::pop()
{
    if (chunks_.empty())
        return std::nullopt;
    Samples samples = std::move(chunks_.front().samples);
    samples_ -= samples.size();
    chunks_.pop_front();
    return samples;
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
