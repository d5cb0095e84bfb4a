#pragma once

#include "music/piece.h"

#include <cstdint>
#include <vector>

namespace kelo::engine {

/// A Standard MIDI File of format 0 with the messages of a piece, at 120 quarters a minute.
[[nodiscard]] std::vector<std::uint8_t> writeMidiFile(const Piece &piece);

} // namespace kelo::engine
