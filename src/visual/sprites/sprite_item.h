#pragma once

#include "visual/sprites/sprite.h"

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

class QPainter;

namespace kelo {

/// An item that shows sprites: in one draw call, or painted more plainly where Qt can only draw in
/// software.
class SpriteItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

protected:
    explicit SpriteItem(QQuickItem *parent = nullptr);

    [[nodiscard]] virtual const SpriteList &sprites() const = 0;
    /// Paints the item in software.
    virtual void paint(QPainter &painter) const;

    [[nodiscard]] bool drawsInSoftware() const;
    /// Of the screen, for one point of the item as it is magnified now.
    [[nodiscard]] double pixelsPerPoint() const;

    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *) override;

private:
    QSGNode *updatePaintedNode(QSGNode *old);
};

} // namespace kelo
