#pragma once

#include "music/piece.h"

#include <array>
#include <optional>

namespace kelo::engine {

/// Remembers what the player plays, from the first key after a long silence on, so that it can
/// be kept afterwards. Times are seconds of the monotonic clock.
class Recorder {
public:
    void key(int pitch, int velocity, double now);

    /// The last thing played, as a piece that begins at 0; nothing before the first key.
    [[nodiscard]] std::optional<Piece> lastTake(double now) const;

    static constexpr double silence = 10; ///< seconds without a key that end a take
    static constexpr std::size_t mostNotes = 20000; ///< a longer take keeps its beginning

private:
    std::vector<Note> notes_;
    std::array<std::optional<std::size_t>, 128> held_{}; ///< the note that each key holds
    double begun_ = 0;
    double lastKey_ = 0;
};

} // namespace kelo::engine
