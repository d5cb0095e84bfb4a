#pragma once

#include "training/ear_game.h"

#include <cstdint>
#include <random>
#include <vector>

namespace kelo::engine {

/// A melody that is played back as it was heard, and grows by a note each time that this goes well.
/// It keeps to the white keys and to small steps; any octave is right. Who fails twice gets another
/// one, a little shorter.
class EchoGame : public EarGame {
public:
    static constexpr std::size_t shortest = 2; ///< notes
    static constexpr std::size_t longest = 16;

    explicit EchoGame(std::uint32_t seed)
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

    [[nodiscard]] std::string_view place() const override { return "This is the echo game."; }
    [[nodiscard]] std::string_view help() const override;

    [[nodiscard]] const std::vector<int> &melody() const { return melody_; }

private:
    void grow();
    void renew(std::size_t notes);
    [[nodiscard]] Reply right();
    [[nodiscard]] Reply wrong();

    std::minstd_rand random_;
    std::vector<int> melody_;
    std::size_t played_ = 0; ///< notes that were right so far
    int shift_ = 0; ///< the octave that the player chose, in semitones
    std::size_t best_ = 0; ///< the longest that was played back
    int missed_ = 0; ///< times, of this melody
};

} // namespace kelo::engine
