#pragma once

#include "visual/sprites/layer_node.h"

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace kelo {

/// An item that shows a picture: in one draw call a layer, or painted where Qt can only draw in
/// software.
class SpriteItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

public:
    [[nodiscard]] virtual const Picture &picture() const = 0;

protected:
    explicit SpriteItem(QQuickItem *parent = nullptr);

    /// Paints the item in software.
    virtual void paint(QPainter &painter) const;

    /// Qt paints all itself: there are no shaders.
    [[nodiscard]] bool drawsInSoftware() const;
    /// What draws is a graphics processor, not a program that stands in for one. Known once the
    /// item has been drawn.
    [[nodiscard]] bool isDrawnByGpu() const { return drawnByGpu_; }
    /// Of the screen, for one point of the item as it is magnified now.
    [[nodiscard]] double pixelsPerPoint() const;
    [[nodiscard]] Canvas canvas() const;

    /// The item's node while it is not painted.
    virtual QSGNode *updateNode(QSGNode *old);
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *) final;

private:
    QSGNode *updatePaintedNode(QSGNode *old);

    bool drawnByGpu_ = false;
};

/// Whether the OpenGL renderer of this name draws on the computer's own processor.
[[nodiscard]] bool isSoftwareRenderer(const QByteArray &name);

} // namespace kelo
