#pragma once

#include "voice/sound_queue.h"

namespace kelo {

/// Brings sound of another rate to 16 kHz by band-limited interpolation, piece by piece.
class Resampler {
public:
    /// `rate` is that of what will be added, in samples a second, above 0.
    explicit Resampler(int rate);

    [[nodiscard]] int rate() const { return rate_; }
    /// What can be made now that `samples` came; the end of it needs what follows.
    Samples add(const Samples &samples);
    /// The same, to the end: silence follows.
    Samples finish(const Samples &samples);

private:
    int rate_;
    double step_; ///< samples that come for each that goes
    double band_; ///< what of the spectrum is kept
    double radius_; ///< samples that count on either side
    Samples waiting_;
    double centre_ = 0; ///< of the next sample, in `waiting_`
};

} // namespace kelo
