#pragma once

#include "voice/capture/audio.h"
#include "voice/recognition/recogniser.h"

namespace kelo {

/// What `recogniser` makes of a recording in which `phrases` are expected. Waits for it; empty when
/// it heard nothing.
[[nodiscard]] QString recognised(Recogniser &recogniser, const std::optional<TaughtModel> &taught,
    const Samples &recording, const QStringList &phrases = {});

} // namespace kelo
