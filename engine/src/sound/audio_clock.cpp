#include "sound/audio_clock.h"

#include <cmath>
#include <utility>

namespace kelo::engine {

namespace {

constexpr double gap = 0.1; ///< seconds off that no jitter explains
constexpr double pull = 0.05; ///< share of the error that one block corrects

} // namespace

void AudioClock::tick(Frame frame, double now)
{
    const Anchor last = anchor();
    const double expected = last.time + seconds(frame - last.frame);
    const double error = now - expected;
    const bool follow = !std::exchange(ticks_, true) || std::abs(error) > gap;
    publish(frame, follow ? now : expected + pull * error);
}

void AudioClock::publish(Frame frame, double time)
{
    const auto next = version_.load(std::memory_order_relaxed) + 2;
    version_.store(next - 1, std::memory_order_relaxed);
    std::atomic_thread_fence(std::memory_order_release);
    anchorFrame_.store(frame, std::memory_order_relaxed);
    anchorTime_.store(time, std::memory_order_relaxed);
    version_.store(next, std::memory_order_release);
}

AudioClock::Anchor AudioClock::anchor() const
{
    for (;;) {
        const auto before = version_.load(std::memory_order_acquire);
        const Anchor read{anchorFrame_.load(std::memory_order_relaxed),
            anchorTime_.load(std::memory_order_relaxed)};
        std::atomic_thread_fence(std::memory_order_acquire);
        if (before % 2 == 0 && version_.load(std::memory_order_relaxed) == before)
            return read;
    }
}

Frame AudioClock::frameAt(double time) const
{
    const Anchor at = anchor();
    return at.frame + frames(time - latency_ - at.time);
}

double AudioClock::timeOf(Frame frame) const
{
    const Anchor at = anchor();
    return at.time + seconds(frame - at.frame) + latency_;
}

} // namespace kelo::engine
