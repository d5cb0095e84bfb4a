#pragma once

#include "music/piece.h"
#include "theory/tonality.h"

#include <array>
#include <chrono>
#include <string>

namespace kelo::engine {

/// The fingers of a scale of one octave, upwards, as the usual tables of fingerings have them;
/// downwards they go back the same way. Minor is harmonic minor.
[[nodiscard]] const std::array<int, 8> &scaleFingers(const Tonality &key, Hands hand);

/// A scale of one octave up and down in eighths, with its fingers; both hands are an octave apart.
[[nodiscard]] Piece scaleOf(const Tonality &key, Hands hands);

/// The broken chord of the tonic over one octave, up and down.
[[nodiscard]] Piece arpeggioOf(const Tonality &key, Hands hands);

/// Tonic, subdominant, dominant seventh and tonic: the right hand has the chords close together,
/// the left one their roots.
[[nodiscard]] Piece cadenceOf(const Tonality &key, Hands hands);

inline constexpr int fingerPatterns = 3;

/// A pattern for five fingers that climbs the scale over an octave, one of `fingerPatterns`, from 0
/// on: such as C.-L. Hanon's "Le pianiste virtuose" (1873) begins with.
[[nodiscard]] Piece patternOf(const Tonality &key, Hands hands, int which);

/// The key that has its turn on a day: by a fifth a day, and each third day a minor one.
[[nodiscard]] Tonality keyOfDay(std::chrono::local_days day);

/// The fingers of the first bar: "Right hand: one, two, three, four, five, four, three, two."
[[nodiscard]] std::string fingersOfBar(const Piece &exercise);

/// The fingers on the way up: "Right hand: one, two, three, one, two, three, four, five."
[[nodiscard]] std::string fingersInWords(const Piece &exercise);

} // namespace kelo::engine
