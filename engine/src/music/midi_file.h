#pragma once

#include "music/piece.h"

#include <cstdint>
#include <span>
#include <variant>

namespace kelo::engine {

enum class MidiFault { NotMidi, Unsupported, Empty };

/// Reads a Standard MIDI File of format 0 or 1. A damaged one gives what is whole in it; notes
/// that are never released end with their track. What lies beyond a day is left out.
[[nodiscard]] std::variant<Piece, MidiFault> readMidiFile(std::span<const std::uint8_t> bytes);

} // namespace kelo::engine
