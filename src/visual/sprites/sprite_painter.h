#pragma once

#include "visual/sprites/layer_node.h"

#include <span>

class QPainter;

namespace kelo {

/// Paints `sprites` into an area that is `height` points tall, without a graphics processor.
void paintSprites(QPainter &painter, std::span<const Sprite> sprites, double height);

/// Paints a layer's sprites, then its texts.
void paintLayer(QPainter &painter, const Layer &layer, double height);

} // namespace kelo
