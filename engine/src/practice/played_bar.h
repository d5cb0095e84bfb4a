#pragma once

#include "music/hands.h"

#include <chrono>
#include <map>
#include <string>
#include <vector>

namespace kelo::engine {

/// A bar that was played once, by itself or within a phrase.
struct PlayedBar {
    std::chrono::local_seconds at{};
    std::string piece{};
    int bar = 1; ///< as it is printed
    Hands hands = Hands::Both;
    int wrong = 0; ///< keys
    int tempo = 0; ///< percent of what is written; 0 where nothing tells

    friend bool operator==(const PlayedBar &, const PlayedBar &) = default;
};

/// Some bars that were played one after the other.
struct PlayedPart {
    int first = 1;
    int last = 1;
    Hands hands = Hands::Both;
    std::map<int, int> wrong{}; ///< keys, by bar
    int tempo = 0;
    bool whole = true; ///< to its end; else only what was wrong tells anything
};

/// Each bar of it. Wrong keys at no bar of the part count for its first one.
[[nodiscard]] std::vector<PlayedBar> barsOf(
    const PlayedPart &part, const std::string &piece, std::chrono::local_seconds at);

} // namespace kelo::engine
