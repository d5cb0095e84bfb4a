#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kelo::engine {

/// A variable of the environment; empty where it is not set.
[[nodiscard]] std::string setting(const char *name);

/// Soundfonts that may be there, best first: KELO_SOUNDFONT alone where it is set, or what Debian
/// installs.
[[nodiscard]] std::vector<std::string> soundfonts();

/// Where the engine keeps its files.
[[nodiscard]] std::filesystem::path homeFolder();

/// Shows a page with whatever the desktop has for it. False where it has nothing.
bool openWithDesktop(const std::filesystem::path &page);

} // namespace kelo::engine
