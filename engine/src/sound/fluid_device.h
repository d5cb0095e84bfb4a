#pragma once

#include "sound/device.h"

#include <memory>
#include <string>

namespace kelo::engine {

/// By one of FluidSynth's drivers; empty where it does not work. The clock is told how long sound
/// is on its way.
[[nodiscard]] std::unique_ptr<Device> openFluidDevice(
    Mixer &mixer, AudioClock &clock, const std::string &driver);

} // namespace kelo::engine
