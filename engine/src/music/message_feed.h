#pragma once

#include "music/piece.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace kelo::engine {

/// All that an instrument is told to play a piece, in the order of time,
/// without a list of it: the presses and releases of its notes, and its
/// messages between. At one moment keys are let go of first and pressed last.
class MessageFeed {
public:
    MessageFeed() = default;

    /// From a place on, in seconds; `piece` outlives this. Notes that began
    /// before it stay away.
    explicit MessageFeed(const Piece &piece, double from = 0);

    /// The next one; nothing after the last.
    [[nodiscard]] std::optional<TimedMessage> next() const;
    void pop();

private:
    enum class Kind { None, Release, Message, Press };

    [[nodiscard]] Kind soonest() const;
    [[nodiscard]] double endOf(std::uint32_t note) const;
    [[nodiscard]] auto later() const;

    const Piece *piece_ = nullptr;
    std::size_t message_ = 0;
    std::size_t note_ = 0;
    std::vector<std::uint32_t> held_; ///< notes, a heap, soonest end first
};

} // namespace kelo::engine
