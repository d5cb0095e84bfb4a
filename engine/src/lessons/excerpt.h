#pragma once

#include "music/hands.h"
#include "music/piece.h"
#include "written/phrases.h"

#include <string>
#include <vector>

namespace kelo::engine {

/// How a note is written besides.
struct WrittenTouch {
    int velocity = 80;
    double until = 0; ///< seconds from the piece's beginning
};

/// Keys that are pressed together.
struct Step {
    double at = 0; ///< seconds from the piece's beginning
    std::vector<int> pitches; ///< ascending, each once
    std::vector<Hands> hands{}; ///< of each pitch, where both hands play
    std::vector<int> ornaments{}; ///< may sound with it or not: grace notes, a trill's neighbours
    int bar = 0; ///< as it is printed; 0 where there are no bars
    int beat = 0; ///< from 1; 0 in an upbeat
    double beatAt = 0; ///< seconds where that beat begins
    std::vector<WrittenTouch> tones{}; ///< one a pitch
};

/// What is learnt at a time: a phrase of one hand or both.
struct Excerpt {
    double from = 0; ///< seconds from the piece's beginning
    double to = 0;
    int firstBar = 0; ///< as it is printed; an upbeat belongs to the bar that it leads to
    int lastBar = 0;
    Hands hands = Hands::Both;
    std::vector<Step> steps; ///< at least one
    bool joined = false; ///< phrases that were learnt one by one before
    int fromBeat = 0; ///< where it begins within its first bar; 0 at a bar's beginning or before it
    bool upbeat = false; ///< it begins before its first bar
    Stretch written{}; ///< the same as the piece is written
};

/// What hands play from one time of a piece to another, in seconds.
[[nodiscard]] std::vector<Step> stepsOf(const Piece &piece, Hands hands, double from, double to);

/// "Bar five, beat two" for one of the steps, or "The third note" of what has no bars.
[[nodiscard]] std::string placeOf(const std::vector<Step> &steps, std::size_t index);

/// The way through a piece for `hands`, phrase by phrase, as cadences, rests and repeats part them,
/// none longer than one keeps in mind: for both hands each phrase comes with the right hand alone,
/// the left hand alone, then together. Phrases without notes are left out. Two phrases are joined
/// when both are known, then four, and so on to the whole piece.
[[nodiscard]] std::vector<Excerpt> excerptsOf(const Piece &piece, Hands hands);

/// An excerpt as a piece of its own that begins at 0; what the hands hold ends with it.
[[nodiscard]] Piece pieceOf(const Excerpt &excerpt, const Piece &whole);

} // namespace kelo::engine
