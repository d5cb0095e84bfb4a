#pragma once

#include "visual/sprites/palette.h"

#include <vector>

/// What a scene is drawn with: an ordered list of shapes, later ones in front. Places are in
/// points, y up, from the scene's lower left corner.
namespace kelo {

/// One shape: a box with rounded corners whose edge is sharp or fades inward, upright, turned or
/// bent around a circle. Everything that the scenes draw is one of these.
struct Sprite {
    float x = 0; ///< its middle; of a bent one, the middle of its circle
    float y = 0;
    float halfWidth = 0; ///< along the circle when bent
    float halfHeight = 0;
    float radius = 0; ///< of its corners
    float feather = 0; ///< points over which it fades in from its edge; 0 is a sharp edge
    float angle = 0; ///< radians counter-clockwise; of a bent one, where its middle lies
    float bend = 0; ///< radius of the circle that it is bent around; 0 is straight
    Colour top; ///< colour of its upper edge
    Colour bottom; ///< of its lower edge; between them the colours blend
    bool additive = false; ///< adds its light to what is behind instead of covering it

    friend bool operator==(const Sprite &, const Sprite &) = default;
};

using SpriteList = std::vector<Sprite>;

/// A rectangle by its lower left corner.
[[nodiscard]] Sprite box(double left, double bottom, double width, double height, Colour colour);
/// The four sides of a rectangle, each `line` wide and centred on the rectangle's edge.
void outline(SpriteList &list, double left, double bottom, double width, double height, double line,
    Colour colour);
/// A rounded bar that stands on (`x`, `bottom`), its light growing towards the bottom.
[[nodiscard]] Sprite bar(double x, double bottom, double width, double height, Colour colour);
/// A soft light that stands on (`x`, `bottom`); a long one is a bar of light with soft ends.
[[nodiscard]] Sprite glow(double x, double bottom, double width, double height, Colour colour);
/// A round soft light around (`x`, `y`).
[[nodiscard]] Sprite glow(double x, double y, double size, Colour colour);
[[nodiscard]] Sprite disc(double x, double y, double radius, Colour colour);
/// A straight line.
[[nodiscard]] Sprite line(
    double fromX, double fromY, double toX, double toY, double width, Colour colour);
/// Part of a circle with round ends: from angle `from` over `sweep` radians, counter-clockwise, at
/// most a full turn, which closes it.
[[nodiscard]] Sprite arc(
    double x, double y, double radius, double from, double sweep, double width, Colour colour);

} // namespace kelo
