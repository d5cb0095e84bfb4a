#pragma once

#include "music/piece.h"

#include <span>
#include <string>

namespace kelo::engine {

/// The name of a key as it is said: "F sharp".
[[nodiscard]] std::string pitchName(int pitch, Spelling spelling);

/// "C", "C and E", "C, E and G".
[[nodiscard]] std::string pitchNames(std::span<const int> pitches, Spelling spelling);

} // namespace kelo::engine
