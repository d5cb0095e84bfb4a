#pragma once

#include "music/piece.h"

#include <vector>

namespace kelo::engine {

/// How two hands share notes.
struct Division {
    std::vector<Hands> hands; ///< of each note
    std::vector<double>
        margins; ///< how much harder it would all be with that note in the other one
};

/// Two hands that share what one track has: for each moment it finds how many of the lowest notes
/// are the left hand's. Each way through is judged by what the hands would have to reach and how
/// far they would move, and the cheapest one is taken (Viterbi). Where another way costs hardly
/// more, nothing tells whose a note is. `notes` in the order of time.
[[nodiscard]] Division divideBetweenHands(const std::vector<const Note *> &notes);

} // namespace kelo::engine
