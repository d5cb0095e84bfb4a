#pragma once

#include "following/player_time.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace kelo::engine {

/// Keys of the player's part that are pressed together.
struct FollowedStep {
    double at = 0; ///< seconds of the piece as it is written
    std::vector<int> pitches{};
    bool opensBar = false; ///< who skips or repeats most likely goes here
};

/// Finds, key by key, where in a piece a player is, through wrong, added and left out notes,
/// changes of tempo, and bars that are skipped or repeated.
///
/// A hidden Markov model after E. Nakamura, T. Nakamura, Y. Saito, N. Ono and S. Sagayama
/// ("Outer-product hidden Markov model and polyphonic MIDI score following", Journal of New Music
/// Research 43, 2014): every step is believed in a little at all times, so that who has jumped is
/// awaited everywhere at once. A step's neighbours are reached by transitions of their own, all
/// others by one that is the product of leaving and arriving, which a bar's end and a bar's
/// beginning make likely; what a key costs depends on how many steps sound like it. As in C.
/// Raphael's accompanists ("Music Plus One and machine learning", 2010) each place has a time of
/// its own: when its step was begun, what of its chord has sounded, and the player's pace on the
/// likeliest way there. So the time of a key is weighed against what this way foretells, and a way
/// that was wrong leaves nothing behind.
class ScoreFollower {
public:
    explicit ScoreFollower(std::vector<FollowedStep> steps, double pace = 1);

    struct Match {
        std::size_t step = 0;
        bool right = false; ///< the key belongs to it
        bool jumped = false; ///< the player is elsewhere than a moment ago
    };
    Match press(int pitch, double now);

    /// Who begins again begins at the first step.
    void restart();

    /// Seconds that a second of the piece takes.
    [[nodiscard]] double pace() const { return time_.pace(); }
    [[nodiscard]] bool begun() const { return begun_; }
    [[nodiscard]] std::size_t step() const { return place_; }
    [[nodiscard]] bool atEnd() const { return begun_ && place_ + 1 == steps_.size(); }
    /// When the step where the player is was begun.
    [[nodiscard]] double since() const { return since_; }
    /// When something written after that step is due, by the player's own time.
    [[nodiscard]] double dueAt(double written) const;
    [[nodiscard]] const std::vector<FollowedStep> &steps() const { return steps_; }

private:
    struct Place {
        double belief = 0; ///< that the player is here
        double since = 0; ///< when the first of its keys came
        std::uint64_t sounded = 0; ///< which of its keys came
        PlayerTime time{};
    };
    struct Way {
        std::size_t to;
        int by; ///< steps onward; below 0 from anywhere
        double chance; ///< by all ways together
    };

    [[nodiscard]] double left(std::size_t place) const;
    [[nodiscard]] double nearness(int bar, bool first) const;
    [[nodiscard]] double arriving(std::size_t place) const;
    [[nodiscard]] double leaves(std::size_t place) const;
    [[nodiscard]] std::vector<std::size_t> candidates(int pitch) const;
    [[nodiscard]] Way wayTo(std::size_t to, int pitch, double now) const;
    [[nodiscard]] Place reached(
        const Way &way, int pitch, double now, const PlayerTime &likely) const;
    [[nodiscard]] double timeOfJump(double now) const;
    void weighJumps();

    std::vector<FollowedStep> steps_;
    std::vector<int> bars_; ///< of each step, counted
    std::vector<double> weights_; ///< of each bar, its steps together, where jumps go
    std::unordered_map<int, std::vector<std::size_t>> soundingLike_; ///< steps near a pitch
    std::vector<Place> places_;
    std::vector<std::size_t> believed_; ///< the places where the player may be
    int expectedBar_ = 0; ///< that would have come
    double jumpWeights_ = 1; ///< of all steps together, where jumps go
    double jump_ = 0; ///< how likely a jump is made with this key
    std::size_t likeliest_ = 0;
    PlayerTime time_;
    bool begun_ = false;
    std::size_t place_ = 0;
    double since_ = 0;
    double last_ = 0; ///< when the last key came
};

} // namespace kelo::engine
