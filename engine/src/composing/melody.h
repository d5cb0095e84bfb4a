#pragma once

#include "composing/score.h"

#include <random>
#include <span>

namespace kelo::engine {

/// A note of a melody, as a degree of the key.
struct DegreeTone {
    int at = 0; ///< ticks
    int length = 0;
    int degree = 0;
};

/// A melody of eight bars over the degrees of their chords: a motif that comes back, a rise, a
/// half close after four bars and at the end a full one, or an open one where `opens`.
[[nodiscard]] std::vector<DegreeTone> periodOver(std::span<const int> chords, const Metre &metre,
    bool lively, bool opens, std::minstd_rand &random);

/// The pitch of a degree over a chord: the leading note of minor is raised over the dominant.
[[nodiscard]] int pitchOver(const Tonality &key, int degree, int chord);

} // namespace kelo::engine
