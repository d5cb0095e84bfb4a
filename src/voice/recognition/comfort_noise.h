#pragma once

#include "voice/capture/audio.h"

#include <random>

namespace kelo {

/// Lays a little noise under sound. An acoustic model knows speech from rooms: where there is no
/// noise at all, as after a noise suppressor or out of a synthesiser, it takes weak voiced
/// consonants for silence.
class ComfortNoise {
public:
    /// `samples` with noise that is as far below the loudest of late as it is in a good room.
    [[nodiscard]] Samples under(Samples samples);

private:
    double loudest_ = 0; // level of a buffer; fades with time
    std::minstd_rand random_; // the same for every run
};

} // namespace kelo
