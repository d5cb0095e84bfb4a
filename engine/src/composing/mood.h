#pragma once

#include <cstdint>

namespace kelo::engine {

/// What a piece that is made up is to be like.
enum class Mood : std::uint8_t { Happy, Calm, Sad, Waltz, March, Mysterious };

} // namespace kelo::engine
