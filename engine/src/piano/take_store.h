#pragma once

#include "music/piece.h"

#include <cstdint>
#include <filesystem>
#include <future>
#include <map>
#include <vector>

namespace kelo::engine {

/// Takes on disk, a MIDI file each, so that they outlive a crash. A file is written whole or not at
/// all, on another thread. What a full disk would not have is tried again with the next one.
class TakeStore {
public:
    /// Nothing is kept where `folder` is empty.
    explicit TakeStore(std::filesystem::path folder)
        : folder_(std::move(folder))
    {
    }

    /// A take by its number; later takes have higher ones.
    struct Kept {
        std::uint64_t number = 0;
        Piece piece;
    };

    /// The newest `most` takes, newest first. What cannot be read is left out.
    [[nodiscard]] std::vector<Kept> load(std::size_t most) const;

    /// Writes one take, in place of what has its number, and removes all but the newest `most`.
    void save(std::uint64_t number, const Piece &piece, std::size_t most);

    /// Tries again what could not be written. False while the disk would not have it.
    bool keep();

private:
    using Files = std::map<std::uint64_t, std::vector<std::uint8_t>>; ///< bytes by number

    void write();
    void collect();

    std::filesystem::path folder_;
    std::size_t most_ = 0;
    Files waiting_; ///< to be written
    bool failed_ = false; ///< the last time
    std::future<Files> writing_; ///< what could not be
};

} // namespace kelo::engine
