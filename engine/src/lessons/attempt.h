#pragma once

#include "lessons/excerpt.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kelo::engine {

/// Follows a player through an excerpt: the right keys in the right order. The keys of a chord
/// may come in any order, rolled as slowly as one likes, and hands that are not quite together
/// are forgiven. When each came is noted, but not held against anyone. Seconds throughout.
class Attempt {
public:
    enum class State { Going, Passed, Missed };

    Attempt(std::vector<Step> steps, Spelling spelling)
        : steps_(std::move(steps))
        , spelling_(spelling)
    {
    }

    State press(int pitch, double now);

    /// A key that came too early has turned out to be wrong, once `deadline` has passed.
    State expire(double now);
    [[nodiscard]] std::optional<double> deadline() const;

    [[nodiscard]] State state() const { return current_; }
    [[nodiscard]] bool begun() const { return step_ > 0 || !pressed_.empty(); }

    /// What comes next: "E", or "C and G together".
    [[nodiscard]] std::string next() const;

    /// What was wrong: "The third note was E, you played F."
    [[nodiscard]] std::string fault() const;

    /// Something kind about the rhythm of an attempt that passed; empty for little to say.
    [[nodiscard]] std::string rhythm() const;

private:
    struct Early {
        int pitch;
        double at;
    };

    [[nodiscard]] const Step &expected() const { return steps_[step_]; }
    [[nodiscard]] bool missing(int pitch) const;
    void take(int pitch, double now);
    State miss(int pitch);

    std::vector<Step> steps_;
    Spelling spelling_;
    State current_ = State::Going;
    std::size_t step_ = 0;
    std::vector<int> pressed_; ///< of the current step
    std::vector<double> times_; ///< of the first key of each step
    std::optional<Early> early_; ///< a key of the next step, before this one is complete
    int wrong_ = 0;
};

} // namespace kelo::engine
