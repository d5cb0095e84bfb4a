#include "visual/sprites/grid_backdrop.h"

#include "visual/sprites/palette.h"

namespace kelo {

namespace {

constexpr double spacing = 44; // points
constexpr double lineOpacity = 0.035;

} // namespace

void GridBackdrop::geometryChange(const QRectF &now, const QRectF &before)
{
    SpriteItem::geometryChange(now, before);
    const Colour colour = colours::green.faded(lineOpacity);
    SpriteList &sprites = picture_.front().sprites;
    sprites.clear();
    for (int i = 0; spacing * i < now.width(); ++i)
        sprites.push_back(box(spacing * i - 0.5, 0, 1, now.height(), colour));
    for (int i = 0; spacing * i < now.height(); ++i)
        sprites.push_back(box(0, now.height() - spacing * i - 0.5, now.width(), 1, colour));
}

} // namespace kelo
