#pragma once

#include "sound/mixer.h"

#include <memory>
#include <string>

namespace kelo::engine {

/// Seconds of the monotonic clock that everything here is timed by.
[[nodiscard]] double monotonicNow();

/// The way to the loudspeakers: a thread that asks the mixer for sound, for as long as this
/// lives. Where no sound can be had it keeps time all the same, in silence.
class Output {
public:
    /// `driver` is "pulseaudio", "alsa" or another that FluidSynth knows; "silent" for none;
    /// empty takes the first that works.
    Output(Mixer &mixer, AudioClock &clock, const std::string &driver);
    ~Output();

    [[nodiscard]] bool audible() const;

private:
    class Device;
    class Silence;
    std::unique_ptr<Device> device;
    std::unique_ptr<Silence> silence;
};

} // namespace kelo::engine
