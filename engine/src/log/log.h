#pragma once

#include <string_view>

namespace kelo::engine {

enum class LogLevel { Debug, Info, Warning, Error };

/// Writes one line to standard error, "kelo-engine: warning: sound: no server answers". `room` says
/// whose it is. Lines below the level that is wanted are left out; any thread may call it.
void log(LogLevel level, std::string_view room, std::string_view text);

/// What is wanted: "debug", "info" (where nothing else is understood), "warning" or "error".
void setLogLevel(std::string_view name);

} // namespace kelo::engine
