#pragma once

#include <QIcon>

namespace kelo {

/// The icon of this program, a waveform in a circle, in the sizes that windows and trays use. It
/// reads on light and dark panels alike.
[[nodiscard]] QIcon keloIcon();

} // namespace kelo
