#pragma once

#include "assistant/modes.h"
#include "setup/profile.h"

#include <string>
#include <string_view>

namespace kelo::engine {

/// What can be done in a mode, in a few sentences.
[[nodiscard]] std::string_view helpFor(Mode mode);

/// A few things to say in a mode.
[[nodiscard]] std::string suggestionsFor(Mode mode, std::string_view assistantName);

/// A kind and honest answer to what the engine can't do; empty for what it can.
[[nodiscard]] std::string_view refusalOf(Action action);

/// "It is 14:05." and "It is Friday, the 7th of March."
[[nodiscard]] std::string timeInWords(int hour, int minute);
[[nodiscard]] std::string dateInWords(const Day &today);

} // namespace kelo::engine
