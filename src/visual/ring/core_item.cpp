#include "visual/ring/core_item.h"

#include "visual/ring/ring_formula.h"
#include "visual/ring/ring_node.h"
#include "visual/sprites/sprite_painter.h"

#include <QPainter>

namespace kelo {

namespace {

constexpr double fullRate = 120; // frames a second
constexpr double calmRate = 30; // while it only breathes, and each frame costs our own time
constexpr double softwareRate = 12; // where there are no shaders

} // namespace

/// The dial, what turns on it, the ring over both, and the words in its middle.
class CoreItem::Node final : public QSGNode {
public:
    Node()
    {
        for (QSGNode *child : std::initializer_list<QSGNode *>{dial_, arcs_, ring_, words_})
            appendChildNode(child);
    }

    void show(const CoreScene &scene, QSizeF size, const Canvas &canvas)
    {
        if (size != size_ || canvas.pixels != pixels_)
            dial_->show(scene.dial(), size.height(), canvas.pixels);
        size_ = size;
        pixels_ = canvas.pixels;
        arcs_->show(scene.picture()[0].sprites, size.height(), canvas.pixels);
        ring_->show(scene.ringPlace(), scene.scopePlace(), scene.look());
        words_->show({scene.picture()[1]}, canvas);
    }

private:
    SpriteNode *dial_ = new SpriteNode;
    SpriteNode *arcs_ = new SpriteNode;
    RingNode *ring_ = new RingNode;
    LayersNode *words_ = new LayersNode;
    QSizeF size_;
    double pixels_ = 0;
};

void CoreItem::geometryChange(const QRectF &now, const QRectF &before)
{
    scene_.resize(now.width(), now.height());
    SceneItem::geometryChange(now, before);
}

void CoreItem::linkSet(Link &link)
{
    for (const auto changed :
        {&Link::stateChanged, &Link::modeChanged, &Link::pausedChanged, &Link::speakingChanged,
            &Link::rollingChanged, &Link::keysChanged, &Link::contrastChanged})
        connect(&link, changed, this, &CoreItem::disturb);
    disturb();
}

void CoreItem::disturb()
{
    motion_.disturb(link()->uptime());
    wake();
}

void CoreItem::advance(Link &link, double now)
{
    if (link.speaking || link.rolling)
        motion_.disturb(now);
    motion_.advance(now, drift());
    scene_.update(link, now, {motion_.now(), motion_.pace()});
    update();
}

double CoreItem::rate() const
{
    if (!isActive() || (motion_.isAtRest() && !motion_.isLively()))
        return 0;
    if (drawsInSoftware())
        return softwareRate;
    return motion_.isLively() || drift() == Drift::Always ? fullRate : calmRate;
}

QSGNode *CoreItem::updateNode(QSGNode *old)
{
    if (scene_.picture().front().sprites.empty()) {
        delete old;
        return nullptr;
    }
    auto *node = old ? static_cast<Node *>(old) : new Node;
    node->show(scene_, size(), canvas());
    return node;
}

void CoreItem::paint(QPainter &painter) const
{
    paintSprites(painter, scene_.dial(), height());
    paintSprites(painter, picture()[0].sprites, height());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const RingLook look = scene_.look();
    const QRectF ring = scene_.ringPlace();
    painter.setOpacity(look.opacity);
    painter.drawImage(ring, ringPicture(ring.size().toSize(), look));
    painter.setOpacity(1);
    const QRectF scope = scene_.scopePlace();
    painter.drawImage(scope, scopePicture(scope.size().toSize(), look));
    paintLayer(painter, picture()[1], height());
}

} // namespace kelo
