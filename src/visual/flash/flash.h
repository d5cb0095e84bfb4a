#pragma once

#include "visual/sprites/palette.h"

#include <QString>

#include <array>
#include <optional>

namespace kelo {

/// How the frame around the window looks at one moment of a flash.
struct FlashLook {
    Colour outline;
    double width = 0; ///< of the outline, points
    Colour fill; ///< over the whole window
};

/// The look, `age` seconds after it began, of a flash of this kind: "beat", "good", "wrong" or any
/// other. `firstBeat`: the beat opens its bar. Beats only outline.
[[nodiscard]] FlashLook flashLook(const QString &kind, bool firstBeat, double age);

/// Seconds that a flash of this kind takes to fade.
[[nodiscard]] double flashDuration(const QString &kind);

/// Keeps the window from flashing more than three times in any second, which can bring on a
/// seizure. Beats beyond that are left out; an answer, which says something, waits its turn.
class FlashLimit {
public:
    /// When the flash of this kind that was asked for at uptime `at` begins; nothing when it is
    /// left out. Ask once a flash, in order.
    std::optional<double> begin(const QString &kind, double at);

private:
    std::array<double, 3> begun_{-10, -10, -10}; // uptimes of the latest flashes, oldest first
};

} // namespace kelo
