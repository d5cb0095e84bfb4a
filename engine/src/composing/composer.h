#pragma once

#include "composing/mood.h"
#include "composing/score.h"

#include <cstdint>
#include <optional>

namespace kelo::engine {

/// What a listener may wish for; what is left open is chosen.
struct Wish {
    Mood mood = Mood::Happy;
    std::optional<Tonality> key{};
};

/// Makes up a piece for two hands, of 24 to 48 bars in one of several forms. The same wish and
/// seed make the same piece.
[[nodiscard]] Score makeUp(const Wish &wish, std::uint32_t seed);

/// What suits the hour.
[[nodiscard]] Mood moodAt(int hour);

} // namespace kelo::engine
