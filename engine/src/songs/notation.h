#pragma once

#include "music/piece.h"

#include <optional>
#include <string>
#include <vector>

namespace kelo::engine {

/// A piece of piano music as it is entered by hand: what each hand plays, voice by voice.
///
/// A note is its letter, "#" or "b", and its octave, where c4 is the middle of the keyboard:
/// "f#4", "bb3". "+" joins the notes of a chord. "/" gives the length, "/4" a quarter, "/2." a
/// dotted half, which then holds until the next one. "r" is a rest, "~" ties a note to the
/// next of its pitch, "|" closes a bar.
struct Sheet {
    std::string title{};
    std::string composer{};
    int beats = 4; ///< of the time signature
    int beatLength = 4; ///< 4 is a quarter, 8 an eighth
    int tempo = 100; ///< quarters a minute
    int upbeat = 0; ///< in sixteenths
    Spelling spelling = Spelling::Sharps;
    std::vector<std::string> right{};
    std::vector<std::string> left{};
};

/// The music of a sheet: the right hand is track 0, the left hand track 1. Nothing where a note
/// cannot be read, a bar has the wrong length or the voices differ in theirs.
[[nodiscard]] std::optional<Piece> readSheet(const Sheet &sheet);

} // namespace kelo::engine
