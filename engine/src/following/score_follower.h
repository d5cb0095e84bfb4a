#pragma once

#include <cstddef>
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
/// A hidden Markov model as E. Nakamura, T. Nakamura, Y. Saito, N. Ono and S. Sagayama describe it
/// ("Outer-product hidden Markov model and polyphonic MIDI score following", Journal of New Music
/// Research 43, 2014): a step's neighbours are reached by transitions of their own, all others by
/// one that is the product of leaving and arriving, so that a key costs time in proportion to the
/// piece's length. The time between keys is weighed against the player's own pace.
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
    [[nodiscard]] double pace() const { return pace_; }
    [[nodiscard]] bool begun() const { return begun_; }
    [[nodiscard]] std::size_t step() const { return place_; }
    [[nodiscard]] bool atEnd() const { return begun_ && place_ + 1 == steps_.size(); }
    /// When the step where the player is was begun.
    [[nodiscard]] double since() const { return since_; }
    [[nodiscard]] const std::vector<FollowedStep> &steps() const { return steps_; }

private:
    [[nodiscard]] double emission(const FollowedStep &step, int pitch) const;
    [[nodiscard]] double timing(double seconds, double written) const;
    void follow(std::size_t to, bool right, double now);

    std::vector<FollowedStep> steps_;
    std::vector<double> arriving_; ///< where a jump goes, adding up to 1
    std::vector<double> belief_; ///< that the player is at each step
    double firstPace_;
    double pace_;
    bool begun_ = false;
    bool paceKnown_ = false; ///< something was learned of it since the beginning
    std::size_t place_ = 0;
    double since_ = 0;
    double last_ = 0; ///< when the last key came
};

} // namespace kelo::engine
