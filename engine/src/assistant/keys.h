#pragma once

#include "listen/action.h"
#include "protocol/input.h"

#include <array>
#include <optional>
#include <string_view>

namespace kelo::engine {

/// What a key of the computer keyboard asks for in a mode; nothing where it has no meaning.
[[nodiscard]] std::optional<Action> actionFor(Key pressed, std::string_view mode);

/// What a command line of one word asks for: "metronome", "hands" and the like.
[[nodiscard]] std::optional<Action> actionFor(std::string_view command);

/// What the ten command keys of the piano do in a mode, as the display's legend has it.
[[nodiscard]] const std::array<Action, 10> &commandKeyActions(std::string_view mode);

} // namespace kelo::engine
