#include "voice/sound_queue.h"

#include <algorithm>
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

bool isQuiet(const Samples &samples)
{
    return std::none_of(samples.begin(), samples.end(),
        [](qint16 sample) { return std::abs(int{sample}) >= loud; });
}

} // namespace

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

std::size_t SoundQueue::drop(std::deque<Chunk>::iterator chunk)
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

Samples LevelGate::pass(Samples samples)
{
    const bool wasOpen = quietFor_ < hangover;
    quietFor_ = isQuiet(samples) ? quietFor_ + samples.size() : 0;
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
