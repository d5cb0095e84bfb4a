#pragma once

#include "music/written.h"

#include <vector>

namespace kelo::engine {

/// A stretch of a piece, in parts of a quarter.
struct Stretch {
    int from = 0;
    int to = 0;

    friend bool operator==(const Stretch &, const Stretch &) = default;
};

/// A piece in phrases that a listener would hear: they end with rests, long notes, slurs and
/// repeats, have half a bar to eight bars, and cover the whole piece.
[[nodiscard]] std::vector<Stretch> phrasesOf(const WrittenPiece &piece);

} // namespace kelo::engine
