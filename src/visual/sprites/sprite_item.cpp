#include "visual/sprites/sprite_item.h"

#include "visual/sprites/sprite_node.h"
#include "visual/sprites/sprite_painter.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRendererInterface>

#include <cmath>

namespace kelo {

SpriteItem::SpriteItem(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

bool SpriteItem::drawsInSoftware() const
{
    return window()
        && window()->rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
}

double SpriteItem::pixelsPerPoint() const
{
    if (!window())
        return 1;
    const QPointF point = mapToScene({1, 0}) - mapToScene({0, 0});
    return std::hypot(point.x(), point.y()) * window()->effectiveDevicePixelRatio();
}

QSGNode *SpriteItem::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    if (drawsInSoftware())
        return updatePaintedNode(old);
    if (sprites().empty()) {
        delete old;
        return nullptr;
    }
    auto *node = old ? static_cast<SpriteNode *>(old) : new SpriteNode;
    node->show(sprites(), height(), pixelsPerPoint());
    return node;
}

QSGNode *SpriteItem::updatePaintedNode(QSGNode *old)
{
    const double pixels = pixelsPerPoint();
    QImage image((size() * pixels).toSize(), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        delete old;
        return nullptr;
    }
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.scale(pixels, pixels);
    paint(painter);
    painter.end();

    auto *node = old ? static_cast<QSGImageNode *>(old) : window()->createImageNode();
    node->setOwnsTexture(true);
    node->setTexture(window()->createTextureFromImage(image));
    node->setRect(boundingRect());
    return node;
}

void SpriteItem::paint(QPainter &painter) const
{
    paintSprites(painter, sprites(), height());
}

} // namespace kelo
