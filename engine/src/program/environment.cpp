#include "program/environment.h"

#include "songs/library.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <system_error>
#include <utility>

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
    if (std::string chosen = setting("KELO_SOUNDFONT"); !chosen.empty())
        return {std::move(chosen)};
    return {"/usr/share/sounds/sf2/default-GM.sf2", "/usr/share/sounds/sf2/TimGM6mb.sf2",
        "/usr/share/sounds/sf2/FluidR3_GM.sf2", "/usr/share/sounds/sf3/default-GM.sf3",
        "/app/share/sounds/sf2/TimGM6mb.sf2"}; // in a Flatpak
}

std::filesystem::path homeFolder()
{
    if (const std::string chosen = setting("KELO_HOME"); !chosen.empty())
        return chosen;
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

std::filesystem::path DataFolder::downloads() const
{
    return downloadFolder(scratch_ ? path_ : std::filesystem::path(setting("HOME")));
}

bool openWithDesktop(const std::filesystem::path &page)
{
    std::string program = "xdg-open";
    std::string file = page.string();
    const std::array<char *, 3> arguments{program.data(), file.data(), nullptr};
    // It neither reads what the display sends nor ignores the signals that the engine ignores.
    posix_spawn_file_actions_t files{};
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    sigset_t ignored{};
    sigemptyset(&ignored);
    sigaddset(&ignored, SIGCHLD);
    sigaddset(&ignored, SIGPIPE);
    sigaddset(&ignored, SIGXFSZ);
    posix_spawnattr_t usual{};
    posix_spawnattr_init(&usual);
    posix_spawnattr_setsigdefault(&usual, &ignored);
    posix_spawnattr_setflags(&usual, POSIX_SPAWN_SETSIGDEF);
    pid_t child = 0;
    const int error =
        posix_spawnp(&child, program.c_str(), &files, &usual, arguments.data(), environ);
    posix_spawnattr_destroy(&usual);
    posix_spawn_file_actions_destroy(&files);
    return error == 0;
}

} // namespace kelo::engine
