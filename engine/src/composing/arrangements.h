#pragma once

#include "composing/score.h"

namespace kelo::engine {

/// What a theme can be made into.
enum class Arrangement : std::uint8_t { Band, Lullaby, VideoGame, FilmScore };

/// The theme with its harmony in another tempo, register, accompaniment and instruments.
[[nodiscard]] Score arrange(const Score &theme, Arrangement arrangement);

/// "a lullaby".
[[nodiscard]] std::string_view nameOf(Arrangement arrangement);

} // namespace kelo::engine
