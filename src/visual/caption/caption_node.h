#pragma once

#include "visual/caption/caption_raster.h"
#include "visual/sprites/palette.h"

#include <QSGGeometryNode>

#include <functional>
#include <memory>

class QSGTexture;

namespace kelo {

/// Draws one line of a caption from its raster. Lives on the render thread.
class CaptionNode final : public QSGGeometryNode {
public:
    CaptionNode();
    ~CaptionNode() override;

    /// The raster's picture, when that changed.
    void setTexture(std::unique_ptr<QSGTexture> texture);
    /// Shows `raster` with its text's upper left corner at `origin`, each unit in its own colour.
    void show(const CaptionRaster &raster, QPointF origin,
        const std::function<Colour(qsizetype unit)> &colour, double opacity, Colour glow);

private:
    std::unique_ptr<QSGTexture> texture_;
};

} // namespace kelo
