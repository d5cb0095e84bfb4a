#pragma once

#include "sound/mixer.h"

#include <atomic>
#include <memory>
#include <string>

namespace kelo::engine {

/// Seconds of the monotonic clock that everything here is timed by.
[[nodiscard]] double monotonicNow();

/// An open way to the loudspeakers, which asks the mixer for sound on a thread of its own for as
/// long as it lives.
class Device {
public:
    explicit Device(Mixer &source)
        : mixer(source)
    {
    }
    Device(const Device &) = delete;
    Device &operator=(const Device &) = delete;
    virtual ~Device() = default;

    /// It still asks for sound. A server that has gone or hangs does not.
    [[nodiscard]] bool alive() const;

protected:
    /// The next sound of both sides.
    void render(std::span<float> left, std::span<float> right);

    /// It will not ask again.
    void giveUp();

private:
    Mixer &mixer;
    std::atomic<double> lastCall = monotonicNow();
};

/// By one of FluidSynth's drivers; empty where it does not work. The clock is told how long sound
/// is on its way.
[[nodiscard]] std::unique_ptr<Device> openFluidDevice(
    Mixer &mixer, AudioClock &clock, const std::string &driver);

/// By a server that speaks PulseAudio's protocol; empty where there is none, and where this was
/// built without its library. The sound on its way starts short, for a key is to be heard at
/// once, and grows for as long as the server runs dry.
[[nodiscard]] std::unique_ptr<Device> openPulseDevice(Mixer &mixer, AudioClock &clock);

} // namespace kelo::engine
