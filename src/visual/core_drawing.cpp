#include "visual/core_drawing.h"

#include "visual/ring_formula.h"

#include <QPainter>

namespace kelo {

namespace {

constexpr double fullRate = 120; // frames a second
constexpr double softwareRate = 12; // where each pixel costs our own time

} // namespace

QMatrix4x4 CoreDrawing::bands() const
{
    QMatrix4x4 matrix;
    for (int i = 0; i < voiceBandCount; ++i)
        matrix(i % 4, i / 4) = static_cast<float>(scene_.bands()[static_cast<std::size_t>(i)]);
    return matrix;
}

void CoreDrawing::geometryChange(const QRectF &now, const QRectF &before)
{
    scene_.resize(now.width(), now.height());
    Q_EMIT placed();
    SceneItem::geometryChange(now, before);
}

bool CoreDrawing::advance(Link &link, double now)
{
    scene_.update(link, now);
    Q_EMIT advanced();
    return true;
}

double CoreDrawing::rate() const
{
    if (!isActive())
        return 0;
    return drawsInSoftware() ? softwareRate : fullRate;
}

void CoreDrawing::paint(QPainter &painter) const
{
    SceneItem::paint(painter);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRectF ring = ringPlace();
    // A quarter of the pixels keeps the ring's shape; the painter smooths it.
    painter.setOpacity(ringOpacity());
    painter.drawImage(ring,
        ringPicture((ring.size() / 2).toSize(), scene_.bands(), scene_.level(), scene_.flowTime()));
    painter.setOpacity(1);
    const QRectF scope = scopePlace();
    painter.drawImage(
        scope, scopePicture(scope.size().toSize(), scene_.amplitude(), scene_.flowTime()));
}

} // namespace kelo
