#include "voice/sound_queue.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace kelo {

namespace {

constexpr double mayWait = 2.0; // seconds
constexpr double speechMayWait = 6.0;

constexpr double runIn = 0.5;
constexpr double hangover = 1.0; // an utterance ends after 0.5 s of silence

/// About -54 dB of full scale: below what a voice across a room makes of a microphone, above a
/// quiet room.
constexpr int loud = 64;

bool isQuiet(const Samples &samples)
{
    return std::none_of(
        samples.begin(), samples.end(), [](qint16 sample) { return std::abs(int{sample}) >= loud; });
}

} // namespace

SoundQueue::SoundQueue(bool bounded)
    : bounded_(bounded)
{
}

double SoundQueue::push(Samples samples)
{
    const bool quiet = isQuiet(samples);
    seconds_ += secondsOf(samples);
    chunks_.push_back({std::move(samples), quiet});

    double dropped = 0;
    while (bounded_ && seconds_ > mayWait) {
        const auto silence = std::find_if(
            chunks_.begin(), chunks_.end(), [](const Chunk &chunk) { return chunk.quiet; });
        if (silence != chunks_.end())
            dropped += drop(silence);
        else if (seconds_ > speechMayWait)
            dropped += drop(chunks_.begin());
        else
            break;
    }
    return dropped;
}

double SoundQueue::drop(std::deque<Chunk>::iterator chunk)
{
    const double seconds = secondsOf(chunk->samples);
    seconds_ -= seconds;
    chunks_.erase(chunk);
    return seconds;
}

std::optional<Samples> SoundQueue::pop()
{
    if (chunks_.empty())
        return std::nullopt;
    Samples samples = std::move(chunks_.front().samples);
    seconds_ -= secondsOf(samples);
    chunks_.pop_front();
    return samples;
}

Samples LevelGate::pass(Samples samples)
{
    const double length = secondsOf(samples);
    const bool wasOpen = quietFor_ < hangover;
    quietFor_ = isQuiet(samples) ? quietFor_ + length : 0;
    if (wasOpen)
        return samples;
    if (quietFor_ > 0) {
        runInSeconds_ += length;
        runIn_.push_back(std::move(samples));
        while (runInSeconds_ > runIn && !runIn_.empty()) {
            runInSeconds_ -= secondsOf(runIn_.front());
            runIn_.pop_front();
        }
        return {};
    }
    Samples all;
    for (const Samples &before : runIn_)
        all.insert(all.end(), before.begin(), before.end());
    all.insert(all.end(), samples.begin(), samples.end());
    runIn_.clear();
    runInSeconds_ = 0;
    return all;
}

} // namespace kelo
