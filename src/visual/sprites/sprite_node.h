#pragma once

#include "visual/sprites/sprite.h"

#include <QSGGeometryNode>

#include <span>

namespace kelo {

/// Draws a list of sprites in one call, back to front. Lives on the render thread.
class SpriteNode final : public QSGGeometryNode {
public:
    SpriteNode();

    /// Shows `sprites` in an item that is `height` points tall on a screen with `pixels` pixels
    /// a point.
    void show(std::span<const Sprite> sprites, double height, double pixels);
};

} // namespace kelo
