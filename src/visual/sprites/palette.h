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

/// The fixed colours of everything that is drawn.
namespace colours {

inline constexpr Colour bg{0.008F, 0.022F, 0.014F};
inline constexpr Colour panel{0.02F, 0.07F, 0.045F};
inline constexpr Colour green{0.22F, 1.0F, 0.53F}; ///< the accent
inline constexpr Colour faint{0.06F, 0.24F, 0.14F}; ///< rules and quiet outlines
inline constexpr Colour soft{0.55F, 1.0F, 0.78F};
inline constexpr Colour pale{0.80F, 1.0F, 0.90F}; ///< the hottest light
inline constexpr Colour shade{0.11F, 0.48F, 0.27F}; ///< outlines that must be seen
inline constexpr Colour teal{0.2F, 0.7F, 0.68F}; ///< the second voice

} // namespace colours

/// The colours of text, which high contrast lightens.
struct TextColours {
    Colour soft; ///< body text
    Colour dim; ///< labels and secondary text

    [[nodiscard]] static constexpr TextColours of(bool contrast)
    {
        if (contrast)
            return {{0.96F, 1.0F, 0.97F}, {0.72F, 0.95F, 0.82F}};
        return {colours::soft, {0.24F, 0.68F, 0.43F}};
    }
};

} // namespace kelo
