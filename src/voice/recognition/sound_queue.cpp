#include "voice/recognition/sound_queue.h"

#include "voice/recognition/level_gate.h"

#include <algorithm>
#include <utility>

namespace kelo {

namespace {

constexpr std::size_t mayWait = std::size_t{2} * 16000; // samples
constexpr std::size_t speechMayWait = std::size_t{6} * 16000;

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

} // namespace kelo
