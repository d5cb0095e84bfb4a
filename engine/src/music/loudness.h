#pragma once

#include "music/piece.h"

namespace kelo::engine {

/// The gain that brings a piece to the loudness that all pieces are played at, from its notes
/// alone: how many, how hard and how long. Within 0.5 dB for the pieces that ship, as their sound
/// is measured by EBU R128; never more than 9 dB up or down.
[[nodiscard]] float levellingGain(const Piece &piece);

} // namespace kelo::engine
