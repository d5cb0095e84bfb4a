#pragma once

#include <optional>
#include <string>

namespace kelo::engine {

/// What a teacher wants done, in this order: flash, say the words, play the example.
struct Reply {
    std::optional<bool> good{}; ///< flash that it was right, or wrong
    std::string words{};
    bool demo = false; ///< the teacher's `demo` is to be played
    bool over = false; ///< there is nothing left to do
};

} // namespace kelo::engine
