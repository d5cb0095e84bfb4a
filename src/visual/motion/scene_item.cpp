#include "visual/motion/scene_item.h"

namespace kelo {

SceneItem::SceneItem(QQuickItem *parent)
    : SpriteItem(parent)
{
    connect(&pacer_, &FramePacer::frame, this, &SceneItem::refresh);
}

void SceneItem::setLink(Link *link)
{
    if (link == link_)
        return;
    if (link_)
        link_->disconnect(this);
    link_ = link;
    linkSet(link);
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

void SceneItem::pace()
{
    pacer_.setRate(link_ ? rate() : 0);
}

void SceneItem::refresh()
{
    if (!link_)
        return;
    if (advance(*link_, link_->uptime()))
        update();
    if (LabelList now = texts(); now != texts_) {
        texts_ = std::move(now);
        labels_.clear();
        for (const Label &label : std::as_const(texts_))
            labels_.append(QVariant::fromValue(label));
        Q_EMIT labelsChanged();
    }
    pace();
}

void SceneItem::wake()
{
    if (pacer_.canBeSeen())
        polish();
}

void SceneItem::componentComplete()
{
    SpriteItem::componentComplete();
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
    update();
}

} // namespace kelo
