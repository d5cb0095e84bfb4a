#pragma once

#include "music/written.h"

#include <cstddef>
#include <vector>

namespace kelo::engine {

/// A stretch of a piece, in parts of a quarter.
struct Stretch {
    int from = 0;
    int to = 0;

    friend bool operator==(const Stretch &, const Stretch &) = default;
};

/// What a phrase may have at most, of moments at which something begins.
inline constexpr std::size_t mostOfPhrase = 200;

/// A piece in phrases that a listener would hear: they end with cadences, rests, long notes, slurs
/// and repeats, have half a bar to eight bars, and cover the whole piece. Where `most` asks for
/// shorter ones, a longer phrase is divided where that hurts least.
[[nodiscard]] std::vector<Stretch> phrasesOf(
    const WrittenPiece &piece, std::size_t most = mostOfPhrase);

} // namespace kelo::engine
