#pragma once

#include <cstddef>

namespace kelo::engine {

/// What is mixed, each with a loudness of its own. The first four are the synthesiser's parts.
enum class Fader { Pieces, Keys, Band, Ticks, Voice };

inline constexpr std::size_t faders = 5;

} // namespace kelo::engine
