#pragma once

#include "music/piece.h"

#include <cstdint>
#include <filesystem>
#include <future>
#include <vector>

namespace kelo::engine {

/// Takes on disk, a MIDI file each, so that they outlive a crash. A file is written whole or not at
/// all, on another thread.
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

private:
    std::filesystem::path folder_;
    std::future<void> writing_;
};

} // namespace kelo::engine
