#pragma once

#include "music/piece.h"
#include "music/written.h"

#include <memory>

namespace kelo::engine {

/// How a piece is written: as its score has it, or else as one would write down what is played,
/// each note at the nearest sixteenth or triplet of its bar.
[[nodiscard]] std::shared_ptr<const WrittenPiece> writtenOf(const Piece &piece);

} // namespace kelo::engine
