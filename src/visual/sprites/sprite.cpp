#include "visual/sprites/sprite.h"

#include <algorithm>
#include <cmath>

namespace kelo {

namespace {

// A bar keeps its rounded ends however far it is stretched: corners of 7 points, a point within
// its edge. Bars too small for that get all of it smaller.
constexpr double barInset = 1;
constexpr double barCorner = 7;
constexpr double smallestBarWidth = 16.8; // for full corners
constexpr double smallestBarHeight = 28.8;
constexpr double barTopLight = 0.72;

constexpr double glowReach = 32; // points over which a glow dies away
constexpr double glowLight = 0.9; // in its middle

float f(double value)
{
    return static_cast<float>(value);
}

} // namespace

Sprite box(double left, double bottom, double width, double height, Colour colour)
{
    return {.x = f(left + width / 2),
        .y = f(bottom + height / 2),
        .halfWidth = f(width / 2),
        .halfHeight = f(height / 2),
        .top = colour,
        .bottom = colour};
}

void outline(SpriteList &list, double left, double bottom, double width, double height, double line,
    Colour colour)
{
    const double half = line / 2;
    list.push_back(box(left - half, bottom - half, width + line, line, colour));
    list.push_back(box(left - half, bottom + height - half, width + line, line, colour));
    list.push_back(box(left - half, bottom + half, line, height - line, colour));
    list.push_back(box(left + width - half, bottom + half, line, height - line, colour));
}

Sprite bar(double x, double bottom, double width, double height, Colour colour)
{
    const double scale = std::min({1.0, width / smallestBarWidth, height / smallestBarHeight});
    return {.x = f(x),
        .y = f(bottom + height / 2),
        .halfWidth = f(width / 2 - barInset * scale),
        .halfHeight = f(height / 2 - barInset * scale),
        .radius = f(barCorner * scale),
        .top = colour.faded(barTopLight),
        .bottom = colour};
}

Sprite glow(double x, double bottom, double width, double height, Colour colour)
{
    const double reach = std::min({glowReach, width / 2, height / 2});
    const Colour light = colour.faded(glowLight);
    return {.x = f(x),
        .y = f(bottom + height / 2),
        .halfWidth = f(width / 2),
        .halfHeight = f(height / 2),
        .radius = f(reach),
        .feather = f(reach),
        .top = light,
        .bottom = light,
        .additive = true};
}

Sprite glow(double x, double y, double size, Colour colour)
{
    const float half = f(size / 2);
    const Colour light = colour.faded(glowLight);
    return {.x = f(x),
        .y = f(y),
        .halfWidth = half,
        .halfHeight = half,
        .radius = half,
        .feather = half,
        .top = light,
        .bottom = light,
        .additive = true};
}

Sprite disc(double x, double y, double radius, Colour colour)
{
    return {.x = f(x),
        .y = f(y),
        .halfWidth = f(radius),
        .halfHeight = f(radius),
        .radius = f(radius),
        .top = colour,
        .bottom = colour};
}

Sprite line(double fromX, double fromY, double toX, double toY, double width, Colour colour)
{
    return {.x = f((fromX + toX) / 2),
        .y = f((fromY + toY) / 2),
        .halfWidth = f(std::hypot(toX - fromX, toY - fromY) / 2),
        .halfHeight = f(width / 2),
        .angle = f(std::atan2(toY - fromY, toX - fromX)),
        .top = colour,
        .bottom = colour};
}

Sprite arc(
    double x, double y, double radius, double from, double sweep, double width, Colour colour)
{
    return {.x = f(x),
        .y = f(y),
        .halfWidth = f(sweep * radius / 2 + width / 2),
        .halfHeight = f(width / 2),
        .radius = f(width / 2),
        .angle = f(from + sweep / 2),
        .bend = f(radius),
        .top = colour,
        .bottom = colour};
}

} // namespace kelo
