#pragma once

#include "music/written.h"

#include <vector>

namespace kelo::engine {

/// Notes of one hand that begin and end together, or one grace note.
struct Event {
    int at = 0;
    int length = 0;
    std::vector<const WrittenNote *> notes{};
    bool grace = false;
    int slur = 0; ///< signs of a slur that goes on: 2 where one of more than four notes begins
};

/// Events of a bar that follow each other, as one voice does.
struct Layer {
    int part = 0;
    int voice = 0;
    std::vector<Event> events{};
};

/// The layers of a hand in each bar, the outer ones first: from above for the right hand, from
/// below for the left one. Bars in which the hand rests have none.
[[nodiscard]] std::vector<std::vector<Layer>> layersOf(const WrittenPiece &piece, Hands hand);

} // namespace kelo::engine
