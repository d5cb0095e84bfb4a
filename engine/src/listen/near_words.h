#pragma once

#include "listen/understanding.h"

#include <span>
#include <string>
#include <vector>

namespace kelo::engine {

/// `words` with those that belong to no phrase and no song replaced by what they sound like:
/// "reap eat" is "repeat", "metro gnome" the metronome. What sounds like nothing stays.
[[nodiscard]] std::vector<Word> nearWords(
    std::span<const Word> words, std::span<const SongName> songs);

/// The sounds of all words in a row, as if they were one.
[[nodiscard]] std::string soundsOfWords(std::span<const Word> words);

/// As good as the same sounds: nobody would say anything so long that only sounds so.
[[nodiscard]] bool soundTheSame(std::span<const Word> words, std::span<const Word> others);

} // namespace kelo::engine
