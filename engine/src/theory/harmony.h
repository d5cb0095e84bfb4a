#pragma once

#include <optional>
#include <span>

namespace kelo::engine {

/// What a bass player makes of a chord.
struct Harmony {
    int root = 0; ///< 0 is C
    int third = 4; ///< semitones above the root
    int fifth = 7;

    friend bool operator==(const Harmony &, const Harmony &) = default;
};

/// The harmony of the keys that are held; nothing where they make no chord. The lowest key is
/// the root where that is possible.
[[nodiscard]] std::optional<Harmony> harmonyOf(std::span<const int> pitches);

} // namespace kelo::engine
