#pragma once

#include "practice/played_bar.h"

#include <chrono>
#include <span>
#include <string>
#include <vector>

namespace kelo::engine {

/// How well a bar of a piece is known with a hand, and when it is to be played again.
///
/// The days between follow the algorithm SM-2 (P. A. Woźniak, "Optimization of learning", 1990,
/// chapter 3.2): 1 day, 6 days, then each time as many more as the bar is easy; what was not
/// remembered begins anew. The first time of a day is what was remembered; the other times of that
/// day are the practice that SM-2 asks for at its end, and change no date.
struct KnownBar {
    std::string piece{};
    int bar = 1;
    Hands hands = Hands::Both;
    int grade = 0; ///< of the last day, 0 to 5 as SM-2 has it; below 3 is not remembered
    int repetitions = 0; ///< days in a row on which it was remembered
    double ease = 2.5;
    std::chrono::local_days last{};
    std::chrono::local_days due{};
    int wrong = 0; ///< keys, the last time
    int tempo = 0; ///< percent, the last time that it was told

    /// It went well on the last day.
    [[nodiscard]] bool sure() const { return grade >= 4; }
};

/// The grade of a bar that was played: 5 without a wrong key and up to tempo, 4 slower, 3 with one
/// wrong key, 2 with two, 1 with more.
[[nodiscard]] int gradeOf(const PlayedBar &played);

/// What is known of each bar of each piece, by piece, hands and bar. `played` is in the order of
/// time.
[[nodiscard]] std::vector<KnownBar> knownBars(std::span<const PlayedBar> played);

} // namespace kelo::engine
