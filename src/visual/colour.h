#pragma once

#include <QColor>

namespace kelo {

/// An sRGB colour with straight alpha; components are 0 to 1.
struct Colour {
    float red = 0;
    float green = 0;
    float blue = 0;
    float alpha = 1;

    /// The same colour at `opacity` of its alpha.
    [[nodiscard]] constexpr Colour faded(double opacity) const
    {
        return {red, green, blue, alpha * static_cast<float>(opacity)};
    }
    [[nodiscard]] QColor toQColor() const { return QColor::fromRgbF(red, green, blue, alpha); }

    friend bool operator==(const Colour &, const Colour &) = default;
};

inline constexpr Colour white{1, 1, 1};

/// What lies `part` of the way from `from` to `to`, alpha included.
[[nodiscard]] constexpr Colour mixed(Colour from, Colour to, double part)
{
    const auto t = static_cast<float>(part);
    return {from.red + (to.red - from.red) * t, from.green + (to.green - from.green) * t,
        from.blue + (to.blue - from.blue) * t, from.alpha + (to.alpha - from.alpha) * t};
}

} // namespace kelo
