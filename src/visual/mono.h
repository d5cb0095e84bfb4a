#pragma once

#include <QFont>

namespace kelo {

/// The one face of the display: the system's fixed-pitch one. `size` is in points of the screen,
/// which are device-independent pixels here.
[[nodiscard]] QFont mono(double size, QFont::Weight weight = QFont::Normal);

} // namespace kelo
