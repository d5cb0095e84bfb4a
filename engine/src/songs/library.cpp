#include "songs/library.h"

#include "protocol/text.h"
#include "songs/shipped.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>

namespace kelo::engine {

namespace {

constexpr std::uintmax_t largestMidiFile = 8 << 20;

std::string lowered(std::string text)
{
    std::ranges::transform(
        text, text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string titleOf(const std::filesystem::path &file)
{
    std::string title = oneLine(file.stem().string());
    std::ranges::replace(title, '_', ' ');
    return title;
}

} // namespace

Library::Library(std::filesystem::path folder)
    : folder_(std::move(folder))
{
    refresh();
}

void Library::refresh()
{
    names_.clear();
    files_.clear();
    for (const Sheet &sheet : shippedSongs())
        names_.push_back({sheet.title, sheet.composer});
    std::error_code error;
    for (auto it = std::filesystem::directory_iterator(folder_, error);
         !error && it != std::filesystem::directory_iterator() && files_.size() < mostFiles;
         it.increment(error)) {
        const std::string kind = lowered(it->path().extension().string());
        std::error_code unreadable;
        if ((kind == ".mid" || kind == ".midi") && it->is_regular_file(unreadable))
            files_.push_back(it->path());
    }
    std::ranges::sort(files_, {},
        [](const std::filesystem::path &file) { return lowered(file.stem().string()); });
    for (const auto &file : files_)
        names_.push_back({titleOf(file), {}});
}

std::size_t Library::firstFile() const
{
    return shippedSongs().size();
}

std::variant<Piece, MidiFault> Library::load(std::size_t song) const
{
    const std::size_t shipped = shippedSongs().size();
    if (song >= size())
        return MidiFault::Empty;
    if (song >= shipped)
        return loadMidiFile(files_[song - shipped]);
    if (auto piece = readSheet(shippedSongs()[song]))
        return std::move(*piece);
    return MidiFault::Empty;
}

std::variant<Piece, MidiFault> loadMidiFile(
    const std::filesystem::path &path, MidiProgress *progress)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)
        || std::filesystem::file_size(path, error) > largestMidiFile)
        return MidiFault::NotMidi;
    std::ifstream file(path, std::ios::binary);
    std::vector<std::uint8_t> bytes(std::filesystem::file_size(path, error));
    file.read(reinterpret_cast<char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return readMidiFile(bytes, progress);
}

std::filesystem::path songsFolder(const std::filesystem::path &home)
{
    constexpr std::string_view entry = "XDG_MUSIC_DIR=\"";
    constexpr std::string_view inHome = "$HOME/";
    std::filesystem::path music = home / "Music";
    std::ifstream settings(home / ".config" / "user-dirs.dirs");
    for (std::string line; std::getline(settings, line);) {
        if (!line.starts_with(entry) || line.size() <= entry.size() || line.back() != '"')
            continue;
        const std::string value = line.substr(entry.size(), line.size() - entry.size() - 1);
        if (value.starts_with(inHome))
            music = home / value.substr(inHome.size());
        else if (value.starts_with('/'))
            music = value;
    }
    return music / "Kelo Songs";
}

} // namespace kelo::engine
