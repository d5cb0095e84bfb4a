#include "visual/sprites/sprite_item.h"

#include "visual/sprites/sprite_painter.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRendererInterface>

#include <algorithm>
#include <cmath>

namespace kelo {

namespace {

/// What draws the window whose nodes are being made on this thread.
bool isGpuHere()
{
    QOpenGLContext *context = QOpenGLContext::currentContext();
    if (!context)
        return true; // other interfaces are there only with a processor of their own
    const GLubyte *name = context->functions()->glGetString(GL_RENDERER);
    return !isSoftwareRenderer(reinterpret_cast<const char *>(name));
}

} // namespace

bool isSoftwareRenderer(const QByteArray &name)
{
    const QByteArray lower = name.toLower();
    return std::ranges::any_of(
        std::array{"llvmpipe", "softpipe", "swrast", "software rasterizer", "swiftshader"},
        [&lower](const char *known) { return lower.contains(known); });
}

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

Canvas SpriteItem::canvas() const
{
    return {*window(), height(), pixelsPerPoint(),
        mapToScene({0, 0}) * window()->effectiveDevicePixelRatio()};
}

QSGNode *SpriteItem::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    if (drawsInSoftware())
        return updatePaintedNode(old);
    if (!old)
        drawnByGpu_ = isGpuHere();
    return updateNode(old);
}

QSGNode *SpriteItem::updateNode(QSGNode *old)
{
    auto *node = old ? static_cast<LayersNode *>(old) : new LayersNode;
    node->show(picture(), canvas());
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
    for (const Layer &layer : picture())
        paintLayer(painter, layer, height());
}

} // namespace kelo
