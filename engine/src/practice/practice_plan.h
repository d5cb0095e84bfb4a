#pragma once

#include "practice/spacing.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kelo::engine {

/// Bars to practise together.
struct Assignment {
    std::string piece{};
    int first = 1;
    int last = 1;
    Hands hands = Hands::Both;
    int wrong = 0; ///< keys, the last time
    int days = 0; ///< since then

    friend bool operator==(const Assignment &, const Assignment &) = default;
};

/// What to practise on a day.
struct PracticePlan {
    std::vector<Assignment> weakest{}; ///< the weakest first; what is not due is left out
    std::optional<Assignment> untouched{}; ///< of the piece that was left alone for longest
    std::string known{}; ///< the piece that goes best; empty for none
};

/// `pieces`: those that are there. What is sure is asked for again when it is due only.
[[nodiscard]] PracticePlan planFor(const std::vector<KnownBar> &bars, std::chrono::local_days today,
    const std::set<std::string> &pieces);

/// What the last seven days came to.
struct PracticeWeek {
    int days = 0; ///< on which something was practised
    int bars = 0; ///< played, each time counted
    int clean = 0; ///< percent of them without a wrong key
    int cleanBefore = -1; ///< the same of the seven days before; below 0 where nothing was played
    int sure = 0; ///< bars that went well the last time, of all that were ever practised
    int known = 0; ///< all of those
};

[[nodiscard]] PracticeWeek weekUntil(std::chrono::local_days today,
    std::span<const PlayedBar> played, const std::vector<KnownBar> &bars);

} // namespace kelo::engine
