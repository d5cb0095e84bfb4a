#include "visual/notes/rain_item.h"

#include "visual/sprites/palette.h"

namespace kelo {

QColor RainItem::background()
{
    return colours::bg.toQColor();
}

void RainItem::linkSet(Link *link)
{
    scene_.reset();
    if (!link)
        return;
    scene_ = std::make_unique<RainScene>(*link);
    scene_->resize(width(), height());
    for (const auto changed :
        {&Link::keysChanged, &Link::rollingChanged, &Link::speakingChanged, &Link::captionChanged,
            &Link::pausedChanged, &Link::stateChanged, &Link::buttonsChanged})
        connect(link, changed, this, &RainItem::disturb);
    disturb();
}

void RainItem::disturb()
{
    motion_.disturb(link()->uptime());
    wake();
}

double RainItem::rate() const
{
    constexpr double restingRate = 2; // frames a second
    return !isActive() ? 0 : motion_.isAtRest() ? restingRate : 120;
}

void RainItem::geometryChange(const QRectF &now, const QRectF &before)
{
    if (scene_)
        scene_->resize(now.width(), now.height());
    SceneItem::geometryChange(now, before);
}

bool RainItem::advance(Link &link, double now)
{
    // Held keys spray sparks for as long as they are down.
    if (link.rolling || link.rollZero || link.speaking || !link.down.isEmpty())
        motion_.disturb(now);
    const double even = clock_.step(now, pacer().period());
    motion_.advance(even);
    scene_->setCaptionTop(captionTop_);
    scene_->update(even, motion_.now());
    if (!motion_.isAtRest())
        return true;
    const bool changed = scene_->sprites() != shown_;
    shown_ = scene_->sprites();
    return changed;
}

const SpriteList &RainItem::sprites() const
{
    static const SpriteList none;
    return scene_ ? scene_->sprites() : none;
}

LabelList RainItem::texts() const
{
    return scene_ ? scene_->labels() : LabelList();
}

} // namespace kelo
