#pragma once

#include "music/piece.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace kelo::engine {

/// A lesson of the jazz course: an idea to be heard, played in three keys and tried over a band.
struct JazzLesson {
    std::string_view title;
    std::string_view idea; ///< in a sentence or two
    std::string_view notes; ///< to be played, in C, in the notation of sheets; four quarters a bar
    std::string_view chords; ///< of the band, a bar each: "Dm7 G7 C C"
};

inline constexpr std::size_t jazzLessonCount = 13;

[[nodiscard]] const JazzLesson &jazzLesson(std::size_t number);

/// The keys that each lesson is played in: semitones above C.
inline constexpr std::array<int, 3> jazzKeys{0, 5, -2};

/// What is to be played.
[[nodiscard]] Piece jazzExample(const JazzLesson &lesson, int semitones);

} // namespace kelo::engine
