#pragma once

#include "music/midi_file.h"

#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <variant>

namespace kelo::engine {

/// Reads a file of music, a large one on a thread of its own, so that it keeps nobody waiting.
class PieceLoader {
public:
    /// `progress` is told of it, and that it was given up.
    explicit PieceLoader(const std::filesystem::path &file,
        std::shared_ptr<MidiProgress> progress = std::make_shared<MidiProgress>());

    /// Gives up reading, which takes a moment.
    ~PieceLoader();
    PieceLoader(const PieceLoader &) = delete;
    PieceLoader &operator=(const PieceLoader &) = delete;

    /// What was read, once, if that is there within `seconds`.
    [[nodiscard]] std::optional<std::variant<Piece, ReadFault>> take(double seconds = 0);

    /// How much has been read, 0 to 1.
    [[nodiscard]] double progress() const { return progress_->share; }

private:
    std::shared_ptr<MidiProgress> progress_;
    std::future<std::variant<Piece, ReadFault>> reading_;
};

} // namespace kelo::engine
