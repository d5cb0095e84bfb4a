#include "visual/notes/rain_item.h"

#include "visual/sprites/palette.h"

#include <QPainter>
#include <QSGSimpleRectNode>

namespace kelo {

/// The scene upon its ground, which covers all that lies behind the item.
class RainItem::Node final : public QSGNode {
public:
    Node()
    {
        appendChildNode(ground_);
        appendChildNode(layers_);
    }

    void show(const Picture &picture, const QRectF &place, const Canvas &canvas)
    {
        ground_->setRect(place);
        layers_->show(picture, canvas);
    }

private:
    QSGSimpleRectNode *ground_ = new QSGSimpleRectNode({}, colours::bg.toQColor());
    LayersNode *layers_ = new LayersNode;
};

void RainItem::linkSet(Link &link)
{
    scene_ = std::make_unique<RainScene>(link);
    scene_->resize(width(), height());
    for (const auto changed : {&Link::keysChanged, &Link::rollingChanged, &Link::speakingChanged,
             &Link::captionChanged, &Link::pausedChanged, &Link::stateChanged,
             &Link::buttonsChanged, &Link::contrastChanged})
        connect(&link, changed, this, &RainItem::disturb);
    disturb();
}

void RainItem::linkGone()
{
    scene_.reset();
}

void RainItem::disturb()
{
    motion_.disturb(link()->uptime());
    wake();
}

double RainItem::rate() const
{
    constexpr double fullRate = 120; // frames a second
    constexpr double restingRate = 2;
    return !isActive() ? 0 : motion_.isAtRest() && !motion_.isLively() ? restingRate : fullRate;
}

void RainItem::geometryChange(const QRectF &now, const QRectF &before)
{
    if (scene_)
        scene_->resize(now.width(), now.height());
    SceneItem::geometryChange(now, before);
}

void RainItem::advance(Link &link, double now)
{
    // Held keys spray sparks for as long as they are down.
    if (link.rolling || link.rollZero || link.speaking || !link.down.isEmpty())
        motion_.disturb(now);
    const double even = clock_.step(now, pacer().period());
    motion_.advance(even, drift());
    scene_->setCaptionTop(captionTop_);
    scene_->setTextsTop(textsTop_);
    scene_->update(even, motion_.now());
}

const Picture &RainItem::picture() const
{
    static const Picture none;
    return scene_ ? scene_->picture() : none;
}

QSGNode *RainItem::updateNode(QSGNode *old)
{
    auto *node = old ? static_cast<Node *>(old) : new Node;
    node->show(picture(), boundingRect(), canvas());
    return node;
}

void RainItem::paint(QPainter &painter) const
{
    painter.fillRect(boundingRect(), colours::bg.toQColor());
    SceneItem::paint(painter);
}

} // namespace kelo
