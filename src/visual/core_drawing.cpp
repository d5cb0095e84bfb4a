#include "visual/core_drawing.h"

#include "visual/ring_formula.h"

#include <QPainter>

namespace kelo {

namespace {

constexpr double fullRate = 120; // frames a second
constexpr double calmRate = 30; // while it only breathes
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

void CoreDrawing::linkSet(Link *link)
{
    if (!link)
        return;
    for (const auto changed :
        {&Link::stateChanged, &Link::modeChanged, &Link::pausedChanged, &Link::speakingChanged,
            &Link::rollingChanged, &Link::keysChanged, &Link::contrastChanged})
        connect(link, changed, this, &CoreDrawing::disturb);
    disturb();
}

void CoreDrawing::disturb()
{
    if (link())
        motion_.disturb(link()->uptime());
    wake();
}

bool CoreDrawing::advance(Link &link, double now)
{
    if (link.speaking || link.rolling)
        motion_.disturb(now);
    motion_.advance(now);
    scene_.update(link, now, {motion_.now(), motion_.pace()});
    Q_EMIT advanced();
    return true;
}

double CoreDrawing::rate() const
{
    if (!isActive() || motion_.isAtRest())
        return 0;
    return drawsInSoftware() ? softwareRate : motion_.isLively() ? fullRate : calmRate;
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
