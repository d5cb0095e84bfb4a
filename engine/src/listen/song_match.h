#pragma once

#include "listen/phrases.h"

#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace kelo::engine {

/// A song that was named.
struct SongFound {
    std::size_t song;
    std::vector<bool> named; ///< the words that name it
};

/// The song of whose title the greatest part was said, at least half; or that is the only one
/// of its composer.
[[nodiscard]] std::optional<SongFound> songIn(
    std::span<const Word> words, std::span<const SongName> songs, Spoken how);

/// Said without changing what is meant.
[[nodiscard]] bool isCourtesy(std::string_view word);

} // namespace kelo::engine
