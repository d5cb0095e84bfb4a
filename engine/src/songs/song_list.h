#pragma once

#include "songs/song_name.h"

#include <optional>
#include <span>
#include <string>

namespace kelo::engine {

/// The song that is chosen among those that there are, and what is said of it. The list goes
/// round at its ends.
class SongList {
public:
    /// `songs` may have changed since: the choice stays within them.
    void setSongs(std::span<const SongName> songs) { names_ = songs; }

    [[nodiscard]] std::size_t current() const;

    void next();
    void previous();

    /// Chooses by place, counted from 1; false where there is no such song.
    bool choose(int number);

    /// "Song 5 of 8: Minuet in G, Christian Petzold."
    [[nodiscard]] std::string describe() const;

    [[nodiscard]] std::string count() const;

    /// All titles with their numbers; the first few dozen of a long list.
    [[nodiscard]] std::string list() const;

private:
    std::span<const SongName> names_;
    std::size_t chosen_ = 0;
};

} // namespace kelo::engine
