#pragma once

#include "listen/jobs.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace kelo::engine {

enum class Mode : std::uint8_t { Idle, Menu, Teach, Ear, Talk };

/// How the display knows it.
[[nodiscard]] std::string_view nameOf(Mode mode);

/// Its bit of Where.
[[nodiscard]] unsigned whereOf(Mode mode);

/// What the ten command keys of the piano do in a mode, as the display's legend has it.
[[nodiscard]] std::array<Action, 10> commandKeyActions(Mode mode);

} // namespace kelo::engine
