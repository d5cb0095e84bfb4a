#pragma once

#include "link/records.h"
#include "visual/colour.h"

#include <QImage>

/// The formulas of the ring and of the oscilloscope line, pixel by pixel, as the shaders ring.frag
/// and scope.frag evaluate them. They draw where there is no graphics processor, and say what its
/// picture should be. Colours are premultiplied. `time` is in seconds.
namespace kelo {

/// The ring at (`x`, `y`), each -1 to 1 across its picture, y up.
[[nodiscard]] Colour ringAt(double x, double y, const VoiceFrame &bands, double level, double time);

/// The line at (`x`, `y`), each 0 to 1 across its picture, y up.
[[nodiscard]] Colour scopeAt(double x, double y, double amplitude, double time);

[[nodiscard]] QImage ringPicture(QSize size, const VoiceFrame &bands, double level, double time);
[[nodiscard]] QImage scopePicture(QSize size, double amplitude, double time);

} // namespace kelo
