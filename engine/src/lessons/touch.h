#pragma once

#include "lessons/excerpt.h"

#include <string>
#include <vector>

namespace kelo::engine {

/// How a part is touched, for who asked to have that judged: loudness against what is written, as
/// far as it differs from the player's own, and whether notes are joined that are written so. What
/// the pedal holds counts as let go. Seconds throughout.
class Touch {
public:
    /// One thing in a teacher's words: what matters most.
    struct Verdict {
        std::string words; ///< empty for little to say
        bool good = true;
    };

    explicit Touch(std::vector<Step> steps)
        : steps_(std::move(steps))
    {
    }

    /// A key comes this strong, or is let go with 0.
    void key(int pitch, int velocity, double now);

    [[nodiscard]] Verdict loudness() const;
    [[nodiscard]] Verdict legato() const;

private:
    struct Key {
        int pitch;
        int velocity;
        double at;
        double until;
    };
    /// A written note and the key that was pressed for it.
    struct Note {
        std::size_t step;
        std::size_t place; ///< among the pitches of the step
        Hands hand;
        Key key;
    };

    [[nodiscard]] std::vector<Note> notes() const;

    std::vector<Step> steps_;
    std::vector<Key> keys_;
};

} // namespace kelo::engine
