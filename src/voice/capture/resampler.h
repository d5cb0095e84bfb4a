#pragma once

#include "voice/capture/audio.h"

#include <memory>

struct SpeexResamplerState_;

namespace kelo {

/// Brings sound of another rate to 16 kHz, piece by piece.
class Resampler {
public:
    /// `rate` is that of what will be added, in samples a second. Of a rate that no device has
    /// nothing can be made.
    explicit Resampler(int rate);
    ~Resampler();
    Q_DISABLE_COPY_MOVE(Resampler)

    [[nodiscard]] int rate() const { return rate_; }
    /// What can be made now that `samples` came; the end of it needs what follows.
    Samples add(const Samples &samples);
    /// The same, to the end: silence follows.
    Samples finish(const Samples &samples);

private:
    int rate_;
    SpeexResamplerState_ *state_ = nullptr; // null for a rate that no device has
};

} // namespace kelo
