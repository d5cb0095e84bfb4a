#pragma once

#include "composing/score.h"

#include <optional>
#include <string_view>
#include <vector>

namespace kelo::engine {

/// The triad of a chord symbol: "C", "Dm7", "Bb7", "F#".
[[nodiscard]] std::optional<Harmony> chordFrom(std::string_view symbol);

/// Walking bass and swinging drums over chord symbols, a bar each, `choruses` times.
[[nodiscard]] Score jazzBand(std::string_view chords, int tempo, int choruses);

} // namespace kelo::engine
