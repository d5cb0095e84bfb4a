#include "visual/motion/scene_item.h"

#include <utility>

namespace kelo {

namespace {

bool motionIsReduced = false;

} // namespace

SceneItem::SceneItem(QQuickItem *parent)
    : SpriteItem(parent)
{
    connect(&pacer_, &FramePacer::frame, this, &SceneItem::refresh);
}

void SceneItem::setLink(Link *link)
{
    if (link == link_)
        return;
    if (link_) {
        link_->disconnect(this);
        linkGone();
    }
    link_ = link;
    if (link_)
        linkSet(*link_);
    polish();
    Q_EMIT linkChanged();
}

void SceneItem::setActive(bool active)
{
    if (active == active_)
        return;
    active_ = active;
    pace();
    Q_EMIT activeChanged();
}

void SceneItem::setReducedMotion(bool reduced)
{
    motionIsReduced = reduced;
}

Drift SceneItem::drift() const
{
    return motionIsReduced ? Drift::Never : isDrawnByGpu() ? Drift::Always : Drift::WhileLively;
}

void SceneItem::pace()
{
    pacer_.setRate(link_ ? rate() : 0);
}

void SceneItem::refresh()
{
    if (!link_)
        return;
    advance(*link_, link_->uptime());
    const double pixels = std::exchange(pixels_, pixelsPerPoint());
    if (pixels != pixels_ || picture() != shown_) {
        shown_ = picture();
        update();
    }
    pace();
}

void SceneItem::wake()
{
    if (pacer_.canBeSeen())
        polish();
}

void SceneItem::updatePolish()
{
    refresh();
}

void SceneItem::geometryChange(const QRectF &now, const QRectF &before)
{
    SpriteItem::geometryChange(now, before);
    polish();
}

} // namespace kelo
