#pragma once

#include "music/piece.h"
#include "theory/harmony.h"
#include "theory/metre.h"
#include "theory/tonality.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kelo::engine {

/// Lengths and places of a score, in parts of a quarter.
inline constexpr int ticksPerQuarter = 24;

struct Tone {
    int at = 0; ///< ticks from the beginning
    int length = 0; ///< ticks
    int pitch = 0;
    int velocity = 80;
    int part = 0;

    friend bool operator==(const Tone &, const Tone &) = default;
};

/// Who plays: a General MIDI program, or the drums.
struct Part {
    std::string name;
    int program = 0;
    bool drums = false;
    int volume = 100; ///< 0 to 127
};

/// Music as it is written down: part 0 is the melody.
struct Score {
    std::string title{};
    Tonality key{};
    Metre metre{};
    int tempo = 100; ///< quarters a minute
    std::vector<Part> parts{{"Piano"}};
    std::vector<Tone> tones{}; ///< in the order of time
    std::vector<Harmony> harmony{}; ///< a bar each

    [[nodiscard]] int barTicks() const
    {
        return static_cast<int>(quartersIn(metre) * ticksPerQuarter);
    }
    /// Bars that the tones take.
    [[nodiscard]] int bars() const;
    /// The tones of one part.
    [[nodiscard]] std::vector<Tone> partTones(int part) const;
    void sort();
};

/// The score as it is played.
[[nodiscard]] Piece pieceOf(const Score &score);

/// A MIDI file with the score's tempo, metre and key.
[[nodiscard]] std::vector<std::uint8_t> midiOf(const Score &score);

/// What stands on a degree (0 is the tonic); the dominant of minor is major.
[[nodiscard]] Harmony triadOn(const Tonality &key, int degree);

/// The pitch class belongs to the triad.
[[nodiscard]] bool contains(const Harmony &harmony, int pitch);

} // namespace kelo::engine
