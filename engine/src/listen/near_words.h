#pragma once

#include "listen/understanding.h"

#include <span>
#include <vector>

namespace kelo::engine {

/// `words` with those that belong to no phrase and no song replaced by what they sound like:
/// "reap eat" is "repeat", "metro gnome" the metronome. What sounds like nothing stays.
[[nodiscard]] std::vector<Word> nearWords(
    std::span<const Word> words, std::span<const SongName> songs);

} // namespace kelo::engine
