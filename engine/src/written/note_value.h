#pragma once

#include "music/piece.h"

#include <string>

namespace kelo::engine {

/// A note value: 4 a quarter, with its dots; three in the time of two where `triplet`. `value` 0
/// where no single one is as long.
struct NoteValue {
    int value = 0;
    int dots = 0;
    bool triplet = false;

    friend bool operator==(const NoteValue &, const NoteValue &) = default;
};

/// The value of a length in parts of a quarter.
[[nodiscard]] NoteValue valueOf(int length);

/// The length of the value that is nearest, as a ratio.
[[nodiscard]] int nearestValue(double length);

/// "dotted quarter", "triplet eighth"; "2 and a half beats" where no value is as long, a beat being
/// `beat` parts of a quarter.
[[nodiscard]] std::string nameOf(int length, int beat);

/// How a key is written: 0 is C, 6 is B, and above 0 sharps.
struct Spelt {
    int step = 0;
    int alter = 0;
};
[[nodiscard]] Spelt spelt(int pitch, Spelling spelling);

} // namespace kelo::engine
