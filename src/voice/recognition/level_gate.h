#pragma once

#include "voice/capture/audio.h"

#include <deque>
#include <limits>

namespace kelo {

/// No sample is loud enough to be of a voice, even across a room.
[[nodiscard]] bool isQuiet(const Samples &samples);

/// Keeps silence from the recogniser, which would search it for words: a quiet room, and the
/// steady noise of one that is not. Sound passes from a little before it grows loud, so that no
/// first consonant is lost, until it has been quiet for longer than an utterance takes to end.
class LevelGate {
public:
    /// What is to be recognised now that `samples` came: with what preceded them, or nothing.
    Samples pass(Samples samples);

private:
    bool staysQuiet(const Samples &samples);

    std::deque<Samples> runIn_;
    std::size_t runInSize_ = 0; // samples
    std::size_t quietFor_ = std::numeric_limits<std::size_t>::max() / 2; // samples
    double floor_ = 0; // the room's own level; grows slowly and falls at once
};

} // namespace kelo
