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
/// seizure. An answer, which says something, always shows at once; beats leave it room: there are
/// at most two a second, in fast bars every other one.
class FlashLimit {
public:
    /// When the flash of this kind that is asked for at uptime `at` begins; nothing when it is left
    /// out. An answer while the window is lit may take over that light, whose beginning it then
    /// has. `beat`: place in the bar. Ask once a flash, in order.
    std::optional<double> begin(const QString &kind, qint64 beat, double at);

private:
    std::array<double, 3> begun_{-10, -10, -10}; // uptimes of the latest flashes, oldest first
    bool latestIsBeat_ = false;
    double lastBeat_ = -10; // uptime, shown or not
};

} // namespace kelo
