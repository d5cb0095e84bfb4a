#pragma once

#include <QString>

#include <functional>

class QQuickWindow;

namespace kelo::bench {

/// What frames cost, in milliseconds a frame.
struct FrameCost {
    int frames = 0;
    double ours = 0; ///< CPU time of the GUI thread and of the render thread
    double raster = 0; ///< CPU time of the graphics driver's own threads
    double p95 = 0; ///< from one frame to the next, 95 of 100
    double cpu = 0; ///< of one core, in percent, over all the time
};

/// Lets `window` show frames for `seconds` and says what they cost. `tick` runs before each.
/// Before that it is shown for `settling` seconds, in which shaders, glyphs and buffers are made.
[[nodiscard]] FrameCost measure(QQuickWindow &window, double seconds,
    const std::function<void()> &tick = {}, double settling = 1.5);

/// Rows of the table for what was measured.
void print(const QString &what, const FrameCost &cost);

} // namespace kelo::bench
