#pragma once

#include "composing/score.h"

namespace kelo::engine {

/// Ways to play the harmony under a melody.
enum class Figure : std::uint8_t {
    Alberti,
    Broken,
    Waltz,
    March,
    Chords,
    Rocking,
    Pulse,
    Sustained,
    Bass,
    WalkingBass,
    Comping,
    Drums,
    SoftDrums,
    Timpani,
};

/// Adds a part that plays the harmony of each bar in this way, its chords from `lowest` on.
void accompany(Score &score, const Part &player, Figure figure, int lowest, int velocity);

} // namespace kelo::engine
