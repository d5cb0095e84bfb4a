#pragma once

#include "visual/sprites/sprite.h"

#include <span>

class QPainter;

namespace kelo {

/// Paints `sprites`, plainer than the graphics processor draws them, into an area that is `height`
/// points tall.
void paintSprites(QPainter &painter, std::span<const Sprite> sprites, double height);

} // namespace kelo
