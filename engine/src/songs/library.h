#pragma once

#include "music/midi_file.h"
#include "songs/song_name.h"

#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace kelo::engine {

/// The songs there are: those that ship, from easy to hard, then the MIDI files and the
/// scores of a folder by name.
class Library {
public:
    /// Looks into the folder; a missing one holds nothing.
    explicit Library(std::filesystem::path folder);

    void refresh();

    [[nodiscard]] const std::vector<SongName> &names() const { return names_; }
    /// The place of the first song that is a file.
    [[nodiscard]] std::size_t firstFile() const;
    [[nodiscard]] std::size_t size() const { return names_.size(); }

    [[nodiscard]] std::variant<Piece, ReadFault> load(std::size_t song) const;
    /// Where a song lies that is a file.
    [[nodiscard]] const std::filesystem::path &file(std::size_t song) const
    {
        return files_.at(song - firstFile());
    }

    static constexpr std::size_t mostFiles = 500;

private:
    std::filesystem::path folder_;
    std::vector<SongName> names_;
    std::vector<std::filesystem::path> files_; ///< of the songs after the shipped ones
};

/// Reads a MIDI file or a MusicXML score, packed or not, of a size that a piece of music may have.
/// What it is its contents tell, whatever its name.
[[nodiscard]] std::variant<Piece, ReadFault> loadPiece(
    const std::filesystem::path &path, MidiProgress *progress = nullptr);

/// The newest file of a folder that is music by its name; empty where there is none.
[[nodiscard]] std::filesystem::path newestPiece(const std::filesystem::path &folder);

/// The folder of downloads, as the desktop's settings and `home` have it.
[[nodiscard]] std::filesystem::path downloadFolder(const std::filesystem::path &home);

/// The music folder's "Kelo Songs", as the desktop's settings and `home` have it.
[[nodiscard]] std::filesystem::path songsFolder(const std::filesystem::path &home);

} // namespace kelo::engine
