#include "program/environment.h"

#include "songs/library.h"

#include <spawn.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <system_error>

namespace kelo::engine {

std::string setting(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : "";
}

std::vector<Soundfont> soundfonts()
{
    if (const std::filesystem::path chosen = setting("KELO_SOUNDFONT"); !chosen.empty())
        return {{chosen.stem().string(), chosen}};
    return findSoundfonts(soundfontFolders(setting("HOME")));
}

std::vector<std::string> firstSoundfonts()
{
    if (std::getenv("KELO_SOUNDFONT"))
        return {setting("KELO_SOUNDFONT")};
    return {"/usr/share/sounds/sf2/default-GM.sf2", "/usr/share/sounds/sf2/TimGM6mb.sf2",
        "/usr/share/sounds/sf2/FluidR3_GM.sf2", "/usr/share/sounds/sf3/default-GM.sf3"};
}

std::filesystem::path homeFolder()
{
    if (std::getenv("KELO_HOME"))
        return setting("KELO_HOME");
    return std::filesystem::path(setting("HOME")) / ".local" / "share" / "Kelo";
}

bool keepsFiles(const std::filesystem::path &folder)
{
    if (folder == std::filesystem::path(setting("XDG_RUNTIME_DIR")) / "Kelo")
        return false;
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    std::string name = (folder / "trial-XXXXXX").string();
    const int file = mkstemp(name.data());
    if (file < 0)
        return false;
    constexpr std::array<char, 4096> page{}; // which a full disk may not have
    const bool written = write(file, page.data(), page.size()) == std::ssize(page);
    close(file);
    unlink(name.c_str());
    return written;
}

DataFolder::DataFolder(bool scratch)
    : scratch_(scratch)
    , path_(homeFolder())
{
    std::error_code error;
    std::string name = (std::filesystem::temp_directory_path(error) / "kelo-XXXXXX").string();
    if (scratch_ && (scratch_ = mkdtemp(name.data()) != nullptr))
        path_ = name;
}

DataFolder::~DataFolder()
{
    std::error_code error;
    if (scratch_)
        std::filesystem::remove_all(path_, error);
}

std::filesystem::path DataFolder::songs() const
{
    return songsFolder(scratch_ ? path_ : std::filesystem::path(setting("HOME")));
}

bool openWithDesktop(const std::filesystem::path &page)
{
    std::string program = "xdg-open";
    std::string file = page.string();
    const std::array<char *, 3> arguments{program.data(), file.data(), nullptr};
    pid_t child = 0;
    return posix_spawnp(&child, program.c_str(), nullptr, nullptr, arguments.data(), environ) == 0;
}

} // namespace kelo::engine
