#pragma once

#include "assistant/modes.h"
#include "protocol/input.h"

#include <optional>
#include <string_view>

namespace kelo::engine {

/// What a key of the computer keyboard asks for; nothing where it has no meaning.
[[nodiscard]] std::optional<Action> actionFor(Key pressed, Mode mode);

/// What a command line of one word asks for: "metronome", "hands" and the like.
[[nodiscard]] std::optional<Action> actionFor(std::string_view command);

} // namespace kelo::engine
