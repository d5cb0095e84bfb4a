#pragma once

#include "visual/colour.h"

#include <QString>

#include <array>

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

/// Keeps the window from filling with light more than three times in any second, which can bring
/// on a seizure: a flash beyond that may only outline.
class FlashLimit {
public:
    /// Whether the flash that began at uptime `at` may fill. Ask once a flash, in order.
    bool mayFill(double at);

private:
    std::array<double, 3> fills_{-10, -10, -10}; // uptimes of the latest fills, oldest first
};

} // namespace kelo
