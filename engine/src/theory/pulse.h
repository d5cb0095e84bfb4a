#pragma once

#include "music/piece.h"

#include <span>

namespace kelo::engine {

/// The beat that notes are played to.
struct Pulse {
    double start = 0; ///< seconds; where the first bar begins
    double period = 0.6; ///< seconds of a beat
    int beats = 4; ///< of a bar: 3 or 4
};

/// Finds the beat of what was played freely, without a metronome: from the first note on, between
/// 50 and 180 beats a minute, the likelier the nearer to 100. A `period` above 0 is kept.
[[nodiscard]] Pulse pulseOf(std::span<const Note> notes, double period = 0);

} // namespace kelo::engine
