#pragma once

#include "sound/soundfonts.h"

#include <filesystem>
#include <string>
#include <vector>

namespace kelo::engine {

/// A variable of the environment; empty where it is not set.
[[nodiscard]] std::string setting(const char *name);

/// The soundfonts that may be played: KELO_SOUNDFONT alone where it is set, or what is installed.
[[nodiscard]] std::vector<Soundfont> soundfonts();

/// The one to begin with: what the system has chosen as its own, or the smallest good one.
[[nodiscard]] std::vector<std::string> firstSoundfonts();

/// Where the engine keeps its files.
[[nodiscard]] std::filesystem::path homeFolder();

/// Whether what is written to that folder lasts: it can be made and takes files, and it isn't the
/// display's makeshift, which goes when the user logs out.
[[nodiscard]] bool keepsFiles(const std::filesystem::path &folder);

/// The folder with the engine's files: the user's, or an empty one that is gone with this.
class DataFolder {
public:
    explicit DataFolder(bool scratch);
    ~DataFolder();
    DataFolder(const DataFolder &) = delete;
    DataFolder &operator=(const DataFolder &) = delete;

    [[nodiscard]] const std::filesystem::path &path() const { return path_; }
    /// The folder with songs that belongs to it.
    [[nodiscard]] std::filesystem::path songs() const;
    /// Where files that were downloaded are found.
    [[nodiscard]] std::filesystem::path downloads() const;

private:
    bool scratch_;
    std::filesystem::path path_;
};

/// Shows a page with whatever the desktop has for it. False where it has nothing.
bool openWithDesktop(const std::filesystem::path &page);

} // namespace kelo::engine
