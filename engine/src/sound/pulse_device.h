#pragma once

#include "sound/device.h"

#include <memory>

namespace kelo::engine {

struct PulseAttempt {
    std::unique_ptr<Device> device; ///< if that worked
    bool hangs = false; ///< a server is there and does not answer; it may still be starting
};

/// By a server that speaks PulseAudio's protocol; nothing where there is none, and where this was
/// built without its library. The sound on its way starts short, for a key is to be heard at
/// once, and grows for as long as the server runs dry. It begins with `queue`, in seconds, where
/// that is longer, and leaves there what it needed.
[[nodiscard]] PulseAttempt openPulseDevice(
    Mixer &mixer, AudioClock &clock, std::atomic<double> &queue);

} // namespace kelo::engine
