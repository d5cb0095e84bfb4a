#pragma once

#include "composing/score.h"

#include <cstddef>
#include <string_view>

namespace kelo::engine {

/// A composing idea: what it is, and what it does to a theme.
struct Device {
    std::string_view name;
    std::string_view lesson; ///< in a sentence or two
    Score (*apply)(const Score &theme);
};

inline constexpr std::size_t deviceCount = 8;

/// The ideas, from easy to hard; `which` goes round.
[[nodiscard]] const Device &deviceAt(std::size_t which);

} // namespace kelo::engine
