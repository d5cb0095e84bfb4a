#pragma once

#include "music/piece.h"

#include <cstdint>
#include <vector>

namespace kelo::engine {

/// What a MIDI file says about the music in it.
struct MidiSignature {
    int tempo = 120; ///< quarters a minute
    int beats = 4; ///< of a bar
    int unit = 4; ///< 4 is a quarter, 8 an eighth
    int sharps = 0; ///< below 0 flats
    bool minor = false;
};

/// A Standard MIDI File of format 0 with the messages of a piece.
[[nodiscard]] std::vector<std::uint8_t> writeMidiFile(
    const Piece &piece, const MidiSignature &signature = {});

} // namespace kelo::engine
