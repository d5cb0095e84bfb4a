#pragma once

#include "braille/cells.h"
#include "music/written.h"

#include <vector>

namespace kelo::engine {

/// A note, a chord or a rest with all that belongs to it, in braille music.
struct BrailleSign {
    Cells before{}; ///< what comes before the octave mark, an accidental for one
    Cells octave{}; ///< its octave mark; empty where it can have none
    bool marked = false; ///< the mark is written wherever the sign stands
    Cells after{}; ///< the note and what follows it
};

/// Signs of one hand that stand without a space between them.
using BrailleBar = std::vector<BrailleSign>;

/// A hand's part in braille music, bar by bar, in the basic signs of the code that the World Blind
/// Union agreed on ("New International Manual of Braille Music Notation", 1996) and that BANA's
/// "Music Braille Code" has, too: notes, rests and octave marks (Table 1), accidentals (3),
/// triplets and the like (4), intervals and in-accords (5), slurs and ties (6), fingers (8), bar
/// lines and repeats (9), staccato (10), grace notes and trills (11). What else a score has is left
/// out.
[[nodiscard]] std::vector<BrailleBar> brailleBars(const WrittenPiece &piece, Hands hand);

/// The first sign of a line has its octave mark.
[[nodiscard]] Cells cellsOf(const BrailleBar &bar, bool opensLine);

/// Key and time signatures, as before the first bar.
[[nodiscard]] Cells signatureOf(const WrittenBar &bar);

/// The sign that says whose part follows, ready to stand before `next` (Table 15 A; a dot 3 comes
/// between where `next` has dots on its left, rule 15-3).
[[nodiscard]] Cells handSign(Hands hand, const Cells &next);

} // namespace kelo::engine
