#pragma once

#include "music/piece.h"

#include <array>
#include <span>
#include <string>

namespace kelo::engine {

/// A major or minor key.
struct Tonality {
    int tonic = 0; ///< 0 is C
    bool minor = false;

    friend bool operator==(const Tonality &, const Tonality &) = default;
};

/// How long each of the twelve pitch classes sounds.
using PitchClassWeights = std::array<double, 12>;

/// The key whose scale explains the weights best; C major where there are none.
[[nodiscard]] Tonality tonalityOf(const PitchClassWeights &weights);
[[nodiscard]] Tonality tonalityOf(std::span<const Note> notes);

/// Sharps of the key signature, below 0 flats: G major has 1, D minor -1.
[[nodiscard]] int sharpsOf(const Tonality &key);
[[nodiscard]] Spelling spellingOf(const Tonality &key);

/// "G major".
[[nodiscard]] std::string nameOf(const Tonality &key);

/// The semitones above the tonic of degree 0 to 6, and of those above and below: degree 7 is 12,
/// -1 is a step below the tonic. Minor is natural minor.
[[nodiscard]] int semitonesOf(const Tonality &key, int degree);

/// The pitch of a scale degree, where degree 0 is the tonic in the octave from middle C on.
[[nodiscard]] int pitchOf(const Tonality &key, int degree);

/// The nearest degree at or below a pitch: the inverse of `pitchOf` for notes of the scale.
[[nodiscard]] int degreeOf(const Tonality &key, int pitch);

} // namespace kelo::engine
