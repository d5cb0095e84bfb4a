#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace kelo::engine {

/// A file of instruments, and what people call it.
struct Soundfont {
    std::string name;
    std::filesystem::path file;
};

/// The soundfonts (SF2 and SF3) that lie in these folders, best first: those known to be good,
/// then by size. A file that has several names is there once. At most `mostSoundfonts`.
[[nodiscard]] std::vector<Soundfont> findSoundfonts(std::span<const std::filesystem::path> folders);

inline constexpr std::size_t mostSoundfonts = 50;

/// Where desktops and distributions install them; `home` is the user's own folder.
[[nodiscard]] std::vector<std::filesystem::path> soundfontFolders(
    const std::filesystem::path &home);

} // namespace kelo::engine
