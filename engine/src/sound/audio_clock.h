#pragma once

#include <atomic>
#include <cstdint>

namespace kelo::engine {

/// A sample frame of the output, counted from its start.
using Frame = std::int64_t;

inline constexpr double sampleRate = 44100.0;

[[nodiscard]] constexpr Frame frames(double seconds)
{
    return static_cast<Frame>(seconds * sampleRate);
}
[[nodiscard]] constexpr double seconds(Frame count)
{
    return static_cast<double>(count) / sampleRate;
}

/// Ties the frames of the output to the seconds of the monotonic clock, so that whatever is
/// shown can follow what is heard. The audio thread ticks, any one other thread reads; neither
/// ever waits for long. Late and early callbacks are smoothed; a gap is followed at once.
class AudioClock {
public:
    /// Before the first tick frame 0 is taken to sound at `now`.
    explicit AudioClock(double now) { publish(0, now); }

    /// How long after it is rendered a frame is heard, in seconds. Whoever renders sets it.
    void setLatency(double value) { latency_ = value; }

    /// The audio thread renders, at `now`, a block that begins with `frame`.
    void tick(Frame frame, double now);

    /// The frame that is heard at a time, and the time at which a frame is heard.
    [[nodiscard]] Frame frameAt(double time) const;
    [[nodiscard]] double timeOf(Frame frame) const;

    /// The frame that should be rendered at a time.
    [[nodiscard]] Frame frameRenderedAt(double time) const { return frameAt(time + latency_); }

private:
    struct Anchor {
        Frame frame;
        double time;
    };

    void publish(Frame frame, double time);
    [[nodiscard]] Anchor anchor() const;

    bool ticks_ = false; ///< the audio thread's own
    std::atomic<double> latency_ = 0;
    std::atomic<std::uint32_t> version_ = 0; ///< odd while an anchor is being written
    std::atomic<Frame> anchorFrame_ = 0;
    std::atomic<double> anchorTime_ = 0;
};

} // namespace kelo::engine
