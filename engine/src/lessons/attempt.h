#pragma once

#include "lessons/excerpt.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelo::engine {

/// Follows a player through an excerpt: the right keys in the right order. The keys of a chord
/// may come in any order, rolled as slowly as one likes, and hands that are not quite together are
/// forgiven; so are keys that bounce, grace notes that come or not, and trills of any length. A
/// wrong key that the right one follows at once was put right. Time is noted, but not held against
/// anyone. Seconds throughout.
class Attempt {
public:
    enum class State { Going, Passed, Missed };

    static constexpr std::string_view inTime = "And in good time."; ///< of the best rhythm

    Attempt(std::vector<Step> steps, Spelling spelling)
        : steps_(std::move(steps))
        , spelling_(spelling)
    {
    }

    State press(int pitch, double now);

    /// A key that came too early has turned out to be wrong, once `deadline` has passed.
    State expire(double now);
    [[nodiscard]] std::optional<double> deadline() const;

    /// After a miss: goes on from the beat before, or from the beginning if the player begins
    /// there.
    void resume();

    [[nodiscard]] State state() const { return current_; }
    [[nodiscard]] bool begun() const { return step_ > 0 || !pressed_.empty(); }
    [[nodiscard]] bool atBeginning() const { return step_ == 0; }

    /// What comes next: "E", or "C and G together".
    [[nodiscard]] std::string next() const;

    /// What was wrong: "Bar one, beat three: E. You played the F above."
    [[nodiscard]] std::string fault() const;

    /// Wrong keys by the bar in which they were pressed.
    [[nodiscard]] const std::map<int, int> &wrongKeys() const { return wrongKeys_; }

    /// It passed without having been gone on with in between.
    [[nodiscard]] bool atOneGo() const;

    /// How fast an attempt went that passed at one go, in percent of what is written; else 0.
    [[nodiscard]] int tempo() const;

    /// Something kind about the rhythm of an attempt that passed, against its own pulse; empty for
    /// little to say.
    [[nodiscard]] std::string rhythm() const;

private:
    struct Key {
        int pitch;
        double at;
    };

    [[nodiscard]] const Step &expected() const { return steps_[step_]; }
    [[nodiscard]] bool missing(int pitch) const;
    [[nodiscard]] bool ornament(int pitch) const;
    [[nodiscard]] bool mayComeEarly(int pitch) const;
    void take(int pitch, double now);
    State miss(int pitch);

    std::vector<Step> steps_;
    Spelling spelling_;
    State current_ = State::Going;
    std::size_t step_ = 0;
    std::vector<int> pressed_; ///< of the current step
    std::vector<double> times_; ///< of the first key of each step
    std::optional<Key> early_; ///< a key of the next step, before this one is complete
    std::optional<Key> last_; ///< the last key
    bool resumed_ = false; ///< time says nothing any more
    int wrong_ = 0;
    std::map<int, int> wrongKeys_;
};

} // namespace kelo::engine
