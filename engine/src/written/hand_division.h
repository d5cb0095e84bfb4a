#pragma once

#include "music/piece.h"

#include <vector>

namespace kelo::engine {

/// Whose hand each note of a piece is: as it is written where that is known, else by the names of
/// tracks, by two tracks of which the higher is the right hand's, or by what two hands can reach
/// and how they move. Notes of other instruments and drums are nobody's: they count as `Both`.
[[nodiscard]] std::vector<Hands> handsOf(const Piece &piece);

} // namespace kelo::engine
