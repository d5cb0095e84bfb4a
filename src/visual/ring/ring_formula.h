#pragma once

#include "link/records.h"

#include <QImage>

/// The formulas of the ring and of the oscilloscope line, pixel by pixel, as the shaders
/// heart.frag, waves.frag and scope.frag evaluate them. They draw where there is no graphics
/// processor, and say what its picture should be.
namespace kelo {

/// How ring and line look at a moment.
struct RingLook {
    VoiceFrame bands{};
    double level = 0;
    double amplitude = 0; ///< of the line
    double time = 0; ///< seconds, of what flows
    double opacity = 1; ///< of the ring
};

/// The ring at full opacity. Its square's edge is at 1, from its middle.
[[nodiscard]] QImage ringPicture(QSize size, const RingLook &look);
[[nodiscard]] QImage scopePicture(QSize size, const RingLook &look);

} // namespace kelo
