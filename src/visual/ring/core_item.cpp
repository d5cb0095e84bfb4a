#include "visual/ring/core_item.h"

#include "visual/ring/ring_formula.h"
#include "visual/ring/ring_node.h"
#include "visual/sprites/sprite_node.h"
#include "visual/sprites/sprite_painter.h"

#include <QPainter>

namespace kelo {

namespace {

constexpr double fullRate = 120; // frames a second
constexpr double calmRate = 30; // while it only breathes
constexpr double softwareRate = 12; // where each pixel costs our own time

} // namespace

/// The dial, what turns on it, and the ring over both.
class CoreItem::Node final : public QSGNode {
public:
    Node()
    {
        appendChildNode(dial_);
        appendChildNode(arcs_);
        appendChildNode(ring_);
    }

    void show(const CoreScene &scene, QSizeF size, double pixels)
    {
        if (size != size_ || pixels != pixels_)
            dial_->show(scene.dial(), size.height(), pixels);
        size_ = size;
        pixels_ = pixels;
        arcs_->show(scene.sprites(), size.height(), pixels);
        ring_->show(scene.ringPlace(), scene.scopePlace(), scene.look());
    }

private:
    SpriteNode *dial_ = new SpriteNode;
    SpriteNode *arcs_ = new SpriteNode;
    RingNode *ring_ = new RingNode;
    QSizeF size_;
    double pixels_ = 0;
};

void CoreItem::geometryChange(const QRectF &now, const QRectF &before)
{
    scene_.resize(now.width(), now.height());
    SceneItem::geometryChange(now, before);
}

void CoreItem::linkSet(Link *link)
{
    if (!link)
        return;
    for (const auto changed :
        {&Link::stateChanged, &Link::modeChanged, &Link::pausedChanged, &Link::speakingChanged,
            &Link::rollingChanged, &Link::keysChanged, &Link::contrastChanged})
        connect(link, changed, this, &CoreItem::disturb);
    disturb();
}

void CoreItem::disturb()
{
    if (link())
        motion_.disturb(link()->uptime());
    wake();
}

bool CoreItem::advance(Link &link, double now)
{
    if (link.speaking || link.rolling)
        motion_.disturb(now);
    motion_.advance(now);
    scene_.update(link, now, {motion_.now(), motion_.pace()});
    return true;
}

double CoreItem::rate() const
{
    if (!isActive() || motion_.isAtRest())
        return 0;
    return drawsInSoftware() ? softwareRate : motion_.isLively() ? fullRate : calmRate;
}

QSGNode *CoreItem::updatePaintNode(QSGNode *old, UpdatePaintNodeData *data)
{
    if (drawsInSoftware())
        return SceneItem::updatePaintNode(old, data);
    if (sprites().empty()) {
        delete old;
        return nullptr;
    }
    auto *node = old ? static_cast<Node *>(old) : new Node;
    node->show(scene_, size(), pixelsPerPoint());
    return node;
}

void CoreItem::paint(QPainter &painter) const
{
    paintSprites(painter, scene_.dial(), height());
    SceneItem::paint(painter);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const RingLook look = scene_.look();
    const QRectF ring = scene_.ringPlace();
    // A quarter of the pixels keeps the ring's shape; the painter smooths it.
    painter.setOpacity(look.opacity);
    painter.drawImage(ring, ringPicture((ring.size() / 2).toSize(), look));
    painter.setOpacity(1);
    const QRectF scope = scene_.scopePlace();
    painter.drawImage(scope, scopePicture(scope.size().toSize(), look));
}

} // namespace kelo
