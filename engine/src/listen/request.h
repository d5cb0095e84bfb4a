#pragma once

#include "composing/mood.h"
#include "listen/action.h"
#include "music/hands.h"
#include "theory/metre.h"
#include "theory/tonality.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace kelo::engine {

/// Bars of a piece, counted from 1, both included.
struct BarRange {
    int first = 1;
    int last = 1;

    friend bool operator==(const BarRange &, const BarRange &) = default;
};

/// What was asked for, with all that was said about it.
struct Request {
    Action action{};
    std::optional<int> number{};
    std::optional<std::size_t> song{}; ///< its place among the songs
    std::optional<bool> on{};
    std::optional<Hands> hands{};
    std::optional<BarRange> bars{};
    std::optional<Metre> metre{};
    std::optional<int> parts{}; ///< into which each beat is divided
    std::optional<int> pitch{};
    std::optional<Tonality> key{};
    std::optional<Mood> mood{};
    std::optional<std::string_view> microphone{}; ///< in the word that the display knows
    std::optional<std::size_t> other{}; ///< a song that was named no less than `song`
    bool whole = true; ///< nothing was said that this does not explain

    friend bool operator==(const Request &, const Request &) = default;
};

} // namespace kelo::engine
