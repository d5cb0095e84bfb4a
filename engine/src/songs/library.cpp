#include "songs/library.h"

#include "protocol/text.h"
#include "songs/shipped.h"
#include "written/music_xml_reader.h"
#include "written/performance.h"
#include "written/score_package.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <span>
#include <string_view>
#include <system_error>

namespace kelo::engine {

namespace {

constexpr std::uintmax_t largestMidiFile = 8 << 20;
constexpr std::array<std::string_view, 2> midiKinds{".mid", ".midi"};
constexpr std::array<std::string_view, 2> scoreKinds{".musicxml", ".mxl"};

bool isOneOf(const std::filesystem::path &file, std::span<const std::string_view> kinds)
{
    return std::ranges::find(kinds, lowered(file.extension().string())) != kinds.end();
}

bool isMusic(const std::filesystem::path &file)
{
    return isOneOf(file, midiKinds) || isOneOf(file, scoreKinds);
}

std::string titleOf(const std::filesystem::path &file)
{
    std::string title = oneLine(file.stem().string());
    std::ranges::replace(title, '_', ' ');
    return title;
}

/// What is there as MIDI and as a score is one piece, and the score tells more of it.
void dropTwins(std::vector<std::filesystem::path> &files)
{
    std::set<std::filesystem::path> scores;
    for (const auto &file : files) {
        if (isOneOf(file, scoreKinds))
            scores.insert(file.stem());
    }
    std::erase_if(files,
        [&](const auto &file) { return isOneOf(file, midiKinds) && scores.contains(file.stem()); });
}

/// XML in whatever encoding begins with "<", after a mark of the encoding or without one.
bool looksLikeXml(std::span<const std::uint8_t> bytes)
{
    constexpr std::size_t markAndSpace = 16;
    const auto begin = bytes.first(std::min(bytes.size(), markAndSpace));
    return std::ranges::find(begin, '<') != begin.end();
}

std::vector<std::uint8_t> bytesOf(const MidiSource &source, std::size_t most)
{
    std::vector<std::uint8_t> bytes(most);
    bytes.resize(source.read(0, bytes));
    return bytes;
}

std::variant<Piece, ReadFault> pieceFrom(std::variant<WrittenPiece, ReadFault> read)
{
    if (const auto *fault = std::get_if<ReadFault>(&read))
        return *fault;
    return performed(std::make_shared<const WrittenPiece>(std::move(std::get<WrittenPiece>(read))),
        Repeats::Played);
}

/// A folder of the user's as the desktop's settings name it.
std::filesystem::path userFolder(
    const std::filesystem::path &home, std::string_view variable, std::string_view usual)
{
    const std::string entry = std::string(variable) + "=\"";
    constexpr std::string_view inHome = "$HOME/";
    std::filesystem::path folder = home / usual;
    std::ifstream settings(home / ".config" / "user-dirs.dirs");
    for (std::string line; std::getline(settings, line);) {
        if (!line.starts_with(entry) || line.size() <= entry.size() || line.back() != '"')
            continue;
        const std::string value = line.substr(entry.size(), line.size() - entry.size() - 1);
        if (value.starts_with(inHome))
            folder = home / value.substr(inHome.size());
        else if (value.starts_with('/'))
            folder = value;
    }
    return folder;
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
        std::error_code unreadable;
        if (isMusic(it->path()) && it->is_regular_file(unreadable))
            files_.push_back(it->path());
    }
    dropTwins(files_);
    std::ranges::sort(files_, {},
        [](const std::filesystem::path &file) { return lowered(file.stem().string()); });
    for (const auto &file : files_)
        names_.push_back({titleOf(file), {}});
}

std::size_t Library::firstFile() const
{
    return shippedSongs().size();
}

std::variant<Piece, ReadFault> Library::load(std::size_t song) const
{
    const std::size_t shipped = firstFile();
    if (song >= size())
        return ReadFault::Empty;
    if (song >= shipped)
        return loadPiece(files_[song - shipped]);
    if (auto piece = readSheet(shippedSongs()[song]))
        return std::move(*piece);
    return ReadFault::Empty;
}

std::variant<Piece, ReadFault> loadPiece(const std::filesystem::path &path, MidiProgress *progress)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return ReadFault::Unknown;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error || size > largestScore)
        return error ? ReadFault::Unknown : ReadFault::TooLarge;
    std::ifstream file;
    file.rdbuf()->pubsetbuf(nullptr, 0); // who reads it reads ahead
    file.open(path, std::ios::binary);
    const MidiFileBytes source(file, size);
    if (looksLikeMidi(bytesOf(source, 4)))
        return size > largestMidiFile ? ReadFault::TooLarge : readMidiFile(source, progress);
    std::vector<std::uint8_t> bytes = bytesOf(source, size);
    if (isPackage(bytes)) {
        auto unpacked = unpackScore(bytes);
        if (const auto *fault = std::get_if<ReadFault>(&unpacked))
            return *fault;
        bytes = std::move(std::get<std::vector<std::uint8_t>>(unpacked));
    } else if (!looksLikeXml(bytes)) {
        return ReadFault::Unknown;
    }
    return pieceFrom(readMusicXml(bytes));
}

std::filesystem::path newestPiece(const std::filesystem::path &folder)
{
    constexpr int mostLookedAt = 20'000;
    std::filesystem::path newest;
    std::filesystem::file_time_type when;
    std::error_code error;
    int count = 0;
    for (auto it = std::filesystem::directory_iterator(folder, error);
         !error && it != std::filesystem::directory_iterator() && count < mostLookedAt;
         it.increment(error), ++count) {
        std::error_code unreadable;
        if (!isMusic(it->path()) || !it->is_regular_file(unreadable))
            continue;
        const auto written = it->last_write_time(unreadable);
        if (!unreadable && (newest.empty() || written > when)) {
            newest = it->path();
            when = written;
        }
    }
    return newest;
}

std::filesystem::path downloadFolder(const std::filesystem::path &home)
{
    return userFolder(home, "XDG_DOWNLOAD_DIR", "Downloads");
}

std::filesystem::path songsFolder(const std::filesystem::path &home)
{
    return userFolder(home, "XDG_MUSIC_DIR", "Music") / "Kelo Songs";
}

} // namespace kelo::engine
