#pragma once

#include <QPointF>
#include <QSGGeometryNode>
#include <QString>

#include <span>

namespace kelo {

/// Draws a picture that a fragment shader computes. Lives on the render thread.
///
/// The shader gets its place in the picture as `spot`, and its numbers after `qt_Opacity`, from
/// byte 80 of its uniforms on.
class PictureNode final : public QSGGeometryNode {
public:
    struct Corner {
        QPointF place; ///< in the item, points
        QPointF spot; ///< in the picture, in the shader's own unit
    };

    /// `name`: of the fragment shader.
    explicit PictureNode(const QString &name);

    /// Covers the strip of triangles between `corners`, each with the two before it.
    void cover(std::span<const Corner> corners);
    void setNumbers(std::span<const float> numbers);
};

} // namespace kelo
