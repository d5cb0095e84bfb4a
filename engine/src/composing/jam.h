#pragma once

#include "composing/score.h"

#include <cstdint>

namespace kelo::engine {

/// Bars that a phrase counts as when it is traded: four or eight.
[[nodiscard]] int barsToTrade(const Score &phrase);

/// Answers a phrase (a melody) with `bars` bars in its key, tempo and rhythm over soft chords,
/// and comes home at the end. The same phrase and seed give the same answer.
[[nodiscard]] Score answerTo(const Score &phrase, int bars, std::uint32_t seed);

} // namespace kelo::engine
