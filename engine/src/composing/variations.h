#pragma once

#include "composing/score.h"

#include <string_view>

namespace kelo::engine {

/// How many ways to vary a theme there are; they come round again.
inline constexpr int variationCount = 5;

/// The theme with another melody over the same harmony, bar by bar: `which` from 0 on.
[[nodiscard]] Score variationOf(const Score &theme, int which);

/// What that variation does: "with passing notes".
[[nodiscard]] std::string_view variationName(int which);

} // namespace kelo::engine
