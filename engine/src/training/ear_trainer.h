#pragma once

#include "lessons/reply.h"
#include "music/piece.h"

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace kelo::engine {

/// Ear training: middle C and then a note that is to be found on the keys; as one gets better
/// more notes, then two in a row. Any octave is right, but two notes keep their distance.
/// Seconds throughout.
class EarTrainer {
public:
    explicit EarTrainer(std::uint32_t seed)
        : random_(seed)
    {
    }

    [[nodiscard]] Reply begin();
    [[nodiscard]] Reply repeat() const { return {{}, {}, true}; }

    /// Gives this one up: says what it was and goes on.
    [[nodiscard]] Reply skip();

    /// "Four of five.", or that there is nothing to count.
    [[nodiscard]] std::string tally() const;

    /// What `demo` means: the notes to be found.
    [[nodiscard]] Piece demo() const;

    /// What was asked, in words.
    [[nodiscard]] std::string answer() const;

    /// It was asked for the answer, so that finding it is worth nothing any more.
    void tell() { told_ = true; }

    /// It has said and played what it wanted to; it is the player's turn.
    void listen();
    [[nodiscard]] bool listening() const { return waiting_; }

    [[nodiscard]] Reply press(int pitch);

    [[nodiscard]] int level() const { return currentLevel_; }
    [[nodiscard]] const std::vector<int> &asked() const { return notes_; }

private:
    void ask();
    [[nodiscard]] Reply right();
    [[nodiscard]] Reply wrong();
    [[nodiscard]] std::string tallyNowAndThen() const;

    std::minstd_rand random_;
    int currentLevel_ = 0;
    std::vector<int> notes_;
    std::vector<int> played_;
    bool waiting_ = false; ///< for the player
    bool told_ = false; ///< the answer
    int triesLeft_ = 0;
    int streak_ = 0; ///< right ones in a row, or below 0 missed ones
    int asking_ = 0; ///< how many have been asked and dealt with
    int found_ = 0;
};

} // namespace kelo::engine
