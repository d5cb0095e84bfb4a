#pragma once

#include <QFont>

namespace kelo {

// Of the face's size.
inline constexpr double letterWidth = 0.602;
inline constexpr double capHeight = 0.73;

/// The one face of the display: the system's fixed-width one, `size` device-independent pixels
/// high (whole ones: the font engine knows no others).
[[nodiscard]] QFont mono(double size, QFont::Weight weight = QFont::Normal);

} // namespace kelo
