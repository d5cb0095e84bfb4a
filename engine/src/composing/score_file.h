#pragma once

#include "composing/score.h"

#include <optional>
#include <string>
#include <string_view>

namespace kelo::engine {

/// A theme (its first part) as JSON, so that an unfinished composition outlives the engine.
[[nodiscard]] std::string themeToJson(const Score &theme);

/// The theme that such a text holds; nothing where it cannot be understood.
[[nodiscard]] std::optional<Score> themeFromJson(std::string_view text);

} // namespace kelo::engine
