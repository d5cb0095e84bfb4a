#pragma once

#include "voice/recognition/comfort_noise.h"
#include "voice/recognition/noise_suppressor.h"

#include <optional>

namespace kelo {

/// Makes sound of a microphone what recognisers are used to: without an offset and without the
/// steady noise of the room, but with a faint even floor.
class SoundCleaner {
public:
    /// What comes next does not follow what came before.
    void interrupt();
    /// `samples`, cleaned; up to 10 ms of them come with the next ones.
    [[nodiscard]] Samples clean(Samples samples);

private:
    [[nodiscard]] Samples centred(Samples samples);

    NoiseSuppressor suppressor_;
    ComfortNoise tone_;
    std::optional<double> lastInput_;
    double centred_ = 0; ///< the same, without its offset
};

} // namespace kelo
