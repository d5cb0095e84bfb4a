#pragma once

#include "listen/understanding.h"

#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace kelo::engine {

/// A song that was named.
struct SongFound {
    std::size_t song;
    std::vector<bool> named; ///< the words that name it
    std::optional<std::size_t> other{}; ///< another that they name no less
};

/// The song of whose title the greatest part was said, at least half, or whose composer was
/// named. Where several are named alike two are given, or none where it is less than the whole
/// name of more than two.
[[nodiscard]] std::optional<SongFound> songIn(
    std::span<const Word> words, std::span<const SongName> songs, Spoken how);

/// Said without changing what is meant.
[[nodiscard]] bool isCourtesy(std::string_view word);

} // namespace kelo::engine
