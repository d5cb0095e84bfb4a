#pragma once

#include "following/score_follower.h"
#include "music/piece.h"

#include <optional>
#include <vector>

namespace kelo::engine {

/// The other part of a piece, for a player who is followed. What falls on a step of the player's
/// sounds with it, what comes between at the player's pace; nothing goes past the step that the
/// player has yet to play. Seconds throughout.
class AccompanimentPart {
public:
    /// `notes` in the order of time.
    explicit AccompanimentPart(std::vector<Note> notes)
        : notes_(std::move(notes))
    {
    }

    /// The player is at this step of the follower now, or elsewhere in the piece.
    void reach(const ScoreFollower &follower, const ScoreFollower::Match &match);

    /// From the beginning.
    void restart() { next_ = 0; }

    /// Notes that are due.
    [[nodiscard]] std::vector<Note> take(const ScoreFollower &follower, double now);
    [[nodiscard]] std::optional<double> deadline(const ScoreFollower &follower) const;

private:
    std::vector<Note> notes_;
    std::size_t next_ = 0;
};

} // namespace kelo::engine
