#pragma once

#include "link/records.h"

#include <optional>
#include <span>

/// The numbers behind everything that moves with the assistant's voice. Times are seconds of
/// uptime; steps are seconds since the caller's last call.
namespace kelo {

inline constexpr int barCount = 120;
using Bars = std::array<double, barCount>;

/// How loud the assistant's voice is shown.
struct VoiceLevel {
    double level = 0.05; ///< smoothed, 0 to 1
    double levelAt = 0; ///< when it was last updated
    Bars bars{};
    double barsAt = 0;
};

/// What moves the display while there is no spectrum.
struct Liveliness {
    bool offline;
    bool speaking;
    bool spectrumKnown; ///< frames have arrived for this utterance
    double wordAt; ///< when the last word began, or the sentence before its first word
    double pulseAt; ///< when the ring was last struck
};

/// One step of the loudness from `level` towards its target: fast up, slow down.
[[nodiscard]] double easedLevel(double level, const Liveliness &life, double now, double dt);

/// One step of the row of bars: mirrored about its middle, lowest band at both ends.
void updateBars(Bars &bars, const std::optional<VoiceFrame> &bands, const Liveliness &life,
    std::span<const Ripple> newestRipples, double now, double dt);

/// Loudness of a row of bars, 0 to 1.
[[nodiscard]] double levelOf(const Bars &bars);

/// Radians that a ring turns in `dt` seconds beyond its steady drift.
[[nodiscard]] double spinStep(double level, double dt);

} // namespace kelo
