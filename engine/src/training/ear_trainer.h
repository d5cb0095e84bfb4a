#pragma once

#include "training/ear_game.h"

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace kelo::engine {

/// Ear training: middle C and then a note that is to be found on the keys; as one gets better
/// more notes, then two in a row. Any octave is right, but two notes keep their distance.
/// Seconds throughout.
class EarTrainer : public EarGame {
public:
    explicit EarTrainer(std::uint32_t seed)
        : random_(seed)
    {
    }

    [[nodiscard]] Reply begin() override;
    [[nodiscard]] Reply skip() override;
    [[nodiscard]] std::string tally() const override;
    [[nodiscard]] Piece demo() const override;
    [[nodiscard]] std::string answer() const override;
    void listen() override;
    [[nodiscard]] Reply press(int pitch) override;

    [[nodiscard]] std::string_view place() const override { return "This is ear training."; }
    [[nodiscard]] std::string_view help() const override;

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
    int triesLeft_ = 0;
    int streak_ = 0; ///< right ones in a row, or below 0 missed ones
    int asking_ = 0; ///< how many have been asked and dealt with
    int found_ = 0;
};

} // namespace kelo::engine
