#pragma once

#include "training/ear_game.h"

#include <cstdint>
#include <random>
#include <vector>

namespace kelo::engine {

/// Intervals, then chords, that are found on the keys: the lowest note is named, the others are to
/// be heard. Its notes come one after the other or together, in any octave; the lowest one has to
/// be the lowest. What was found is named.
class ChordTrainer : public EarGame {
public:
    enum class First { Intervals, Chords };

    ChordTrainer(std::uint32_t seed, First first);

    [[nodiscard]] Reply begin() override;
    [[nodiscard]] Reply skip() override;
    [[nodiscard]] std::string tally() const override;
    [[nodiscard]] Piece demo() const override;
    [[nodiscard]] std::string answer() const override;
    void listen() override;
    [[nodiscard]] Reply press(int pitch) override;

    [[nodiscard]] std::string_view place() const override
    {
        return "This is training with intervals and chords.";
    }
    [[nodiscard]] std::string_view help() const override;

    [[nodiscard]] const std::vector<int> &asked() const { return notes_; }

private:
    void ask();
    [[nodiscard]] std::string lowest() const;
    [[nodiscard]] Reply right();
    [[nodiscard]] Reply wrong();

    std::minstd_rand random_;
    int level_;
    std::size_t which_ = 0; ///< of the level's shapes
    std::vector<int> notes_; ///< ascending
    std::vector<int> played_;
    int triesLeft_ = 0;
    int streak_ = 0; ///< right ones in a row, or below 0 missed ones
    int asking_ = 0; ///< how many have been asked and dealt with
    int found_ = 0;
};

/// "a minor third", "an octave": up to two octaves; farther ones by their octaves too.
[[nodiscard]] std::string intervalName(int semitones);

} // namespace kelo::engine
